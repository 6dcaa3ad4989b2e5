#include "app/Commands.h"
#include "app/Explanation.h"
#include "app/Failure.h"
#include "app/Listing.h"
#include "app/SeriesSpecification.h"
#include "building/CreateProjectData.h"
#include "utilities/DefaultSelection.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

using ProjectDataUtilities::CreateProjectData;

struct ExplainRequest {
    std::filesystem::path project;
    std::string text;
    std::optional<ProjectVector::VectorTypeEnum> axis;
    Format format = Format::Text;
};

// The argument string: as it is, or that of a vector as a person writes it.
std::string ArgumentString(boost::shared_ptr<engine::Project> const &project, ExplainRequest const &request) {
    std::string const &text = request.text;
    if (text.find(' ') < text.find_first_of(":@"))
        return text;
    ProjectUtilities::DefaultSelection const defaults(project);
    VectorText const vector = ReadVectorText(text);
    auto const axis = request.axis ? *request.axis : FindAxis(*project, vector);
    return Specify(project, vector, axis, defaults).ToStdString(&defaults);
}

// A part has a line for each line of its meaning, or one in which they follow each other.
void Add(Listing &listing, ExplainedPart part, bool inLines) {
    for (std::size_t end; inLines && (end = part.meaning.find('\n')) != std::string::npos;) {
        listing.Add({part.part, part.text, part.meaning.substr(0, end)});
        part = {"", "", part.meaning.substr(end + 1)};
    }
    std::ranges::replace(part.meaning, '\n', ' ');
    listing.Add({part.part, part.text, part.meaning});
}

void Explain(ExplainRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    std::string const text = ArgumentString(project, request);
    if (CreateProjectData::IsNum(text) || CreateProjectData::IsMissing(text))
        throw Problem(ExceptionMessage::translate("\"{1}\" runs over the items of the series beside it: there is no "
                                                  "more to it.") %
                      text);
    NamedSeries const series = FindSeries(*project, text, request.axis);
    std::string const name = series.vector->GetName();
    std::string help = series.vector->GetHelpString();
    if (help.starts_with(name + ": "))
        help.erase(0, name.size() + 2);
    std::vector<ExplainedPart> parts = {{"statistic", name, help}};
    for (auto const &further : {ExplainArguments(*project, series), ExplainResult(*project, series)})
        parts.insert(parts.end(), further.begin(), further.end());
    Listing listing({"part", "text", "meaning"});
    for (ExplainedPart const &part : parts)
        Add(listing, part, request.format == Format::Text);
    Output output;
    listing.Write(output, request.format);
    output.Finish();
}

} // namespace

void AddExplainCommand(CLI::App &program) {
    auto const request = std::make_shared<ExplainRequest>();
    CLI::App *const command = program.add_subcommand("explain", "Tell what a vector and its arguments ask for and get");
    command->add_option("PROJECT", request->project, "The project file")->required();
    command->add_option("STRING", request->text, "\"DModX M1,1,0,0\" or, as for \"build\", \"DModX:1@M1\"")->required();
    AddAxisOption(*command, request->axis);
    AddFormatOption(*command, request->format);
    command->footer(
        "What it gets is told with shape, range, degrees of freedom, units, and how many values are missing "
        "and why;\nof what gets nothing, why. docs/methods.md has the formulas.\n"
        "Example: dataseries explain oil.project \"DModX M2,0,0,0\"\n"
        "         dataseries explain oil.project YPred:octane@M1");
    command->callback([request] { Explain(*request); });
}
