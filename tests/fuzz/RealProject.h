#pragma once

#include "engine/Project.h"

// A small project of the engine, in a new file: a model of each kind, data sets of each kind, and a prediction set.
boost::shared_ptr<engine::Project> MakeRealProject(std::filesystem::path const &path);
