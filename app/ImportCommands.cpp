#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Output.h"
#include "app/ProgressBar.h"
#include "app/VariableOptions.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "platform/containers/Missing.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>

namespace {

struct ImportRequest {
    std::filesystem::path project;
    std::filesystem::path file;
    std::string name;
    engine::TableOptions options;
};

struct PredictRequest : ImportRequest {
    std::vector<int> models; // all of them when empty
    std::string use;
    bool replace = false;
    std::vector<std::string> running; // as given: lists of names
};

char MarkOf(std::string const &text, char const *what, std::initializer_list<std::pair<char const *, char>> marks) {
    for (auto const &[name, mark] : marks)
        if (text == name)
            return mark;
    throw UsageError("\"" + text + "\" is no " + what);
}

void AddReadingOptions(CLI::App &command, ImportRequest &request) {
    engine::TableOptions &options = request.options;
    command.add_option("--name", request.name, "Name of what is stored");
    command
        .add_option_function<std::size_t>(
            "--id-columns", [&options](std::size_t count) { options.identifierColumns = count; },
            "How many columns at the start identify the observations (found from the data)")
        ->type_name("N");
    command
        .add_option_function<std::string>(
            "--separator",
            [&options](std::string const &text) {
                options.separator = MarkOf(text, "separator: give \",\", \";\" or \"tab\"",
                                           {{",", ','}, {";", ';'}, {"tab", '\t'}, {"\t", '\t'}, {"\\t", '\t'}});
            },
            "What stands between cells: a comma, a semicolon or \"tab\" (found)")
        ->type_name("C");
    command
        .add_option_function<std::string>(
            "--decimal",
            [&options](std::string const &text) {
                options.decimalMark = MarkOf(text, "decimal mark: give \".\" or \",\"", {{".", '.'}, {",", ','}});
            },
            "The decimal mark: a point or a comma (found)")
        ->type_name("C");
    command.add_option("--batch", options.batchColumn, "Heading of the column that tells the batch")
        ->type_name("COLUMN");
    command.add_option("--phase", options.phaseColumn, "Heading of the column that tells the phase")
        ->type_name("COLUMN");
    command.add_option("--missing", options.missingMarks, "A text that stands for a missing value; may be repeated")
        ->type_name("MARK")
        ->allow_extra_args(false);
    command.add_flag_function(
        "--header,!--no-header", [&options](std::int64_t value) { options.header = value > 0; },
        "Whether the first row holds headings (found)");
}

engine::ImportedTable Read(ImportRequest const &request) {
    CheckApart(request.file, request.project);
    ProgressBar bar("Reading");
    return engine::ReadTable(request.file, request.options, bar.Listener());
}

std::string Identifiers(std::vector<engine::TextColumn> const &columns) {
    std::string text = std::to_string(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (!columns[i].name.empty())
            text += (i == 0 ? " (" : ", ") + columns[i].name;
    return text.find('(') == std::string::npos ? text : text + ")";
}

void Report(Output &output, ImportRequest const &request, char const *kind, int number,
            engine::ImportedTable const &table) {
    std::ptrdiff_t missing = 0;
    for (std::vector<float> const &column : table.columns)
        missing += std::count(column.begin(), column.end(), missingValue);
    output << request.project.string() << ": " << kind << " " << std::to_string(number) << " \"" << table.name
           << "\"\n  observations   " << std::to_string(table.ObservationCount()) << "\n  variables      "
           << std::to_string(table.columns.size()) << "\n  identifiers    " << Identifiers(table.observations)
           << "\n  missing cells  " << std::to_string(missing) << "\n";
    for (std::string const &note : table.notes)
        output << "  note: " << note << "\n";
}

void Import(ImportRequest const &request) {
    boost::shared_ptr<engine::Project> project;
    if (std::filesystem::exists(request.project))
        project = engine::Project::OpenToWrite(request.project);
    engine::ImportedTable table = Read(request);
    if (!request.name.empty())
        table.name = request.name;
    int number = 1;
    {
        ProgressBar bar("Storing");
        if (project)
            number = project->AddDataSet(table, bar.Listener());
        else
            engine::Project::Create(request.project, table, bar.Listener());
    }
    Output output;
    Report(output, request, "data set", number, table);
    output.Finish();
}

// A line with names, shortened where there are many.
void ReportNames(Output &output, std::string_view what, std::vector<std::string> const &names) {
    constexpr std::size_t most = 10;
    if (names.empty())
        return;
    output << "    " << what << ": ";
    for (std::size_t i = 0; i < std::min(most, names.size()); ++i)
        output << (i == 0 ? "" : ", ") << (names[i].empty() ? "(none)" : names[i]);
    output << (names.size() > most ? " and " + std::to_string(names.size() - most) + " more\n" : "\n");
}

void Report(Output &output, int model, engine::VariableMatch const &match) {
    output << "  model " << std::to_string(model) << ": " << std::to_string(match.found) << " of "
           << std::to_string(match.found + match.missing.size()) << " X variables found\n";
    ReportNames(output, match.found == 0 ? "lacking, so that nothing is predicted" : "lacking, taken as missing",
                match.missing);
    ReportNames(output, "of no use to the model", match.surplus);
    ReportNames(output, "groups without centre values, whose locally centred variables are taken as missing",
                match.unknownGroups);
    ReportNames(output, "levels that the model does not know, taken as missing", match.unknownLevels);
}

// The models asked about: those named, else all that are fitted.
std::vector<int> ModelsOf(engine::Project const &project, PredictRequest const &request) {
    for (int const model : request.models)
        if (!project.GetModelInfo(model))
            throw Problem(ExceptionMessage::translate("There is no model {1} in {2}.") % model %
                          request.project.string());
    if (!request.models.empty())
        return request.models;
    std::vector<int> models;
    for (int i = 1; i <= project.GetNumberOfModels(); ++i)
        if (int const model = project.GetModelNumberAt(i); project.IsModelFitted(model))
            models.push_back(model);
    return models;
}

// A table that has nothing for any of the models is taken for the wrong one.
void CheckMatches(std::map<int, engine::VariableMatch> const &matches, ImportRequest const &request) {
    auto const hasNone = [](auto const &entry) { return entry.second.found == 0; };
    if (matches.empty() || !std::ranges::all_of(matches, hasNone))
        return;
    auto const &[model, match] = *matches.begin();
    throw Problem(ExceptionMessage::translate("{1} has none of the {2} X variables of model {3}{4}.") %
                  request.file.string() % match.missing.size() % model %
                  (matches.size() > 1 ? ", nor of another model" : ""));
}

void Predict(PredictRequest request) {
    if (request.name.empty())
        request.name = request.file.stem().string();
    auto const project = engine::Project::OpenToWrite(request.project);
    std::vector<int> const models = ModelsOf(*project, request);
    if (int const old = project->FindPredictionSet(request.name); old != 0 && !request.replace)
        throw Problem(ExceptionMessage::translate("Prediction set {1} has the name \"{2}\" already: give another one "
                                                  "with --name, or --replace it.") %
                      old % request.name);
    engine::ImportedTable table = Read(request);
    table.name = request.name;
    table.running = NamesIn(request.running);
    std::map<int, engine::VariableMatch> matches;
    for (int const model : models)
        matches[model] = project->MatchVariables(model, table);
    CheckMatches(matches, request);
    int const number = [&] {
        ProgressBar bar("Storing");
        return project->AddPredictions(table, request.replace, bar.Listener());
    }();
    Output output;
    Report(output, request, "prediction set", number, table);
    for (int const model : models)
        Report(output, model, project->MatchVariables(model, number));
    output.Finish();
}

// Makes the prediction set of that number, or else of that name, the current one.
void Use(PredictRequest const &request) {
    auto const project = engine::Project::OpenToWrite(request.project);
    std::vector<int> const models = ModelsOf(*project, request);
    int number = project->FindPredictionSet(request.use);
    for (engine::DataSetRecord const &record : project->DataSets())
        if (record.kind == engine::DataSetKind::Prediction && std::to_string(record.number) == request.use)
            number = record.number;
    if (number == 0)
        throw Problem(ExceptionMessage::translate("There is no prediction set \"{1}\" in {2}.") % request.use %
                      request.project.string());
    project->UsePredictions(number);
    Output output;
    output << request.project.string() << ": prediction set " << std::to_string(number) << " \""
           << project->GetPredSet(number)->GetName() << "\"\n";
    for (int const model : models)
        Report(output, model, project->MatchVariables(model, number));
    output.Finish();
}

CLI::App *AddCommand(CLI::App &program, char const *name, char const *purpose, ImportRequest &request) {
    CLI::App *const command = program.add_subcommand(name, purpose);
    command->add_option("PROJECT", request.project, "The project file")->required();
    command->add_option("FILE", request.file, "A table of comma, semicolon or tab separated values");
    AddReadingOptions(*command, request);
    return command;
}

void AddPredictCommand(CLI::App &program) {
    auto const request = std::make_shared<PredictRequest>();
    CLI::App *const command = AddCommand(program, "predict", "Bring in rows that the models predict", *request);
    command->add_option("--model", request->models, "A model whose variables the rows are compared with (all models)")
        ->type_name("N")
        ->allow_extra_args(false);
    command
        ->add_option("--running", request->running,
                     "Batches that are not finished: they have come as far as their maturity")
        ->type_name("NAMES")
        ->allow_extra_args(false);
    command->add_flag("--replace", request->replace, "Replace the prediction set of that name");
    command->add_option("--use", request->use, "Make this prediction set, by number or name, the current one")
        ->type_name("N")
        ->excludes("FILE")
        ->excludes("--replace")
        ->excludes("--name");
    command->footer(
        "The rows become the current prediction set of the project, which every model predicts; variables are matched\n"
        "by name. \"datasets\" lists the prediction sets. Without --name, the set has the name of the file.\n"
        "Example: dataseries predict oil.project new.csv\n"
        "         dataseries table oil.project \"tPS M1,1,0,0\"\n"
        "         dataseries predict oil.project --use 2");
    command->callback([request, command] {
        if (request->file.empty() && command->count("--use") == 0)
            throw UsageError("FILE is required, or --use N");
        request->use.empty() ? Predict(*request) : Use(*request);
    });
}

} // namespace

void AddImportCommands(CLI::App &program) {
    auto const request = std::make_shared<ImportRequest>();
    CLI::App *const command = AddCommand(program, "import", "Store a table as a data set of a project", *request);
    command->get_option("FILE")->required();
    command->footer("Makes the project when it is not there. One row of the table is one observation. Without --name,\n"
                    "the data set has the name of the file.\n"
                    "Example: dataseries import wine.project wine.csv --missing \"?\"");
    command->callback([request] { Import(*request); });
    AddPredictCommand(program);
}
