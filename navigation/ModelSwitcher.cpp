#include "navigation/ModelSwitcher.h"

#include "navigation/Availability_internal.h"
#include "navigation/DataSeriesUtilities.h"
#include "navigation/SwitchModelUpdate.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <memory>
#include <utility>

namespace DataSeriesUtilities {

namespace {

using Selection = SelectDataSeriesData;
using Vector = ProjectVector;

// A specification without a vector asks for nothing, anywhere.
bool Walk(Selection const &selection, CheckProjectData &check) {
    auto const passes = [&check](ProjectVectorData const &data) { return !data.GetProjectVector() || check(data); };
    TransformationData const &transformation = selection.GetTransformationData();
    return std::ranges::all_of(selection.VectorsInUse(),
                               [&](ProjectVectorData const *data) { return passes(*data); }) &&
           (transformation.GetTransformationType() != TransformationData::CrossCorrelation ||
            passes(transformation.GetCrossVector()));
}

// The vectors that the transformation works with.
std::vector<ProjectVectorData *> OperandsOf(TransformationData &transformation) {
    switch (transformation.GetTransformationType()) {
    case TransformationData::CrossCorrelation:
        return {&transformation.GetCrossVector()};
    case TransformationData::SubtractVector:
        return {&transformation.GetSubtractVector()};
    case TransformationData::SubtractAndDivideVector:
        return {&transformation.GetSubtractVector(), &transformation.GetDivideVector()};
    default:
        return {};
    }
}

// Stores what an update makes of the axes in use where it is true, and leaves the others as they were.
template <typename Update>
void UpdateAxes(Selection &selection, Update const &update) {
    int const mode = selection.GetMode();
    if (ProjectVectorData axis = selection.GetXAxis(); (mode & Selection::AxisX) != 0 && update(axis))
        selection.SetXAxis(axis);
    if (ProjectVectorData axis = selection.GetYAxis(); (mode & Selection::AxisY) != 0 && update(axis))
        selection.SetYAxis(axis);
}

// A copy whose vectors have the form that the model has of them, where it has any.
std::unique_ptr<Selection> WithVectorsOf(NCProject const &project, int model, Selection const &selection) {
    std::unique_ptr<Selection> copy(selection.Copy());
    ModelTypeVectorUpdate const update(project.shared_from_this(), model);
    UpdateAxes(*copy, update);
    for (int position = 1; position <= copy->NumberOfSeries(); ++position)
        if (ProjectVectorData series = copy->GetSeries(position); update(series))
            copy->SetSeries(position, series);
    TransformationData transformation = copy->GetTransformationData();
    for (ProjectVectorData *const operand : OperandsOf(transformation))
        if (ProjectVectorData changed = *operand; update(changed))
            *operand = changed;
    copy->SetTransformationData(transformation);
    return copy;
}

template <typename Check, typename... Arguments>
bool Passes(Selection const &selection, NCProject const &project, Arguments... arguments) {
    Check check(project, arguments...);
    return Walk(selection, check);
}

bool HasItems(Selection const &selection, NCProject const &project, int model) {
    auto const *const defaults = selection.GetDefaultSelection().get();
    return Passes<CheckIfComponentIsAvailable>(selection, project, model) &&
           Passes<CheckIfDoubleCompAvailable>(selection, project, model) &&
           Passes<CheckIfXVarIsAvailable>(selection, project, defaults, model) &&
           Passes<CheckIfYVarIsAvailable>(selection, project, defaults, model) &&
           Passes<CheckIfObsIsAvailable>(selection, project, model) &&
           Passes<CheckIfBatchIsAvailable>(selection, project, model) &&
           Passes<CheckIfContribVectorIsAvailable>(selection, project, defaults, model) &&
           Passes<CheckBatchContribProject>(selection, project, model);
}

bool UpdateAllSeries(Selection &selection, SwitchModelUpdate const &update) {
    for (int position = 1; position <= selection.NumberOfSeries(); ++position) {
        ProjectVectorData series = selection.GetSeries(position);
        if (!update(series))
            return false;
        selection.SetSeries(position, series);
    }
    return true;
}

bool UpdateTransformation(Selection &selection, SwitchModelUpdate const &update,
                          boost::shared_ptr<ModelInfo const> const &info) {
    TransformationData transformation = selection.GetTransformationData();
    for (ProjectVectorData *const operand : OperandsOf(transformation)) {
        if (!update(*operand))
            return false;
        if (operand->GetDataSet() == 0)
            operand->SetModelInfoPtr(info);
    }
    selection.SetTransformationData(transformation);
    return true;
}

// Which items of a selection are selected: by batches where whole ones are, otherwise each for itself.
class SelectedItems {
public:
    explicit SelectedItems(Selection const &selection) : m_areAllSelected(AreAllSelected(selection)) {
        if (m_areAllSelected)
            return;
        selection.GetSelectedBatches(m_batches);
        if (m_batches.empty())
            m_deselected = Deselected(selection);
    }

    // False when none of the batches is there.
    bool SelectIn(Selection &selection) const {
        if (m_areAllSelected)
            return true;
        if (m_batches.empty())
            return SelectAllButDeselected(selection);
        ColumnIDs const *const columns = selection.GetColumnIDs();
        bool const isAligned = columns && columns->GetSource() == ColumnIDs::AlignedPoints;
        return isAligned || selection.SelectBatches(m_batches) != Selection::NothingSelected;
    }

private:
    static bool AreAllSelected(Selection const &selection) {
        return selection.GetSelectObjects().Find(false, SortKind::Unsorted, 1, -1) == -1;
    }

