#include "platform/project/ModelUtilities.h"

#include "platform/project/NCProject.h"

namespace {

bool IsLagged(NCProject const &project, int model) {
    boost::shared_ptr<ModelInfo const> const info = project.GetModelInfo(model);
    return info && info->hasLaggedVariables && info->SizeComponents() > 0;
}

// The data set that a batch-level model rests on and that was made from batches; empty when there is none.
boost::shared_ptr<NCDataSetInfo const> BatchLevelDataSet(NCProject const &project, int model) {
    boost::shared_ptr<ModelInfo const> const info = project.GetModelInfo(model);
    if (!info || !info->isBatchLevel)
        return {};
    for (int const dataSet : info->dataSets)
        if (auto found = project.GetDataSetInfo(dataSet); found && found->sourceDataSet > 0)
            return found;
    return {};
}

bool Match(ModelInfo const &one, ModelInfo const &other, MatchingModelE::Matching matching) {
    bool const together = one.number == other.number || (one.phaseGroup != 0 && one.phaseGroup == other.phaseGroup);
    return together && (matching != MatchingModelE::SameType || one.type == other.type);
}

} // namespace

bool ModelUtilities::ModelHasComponents(NCProject const &project, int model) {
    boost::shared_ptr<ModelInfo const> const info = project.GetModelInfo(model);
    return info && info->SizeComponents() > 0;
}

int ModelUtilities::NumberOfOSCComponents(NCProject const &project, int dataSet) {
    boost::shared_ptr<NCDataSetInfo const> const info = project.GetDataSetInfo(dataSet);
    return info ? info->oscComponents : 0;
}

int ModelUtilities::GetFirstLaggedModel(NCProject const &project, int model) {
    if (IsLagged(project, model))
        return model;
    int const models = project.GetNumberOfModels();
    for (int index = 1; index <= models; ++index)
        if (int const candidate = project.GetModelNumberAt(index); IsLagged(project, candidate))
            return candidate;
    return 0;
}

int ModelUtilities::GetBatchLevelSourceDS(NCProject const &project, int model) {
    boost::shared_ptr<NCDataSetInfo const> const dataSet = BatchLevelDataSet(project, model);
    return dataSet ? dataSet->sourceDataSet : 0;
}

int ModelUtilities::GetBatchLevelSourceModel(NCProject const &project, int model, std::string const &phase) {
    boost::shared_ptr<NCDataSetInfo const> const dataSet = BatchLevelDataSet(project, model);
    if (!dataSet)
        return 0;
    for (int const source : dataSet->sourceModels)
        if (phase.empty() || GetPhaseName(project, source) == phase)
            return source;
    return 0;
}

std::string ModelUtilities::GetPhaseName(NCProject const &project, int model) {
    boost::shared_ptr<ModelInfo const> const info = project.GetModelInfo(model);
    return info && info->isBatchModel && info->classOrPhaseNames.size() == 1 ? info->classOrPhaseNames.front()
                                                                             : std::string();
}

std::vector<int> ModelUtilities::FindMatchingModels(NCProject const &project, int model, bool fitted,
                                                    MatchingModelE::Matching matching) {
    std::vector<int> numbers;
    boost::shared_ptr<ModelInfo const> const info = project.GetModelInfo(model);
    int const models = info ? project.GetNumberOfModels() : 0;
    for (int index = 1; index <= models; ++index) {
        boost::shared_ptr<ModelInfo const> const other = project.GetModelInfo(project.GetModelNumberAt(index));
        if (other && Match(*info, *other, matching) && !(fitted && other->SizeComponents() == 0))
            numbers.push_back(other->number);
    }
    return numbers;
}
