#pragma once

#include "platform/forward.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/identity/VarObs.h"

#include <list>
#include <string>

// Questions about the models and variables of a project.
namespace ProjectUtilities {

// The first model of the project's list that has components; 0 when there is none.
DATASERIES_API int GetFirstFittedModel(NCProject const &project);
// The last fitted model of the list, and the one before it (the last when it is the only one); 0 when there is none.
DATASERIES_API int GetLastFittedModel(NCProject const &project);
DATASERIES_API int GetSecondLastFittedModel(NCProject const &project);

DATASERIES_API bool CheckIfProjectHasLags(NCProject const &project);

// The 1-based position of the model's first X term with that primary name; all ones when there is none.
DATASERIES_API unsigned GetXTermIndex(NCProject const &project, int model, char const *name);
DATASERIES_API std::string GetXTermName(NCProject const &project, int model, int index);

// One of the model's data sets holds wavelet coefficients.
DATASERIES_API bool IsWCSModel(NCProject const &project, int model);
// A predicted observation is none of the model's own.
DATASERIES_API bool HasNonWSPredictions(NCProject const &project, int model);

// The points of an aligned contribution as text: what was compared, then what with ("Average" for nothing).
DATASERIES_API std::string AddContributionBatchPoints(BatchPoints const &reference, BatchPoints const &compared);

// A variable that is no measurement: time, maturity, batch and their kin.
DATASERIES_API bool IsSpecialULVariable(VariableInfo const *variable);
// A result of another model.
DATASERIES_API bool IsHierarchicalVariable(VariableInfo const *variable);

// Of terms only those with one mother count. Columns whose project has gone tell nothing: false, and no change.
DATASERIES_API bool HasNonSpecialVariables(ColumnIDs const *columns);
// Narrows a range of columns to begin and end with variables that are not special; `last` -1 is the last column. At the
// end a term of the model's Y is special too.
DATASERIES_API void SkipSpecialVariables(ColumnIDs const *columns, int &first, int &last);

// The batches behind columns of observations or aligned points, or behind those at the listed 1-based positions, each
// once, as columns that are the names of batches. Aligned points stand for all batches that their columns know.
DATASERIES_API ColumnIDs CreateBatchStrColumnIDs(ColumnIDs const &ids, std::list<int> const *columns);

} // namespace ProjectUtilities
