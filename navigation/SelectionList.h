#pragma once

#include "platform/export.h"
#include "platform/forward.h"
#include "selection/SelectDataSeriesData.h"

#include <cstdint>
#include <string>
#include <vector>

// The same questions for a window that holds several selections.
namespace DataSeriesUtilities {

using SelectionList = std::vector<SelectDataSeriesData *>;

// What all of them share: their project (empty when they differ, or there are none); the model of their series (-1);
// the variable in use (0 when they differ, all ones when there is none: SelectedNumbers).
DATASERIES_API boost::shared_ptr<NCProject> GetProject(SelectionList const &selections);
DATASERIES_API int GetSeriesModel(SelectionList const &selections);
DATASERIES_API std::uint32_t GetSelectedVariable(SelectionList const &selections);
// The component of their scores and loadings that is of one of the kinds; -1 when there is none, or they differ.
DATASERIES_API int GetSelectedComponent(SelectionList const &selections, ProjectVector::ComponentType type);
// The transformation of the first one; null when there are no selections, or another one has not an equal one.
DATASERIES_API TransformationData const *GetTransformationData(SelectionList const &selections);
// Some specification is about an X term, and all of these leave it to the defaults.
DATASERIES_API bool IsDefaultSelectedXVar(SelectionList const &selections);

// The names of batches: of the data behind the selections; and of those that are selected in any of them. In order,
// each once.
DATASERIES_API std::vector<std::string> GetAllBatches(SelectionList const &selections);
DATASERIES_API std::vector<std::string> GetSelectedBatches(SelectionList const &selections);
// Selects the items of these batches in all of them. False when one of them shows batches as its series, which must be
// changed instead.
DATASERIES_API bool SetAllSelectedBatches(SelectionList const &selections, std::vector<std::string> const &names);

} // namespace DataSeriesUtilities
