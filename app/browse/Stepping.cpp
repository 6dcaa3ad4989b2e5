#include "app/browse/Stepping.h"

#include "app/Failure.h"
#include "navigation/Selectors.h"
#include "platform/project/NCProject.h"
#include "platform/storage/XercesXMLSection.h"
#include "selection/SavedSelection.h"

namespace {

using namespace DataSeriesUtilities;
using Checker = DataSeriesChecker;

template <typename Next, typename Previous>
bool Run(SelectDataSeriesData &selection, bool forward, Next const &next, Previous const &previous) {
    forward ? next(selection) : previous(selection);
    return true;
}

bool StepOver(SelectDataSeriesData &selection, bool ofAxis, bool forward) {
    Checker::CheckType const part = ofAxis ? Checker::CheckXAxis : Checker::CheckSeries;
    Checker::VectorTypeStruct kind;
    Checker(part).GetDataSeriesType(&selection, kind);
    auto const components = static_cast<ProjectVector::ComponentType>(kind.ComponentMask);
    switch (kind.SeriesKind) {
    case Checker::KindNone:
    case Checker::KindComponent:
        return components != 0 && Run(selection, forward, SelectNextComponent(components, ofAxis),
                                      SelectPrevComponent(components, ofAxis));
    case Checker::KindXVariable:
        return Run(selection, forward, SelectNextXVar(part, nullptr, -1), SelectPrevXVar(part, nullptr, -1));
    case Checker::KindVariable:
        return Run(selection, forward, SelectNextVariable(ofAxis), SelectPrevVariable(ofAxis));
    case Checker::KindObservation:
        return Run(selection, forward, SelectNextObservation(ofAxis), SelectPrevObservation(ofAxis));
    case Checker::KindYVariable:
        return Run(selection, forward, SelectNextYVar(part, nullptr), SelectPrevYVar(part, nullptr));
    default:
        return false;
    }
}

// 0 for none.
int NeighbourOf(NCProject const &project, int model, int by) {
    for (int i = 1; i <= project.GetNumberOfModels(); ++i)
        if (int const neighbour = i + by; project.GetModelNumberAt(i) == model && neighbour >= 1)
            return neighbour <= project.GetNumberOfModels() ? project.GetModelNumberAt(neighbour) : 0;
    return 0;
}

// By way of the form in which a plot is kept, which finds variables and batches again by their names.
bool StepModel(SelectDataSeriesData &selection, bool forward) {
    int const neighbour = NeighbourOf(*selection.GetProject(), selection.GetCurrentModel(), forward ? 1 : -1);
    if (neighbour == 0)
        return false;
    XercesXMLSection section;
    SavedSelection::Write(selection, section, false);
    SelectDataSeriesData moved(selection.GetProject(), SelectDataSeriesData::Normal, selection.GetVectorType(), -1,
                               ProjectVector::ObsAndPred);
    std::vector<std::string> losses;
    if (!SavedSelection::Read(section, neighbour, moved, losses) || !losses.empty())
        throw Problem(forward ? ExceptionMessage::translate("Could not change to the next model.")
                              : ExceptionMessage::translate("Could not change to the previous model."));
    selection = moved;
    return true;
}

} // namespace

bool Step(SelectDataSeriesData &selection, SteppedPart part, bool forward) {
    switch (part) {
    case SteppedPart::Series:
        return StepOver(selection, false, forward);
    case SteppedPart::Axis:
        return (selection.GetMode() & SelectDataSeriesData::AxisX) != 0 && StepOver(selection, true, forward);
    case SteppedPart::Batch:
        return Run(selection, forward, SelectNextBatch(), SelectPrevBatch());
    case SteppedPart::Model:
        return StepModel(selection, forward);
    }
    return false;
}

std::vector<std::unique_ptr<SelectDataSeriesData>> SplitSeries(SelectDataSeriesData const &selection) {
    std::vector<std::unique_ptr<SelectDataSeriesData>> parts;
    for (int i = 1; i <= selection.NumberOfSeries(); ++i) {
        auto part = std::make_unique<SelectDataSeriesData>(selection);
        while (part->NumberOfSeries() > 0)
            part->RemoveSeries(1);
        part->AddSeries(selection.GetSeries(i), false);
        parts.push_back(std::move(part));
    }
    return parts;
}
