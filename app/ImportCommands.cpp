#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Output.h"
#include "app/ProgressBar.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "platform/containers/Missing.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

struct ImportRequest {
    std::filesystem::path project;
    std::filesystem::path file;
    std::string name;
    int model = 0; // of a prediction set
    engine::TableOptions options;
};

// A project that is being made: gone again unless it is kept.
class NewProject {
public:
    explicit NewProject(std::filesystem::path path) : m_path(std::move(path)) {}
    ~NewProject() {
        std::error_code ignored;
        if (!m_kept)
            std::filesystem::remove(m_path, ignored);
    }
    NewProject(NewProject const &) = delete;
    NewProject &operator=(NewProject const &) = delete;

    void Keep() { m_kept = true; }

private:
    std::filesystem::path m_path;
    bool m_kept = false;
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

void Report(ImportRequest const &request, char const *kind, int number, engine::ImportedTable const &table) {
    std::ptrdiff_t missing = 0;
    for (std::vector<float> const &column : table.columns)
        missing += std::count(column.begin(), column.end(), missingValue);
    Output output;
    output << request.project.string() << ": " << kind << " " << std::to_string(number)
           << (table.name.empty() ? "" : " \"" + table.name + "\"") << "\n  observations   "
           << std::to_string(table.ObservationCount()) << "\n  variables      " << std::to_string(table.columns.size())
           << "\n  identifiers    " << Identifiers(table.observations) << "\n  missing cells  "
           << std::to_string(missing) << "\n";
    for (std::string const &note : table.notes)
        output << "  note: " << note << "\n";
    output.Finish();
}

// A note with names, shortened where there are many.
void AddNote(engine::ImportedTable &table, char const *text, std::vector<std::string> const &names) {
    constexpr std::size_t most = 10;
    if (names.empty())
        return;
    std::string note = text;
    for (std::size_t i = 0; i < std::min(most, names.size()); ++i)
        note += (i == 0 ? "" : ", ") + names[i];
    if (names.size() > most)
        note += " and " + std::to_string(names.size() - most) + " more";
    table.notes.push_back(note + ".");
}

void Import(ImportRequest const &request) {
    boost::shared_ptr<engine::Project> project;
    if (std::filesystem::exists(request.project))
        project = engine::Project::OpenToWrite(request.project);
    engine::ImportedTable table = Read(request);
    if (!request.name.empty())
        table.name = request.name;
    std::optional<NewProject> made;
    if (!project) {
        project = engine::Project::Create(request.project);
        made.emplace(request.project);
    }
    int const number = [&] {
        ProgressBar bar("Storing");
        return project->AddDataSet(table, bar.Listener());
    }();
    if (made)
        made->Keep();
    Report(request, "data set", number, table);
}

void Predict(ImportRequest const &request) {
    auto const project = engine::Project::OpenToWrite(request.project);
    if (!project->GetModelInfo(request.model))
        throw Problem(ExceptionMessage::translate("There is no model {1} in {2}.") % request.model %
                      request.project.string());
    engine::ImportedTable table = Read(request);
    table.name = request.name;
    engine::VariableMatch const match = project->MatchVariables(request.model, table);
    AddNote(table, "The model's variables that the table lacks, taken as missing: ", match.missing);
    AddNote(table, "Variables that the model does not use: ", match.surplus);
    std::vector<std::string> groups = match.unknownGroups;
    std::ranges::replace(groups, std::string(), "(none)");
    AddNote(table, "Groups without centre values, whose locally centred variables are taken as missing: ", groups);
    int const number = [&] {
        ProgressBar bar("Storing");
        return project->AddPredictions(request.model, table, bar.Listener());
    }();
    Report(request, "prediction set", number, table);
}

CLI::App *AddCommand(CLI::App &program, char const *name, char const *purpose, ImportRequest &request) {
    CLI::App *const command = program.add_subcommand(name, purpose);
    command->add_option("PROJECT", request.project, "The project file")->required();
    command->add_option("FILE", request.file, "A table of comma, semicolon or tab separated values")->required();
    AddReadingOptions(*command, request);
    return command;
}

} // namespace

void AddImportCommands(CLI::App &program) {
    auto const import = std::make_shared<ImportRequest>();
    CLI::App *command = AddCommand(program, "import", "Store a table as a data set of a project", *import);
    command->footer("Makes the project when it is not there. One row of the table is one observation. Without --name,\n"
                    "the data set has the name of the file.\n"
                    "Example: dataseries import wine.project wine.csv --missing \"?\"");
    command->callback([import] { Import(*import); });

    auto const prediction = std::make_shared<ImportRequest>();
    command = AddCommand(program, "predict", "Project the rows of a table on a model", *prediction);
    command->add_option("--model", prediction->model, "The number of the model")->required()->type_name("N");
    command->footer(
        "Variables are matched by name. The vectors of prediction sets show what comes out. Without --name,\n"
        "the rows replace those that were brought into the model without a name before.\n"
        "Example: dataseries predict oil.project --model 1 new.csv\n"
        "         dataseries table oil.project \"tPS M1,1,0,0\"");
    command->callback([prediction] { Predict(*prediction); });
}
