#include "navigation/DataSeriesUtilities.h"

#include "navigation/Numbers_internal.h"
#include "platform/project/NCProject.h"
#include "selection/SelectDataSeriesData.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>
#include <cstring>
#include <string_view>

// What the specifications of a selection are.

namespace DataSeriesUtilities {

namespace {

using Vector = ProjectVector;

bool IsNum(ProjectVectorData const *data) {
    return !data->GetProjectVector() || data->GetProjectVector()->IsNumVector();
}

// The specifications that show something; without the axes where these are not asked for.
std::vector<ProjectVectorData const *> ShownBy(SelectDataSeriesData const &selection, bool withAxes = true) {
    std::vector<ProjectVectorData const *> vectors = selection.VectorsInUse();
    if (!withAxes)
        vectors.erase(vectors.begin(), vectors.end() - selection.NumberOfSeries());
    std::erase_if(vectors, IsNum);
    return vectors;
}

std::vector<double> MultipliersOf(SelectDataSeriesData const &selection) {
    std::vector<double> multipliers;
    for (ProjectVectorData const *const data : ShownBy(selection))
        if (data->GetProjectVector()->HasMultiplier())
            multipliers.insert(multipliers.end(), {data->multiplier1, data->multiplier2});
    std::erase(multipliers, ProjectVectorData::NoMultiplier);
    return multipliers;
}

template <std::size_t size>
bool IsNamed(ProjectVectorData const &data, std::string_view const (&names)[size]) {
    return data.GetProjectVector() && std::ranges::count(names, data.GetProjectVector()->GetName()) > 0;
}

bool IsAmong(ObservationInfos const &observations, std::uint32_t number) {
    return std::ranges::find(observations, number, &ObservationInfo::GetUniqueID) != observations.end();
}

bool IsPredictedObservation(ProjectVectorData const &data, std::uint32_t number, NCProject const &project) {
    if (data.GetProjectVector()->GetDataType() == Vector::DataTypePredictionSet) {
        auto const set = project.GetPredSet(-1);
        return set && IsAmong(set->GetObservations(), number);
    }
    ModelInfo const *const model = data.GetModelInfo();
    auto const predictions = model ? project.GetPredictions(model->number, false) : nullptr;
    return predictions && IsAmong(predictions->GetObservations(), number);
}

bool CanChangePredSet(ProjectVectorData const &data, SelectDataSeriesData const &selection) {
    Vector const &vector = *data.GetProjectVector();
    if (vector.GetObsPredType() != Vector::Predicted)
        return true;
    if (vector.GetType() == Vector::VectorTypeAligned || vector.IsContribution())
        return false;
    if (vector.GetType() != Vector::VectorTypeVariablesScores || vector.GetNumberType() != Vector::NumberObsOrVar)
        return true;
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    return project && IsPredictedObservation(data, data.GetNumber(selection.GetDefaultSelection().get()), *project);
}

bool AreOneVector(ProjectVectorData const &one, ProjectVectorData const &other) {
    ModelInfo const *const model = one.GetModelInfo(), *const otherModel = other.GetModelInfo();
    bool const haveOneModel = model && otherModel ? model->number == otherModel->number : model == otherModel;
    return haveOneModel && std::strcmp(one.GetProjectVector()->GetName(), other.GetProjectVector()->GetName()) == 0;
}

// All are of the kind; `numberOf` tells which term they are about.
template <typename NumberOf>
bool HaveTerms(std::vector<ProjectVectorData const *> const &vectors, bool (Vector::*isOfKind)() const,
               NumberOf numberOf, bool &equalNumbers, bool &equalVectors) {
    equalNumbers = equalVectors = true;
    for (ProjectVectorData const *const data : vectors) {
        if (!(data->GetProjectVector()->*isOfKind)())
            return false;
        equalNumbers = equalNumbers && numberOf(*data) == numberOf(*vectors.front());
        equalVectors = equalVectors && AreOneVector(*data, *vectors.front());
    }
    return true;
}

} // namespace

void ObsPredTypeChecker::Add(ProjectVector::ObsOrPredType type) {
    observed += (type & Vector::Observed) != 0 ? 1 : 0;
    predicted += (type & Vector::Predicted) != 0 ? 1 : 0;
}

void ObsPredTypeChecker::operator()(ProjectVectorData const &data) {
    if (!IsNumVectorLike(data.GetProjectVector()))
        Add(data.GetProjectVector()->GetObsPredType());
}

ProjectVector::ObsOrPredType ObsPredTypeChecker::Type() const {
    if (observed == 0)
        return predicted == 0 ? Vector::ObsAndPred : Vector::Predicted;
    return predicted == 0 ? Vector::Observed : Vector::ObsAndPred;
}

bool IsNumVectorLike(ProjectVector const *vector) {
    return !vector || vector->IsNumVectorLike();
}

std::string GetNameWithoutPS(char const *name) {
    std::string text = name;
    std::size_t const mark = text.rfind("PS");
    if (mark == std::string::npos)
        return text;
    bool const hasHyphen = mark > 0 && text[mark - 1] == '-';
    return hasHyphen ? text.erase(mark - 1, 3) : text.erase(mark, 2);
}

bool IsT2RangeDataSeries(ProjectVectorData const &data) {
    return data.GetProjectVector() && data.GetProjectVector()->IsT2RangeVector();
}

bool IsR2Q2Data(ProjectVectorData const &data) {
    std::string_view const name = data.GetProjectVector() ? data.GetProjectVector()->GetName() : "";
    return name.starts_with("R2") || name.starts_with("Q2");
}

bool IsOnlyR2Q2Series(SelectDataSeriesData const *selection) {
    auto const series = ShownBy(*selection, false);
    return !series.empty() &&
           std::ranges::all_of(series, [](ProjectVectorData const *data) { return IsR2Q2Data(*data); });
}

bool IsContribution(SelectDataSeriesData const *selection) {
    return std::ranges::any_of(
        ShownBy(*selection), [](ProjectVectorData const *data) { return data->GetProjectVector()->IsContribution(); });
}

double GetMaxMultiplierValue(SelectDataSeriesData const *selection) {
    std::vector<double> const multipliers = MultipliersOf(*selection);
    return multipliers.empty() ? ProjectVectorData::NoMultiplier : std::ranges::max(multipliers);
}

double GetMinMultiplierValue(SelectDataSeriesData const *selection) {
    std::vector<double> const multipliers = MultipliersOf(*selection);
    return multipliers.empty() ? ProjectVectorData::NoMultiplier : std::ranges::min(multipliers);
}

bool IsDistanceToModel(ProjectVectorData const &data) {
    static constexpr std::string_view names[] = {"DModX", "DModXPS", "DModXPS+", "PModX", "PModXPS", "PModXPS+"};
    return IsNamed(data, names) || IsDistanceToModelY(data);
}

bool IsDistanceToModelY(ProjectVectorData const &data) {
    static constexpr std::string_view names[] = {"DModY", "DModYPS", "PModY", "PModYPS"};
    return IsNamed(data, names);
}

ProjectVector::ScoreLoadingType GetScoreLoadingType(SelectDataSeriesData const &selection) {
    int kinds = 0;
    for (ProjectVectorData const *const data : ShownBy(selection))
        kinds |= data->GetProjectVector()->GetScoreLoadingType();
    return static_cast<Vector::ScoreLoadingType>(kinds);
}

ProjectVector::DataTypeEnum GetDataType(SelectDataSeriesData const *selection) {
    int types = 0;
    for (ProjectVectorData const *const data : ShownBy(*selection))
        types |= data->GetProjectVector()->GetDataType();
    return static_cast<Vector::DataTypeEnum>(types);
}

bool ContainsModel(SelectDataSeriesData const &selection, int model) {
    return std::ranges::any_of(selection.VectorsInUse(), [model](ProjectVectorData const *data) {
        return data->GetProjectVector() && data->GetProjectVector()->UseModel() && data->GetModelInfo() &&
               data->GetModelInfo()->number == model;
    });
}

bool IsBatchLevelData(SelectDataSeriesData const *selection) {
    auto const source = GetDataSource(selection);
    return source && HasBatchLevelVariables(*source);
}

bool GetAllSelectedBatches(SelectDataSeriesData const *selection, std::vector<int> &batches) {
    batches.clear();
    if (selection->GetVectorType() != Vector::VectorTypeAligned) {
        selection->GetSelectedBatches(batches);
        return !batches.empty();
    }
    for (int position = 1; position <= selection->NumberOfSeries(); ++position) {
        ProjectVectorData const &series = selection->GetSeries(position);
        if (series.GetProjectVector() && series.GetProjectVector()->UseBatchIx())
            batches.push_back(series.batchIx);
    }
    return !batches.empty();
}

bool CanChangePredSet(SelectDataSeriesData const *selection) {
    if (!selection->HasPredictedVectors())
        return true;
    return selection->GetVectorType() != Vector::VectorTypeAligned &&
           std::ranges::all_of(selection->VectorsInUse(), [selection](ProjectVectorData const *data) {
               return !data->GetProjectVector() || CanChangePredSet(*data, *selection);
           });
}

bool HasYVariablesSelected(SelectDataSeriesData const *selection, bool &equalNumbers, bool &equalVectors, bool axes) {
    auto const defaults = selection->GetDefaultSelection();
    return HaveTerms(
        ShownBy(*selection, axes), &Vector::IsYVector,
        [&](ProjectVectorData const &data) { return YNumberOf(data, defaults.get()); }, equalNumbers, equalVectors);
}

bool HasXVariablesSelected(SelectDataSeriesData const *selection, bool &equalNumbers, bool &equalVectors, bool axes) {
    auto const defaults = selection->GetDefaultSelection();
    return HaveTerms(
        ShownBy(*selection, axes), &Vector::IsXVector,
        [&](ProjectVectorData const &data) { return data.GetNumber(defaults.get()); }, equalNumbers, equalVectors);
}

} // namespace DataSeriesUtilities
