#include "platform/project/NCProject.h"

#include "platform/storage/ConfigurationSection.h"

NCProject::~NCProject() = default;

int NCProject::GetModelIndex(int model) const {
    int const models = GetNumberOfModels();
    for (int index = 1; index <= models; ++index)
        if (GetModelNumberAt(index) == model)
            return index;
    return 0;
}

bool NCProject::IsModelFitted(int model) const {
    boost::shared_ptr<ModelInfo const> const info = GetModelInfo(model);
    return info && info->fitted;
}

std::unique_ptr<ConfigurationSection> NCProject::GetSettingsSection(std::string const &) {
    return nullptr;
}
