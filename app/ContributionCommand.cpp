#include "app/Commands.h"
#include "app/Contribution.h"
#include "app/ContributionScript.h"
#include "app/ContributionValues.h"
#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/Listing.h"
#include "app/VariableOptions.h"
#include "platform/containers/Missing.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr std::size_t usualBars = 15;

struct ContributionRequest {
    std::filesystem::path project;
    ContributionQuestion question;
    bool all = false;
    Format format = Format::Text;
    std::filesystem::path file;
    std::filesystem::path picture;
    PlotStyle style;
};

Listing ListingOf(Contribution const &contribution, std::size_t count, ContributionValues const &values,
                  Format format) {
    Listing listing({"variable", "contribution", "group", values.HeldAgainst(), "difference"});
    for (std::size_t place = 0; place < count; ++place) {
        ContributionBar const &bar = contribution.bars[place];
        auto const [group, against] = values.Means(bar.term);
        bool const isKnown = !IsMissing(group) && !IsMissing(against);
        listing.Add({bar.variable, Listing::Figure(bar.value, format), Listing::Figure(group, format),
                     Listing::Figure(against, format),
                     Listing::Figure(isKnown ? group - against : missingValue, format)});
    }
    return listing;
}

// "and 37 more, each below 0.12".
std::string RestOf(Contribution const &contribution, std::size_t count) {
    std::string text;
    if (count < contribution.bars.size()) {
        char buffer[32];
        // Rounded up, so that it is true.
        float const largest = std::abs(contribution.bars[count].value);
        double const unit = largest > 0 ? std::pow(10, std::floor(std::log10(largest)) - 1) : 1;
        double const bound = (std::floor(largest / unit) + 1) * unit;
        text = "and " + std::to_string(contribution.bars.size() - count) + " more, each below " +
               std::string(NumberText(static_cast<float>(bound), 6, buffer)) + "\n";
    }
    if (contribution.missing > 0)
        text += "and " + std::to_string(contribution.missing) + " without a value\n";
    return text;
}

void Draw(ContributionRequest request, Contribution const &contribution, std::size_t count,
          ContributionValues const &values) {
    if (contribution.bars.empty())
        throw Problem(ExceptionMessage::translate("There is nothing to draw: all contributions are missing."));
    std::size_t const bars = std::min(count, RoomForBars(request.style));
    WritePicture(ContributionScript(contribution, bars, values.View(contribution.bars.front().term), request.style),
                 request.picture, request.project);
}

void WriteNothing(ContributionRequest const &request, Contribution const &contribution) {
    Output output(request.file, request.project);
    if (request.format == Format::Text)
        output << contribution.title << "\n";
    else
        Listing({"variable", "contribution", "group", "reference", "difference"}).Write(output, request.format);
    output.Finish();
}

void Contribute(ContributionRequest request) {
    if (!(request.question.multiplier > 0) || !std::isfinite(request.question.multiplier))
        throw UsageError("--multiplier is no number above 0");
    if (!request.picture.empty())
        request.style.isPng = IsPng(request.picture);
    if (!request.file.empty())
        CheckApart(request.file, request.project);
    auto const project = engine::Project::OpenToRead(request.project);
    Contribution const contribution = ReadContribution(project, request.question);
    if (!contribution.asked.GetProjectVector())
        return WriteNothing(request, contribution);
    // What a program reads is whole.
    bool const isWhole = request.all || request.format != Format::Text;
    std::size_t const most = isWhole ? std::numeric_limits<std::size_t>::max() : usualBars;
    std::size_t const count = std::min(most, contribution.bars.size());
    ContributionValues const values(project, contribution.asked);
    if (!request.picture.empty())
        Draw(request, contribution, request.all ? count : std::min(count, usualBars), values);
    Output output(request.file, request.project);
    if (request.format == Format::Text)
        output << contribution.title << "\n";
    ListingOf(contribution, count, values, request.format).Write(output, request.format);
    if (request.format == Format::Text)
        output << RestOf(contribution, count);
    output.Finish();
}

