#include "navigation/DataSeriesUtilities.h"
#include "navigation/DataSources.h"
#include "navigation/SelectedNumbers.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>

// Whether a selection names its statistics alone, so that it can be opened on another project.

using DataSeriesUtilities::CountCurrentDataSources;
using DataSeriesUtilities::CurrentSelectedNumbers;

namespace {

using Vectors = std::vector<ProjectVectorData const *>;

bool HaveOneSource(Vectors const &vectors) {
    CountCurrentDataSources sources;
    for (ProjectVectorData const *const data : vectors)
        sources(*data);
    return sources.modelNumber != -1 && sources.dataSetNumber != -1;
}

CurrentSelectedNumbers NumbersOf(Vectors const &vectors, ProjectUtilities::DefaultSelection *defaults) {
    CurrentSelectedNumbers numbers(defaults);
    for (ProjectVectorData const *const data : vectors)
        numbers(*data);
    return numbers;
}

bool Agree(CurrentSelectedNumbers const &numbers) {
    return std::ranges::none_of(std::initializer_list<std::uint32_t>{numbers.xNumber, numbers.yNumber, numbers.variable,
                                                                     numbers.observation, numbers.predictedObservation},
                                [](std::uint32_t number) { return number == ProjectVectorData::NotSet; });
}

bool NeedDefaults(CurrentSelectedNumbers const &numbers) {
    return numbers.NeedDefaultXVar() || numbers.NeedDefaultYVar() || numbers.NeedDefaultVar() ||
           numbers.NeedDefaultObs() || numbers.NeedDefaultPredObs();
}

// It has a number that the defaults can tell.
bool FollowsDefaults(ProjectVectorData const &data) {
    ProjectVector const *const vector = data.GetProjectVector();
    return vector &&
           (vector->IsXVector() || vector->IsYVector() || vector->GetNumberType() == ProjectVector::NumberObsOrVar);
}

ProjectVectorData WithOpenNumber(ProjectVectorData data) {
    data.SetNumber(ProjectVectorData::NotSet);
    return data;
}

} // namespace

SelectDataSeriesData::DataSeriesGlobalType SelectDataSeriesData::IsProjectIndependent() const {
    if (m_globalType != GlobalTypeUndecided)
        return m_globalType;
    Vectors const vectors = VectorsInUse();
    if (!HaveOneSource(vectors) || DataSeriesUtilities::IsContribution(this))
        return GlobalTypeProject;
    CurrentSelectedNumbers const numbers = NumbersOf(vectors, m_defaults.get());
    if (!Agree(numbers))
        return GlobalTypeProject;
    std::string batch, phase;
    bool const hasAllItems = NumSelectObjects() == GetSelectObjects().Size();
    if ((!hasAllItems || numbers.NeedBatchIx()) && HasSingleBatchAndPhase(batch, phase))
        return GlobalTypeProject;
    return NeedDefaults(numbers) ? GlobalTypeIndependentAfterDefaults : GlobalTypeIndependent;
}

bool SelectDataSeriesData::MakeProjectIndependent() {
    Vectors const vectors = VectorsInUse();
    if (!HaveOneSource(vectors))
        return false;
    CurrentSelectedNumbers const numbers = NumbersOf(vectors, m_defaults.get());
    if (!Agree(numbers))
        return false;
    if (NeedDefaults(numbers))
        DataSeriesUtilities::SelectedNumbers(this).UpdateDefaultSelectedItems();
    if (UsesX() && FollowsDefaults(m_xAxis))
        SetXAxis(WithOpenNumber(m_xAxis));
    if (UsesY() && FollowsDefaults(m_yAxis))
        SetYAxis(WithOpenNumber(m_yAxis));
    for (int position = 1; position <= NumberOfSeries(); ++position)
        if (FollowsDefaults(GetSeries(position)))
            SetSeries(position, WithOpenNumber(GetSeries(position)));
    return true;
}
