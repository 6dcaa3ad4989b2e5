#include "platform/ModelInfo.h"

std::string ModelInfo::GetClassPhaseName(int position) const {
    bool const known = position >= 1 && position <= static_cast<int>(classOrPhaseNames.size());
    return known ? classOrPhaseNames[static_cast<std::size_t>(position - 1)] : std::string();
}

bool ModelInfo::IsBatchLevelModel(ProjectPtr const &) const {
    return isBatchLevel;
}