// One of the kinds, one of the groups, and what goes with them.
void Check(CLI::App const &command, ContributionQuestion &question) {
    using enum ContributionQuestion::Kind;
    constexpr std::pair<char const *, ContributionQuestion::Kind> kinds[] = {
        {"--score", Score}, {"--dmodx", DModX}, {"--dmody", DModY}, {"--ypred", YPred}};
    int asked = 0;
    for (auto const &[option, kind] : kinds)
        if (command.count(option) > 0) {
            question.kind = kind;
            ++asked;
        }
    if (asked != 1)
        throw UsageError("Give one of --score, --dmodx, --dmody and --ypred");
    bool const ofBatches = command.count("--batch") > 0;
    if (ofBatches == (command.count("--group") > 0))
        throw UsageError("Give --group, or --batch");
    question.ofBatches = ofBatches;
    if (question.kind != Score && command.count("--weight") > 0)
        throw UsageError("--weight is for --score");
    if (question.kind == DModY && command.count("--components") > 0)
        throw UsageError("--components is not for --dmody, which is that to the whole model");
    if (question.kind == Score)
        question.weights = NamesIn(question.weights);
}

void AddQuestion(CLI::App &command, ContributionQuestion &question) {
    command.add_option("--model", question.model, "The number of the model")->required()->type_name("N");
    command.add_flag("--score")->description("Explain where the group is in the model, by scores");
    command.add_flag("--dmodx")->description("Explain its distance to the model in X");
    command.add_flag("--dmody")->description("Explain its distance to the model in Y");
    command.add_option("--ypred", question.response, "Explain its predicted response")->type_name("NAME");
    CLI::Option *const group = command.add_option("--group", question.group, "The observations that are explained");
    CLI::Option *const batch =
        command.add_option("--batch", question.group, "The batches that are explained, or points of them");
    CLI::Option *const reference = command.add_option(
        "--reference", question.reference, "What they are held against: observations, or batches (the average)");
    CLI::Option *const weight =
        command.add_option("--weight", question.weights, "Of scores: " + WeightNames() + " (w*, or p without Y)");
    for (CLI::Option *const list : {group, reference, weight})
        list->type_name("NAME,...")->allow_extra_args(false);
    batch->type_name("NAME[@MATURITY],...")->allow_extra_args(false);
    command
        .add_option(
            "--components", question.components,
            "Of scores those explained (1,2), for --dmodx and --ypred\nthe last one of the model that is asked (all)")
        ->type_name("N,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    command.add_flag("--predictions,--predicted", question.ofPredictions, "Of the prediction set");
    command
        .add_option(
            "--ooc", question.outOf,
            "Of the batches only the points out of control in the\nchart of t:1, to:1, DModX, T2Range, YPred or "
            "XVar:NAME")
        ->type_name("VECTOR")
        ->needs(batch);
    command
        .add_option("--multiplier", question.multiplier, "Standard deviations from the average to a limit of it (3)")
        ->type_name("NUMBER")
        ->needs("--ooc");
    CLI::Option *const down =
        command.add_flag("--down", question.down, "Follow the strongest variable to the model below");
    command.add_option("--via", question.via, "Follow these instead")
        ->type_name("NAME,...")
        ->allow_extra_args(false)
        ->needs(down);
}

} // namespace

void AddContributionCommand(CLI::App &program) {
    auto const request = std::make_shared<ContributionRequest>();
    CLI::App *const command =
        program.add_subcommand("contribution", "Tell which variables make observations or batches stand out");
    command->add_option("PROJECT", request->project, "The project file")->required();
    AddQuestion(*command, request->question);
    command->add_flag("--all", request->all, "All variables, not the 15 largest contributions; csv and json have all");
    AddFormatOption(*command, request->format);
    command->add_option("-o,--output", request->file, "The file for the table, instead of standard output");
    command->add_option("--plot", request->picture,
                        "Draw the bars, and the strongest variable itself, into a file named .svg or .png");
    AddPictureOptions(*command, request->style);
    command->footer(
        "Beside each contribution stand the means of the group and of what it is held against, in the units of the\n"
        "variable: the reference or the average; for distances of observations what the model predicts of the group.\n"
        "--batch is for models of the evolution of batches: NAME is all points of a batch, NAME@MATURITY the nearest\n"
        "one. --down goes from a model of whole batches to the variables along them, and from a model of results of\n"
        "models (fit --on) to the variables of the model behind a score. Names in lists are separated by commas; one\n"
        "that holds a comma stands in double quotes.\n"
        "Example: dataseries contribution wine.project --model 1 --score --group o70,o74 --plot why.png\n"
        "         dataseries contribution oil.project --model 1 --ypred octane --group cal02 --reference cal01\n"
        "         dataseries contribution tank.project --model 3 --dmodx --predictions --batch drift --ooc DModX\n"
        "         dataseries contribution tank.project --model 4 --dmodx --predictions --group drift --down");
    command->callback([request, command] {
        Check(*command, request->question);
        Contribute(*request);
    });
}
