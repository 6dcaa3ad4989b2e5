#include "app/SelectionOptions.h"

#include "app/Failure.h"
#include "app/Reason.h"
#include "app/SeriesSpecification.h"
#include "app/VariableOptions.h"
#include "app/VectorSearch.h"
#include "building/CreateProjectData.h"
#include "catalogue/ProjectVectorHandler.h"
#include "utilities/BatchConverter.h"
#include "utilities/DefaultSelection.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <unordered_set>

namespace {

using Axis = ProjectVector::VectorTypeEnum;
using ProjectDataUtilities::CreateProjectData;

constexpr char const *countingRow = "Num";

SelectDataSeriesData::Mode ModeOf(SelectionRequest const &request) {
    int const mode =
        (request.x.empty() ? 0 : SelectDataSeriesData::AxisX) | (request.y.empty() ? 0 : SelectDataSeriesData::AxisY);
    return static_cast<SelectDataSeriesData::Mode>(mode);
}

Axis AxisFor(engine::Project const &project, SelectionRequest const &request) {
    if (request.axis)
        return *request.axis;
    std::vector<std::string> texts{request.x, request.y};
    texts.insert(texts.end(), request.series.begin(), request.series.end());
    for (std::string const &text : texts)
        if (!text.empty() && text != countingRow)
            return FindAxis(project, ReadVectorText(text));
    if (std::find(texts.begin(), texts.end(), countingRow) != texts.end())
        throw Problem(ExceptionMessage::translate("\"Num\" counts the items of another vector; give one, too."));
    return ProjectVector::VectorTypeVariablesScores;
}

// A vector that gives nothing would be left out of the table without a word.
void CheckGivesData(engine::Project const &project, std::string const &text, ProjectVectorData const &data, Axis axis,
                    ProjectUtilities::DefaultSelection const &defaults) {
    if (!data.CheckNumberIDs(project.shared_from_this()) ||
        CreateProjectData(project).GetColumnIDs(data.ToStdString(&defaults), axis).Size() == 0)
        throw GivesNothing(project, text, data, defaults);
}

int IndexOf(ProjectUtilities::BatchConverter const &batches, std::string const &name) {
    std::vector<int> indexes;
    batches.FromBatchToIndex({name}, indexes);
    return indexes.front();
}

// The indexes of batches by which a vector is asked; of aligned ones the average and the deviation of all too.
std::vector<int> BatchIndexes(engine::Project const &project, ProjectVectorData const &data,
                              std::vector<std::string> const &names) {
    bool const predicted = data.GetProjectVector()->GetObsPredType() == ProjectVector::Predicted;
    bool const isAligned = data.GetProjectVector()->GetType() == ProjectVector::VectorTypeAligned;
    int const model = data.GetModelInfo()->number;
    ProjectUtilities::BatchConverter const batches(project, model, predicted);
    std::vector<int> indexes;
    for (std::string const &name : names) {
        if (batches.HasBatch(name))
            indexes.push_back(IndexOf(batches, name));
        else if (isAligned && (name == "Average" || name == "Std.Dev."))
            indexes.push_back(name == "Average" ? -1 : 0);
        else
            throw Problem(ExceptionMessage::translate("There is no batch \"{1}\" in model {2}.") % name % model);
    }
    return indexes;
}

void FillSelection(boost::shared_ptr<engine::Project> const &project, SelectionRequest const &request,
                   SelectDataSeriesData &selection) {
    ProjectUtilities::DefaultSelection const &defaults = *selection.GetDefaultSelection();
    Axis const axis = selection.GetVectorType();
    auto const specified = [&](std::string const &text) {
        ProjectVectorData data;
        if (text == countingRow) {
            data.SetProjectVector(ProjectVectorHandler::Instance()->GetNumVector(axis));
            return data;
        }
        data = Specify(project, ReadVectorText(text), axis, defaults);
        if (data.GetProjectVector()->HasMultiplier() && request.multiplier) {
            data.multiplier1 = *request.multiplier;
            data.multiplier2 = -*request.multiplier;
        }
        CheckGivesData(*project, text, data, axis, defaults);
        return data;
    };
    if (!request.x.empty())
        selection.SetXAxis(specified(request.x));
    if (!request.y.empty())
        selection.SetYAxis(specified(request.y));
    for (std::string const &text : request.series) {
        ProjectVectorData data = specified(text);
        if (request.items.batches.empty() || !data.GetProjectVector()->UseBatchIx()) {
            selection.AddSeries(data, false);
            continue;
        }
        for (int const index : BatchIndexes(*project, data, NamesIn(request.items.batches))) {
            data.batchIx = index;
            selection.AddSeries(data, false);
        }
    }
    if (!request.series.empty() || selection.GetMode() != SelectDataSeriesData::Normal)
        return;
    ProjectVectorData data;
    if (!ProjectVectorData::SetProjectVectorDataDefault(project, axis, data, ProjectVector::DataTypeModel, nullptr,
                                                        project->GetFirstDataSet(0), ProjectVector::ObsAndPred) ||
        !data.GetProjectVector())
        throw Problem(ExceptionMessage::translate("The project has nothing with one value for each {1}.") %
                      ItemOf(axis));
    selection.AddSeries(data, false);
}

// Keeps of the items selected so far the named ones, or all others.
void SelectItems(SelectDataSeriesData &selection, std::vector<std::string> const &names, bool named,
                 std::vector<ExceptionMessage> &unknown) {
    ColumnIDs const *const columns = selection.GetColumnIDs();
    std::unordered_set<std::string> const wanted(names.begin(), names.end());
    std::unordered_set<std::string> left = wanted;
    BoolVector objects = selection.GetSelectObjects();
    for (int item = 1; columns && item <= objects.Size(); ++item) {
        std::string const label = columns->GetName(item);
        if (wanted.contains(label) != named)
            objects(item) = false;
        left.erase(label);
    }
    for (std::string const &name : names)
        if (left.erase(name) > 0)
            unknown.push_back(ExceptionMessage::translate("There is no {1} \"{2}\" among the items of the series.") %
                              ItemOf(selection.GetVectorType()) % name);
    selection.SetSelectObjects(objects);
}

void SelectBatches(SelectDataSeriesData &selection, std::vector<std::string> const &names,
                   std::vector<ExceptionMessage> &unknown) {
    for (std::string const &name : names)
        if (selection.SelectBatches({name}) != SelectDataSeriesData::ItemsSelected)
            unknown.push_back(ExceptionMessage::translate("There is no batch \"{1}\" among the items of the series.") %
                              name);
    selection.SelectBatches(names);
}

bool IsOfBatches(ProjectVectorData const *data) {
    return data->GetProjectVector()->UseBatchIx();
}

} // namespace

