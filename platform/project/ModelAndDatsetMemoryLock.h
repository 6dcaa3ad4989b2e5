#pragma once

#include "platform/project/NCProject.h"

// Keeps the models and data sets of a project in memory for as long as it lives. It excludes nobody. The project must
// live longer.
class ModelAndDatsetMemoryLock {
public:
    explicit ModelAndDatsetMemoryLock(NCProject const &project) : m_project(project) { m_project.LockMemory(); }
    ModelAndDatsetMemoryLock(ModelAndDatsetMemoryLock const &) = delete;
    ModelAndDatsetMemoryLock &operator=(ModelAndDatsetMemoryLock const &) = delete;
    ~ModelAndDatsetMemoryLock() { m_project.UnlockMemory(); }

private:
    NCProject const &m_project;
};
