#include "app/Commands.h"
#include "app/Failure.h"
#include "app/Listing.h"
#include "app/Marks.h"
#include "app/VariableOptions.h"
#include "utilities/MarkedColumnIDsManager.h"

#include <CLI/CLI.hpp>

#include <unordered_map>
#include <unordered_set>

namespace {

struct MarkRequest {
    std::filesystem::path project;
    std::vector<std::string> observations, variables, batches; // as given: lists of names
    bool add = false;
    bool remove = false;
    bool clear = false;
    Format format = Format::Text;

    bool Names() const { return !observations.empty() || !variables.empty() || !batches.empty(); }
};

std::string NameOf(ColumnIDs::Source kind) {
    switch (kind) {
    case ColumnIDs::Observations:
        return "observation";
    case ColumnIDs::Variables:
        return "variable";
    case ColumnIDs::Terms:
        return "term";
    case ColumnIDs::Batches:
        return "batch";
    default:
        return "item";
    }
}

NCError Unknown(std::string const &kind, std::string const &name) {
    return Problem(ExceptionMessage::translate("There is no {1} \"{2}\" in the project.") % kind % name);
}

// Of items that share a name the first one counts.
ColumnIDs ItemsNamed(boost::shared_ptr<engine::Project> const &project, ColumnIDs::Source kind, VarObs const &list,
                     std::vector<std::string> const &names) {
    std::unordered_map<std::string, std::uint32_t> numberOf;
    for (std::uint32_t item = 1; item <= list.Size(); ++item)
        numberOf.emplace(list.GetText(item, 1), item);
    ColumnIDs::Numbers numbers;
    for (std::string const &name : names) {
        auto const found = numberOf.find(name);
        if (found == numberOf.end())
            throw Unknown(NameOf(kind), name);
        numbers.push_back(found->second);
    }
    return ColumnIDs(kind, std::move(numbers), project, 0);
}

ColumnIDs BatchesNamed(boost::shared_ptr<engine::Project> const &project, std::vector<std::string> const &names) {
    NCObservations const &list = project->GetObservations();
    std::unordered_set<std::string> known;
    for (std::uint32_t observation = 1; observation <= list.Size(); ++observation)
        known.insert(list.GetText(observation, list.GetBatchID()));
    for (std::string const &name : names)
        if (!known.contains(name))
            throw Unknown(NameOf(ColumnIDs::Batches), name);
    return ColumnIDs(NCStringVector(names), "Batch", project, ColumnIDs::Batches, 0);
}

ColumnIDs ItemsOf(boost::shared_ptr<engine::Project> const &project, MarkRequest const &request) {
    if (!request.batches.empty())
        return BatchesNamed(project, NamesIn(request.batches));
    if (!request.variables.empty())
        return ItemsNamed(project, ColumnIDs::Variables, project->GetVariables(), NamesIn(request.variables));
    return ItemsNamed(project, ColumnIDs::Observations, project->GetObservations(), NamesIn(request.observations));
}

void Mark(boost::shared_ptr<engine::Project> const &project, ColumnIDs items, MarkRequest const &request) {
    MarkedColumnIDsManager &manager = *MarkedColumnIDsManager::Instance();
    manager.SetIsBatchMode(false); // observations that are named are not marked as their batches
    boost::shared_ptr<ColumnIDs const> const marks = manager.GetMarkedIDs(0);
    bool const hasMarks = marks && marks->Size() > 0;
    if (request.add && hasMarks && marks->GetSource() != items.GetSource())
        throw Problem(ExceptionMessage::translate("Marks are of one kind: to what is marked, {1} \"{2}\" for instance, "
                                                  "no {3} can be added.") %
                      NameOf(marks->GetSource()) % marks->GetName(1) % NameOf(items.GetSource()));
    ColumnIDs::Positions marked, known;
    if (hasMarks && (request.add || request.remove))
        marks->InterSection(items, marked, known);
    items.Remove(known);
    if (request.remove)
        manager.RemoveMarked(marked);
    else if (items.Size() > 0)
        manager.UpdateSelected(project, &items, nullptr,
                               request.add ? MarkedColumnIDsManager::MarkToggle : MarkedColumnIDsManager::MarkReplace,
                               {});
}

void List(Format format) {
    Listing listing({"kind", "name"});
    boost::shared_ptr<ColumnIDs const> const marks = MarkedColumnIDsManager::Instance()->GetMarkedIDs(0);
    for (int column = 1; marks && column <= marks->Size(); ++column)
        listing.Add({NameOf(marks->GetSource()), marks->GetName(column)});
    Output output;
    listing.Write(output, format);
    output.Finish();
}

void Mark(MarkRequest const &request) {
    bool const isChange = request.Names() || request.clear;
    auto const project =
        isChange ? engine::Project::OpenToWrite(request.project) : engine::Project::OpenToRead(request.project);
    ReadMarks(project);
    if (request.clear)
        MarkedColumnIDsManager::Instance()->ClearMarkedIDs(true);
    else if (isChange)
        Mark(project, ItemsOf(project, request), request);
    if (isChange)
        WriteMarks(project);
    List(request.format);
}

} // namespace

void AddMarkCommand(CLI::App &program) {
    auto const request = std::make_shared<MarkRequest>();
    CLI::App *const command = program.add_subcommand("mark", "Mark items, which all pictures of the project highlight");
    command->add_option("PROJECT", request->project, "The project file")->required();
    CLI::Option_group *const kinds = command->add_option_group("What is marked");
    kinds->add_option("--observations", request->observations, "Observations");
    kinds->add_option("--variables", request->variables, "Variables, and the terms of models that are of them");
    kinds->add_option("--batches", request->batches, "Batches");
    for (CLI::Option *const option : kinds->get_options())
        option->type_name("NAME,...")->allow_extra_args(false);
    CLI::Option *const clear = kinds->add_flag("--clear", request->clear, "Nothing any more");
    kinds->require_option(0, 1);
    CLI::Option *const add =
        command->add_flag("--add", request->add, "Beside what is marked, of the same kind, and not in its place");
    command->add_flag("--remove", request->remove, "These are marked no more")->excludes(add)->excludes(clear);
    add->excludes(clear);
    AddFormatOption(*command, request->format);
    command->footer("Marks are of one kind at a time, and stay in the project. Without any of these, and after each "
                    "change, what is\nmarked is listed. Names in lists are separated by commas; one that holds a comma "
                    "stands in double quotes.\n"
                    "Example: dataseries mark wine.project --observations o60,o70\n"
                    "         dataseries mark wine.project --observations o60 --remove");
    command->callback([request] {
        if ((request->add || request->remove) && !request->Names())
            throw UsageError("--add and --remove go with --observations, --variables or --batches");
        Mark(*request);
    });
}
