#include "navigation/DataSeriesSwitcher.h"

#include "navigation/DataSeriesUtilities.h"
#include "navigation/ModelSwitcher.h"
#include "navigation/Selectors.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"
#include "utilities/DefaultSelection.h"

#include <boost/make_shared.hpp>

#include <functional>
#include <memory>
#include <optional>

namespace DataSeriesUtilities {

namespace {

using Checker = DataSeriesChecker;
using Vector = ProjectVector;

// The selection, and which way to go.
struct Move {
    SelectDataSeriesData &selection;
    bool isForth;

    template <typename Next, typename Previous, typename... Arguments>
    void Run(Arguments... arguments) const {
        if (isForth)
            Next(arguments...)(selection);
        else
            Previous(arguments...)(selection);
    }
};

// Is about single predictive components of a model that also has orthogonal ones.
bool IsPredictiveOfSeveralKinds(ProjectVectorData const &data) {
    ModelInfo const *const model = data.GetModelInfo();
    return model && data.GetProjectVector() && ModelTypeE::IsOPLSorO2PLS(model->type) &&
           data.GetProjectVector()->GetComponentType() == Vector::ComponentPredictive &&
           !data.GetProjectVector()->PredictiveComponentDefaultsToLast();
}

// The last component of such a model is none of the predictive ones, so that the last state would show nothing.
ProjectVectorData OnPredictive(ProjectVectorData data) {
    int const last = data.GetModelInfo()->SizePredictiveComponents();
    if (data.GetPredComponent(true) > last)
        data.SetPredComponent(last);
    return data;
}

void StayOnPredictive(SelectDataSeriesData &selection, bool axisOnly) {
    if (axisOnly) {
        if (IsPredictiveOfSeveralKinds(selection.GetXAxis()) &&
            !(OnPredictive(selection.GetXAxis()) == selection.GetXAxis()))
            selection.SetXAxis(OnPredictive(selection.GetXAxis()));
        return;
    }
    for (int position = 1; position <= selection.NumberOfSeries(); ++position)
        if (ProjectVectorData const &data = selection.GetSeries(position);
            IsPredictiveOfSeveralKinds(data) && !(OnPredictive(data) == data))
            selection.SetSeries(position, OnPredictive(data));
}

void MoveComponent(Move const &move, Vector::ComponentType kinds, bool axisOnly) {
    if (move.isForth)
        SelectNextComponent(kinds, axisOnly)(move.selection);
    else
        SelectPrevComponent(kinds, axisOnly)(move.selection);
    StayOnPredictive(move.selection, axisOnly);
}

// The X axis moves along where all show the same term of different vectors.
Checker::CheckType PartsOf(SelectDataSeriesData const &selection,
                           bool (*haveTerms)(SelectDataSeriesData const *, bool &, bool &, bool)) {
    bool equalNumbers = false, equalVectors = false;
    bool const alongX = (selection.GetMode() & SelectDataSeriesData::AxisX) != 0 &&
                        haveTerms(&selection, equalNumbers, equalVectors, true) && equalNumbers && !equalVectors;
    return static_cast<Checker::CheckType>(alongX ? Checker::CheckXAxis | Checker::CheckSeries : Checker::CheckSeries);
}

// Whether there is something that this part steps over.
bool MovePart(Move const &move, Checker::CheckType part) {
    SelectDataSeriesData &selection = move.selection;
    Checker::VectorTypeStruct type;
    Checker(part).GetDataSeriesType(&selection, type);
    bool const axisOnly = part == Checker::CheckXAxis;
    ColumnIDs const *const all = nullptr;
    switch (type.SeriesKind) {
    case Checker::KindNone:
        if (type.ComponentMask == 0)
            return false;
        [[fallthrough]];
    case Checker::KindComponent:
        MoveComponent(move, static_cast<Vector::ComponentType>(type.ComponentMask), axisOnly);
        return true;
    case Checker::KindXVariable:
        move.Run<SelectNextXVar, SelectPrevXVar>(axisOnly ? part : PartsOf(selection, &HasXVariablesSelected), all, -1);
        return true;
    case Checker::KindVariable:
        move.Run<SelectNextVariable, SelectPrevVariable>(axisOnly);
        return true;
    case Checker::KindObservation:
        move.Run<SelectNextObservation, SelectPrevObservation>(axisOnly);
        return true;
    case Checker::KindYVariable:
        move.Run<SelectNextYVar, SelectPrevYVar>(axisOnly ? part : PartsOf(selection, &HasYVariablesSelected), all);
        return true;
    default:
        return false;
    }
}

bool MoveAxis(Move const &move) {
    return (move.selection.GetMode() & SelectDataSeriesData::AxisX) != 0 && MovePart(move, Checker::CheckXAxis);
}

bool HasBatches(SelectDataSeriesData const &selection) {
    auto const source = GetDataSource(&selection);
    return source && selection.GetProject()->GetObservations().GetBatchID(source->GetObservationAliases()) != 0;
}

bool MoveBatch(Move const &move) {
    SelectDataSeriesData &selection = move.selection;
    bool const isOfBatches = selection.GetVectorType() == Vector::VectorTypeAligned ||
                             (selection.GetVectorType() == Vector::VectorTypeVariablesScores && HasBatches(selection));
    if (!isOfBatches || selection.GetTransformationData().IsTransformItems())
        return false;
    move.Run<SelectNextBatch, SelectPrevBatch>();
    std::vector<std::string> names;
    selection.GetSelectedBatches(names);
    Vector::ObsOrPredType const shown = move.isForth ? selection.GetObsPredType() : selection.GetSeriesObsPredType();
    selection.GetDefaultSelection()->SetDefaultSelectedBatches(names, shown == Vector::Predicted);
    return true;
}

bool MoveAxisOrBatch(Move const &move, bool batchFirst) {
    return batchFirst ? MoveBatch(move) || MoveAxis(move) : MoveAxis(move) || MoveBatch(move);
}

// False where there is no neighbour.
bool MoveModel(Move const &move) {
    SelectDataSeriesData &selection = move.selection;
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    int const index = project->GetModelIndex(selection.GetCurrentModel()) + (move.isForth ? 1 : -1);
    if (index < 1 || index > project->GetNumberOfModels())
        return false;
    int const neighbour = project->GetModelNumberAt(index);
    ModelSwitcher switcher(&selection);
    std::unique_ptr<SelectDataSeriesData> const moved(
        switcher.CanSwitchModel(neighbour) ? switcher.SwitchModel(neighbour, false) : nullptr);
    if (!moved)
        throw NCError(move.isForth ? ExceptionMessage::translate("Could not change to the next model.")
                                   : ExceptionMessage::translate("Could not change to the previous model."),
                      NCError::Error);
    selection = *moved;
    return true;
}

} // namespace

bool DataSeriesSwitcher(SelectDataSeriesData *selection, SwitchingType type, bool batchFirst) {
    Move const forth{*selection, true}, back{*selection, false};
    bool hasRun = false;
    if ((type & SwitchNextAxis) != 0)
        hasRun = MoveAxisOrBatch(forth, batchFirst);
    if ((type & SwitchPrevAxis) != 0 && !hasRun)
        hasRun = MoveAxisOrBatch(back, batchFirst);
    if ((type & SwitchNextSeries) != 0)
        hasRun = MovePart(forth, Checker::CheckSeries) || hasRun;
    if ((type & SwitchPrevSeries) != 0)
        hasRun = MovePart(back, Checker::CheckSeries) || hasRun;
    for (auto const &[part, move] : {std::pair(SwitchNextModel, &forth), std::pair(SwitchPrevModel, &back)}) {
        if ((type & part) == 0)
            continue;
        if (selection->GetCurrentModel() == -1 || !MoveModel(*move))
            return false;
        hasRun = true;
    }
    return hasRun;
}

void CreateMultipleDataSeries(SelectDataSeriesData const &source,
                              std::vector<boost::shared_ptr<SelectDataSeriesData>> &selections) {
    for (int position = 1; position <= source.NumberOfSeries(); ++position) {
        auto const one =
            boost::make_shared<SelectDataSeriesData>(source.GetProject(), source.GetMode(), source.GetVectorType(),
                                                     source.MaximumNumberOfSeries(), source.GetDisplayObsPredType());
        one->CopyMembers(source);
        if ((source.GetMode() & SelectDataSeriesData::AxisX) != 0)
            one->SetXAxis(source.GetXAxis());
        if ((source.GetMode() & SelectDataSeriesData::AxisY) != 0)
            one->SetYAxis(source.GetYAxis());
        one->AddSeries(source.GetSeries(position), true);
        one->GetColumnIDs();
        one->SetSelectObjects(source.GetSelectObjects());
        selections.push_back(one);
    }
}

} // namespace DataSeriesUtilities
