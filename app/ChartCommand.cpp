#include "app/Chart.h"
#include "app/ChartScript.h"
#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/Listing.h"
#include "app/Marks.h"
#include "app/VariableOptions.h"
#include "platform/containers/Missing.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

struct ChartRequest {
    std::filesystem::path project;
    ChartQuestion question;
    std::vector<std::string> batches; // as given: lists of names
    bool outside = false;
    bool sums = false;
    std::filesystem::path file;
    std::string color; // empty: all alike
    bool isPicture = false;
    Format format = Format::Text; // of what is no picture
    PlotStyle style;
};

BatchCurve const *CurveOf(ChartPhase const &phase, std::string const &batch) {
    auto const found = std::ranges::find(phase.curves, batch, &BatchCurve::batch);
    return found == phase.curves.end() ? nullptr : &*found;
}

std::vector<std::string> BatchesOf(std::vector<ChartPhase> const &phases) {
    std::vector<std::string> names;
    for (ChartPhase const &phase : phases)
        for (BatchCurve const &curve : phase.curves)
            if (std::ranges::count(names, curve.batch) == 0)
                names.push_back(curve.batch);
    return names;
}

// One row for each point: the average, the limits and the batches.
Listing FiguresOf(std::vector<ChartPhase> const &phases, std::vector<std::string> const &batches, Format format) {
    std::vector<std::string> headings = {"phase", "point", "maturity", "average", "lower", "upper"};
    headings.insert(headings.end(), batches.begin(), batches.end());
    Listing listing(std::move(headings));
    for (ChartPhase const &phase : phases) {
        std::vector<BatchCurve const *> curves;
        for (std::string const &batch : batches)
            curves.push_back(CurveOf(phase, batch));
        for (std::size_t point = 0; point < phase.maturity.size(); ++point) {
            float const lower = phase.lower.empty() ? missingValue : phase.lower[point];
            std::vector<Listing::Cell> row = {phase.name, point + 1};
            for (float const value : {phase.maturity[point], phase.average[point], lower, phase.upper[point]})
                row.push_back(Listing::Figure(value, format));
            for (BatchCurve const *const curve : curves)
                row.push_back(Listing::Figure(curve ? curve->values[point] : missingValue, format));
            listing.Add(std::move(row));
        }
    }
    return listing;
}

// Where a curve is outside. A point by itself may be chance, a run of them is none.
struct Departure {
    std::size_t count = 0, first = 0, last = 0;
    std::size_t run = 0, runFrom = 0; // the longest one
};

Departure DepartureOf(ChartPhase const &phase, BatchCurve const &curve) {
    Departure departure;
    std::size_t run = 0;
    for (std::size_t point = 0; point < curve.values.size(); ++point) {
        run = phase.IsOutside(curve, point) ? run + 1 : 0;
        if (run == 0)
            continue;
        if (departure.count++ == 0)
            departure.first = point;
        departure.last = point;
        if (run > departure.run) {
            departure.run = run;
            departure.runFrom = point + 1 - run;
        }
    }
    return departure;
}

// By maturity.
Listing OutsideOf(std::vector<ChartPhase> const &phases, std::vector<std::string> const &batches, Format format) {
    Listing listing({"batch", "phase", "points", "outside", "first", "last", "longest_run", "run_from"});
    for (std::string const &batch : batches)
        for (ChartPhase const &phase : phases) {
            BatchCurve const *const curve = CurveOf(phase, batch);
            Departure const departure = curve ? DepartureOf(phase, *curve) : Departure();
            auto const at = [&](std::size_t point) { return Listing::Figure(phase.maturity[point], format); };
            if (departure.count > 0)
                listing.Add({batch, phase.name, phase.maturity.size(), departure.count, at(departure.first),
                             at(departure.last), departure.run, at(departure.runFrom)});
        }
    return listing;
}

Listing ListingOf(ChartSums const &sums, Format format) {
    std::vector<std::string> headings = {"batch", "sum"};
    if (sums.phases.size() > 1)
        headings.insert(headings.end(), sums.phases.begin(), sums.phases.end());
    Listing listing(headings);
    for (BatchSum const &batch : sums.batches) {
        std::vector<Listing::Cell> row = {batch.batch, Listing::Figure(batch.Total(), format)};
        for (std::size_t phase = 0; headings.size() > 2 && phase < sums.phases.size(); ++phase)
            row.push_back(Listing::Figure(batch.sums[phase], format));
        listing.Add(std::move(row));
    }
    return listing;
}

void Write(ChartRequest const &request, Listing const &listing) {
    Output output(request.file, request.project);
    listing.Write(output, request.format);
    output.Finish();
}

// Tells batches, or curves of them, whether they are marked.
template <typename Batch>
void Mark(boost::shared_ptr<engine::Project> const &project, std::vector<Batch> &batches) {
    std::vector<std::string> names;
    for (Batch const &each : batches)
        names.push_back(each.batch);
    std::vector<bool> const marked =
        MarkedAmong(ColumnIDs(NCStringVector(std::move(names)), "Batch", project, ColumnIDs::Batches, 0));
    for (std::size_t i = 0; i < marked.size(); ++i)
        batches[i].isMarked = marked[i];
}

