#include "navigation/DataSeriesChecker.h"
#include "navigation/SelectedNumbers.h"
#include "platform/project/NCProject.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>
#include <unordered_set>

// Which numbers the specifications of a selection use.

namespace DataSeriesUtilities {

namespace {

using Vector = ProjectVector;

// The axes in use and the series, as far as they have a vector.
std::vector<ProjectVectorData const *> VectorsOf(SelectDataSeriesData const &selection) {
    std::vector<ProjectVectorData const *> vectors = selection.VectorsInUse();
    std::erase_if(vectors, [](ProjectVectorData const *data) { return !data->GetProjectVector(); });
    return vectors;
}

template <typename Number>
void InsertSorted(Number number, std::vector<Number> &numbers) {
    auto const place = std::ranges::lower_bound(numbers, number);
    if (place == numbers.end() || *place != number)
        numbers.insert(place, number);
}

bool IsOfModel(ProjectVectorData const &data, int model) {
    return data.GetModelInfo() && data.GetModelInfo()->number == model;
}

// Not the second number of a vector that has an X number, too.
bool IsYNumber(Vector const &vector) {
    return vector.IsYVector() && !vector.IsXVector();
}

struct HashOfTerm {
    std::size_t operator()(ColumnTerm const &term) const { return term.Hash(); }
};

// The terms of the first model that the others have, too.
ColumnTerms CommonTerms(SelectDataSeriesData const &selection, ColumnTerms const &(NCModel::*termsOf)() const) {
    boost::shared_ptr<NCProject> const project = selection.GetProject();
    std::vector<int> models;
    CountDifferentModels(&selection, models);
    ColumnTerms common;
    bool isFirst = true;
    for (int const number : models) {
        auto const model = project ? project->GetModel(number) : nullptr;
        ColumnTerms const own = model ? (model.get()->*termsOf)() : ColumnTerms();
        if (isFirst) {
            common = own;
        } else {
            std::unordered_set<ColumnTerm, HashOfTerm> const known(own.begin(), own.end());
            ColumnTerms kept;
            for (ColumnTerm const &term : common)
                if (known.contains(term))
                    kept.AppendTerm(term);
            common = std::move(kept);
        }
        isFirst = false;
    }
    return common;
}

// What a specification leaves to the defaults, as a bit mask.
enum Argument : int { OpenX = 1, OpenY = 2, Variable = 4, PredictedObservation = 8, Observation = 16 };

int DefaultArguments(ProjectVectorData const &data) {
    Vector const *const vector = data.GetProjectVector();
    if (!vector)
        return 0;
    bool const isOpen = data.GetNumberID() == ProjectVectorData::NotSet;
    int const open = (isOpen && vector->IsXVector() ? OpenX : 0) | (isOpen && IsYNumber(*vector) ? OpenY : 0);
    if (vector->GetNumberType() != Vector::NumberObsOrVar)
        return open;
    if (vector->GetType() == Vector::VectorTypeVariablesScores)
        return Variable;
    if (vector->GetType() != Vector::VectorTypeObservationsLoadings)
        return 0;
    return vector->GetObsPredType() == Vector::Predicted ? PredictedObservation : Observation;
}

} // namespace

void CountDifferentComponents(SelectDataSeriesData const *selection, std::vector<int> &components) {
    for (ProjectVectorData const *const data : VectorsOf(*selection))
        AddPredictiveComponents(*data, components);
}

void CountDifferentXVars(SelectDataSeriesData const *selection, std::vector<std::uint32_t> &numbers) {
    if (selection->GetCurrentModel() == -1)
        return;
    numbers.clear();
    for (ProjectVectorData const *const data : VectorsOf(*selection))
        if (data->GetProjectVector()->IsXVector())
            InsertSorted(data->GetNumberID(), numbers);
}

void CountDifferentModels(SelectDataSeriesData const *selection, std::vector<int> &models) {
    for (ProjectVectorData const *const data : VectorsOf(*selection))
        if (data->GetModelInfo())
            InsertSorted(data->GetModelInfo()->number, models);
}

int CountScoreLoadingComponents(SelectDataSeriesData const *selection, ProjectVector::ComponentType type,
                                std::vector<int> &components) {
    for (ProjectVectorData const *const data : VectorsOf(*selection)) {
        Vector const &vector = *data->GetProjectVector();
        if (vector.GetScoreLoadingType() == Vector::NoScoreLoading || (vector.GetComponentType() & type) == 0)
            continue;
        int const component = data->GetComponent(true);
        if (data == &selection->GetXAxis())
            components.push_back(component);
        else
            InsertSorted(component, components);
    }
    return static_cast<int>(components.size());
}

int GetAnyComponent(SelectDataSeriesData const *selection, int model, ProjectVector::ComponentType type) {
    for (ProjectVectorData const *const data : VectorsOf(*selection)) {
        Vector const &vector = *data->GetProjectVector();
        if (!vector.HasOneComponent() || (vector.GetComponentType() & type) == 0 || !IsOfModel(*data, model))
            continue;
        if (int const component = data->GetComponent(true); component != -1)
            return component;
    }
    return -1;
}

int GetAnyYVar(SelectDataSeriesData const *selection, int model) {
    for (ProjectVectorData const *const data : VectorsOf(*selection))
        if (IsYNumber(*data->GetProjectVector()) && IsOfModel(*data, model) &&
            data->GetNumberID() != ProjectVectorData::NotSet)
            return static_cast<int>(data->GetNumberID());
    auto const defaults = selection->GetDefaultSelection();
    return defaults ? defaults->GetDefaultYVarIndex(model) : 1;
}

int GetMaxComponent(SelectDataSeriesData const *selection, ProjectVector::ComponentType type) {
    boost::shared_ptr<NCProject> const project = selection->GetProject();
    int largest = 0;
    for (ProjectVectorData const *const data : VectorsOf(*selection)) {
        Vector const &vector = *data->GetProjectVector();
        if ((vector.GetComponentType() & type) != 0)
            largest = std::max(largest, data->GetComponent(type, true));
        else if (data->GetModelInfo() && vector.PredictiveComponentDefaultsToLast())
            largest = std::max(largest, data->GetMaxComponents(project, type));
    }
    return largest;
}

bool IsMultipleModels(SelectDataSeriesData const *selection) {
    std::vector<int> models;
    CountDifferentModels(selection, models);
    return models.size() > 1;
}

ColumnTerms GetCommonXTerms(SelectDataSeriesData const *selection) {
    return CommonTerms(*selection, &NCModel::GetXColumnTerms);
}

ColumnTerms GetCommonYTerms(SelectDataSeriesData const *selection) {
    return CommonTerms(*selection, &NCModel::GetYColumnTerms);
}

ColumnTerm GetSelecterXTerm(SelectDataSeriesData const *selection) {
    return SelectedNumbers(selection).GetSelectedXTerm();
}

int NumberOfEqualDefaultArguments(ProjectVectorData const &data, SelectDataSeriesData const *selection,
                                  SelectDataSeriesData::Mode mode) {
    int const arguments = DefaultArguments(data);
    if (arguments == 0)
        return 0;
    std::vector<ProjectVectorData const *> const vectors = selection->VectorsInUse();
    auto const series = vectors.end() - selection->NumberOfSeries();
    auto const equal = [arguments](ProjectVectorData const *other) { return DefaultArguments(*other) == arguments; };
    std::ptrdiff_t number = 0;
    if ((mode & SelectDataSeriesData::AxisX) == 0)
        number += std::count_if(vectors.begin(), series, equal);
    if (mode != SelectDataSeriesData::Normal)
        number += std::count_if(series, vectors.end(), equal);
    return static_cast<int>(number);
}

} // namespace DataSeriesUtilities