char const *const selectionFooter =
    "A VECTOR is a name, what it is about, and its source: t, t:2, YPred:octane, XVar:1100nm@M2, VarDS:octane@DS1.\n"
    "The source is a model (M2), a data set (DS1) or the prediction set (PS). What is left out comes from the\n"
    "project's defaults: the newest model, its first (or last) component, the current variable or observation.\n"
    "A name that ends like a source needs one behind it: XVar:p@M2@M1. Names in lists are separated by commas; one\n"
    "that holds a comma stands in double quotes.\n"
    "Num counts the items.\n"
    "Without any vector the default one is shown. Two axes, or an axis and a series, are drawn against each other.\n"
    "A control chart of predicted observations takes its limits from those of the model. Rings mark what is outside;\n"
    "on charts of means also runs, with the number of the rule of Western Electric.\n"
    "A VECTOR to subtract or to divide by runs along the same items; Average:t:1 and Std.Dev.:t:1 are those of all\n"
    "aligned batches, found by the time of each observation. ewma averages with the settings of a chart; r2x scales\n"
    "by what the component explains, normalize to loadings of length 1.\n";

void AddSelectionOptions(CLI::App &command, SelectionRequest &request) {
    AddAxisOption(command, request.axis);
    command.add_option("--x", request.x, "The vector along the X axis")->type_name("VECTOR");
    command.add_option("--y", request.y, "The vector along the Y axis")->type_name("VECTOR");
    command.add_option("--series", request.series, "A series; may stand several times")
        ->type_name("VECTOR")
        ->allow_extra_args(false);
    command
        .add_option_function<std::string>(
            "--scale",
            [&request](std::string const &scale) {
                request.scale = SelectDataSeriesData::FromStringToScaleType(("Scale " + scale).c_str());
            },
            "Stretch each series (none)")
        ->check(CLI::IsMember(std::vector<std::string>{"none", "0-1", "-1-1"}));
    CLI::Option *const only = command.add_option("--only", request.items.only, "The items shown");
    command.add_option("--without", request.items.without, "Items left out")->excludes(only);
    command.add_option("--multiplier", request.multiplier,
                       "Limits of batches are so many standard deviations above their\naverage, for sums outside of "
                       "limits also below (3)");
    command.add_option("--batches", request.items.batches,
                       "The batches shown; of aligned batches also Average and Std.Dev.");
    for (CLI::Option *const list : {only, command.get_option("--without"), command.get_option("--batches")})
        list->type_name("NAME,...")->allow_extra_args(false);
    AddTransformOptions(command, request.transform);
}

SelectDataSeriesData Select(boost::shared_ptr<engine::Project> const &project, SelectionRequest const &request,
                            ShownItems &items) {
    SelectDataSeriesData selection(project, ModeOf(request), AxisFor(*project, request), -1, ProjectVector::ObsAndPred);
    FillSelection(project, request, selection);
    selection.SetScaleType(request.scale);
    items = {NamesIn(request.items.batches), NamesIn(request.items.only), NamesIn(request.items.without)};
    if (std::ranges::any_of(selection.VectorsInUse(), IsOfBatches))
        items.batches.clear();
    if (std::vector<ExceptionMessage> const unknown = Show(selection, items); !unknown.empty())
        throw Problem(unknown.front());
    SetTransform(project, request.transform, selection);
    return selection;
}

std::vector<ExceptionMessage> Show(SelectDataSeriesData &selection, ShownItems const &items) {
    std::vector<ExceptionMessage> unknown;
    if (!items.batches.empty())
        SelectBatches(selection, items.batches, unknown);
    if (!items.only.empty() || !items.without.empty())
        SelectItems(selection, items.only.empty() ? items.without : items.only, !items.only.empty(), unknown);
    return unknown;
}
