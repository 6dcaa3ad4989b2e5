#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/Marks.h"
#include "app/SavedPlot.h"
#include "app/VectorSearch.h"

#include <CLI/CLI.hpp>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

namespace {

// What the commands about one plot of a project are given.
struct NamedPlot {
    std::filesystem::path project;
    std::string name;
};

struct SaveRequest : NamedPlot {
    SelectionRequest selection;
    PictureSettings settings;
    bool replace = false;
};

struct ShowRequest : NamedPlot {
    std::optional<int> model;
    bool isOfActiveModel = false;
    PlotOutput output;
};

struct CarryRequest : NamedPlot {
    std::filesystem::path file;
    bool replace = false;
};

struct ChangeRequest : NamedPlot {
    std::string newName;
};

struct ListRequest {
    std::filesystem::path project;
    Format format = Format::Text;
};

void Report(NamedPlot const &plot, std::string const &done = {}) {
    Output output;
    output << plot.project.string() << ": plot \"" << plot.name << "\"" << done << "\n";
    output.Finish();
}

void TellLosses(SavedPlot const &plot) {
    for (std::string const &loss : plot.losses)
        Tell(loss);
}

void CheckName(engine::Project const &project, std::string const &name, bool replace) {
    if (!replace && project.HasPlot(name))
        throw Problem(ExceptionMessage::translate("There is a plot \"{1}\" already: give another name, or --replace.") %
                      name);
}

void Save(SaveRequest const &request) {
    auto const project = engine::Project::OpenToWrite(request.project);
    CheckName(*project, request.name, request.replace);
    ShownItems items;
    SelectDataSeriesData const selection = Select(project, request.selection, items);
    CheckPicture(request.settings, selection, true);
    BuiltPlot(project, selection, true).Script(request.settings);
    project->SavePlot(request.name, PlotText(selection, items, request.settings));
    Report(request);
}

void ListPlots(ListRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    Listing listing({"name", "axis", "vectors"});
    for (std::string const &name : project->PlotNames()) {
        try {
            SavedPlot const plot = ReadPlot(project, project->Plot(name));
            std::string vectors;
            for (std::string const &label : LabelsOf(*plot.selection))
                vectors += (vectors.empty() ? "" : ", ") + label;
            listing.Add({name, ItemOf(plot.selection->GetVectorType()), vectors});
        } catch (NCError const &) {
            listing.Add({name, "", ""});
        }
    }
    Output output;
    listing.Write(output, request.format);
    output.Finish();
}

// The model that a plot is shown of; nothing for its own.
std::optional<int> ModelFor(engine::Project const &project, ShowRequest const &request) {
    int const active = project.GetActiveModelNumber();
    if (request.isOfActiveModel && active < 0)
        throw Problem(ExceptionMessage::translate("The project has no fitted model."));
    std::optional<int> const model = request.isOfActiveModel ? active : request.model;
    if (model && !project.GetModelInfo(*model))
        throw Problem(ExceptionMessage::translate("There is no model {1}.") % *model);
    return model;
}

void Show(ShowRequest const &request) {
    CheckPlotOutput(request.output, request.project);
    auto const project = engine::Project::OpenToRead(request.project);
    SavedPlot plot = ReadPlot(project, project->Plot(request.name), ModelFor(*project, request));
    BuiltPlot const built(project, *plot.selection, request.output.IsDrawn());
    if (request.output.IsDrawn()) {
        plot.settings.style.isPng = IsPng(request.output.picture);
        ReadMarks(project);
        WritePicture(plot.Script(built), request.output.picture, request.project);
    }
    if (request.output.HasTable())
        WriteTable(built, request.output, request.project);
    TellLosses(plot);
}

NCError NoPlot(std::filesystem::path const &file) {
    return Problem(ExceptionMessage::translate("{1} is no plot, or is damaged: expected a file that \"dataseries "
                                               "export-plot\" made.") %
                   file.string());
}

void Export(CarryRequest const &request) {
    auto const project = engine::Project::OpenToRead(request.project);
    std::optional<std::string> const text = InLines(project->Plot(request.name));
    if (!text)
        throw Problem(ExceptionMessage::translate("The plot \"{1}\" is damaged: it can't be read.") % request.name);
    Output output(request.file, request.project);
    output << *text;
    output.Finish();
}

std::string ContentOf(std::filesystem::path const &file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw Problem(ExceptionMessage::translate("{1} can't be opened: {2}.") % file.string() % std::strerror(errno));
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

// What can't be shown in this project yet may be shown once there is a model: it is told, and kept.
void Import(CarryRequest request) {
    std::string const text = ContentOf(request.file);
    if (!InLines(text))
        throw NoPlot(request.file);
    if (request.name.empty())
        request.name = request.file.stem().string();
    auto const project = engine::Project::OpenToWrite(request.project);
    CheckName(*project, request.name, request.replace);
    project->SavePlot(request.name, text);
    Report(request);
    try {
        TellLosses(ReadPlot(project, text));
    } catch (NCError const &error) {
        Tell(error.what());
    }
}

void Rename(ChangeRequest const &request) {
    engine::Project::OpenToWrite(request.project)->RenamePlot(request.name, request.newName);
    Report(request, " is now \"" + request.newName + "\"");
}

void Remove(ChangeRequest const &request) {
    engine::Project::OpenToWrite(request.project)->DeletePlot(request.name);
    Report(request, " is removed");
}

CLI::App *AddCommand(CLI::App &program, char const *name, char const *purpose, std::filesystem::path &project) {
    CLI::App *const command = program.add_subcommand(name, purpose);
    command->add_option("PROJECT", project, "The project file")->required();
    return command;
}

void AddName(CLI::App &command, std::string &name) {
    command.add_option("NAME", name, "The name of the plot; \"plots\" lists them")->required();
}

void AddSaveCommand(CLI::App &program) {
    auto const request = std::make_shared<SaveRequest>();
    CLI::App *const command = AddCommand(program, "save", "Save a plot in the project", request->project);
    command->add_option("NAME", request->name, "The name of the plot")->required();
    AddSelectionOptions(*command, request->selection);
    AddPictureSettings(*command, request->settings);
    command->add_flag("--replace", request->replace, "Replace the plot of that name");
    command->footer(std::string(selectionFooter) +
                    "Example: dataseries save wine.project scores --x t:1 --y t:2 --title \"Wines\"\n"
                    "         dataseries show wine.project scores --plot scores.png");
    command->callback([request] { Save(*request); });
}

void AddPlotsCommand(CLI::App &program) {
    auto const request = std::make_shared<ListRequest>();
    CLI::App *const command = AddCommand(program, "plots", "List the saved plots of a project", request->project);
    AddFormatOption(*command, request->format);
    command->footer("A plot of which nothing can be shown any more has no vectors; \"show\" tells why.\n"
                    "Example: dataseries plots wine.project");
    command->callback([request] { ListPlots(*request); });
}

void AddShowCommand(CLI::App &program) {
    auto const request = std::make_shared<ShowRequest>();
    CLI::App *const command =
        AddCommand(program, "show", "Show the table or the picture of a saved plot", request->project);
    AddName(*command, request->name);
    CLI::Option *const model = command->add_option("--model", request->model, "Of this model, in place of its own");
    model->type_name("N");
    command->add_flag("--active-model", request->isOfActiveModel, "Of the newest model")->excludes(model);
    AddPlotOutput(*command, request->output);
    command->footer(
        "Variables, observations and batches are found again by their names. What is not there any more is\n"
        "told on standard error; the rest is shown.\n"
        "Example: dataseries show wine.project scores --active-model --plot scores.png");
    command->callback([request] { Show(*request); });
}

void AddCarryCommands(CLI::App &program) {
    auto const request = std::make_shared<CarryRequest>();
    CLI::App *command =
        AddCommand(program, "export-plot", "Write a saved plot into a file, for another project", request->project);
    AddName(*command, request->name);
    command->add_option("-o,--output", request->file, "The file, XML")->required();
    command->footer("Example: dataseries export-plot wine.project scores -o scores.xml\n"
                    "         dataseries import-plot other.project scores.xml");
    command->callback([request] { Export(*request); });

    command = AddCommand(program, "import-plot", "Save a plot of another project", request->project);
    command->add_option("FILE", request->file, "The file that export-plot made")->required();
    command->add_option("--name", request->name, "The name of the plot (that of the file)")->type_name("NAME");
    command->add_flag("--replace", request->replace, "Replace the plot of that name");
    command->footer("A plot is of the model whose number it has; show it with --model or --active-model for another.\n"
                    "Example: dataseries import-plot other.project scores.xml\n"
                    "         dataseries show other.project scores --active-model");
    command->callback([request] { Import(*request); });
}

void AddChangeCommands(CLI::App &program) {
    auto const request = std::make_shared<ChangeRequest>();
    auto const add = [&](char const *name, char const *purpose) {
        CLI::App *const command = AddCommand(program, name, purpose, request->project);
        command->add_option("--plot", request->name, "The plot")->required()->type_name("NAME");
        return command;
    };
    CLI::App *const rename = add("rename", "Rename a saved plot");
    rename->add_option("NEWNAME", request->newName, "The new name")->required();
    rename->footer("Example: dataseries rename wine.project --plot scores \"Scores of wines\"");
    rename->callback([request] { Rename(*request); });
    CLI::App *const remove = add("remove", "Remove a saved plot");
    remove->footer("Example: dataseries remove wine.project --plot scores");
    remove->callback([request] { Remove(*request); });
}

} // namespace

void AddSavedPlotCommands(CLI::App &program) {
    AddSaveCommand(program);
    AddPlotsCommand(program);
    AddShowCommand(program);
    AddCarryCommands(program);
    AddChangeCommands(program);
}