    static std::unique_ptr<ColumnIDs> Deselected(Selection const &selection) {
        BoolVector inverted = selection.GetSelectObjects();
        for (bool &flag : inverted.MutableValues())
            flag = !flag;
        return GetSelectedColumnIDs(selection.GetColumnIDs(), inverted);
    }

    bool SelectAllButDeselected(Selection &selection) const {
        ColumnIDs const *const columns = selection.GetColumnIDs();
        if (!columns)
            throw NCError(ExceptionMessage::translate("The model could not be changed."), NCError::Error);
        if (!m_deselected)
            return true;
        ColumnIDs::Positions selected, gone;
        columns->Difference(*m_deselected, selected, gone);
        if (selected.Size() == 0)
            return true;
        BoolVector objects(columns->Size(), false);
        for (int const position : selected)
            objects(position) = true;
        selection.SetSelectObjects(objects);
        return true;
    }

    bool m_areAllSelected;
    std::vector<std::string> m_batches;
    std::unique_ptr<ColumnIDs> m_deselected;
};

// What the new number of components of a model means for one specification: it is of another source, it stays valid, it
// doesn't.
DataSeriesChange ChangeOf(ProjectVectorData const &data, ModelInfo const &info) {
    Vector const *const vector = data.GetProjectVector();
    if (!vector || !vector->UseModel() || !data.GetModelInfo() || data.GetModelInfo()->number != info.number)
        return NotChanged;
    for (auto const &[kind, last] : {std::pair(Vector::ComponentPredictive, info.SizeComponents()),
                                     std::pair(Vector::ComponentXSideOrthogonal, info.SizeXSideOrthogonalComponents()),
                                     std::pair(Vector::ComponentYSideOrthogonal, info.SizeYSideOrthogonalComponents())})
        if ((vector->GetComponentType() & kind) != 0 &&
            std::max(data.GetComponent(kind, false), vector->GetFirstComponent()) > last)
            return NotValid;
    int const last = info.SizeComponents();
    bool const isPair = vector->GetNumberType() == Vector::NumberComponentRange ||
                        vector->GetNumberType() == Vector::NumberBatchComponentRange;
    if (isPair && (static_cast<int>(data.GetNumber(nullptr)) > last ||
                   static_cast<int>(data.GetNumberID2(nullptr, false)) > last))
        return NotValid;
    bool const isBeyond = vector->IsContribution() &&
                          std::ranges::any_of(data.GetWeightComp(), [last](int component) { return component > last; });
    return isBeyond ? NotValid : Changed;
}

} // namespace

bool ModelSwitcher::CanSwitchModel(int model) const {
    boost::shared_ptr<NCProject> const project = m_selection->GetProject();
    if (!project || !project->IsModelFitted(model))
        return false;
    CheckIfVectorIsAvailable vectors(*project, model);
    if (!Walk(*m_selection, vectors))
        return false;
    return vectors.VectorChanged ? HasItems(*WithVectorsOf(*project, model, *m_selection), *project, model)
                                 : HasItems(*m_selection, *project, model);
}

SelectDataSeriesData *ModelSwitcher::SwitchModel(int model, bool inPlace) {
    boost::shared_ptr<NCProject> const project = m_selection->GetProject();
    if (!project || !project->IsModelFitted(model))
        return nullptr;
    std::unique_ptr<Selection> copy(inPlace ? nullptr : m_selection->Copy());
    Selection &work = inPlace ? *m_selection : *copy;
    SelectedItems const items(*m_selection);
    boost::shared_ptr<ModelInfo const> const info = project->GetModelInfo(model);
    auto const defaults = work.GetDefaultSelection();
    SwitchModelUpdate const update(*project, info.get(), defaults.get(), false);
    UpdateAxes(work, update);
    if (!UpdateAllSeries(work, update) || !UpdateTransformation(work, update, info))
        return nullptr;
    work.SetModel(model);
    if (!items.SelectIn(work))
        return nullptr;
    return inPlace ? m_selection : copy.release();
}

DataSeriesChange ModelComponentsUpdated(ModelInfo const *info, SelectDataSeriesData *selection) {
    boost::shared_ptr<ModelInfo const> const updated = boost::make_shared<ModelInfo>(*info);
    DataSeriesChange change = NotChanged;
    auto const update = [&](ProjectVectorData data, auto const &store) {
        DataSeriesChange const own = ChangeOf(data, *updated);
        if (own == Changed) {
            data.SetModelInfoPtr(updated);
            store(data);
            change = Changed;
        }
        return own != NotValid;
    };
    int const mode = selection->GetMode();
    if ((mode & Selection::AxisX) != 0 &&
        !update(selection->GetXAxis(), [&](ProjectVectorData const &axis) { selection->SetXAxis(axis); }))
        return NotValid;
    if ((mode & Selection::AxisY) != 0 &&
        !update(selection->GetYAxis(), [&](ProjectVectorData const &axis) { selection->SetYAxis(axis); }))
        return NotValid;
    for (int position = 1; position <= selection->NumberOfSeries();) {
        auto const store = [&](ProjectVectorData const &series) { selection->SetSeries(position, series); };
        if (update(selection->GetSeries(position), store)) {
            ++position;
        } else {
            selection->RemoveSeries(position);
            change = Changed;
        }
    }
    return selection->NumberOfSeries() == 0 ? NotValid : change;
}

} // namespace DataSeriesUtilities
