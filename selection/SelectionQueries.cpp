#include "navigation/DataSeriesUtilities.h"
#include "platform/project/NCProject.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>
#include <cstring>
#include <string_view>

// What the vectors of a selection have in common.

using DataSeriesUtilities::ObsPredTypeChecker;

namespace {

// A record that shows nothing of its own: without a vector, or a counting row.
bool IsNum(ProjectVectorData const &data) {
    return !data.GetProjectVector() || data.GetProjectVector()->IsNumVector();
}

std::string_view NameOf(ProjectVectorData const &data) {
    return data.GetProjectVector() ? data.GetProjectVector()->GetName() : "";
}

ObsPredTypeChecker CountOf(std::vector<ProjectVectorData const *> const &vectors) {
    ObsPredTypeChecker count;
    for (ProjectVectorData const *data : vectors)
        count(*data);
    return count;
}

} // namespace

int SelectDataSeriesData::GetSeriesModel() const {
    int model = -1;
    for (ProjectVectorData const &series : m_series) {
        if (IsNum(series))
            continue;
        ModelInfo const *const info = series.GetModelInfo();
        if (!info || (model != -1 && info->number != model))
            return -1;
        model = info->number;
    }
    return model;
}

int SelectDataSeriesData::GetCurrentModel() const {
    int model = -1;
    for (ProjectVectorData const *data : VectorsInUse()) {
        if (IsNum(*data))
            continue;
        ModelInfo const *const info = data->GetModelInfo();
        if (!info || (model != -1 && info->number != model))
            return -1;
        model = info->number;
    }
    return model;
}

int SelectDataSeriesData::GetCurrentDataSet() const {
    int dataset = -2;
    std::vector<ProjectVectorData const *> const vectors = VectorsInUse();
    std::size_t const axes = vectors.size() - m_series.size();
    for (std::size_t i = 0; i < vectors.size(); ++i) {
        ProjectVector const *const vector = vectors[i]->GetProjectVector();
        // Only axes are passed over for being a counting row.
        if (!vector || (i < axes && vector->IsNumVector()))
            continue;
        bool const predictionSet = i >= axes && vector->GetDataType() == ProjectVector::DataTypePredictionSet;
        int const own = vectors[i]->GetDataSet();
        if (predictionSet || own == -1 || (dataset != -2 && own != dataset))
            return -1;
        dataset = own;
    }
    return dataset == -2 ? -1 : dataset;
}

int SelectDataSeriesData::GetOriginalDataset() const {
    int dataset = -2;
    for (ProjectVectorData const *data : VectorsInUse()) {
        ProjectVector const *const vector = data->GetProjectVector();
        if (!vector || vector->IsNumVector())
            continue;
        if (dataset == 0)
            break;
        bool const predicted = vector->GetObsPredType() == ProjectVector::Predicted;
        int const own = predicted ? -1 : std::max(data->GetDataSet(), 1);
        dataset = dataset == -2 || dataset == own ? own : 0;
    }
    return dataset;
}

bool SelectDataSeriesData::HasOnlyNumVectors() const {
    std::vector<ProjectVectorData const *> const vectors = VectorsInUse();
    return std::all_of(vectors.begin(), vectors.end(), [](ProjectVectorData const *data) {
        return data->GetProjectVector() && std::strcmp(data->GetProjectVector()->GetName(), "Num") == 0;
    });
}

ProjectVector::ObsOrPredType SelectDataSeriesData::GetObsPredType() const {
    return CountOf(VectorsInUse()).Type();
}

ProjectVector::ObsOrPredType SelectDataSeriesData::GetSeriesObsPredType() const {
    ObsPredTypeChecker count;
    for (ProjectVectorData const &series : m_series) {
        ProjectVector const *const vector = series.GetProjectVector();
        if (vector && !vector->IsNumVector() && std::strcmp(vector->GetName(), "Time/Maturity") != 0)
            count.Add(vector->GetObsPredType());
    }
    return count.Type();
}

