#pragma once

#include "catalogue/ProjectVector.h"

// The vectors that no project has a statistic for: a counting row, and a row of missing values. One of each for every
// axis; the ones of axis 1 for an unknown axis. Whoever builds a table makes their rows.
ProjectVector const *NumVectorOf(ProjectVector::VectorTypeEnum type);
ProjectVector const *MissingVectorOf(ProjectVector::VectorTypeEnum type);
