#include "catalogue/ProjectVectorHandler.h"

#include "catalogue/Placeholders_internal.h"

#include <algorithm>
#include <cstring>

namespace {

struct ByName {
    bool operator()(ProjectVector const *vector, char const *name) const {
        return std::strcmp(vector->GetName(), name) < 0;
    }
    bool operator()(char const *name, ProjectVector const *vector) const {
        return std::strcmp(name, vector->GetName()) < 0;
    }
};

bool FitsModel(ProjectVector const &vector, ModelInfo const *model) {
    return model && (model->type & vector.GetModelType()) != 0;
}

// A vector of models needs a model of its kinds, any other one the very source.
bool FitsSource(ProjectVector const &vector, ProjectVector::DataTypeEnum data, ModelInfo const *model) {
    if (vector.GetModelType() != ModelTypeE::None)
        return FitsModel(vector, model);
    return (vector.GetDataType() & data) != 0 || vector.GetDataType() == data;
}

bool FitsLoosely(ProjectVector const &vector, ProjectVector::DataTypeEnum data, ModelInfo const *model) {
    if (data == ProjectVector::DataTypeNone)
        return !model || FitsModel(vector, model);
    if ((data & vector.GetDataType()) == 0 && data != vector.GetDataType())
        return false;
    return (data & ProjectVector::DataTypeModel) == 0 || !model || vector.GetModelType() == ModelTypeE::None ||
           FitsModel(vector, model);
}

} // namespace

ProjectVectorHandler *ProjectVectorHandler::Instance() {
    static ProjectVectorHandler handler;
    return &handler;
}

void ProjectVectorHandler::Add(ProjectVector const *vector) {
    m_sorted.insert(std::lower_bound(m_sorted.begin(), m_sorted.end(), vector->GetName(), ByName()), vector);
    m_byName[vector->GetName()].push_back(vector);
}

void ProjectVectorHandler::Remove(ProjectVector const *vector) {
    auto const same = m_byName.find(vector->GetName());
    if (same == m_byName.end() || std::erase(same->second, vector) == 0)
        return;
    if (same->second.empty())
        m_byName.erase(same);
    std::erase(m_sorted, vector);
}

ProjectVectorHandler::Iterator ProjectVectorHandler::Find(char const *name, ProjectVector::VectorTypeEnum type,
                                                          ProjectVector::DataTypeEnum data,
                                                          ModelInfo const *model) const {
    auto const [first, last] = std::equal_range(m_sorted.begin(), m_sorted.end(), name, ByName());
    auto const found = std::find_if(first, last, [&](ProjectVector const *vector) {
        // A data type whose number is that of the axis passes whatever source was asked for.
        bool const readsFrom =
            static_cast<int>(vector->GetDataType()) == static_cast<int>(type) || (vector->GetDataType() & data) != 0;
        return vector->GetType() == type && readsFrom && FitsSource(*vector, data, model);
    });
    return found == last ? end() : found;
}

ProjectVector const *ProjectVectorHandler::FindVector(char const *name, ProjectVector::VectorTypeEnum type,
                                                      ProjectVector::DataTypeEnum data, ModelInfo const *model) const {
    auto const same = m_byName.find(name);
    if (same == m_byName.end())
        return nullptr;
    auto const found = std::find_if(same->second.begin(), same->second.end(), [&](ProjectVector const *vector) {
        return (type == ProjectVector::VectorTypeNone || vector->GetType() == type) &&
               FitsLoosely(*vector, data, model);
    });
    return found == same->second.end() ? nullptr : *found;
}

ProjectVector const *ProjectVectorHandler::GetNumVector(ProjectVector::VectorTypeEnum type) const {
    return NumVectorOf(type);
}

ProjectVector const *ProjectVectorHandler::GetMissingVector(ProjectVector::VectorTypeEnum type) const {
    return MissingVectorOf(type);
}

bool ProjectVectorHandler::IsNumVector(char const *name) const {
    return std::strcmp(name, NumVectorOf(ProjectVector::VectorTypeVariablesScores)->GetName()) == 0;
}
