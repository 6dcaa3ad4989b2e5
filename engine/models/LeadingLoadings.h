#pragma once

#include "engine/models/Block.h"

namespace engine {

// Leading right singular vectors of X (n x K), unit length, in falling order of singular value: a column each, as many
// as asked for or fewer. At least one is found; those whose singular value is below 1e-3 of the first may be left out,
// since they are exact only when the first have been taken away. Signs are arbitrary.
//
// `known` are such vectors of earlier calls and `scores` their X v: the search is in what they leave. Vectors of
// `guess` (K x any), which may be none, shorten the search when they are near the result.
//
// The eigenvectors of the smaller of X'X and XX' by block Rayleigh-Ritz iteration with restarts (Golub & Underwood
// 1977; Wu & Simon 2000), in one pass over X for eight vectors. Directions are exact to about 1e-9, or to
// rounding where eigenvalues are too close for that.
Matrix LeadingLoadings(RowAddresses const &x, Index count, Matrix const &known, Matrix const &scores,
                       Matrix const &guess);

} // namespace engine