bool SelectDataSeriesData::HasPredictedVectors() const {
    std::vector<ProjectVectorData const *> const vectors = VectorsInUse();
    ObsPredTypeChecker const count = CountOf(vectors);
    return (count.predicted > 0 && count.observed == 0) ||
           std::any_of(vectors.begin(), vectors.end(), [](ProjectVectorData const *data) {
               return data->GetProjectVector() &&
                      data->GetProjectVector()->GetObsPredType() == ProjectVector::Predicted;
           });
}

bool SelectDataSeriesData::HasOneTypeOfContribTypes() const {
    int source = 0;
    for (ProjectVectorData const *data : VectorsInUse()) {
        ProjectVector const *const vector = data->GetProjectVector();
        int const own = vector && !vector->IsNumVector() ? vector->GetContributionSource() : 0;
        if (own == 0)
            continue;
        if (source != 0 && own != source)
            return false;
        source = own;
    }
    return source != 0;
}

bool SelectDataSeriesData::HasEqualVectors() const {
    if (m_series.empty())
        return true;
    ProjectVectorData const &first = m_series.front();
    ModelInfo const *const model = first.GetModelInfo();
    return std::all_of(m_series.begin(), m_series.end(), [&](ProjectVectorData const &series) {
        ModelInfo const *const own = series.GetModelInfo();
        return NameOf(series) == NameOf(first) && (!model || (own && own->number == model->number));
    });
}

bool SelectDataSeriesData::HasEqualDataSource(std::string &name) const {
    ProjectVectorData const *first = nullptr;
    auto const isPredictionSet = [](ProjectVectorData const &data) {
        return data.GetProjectVector()->GetDataType() == ProjectVector::DataTypePredictionSet;
    };
    for (ProjectVectorData const *data : VectorsInUse()) {
        if (IsNum(*data))
            continue;
        if (!first) {
            first = data;
            continue;
        }
        if (isPredictionSet(*first) && isPredictionSet(*data))
            continue;
        ModelInfo const *const model = first->GetModelInfo();
        ModelInfo const *const own = data->GetModelInfo();
        bool const same = first->GetDataSet() == 0
                              ? data->GetDataSet() == 0 && model && own && model->number == own->number
                              : first->GetDataSet() == data->GetDataSet();
        if (!same)
            return false;
    }
    if (first)
        name = first->GetDataSourceName();
    return true;
}

int SelectDataSeriesData::GetPreferredTitleID(bool raw) const {
    boost::shared_ptr<NCProject> const project = GetProject();
    if (!project)
        return 1;
    if (m_preferredTitle != -1)
        return m_preferredTitle;
    DataSeriesUtilities::ArgumentType const type = DataSeriesUtilities::GetVectorArgumentType(this);
    int const alias = type == DataSeriesUtilities::ObservationArgument ? project->GetPreferredObservationAlias()
                      : type == DataSeriesUtilities::VariableArgument  ? project->GetPreferredVariableAlias()
                                                                       : -1;
    if (raw)
        return alias;
    auto const source = DataSeriesUtilities::GetDataSource(this);
    if (!source)
        return 1;
    AliasAccess const aliases = type == DataSeriesUtilities::ObservationArgument ? source->GetObservationAliases()
                                                                                 : source->GetVariableAliases();
    std::vector<int> const &used = aliases.GetUsedAliases();
    return std::find(used.begin(), used.end(), alias) != used.end() ? alias : 1;
}

void SelectDataSeriesData::AddToWindowTitle(std::string &title) const {
    if (m_series.empty())
        return;
    ModelInfo const *const model = m_series.front().GetModelInfo();
    if (GetCurrentModel() != -1 && model)
        title += " [" + model->name + "]";
    else if (GetCurrentDataSet() >= 1)
        title += " [DS" + std::to_string(m_series.front().GetDataSet()) + "]";
}