void WriteSums(ChartRequest const &request, boost::shared_ptr<engine::Project> const &project) {
    ChartSums sums = ReadSums(project, request.question);
    Mark(project, sums.batches);
    if (request.isPicture)
        WritePicture(SumsScript(sums, request.question, request.style), request.file, request.project);
    else
        Write(request, ListingOf(sums, request.format));
}

// A batch is in the class of its first observation.
Colouring Colour(engine::Project const &project, std::string const &heading, std::vector<std::string> const &batches,
                 std::vector<ChartPhase> &phases) {
    NCObservations const &list = project.GetObservations();
    std::map<std::string, std::uint32_t> firstOf;
    for (std::uint32_t observation = 1; observation <= list.Size(); ++observation)
        firstOf.emplace(list.GetText(observation, list.GetBatchID()), observation);
    std::vector<std::uint32_t> observations;
    for (std::string const &batch : batches)
        observations.push_back(firstOf[batch]);
    Colouring colouring = ColouringByIdentifier(project, heading, observations);
    for (ChartPhase &phase : phases)
        for (BatchCurve &curve : phase.curves)
            curve.group =
                colouring.GroupOf(static_cast<std::size_t>(std::ranges::find(batches, curve.batch) - batches.begin()));
    return colouring;
}

void WriteChart(ChartRequest request, boost::shared_ptr<engine::Project> const &project) {
    std::vector<ChartPhase> phases = ReadChart(project, request.question);
    for (ChartPhase &phase : phases)
        Mark(project, phase.curves);
    std::vector<std::string> const all = BatchesOf(phases);
    if (!request.color.empty() && request.color != "none")
        request.style.colouring = Colour(*project, request.color, all, phases);
    std::vector<std::string> const chosen = NamesIn(request.batches);
    for (std::string const &batch : chosen)
        if (std::ranges::count(all, batch) == 0)
            throw Problem(ExceptionMessage::translate("There is no batch \"{1}\" in {2}.") % batch %
                          (request.question.ofPredictions ? std::string("the prediction set")
                                                          : "model " + std::to_string(request.question.model)));
    std::vector<std::string> const &listed = chosen.empty() ? all : chosen;
    if (request.isPicture)
        WritePicture(ChartScript(phases, request.question, chosen, request.style), request.file, request.project);
    else
        Write(request,
              request.outside ? OutsideOf(phases, listed, request.format) : FiguresOf(phases, listed, request.format));
}

void Chart(ChartRequest request) {
    if (!(request.question.multiplier > 0) || !std::isfinite(request.question.multiplier))
        throw UsageError("--multiplier is no number above 0");
    if (request.isPicture)
        request.style.isPng = IsPng(request.file);
    auto const project = engine::Project::OpenToRead(request.project);
    if (request.isPicture)
        ReadMarks(project);
    request.sums ? WriteSums(request, project) : WriteChart(request, project);
}

} // namespace

void AddChartCommand(CLI::App &program) {
    auto const request = std::make_shared<ChartRequest>();
    ChartQuestion &question = request->question;
    CLI::App *const command = program.add_subcommand("chart", "Hold batches against the limits of a control chart");
    command->add_option("PROJECT", request->project, "The project file")->required();
    command->add_option("--model", question.model, "The number of a model of batches")->required()->type_name("N");
    command->add_option("--vector", question.vector, "t:1, to:1, DModX, T2Range, YPred or XVar:NAME")
        ->required()
        ->type_name("VECTOR");
    CLI::Option *const batches =
        command->add_option("--batches", request->batches, "Batches that are drawn in colour, or written (all)");
    batches->type_name("NAMES")->allow_extra_args(false);
    command->add_flag("--predicted", question.ofPredictions, "The batches of the prediction set");
    command->add_option("--multiplier", question.multiplier, "Standard deviations from the average to a limit (3)")
        ->type_name("NUMBER");
    CLI::Option *const outside =
        command->add_flag("--outside", request->outside, "List where batches are outside, in place of all figures");
    CLI::Option *const color = command->add_option(
        "--color", request->color, "Colour batches by an identifier column, the text of their first row");
    color->type_name("COLUMN")->excludes(batches)->excludes(outside);
    command->add_flag("--sums", request->sums, "How far each batch is outside, summed over the points")
        ->excludes(batches)
        ->excludes(color)
        ->excludes(outside);
    command->add_option("-o,--output", request->file,
                        "The picture: a file named .svg or .png; with --format, a file of any name");
    AddFormatOption(*command, request->format);
    AddPictureOptions(*command, request->style);
    command->footer(
        "The limits are the average of the batches of the model, and so many standard deviations more and less, at\n"
        "each point of the aligned batches. DModX and T2Range have an upper limit only. The sums of T2Range are those\n"
        "above its critical value. Of models that were fitted with --phase-models all phases are shown whose model "
        "has\n"
        "the component or the variable. Without a picture, the figures are written.\n"
        "Example: dataseries chart tank.project --model 2 --vector DModX --predicted -o distances.png\n"
        "         dataseries chart tank.project --model 2 --vector XVar:oxygen --predicted --outside\n"
        "         dataseries chart tank.project --model 2 --vector t:1 --sums -o sums.svg");
    command->callback([request, command] {
        request->isPicture = !request->file.empty() && command->count("--format") == 0;
        if (request->isPicture && request->outside)
            throw UsageError("A picture marks what is outside; --outside is for a list, with --format");
        Chart(*request);
    });
}
