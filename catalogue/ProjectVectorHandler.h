#pragma once

#include "catalogue/ProjectVector.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

// The registry of all statistics. One name can stand for several vectors that differ in their axis, their source or
// their kinds of models; no two with one name and one axis overlap in both of the latter.
//
// Vectors enter while the library loads and leave when it unloads; in between the registry is only read, which any
// thread may do. It owns nothing. A lookup costs two searches by name: callers keep what they found.
class DATASERIES_API ProjectVectorHandler {
public:
    using Iterator = std::vector<ProjectVector const *>::const_iterator;

    static ProjectVectorHandler *Instance();

    // Enters a vector, in front of those of its name in the sorted sequence and behind them for FindVector.
    void Add(ProjectVector const *vector);
    // Nothing happens to a vector that is not here.
    void Remove(ProjectVector const *vector);

    // All vectors, sorted by name byte by byte.
    Iterator begin() const { return m_sorted.begin(); }
    Iterator end() const { return m_sorted.end(); }
    std::uint64_t size() const { return m_sorted.size(); }

    // The vector with that name on exactly that axis that reads from `data`. A vector that belongs to models is found
    // only with a model of one of its kinds. end() when there is none.
    Iterator Find(char const *name, ProjectVector::VectorTypeEnum type, ProjectVector::DataTypeEnum data,
                  ModelInfo const *model) const;

    // The same more loosely: type 0 is any axis, data 0 any source, no model any kind of model. Null when there is
    // none.
    ProjectVector const *FindVector(char const *name, ProjectVector::VectorTypeEnum type,
                                    ProjectVector::DataTypeEnum data, ModelInfo const *model) const;

    // The counting row and the row of missing values of an axis; those of axis 1 for an unknown one. No search finds
    // them.
    ProjectVector const *GetNumVector(ProjectVector::VectorTypeEnum type) const;
    ProjectVector const *GetMissingVector(ProjectVector::VectorTypeEnum type) const;
    bool IsNumVector(char const *name) const;

private:
    ProjectVectorHandler() = default;

    std::vector<ProjectVector const *> m_sorted;
    std::unordered_map<std::string, std::vector<ProjectVector const *>> m_byName;
};
