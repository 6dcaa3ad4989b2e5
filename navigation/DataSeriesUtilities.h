#pragma once

#include "platform/containers/BoolVector.h"
#include "platform/export.h"
#include "platform/forward.h"
#include "platform/identity/ColumnIDs.h"

#include <memory>

class NCDataContainerBase;
class ProjectVector;
class ProjectVectorData;
class SelectDataSeriesData;

// What windows ask about vectors and selections.
namespace DataSeriesUtilities {

// Which items the number of a specification, or of a selection, chooses among.
enum ArgumentType : int { NoArgument = 0, ObservationArgument = 1, VariableArgument = 2 };

// The vector holds dates or times. Null doesn't.
DATASERIES_API bool IsTimeVector(ProjectVector const *vector);

DATASERIES_API ArgumentType GetProjectDataArgumentType(ProjectVectorData const &data);
// That of the X axis if it is in use, else of the first series that has one. An axis Y in use asks the X axis again.
DATASERIES_API ArgumentType GetVectorArgumentType(SelectDataSeriesData const *selection);

// The data behind the first vector in use that has any; empty when there is none.
DATASERIES_API boost::shared_ptr<NCDataContainerBase const> GetDataSource(SelectDataSeriesData const *selection);

// One row for each batch: a variable stands for an aligned point of the data below.
DATASERIES_API bool HasBatchLevelVariables(NCDataContainerBase const &data);
DATASERIES_API bool HasDateTimeVariables(NCDataContainerBase const &data);

// The 1-based positions of the flags that are set, rising.
DATASERIES_API ColumnIDs::Positions GetSelectedPositions(BoolVector const &selected);
// A copy with the columns whose flag is set; null when none is left or there are no columns.
DATASERIES_API std::unique_ptr<ColumnIDs> GetSelectedColumnIDs(ColumnIDs const *columns, BoolVector const &selected);

// How much of the sum of squares of X the component of the specification explains, as a share (R2X); of Y (R2Y) for a
// Y-side component. 1 for what has no single component or no model, and where the share is not known.
DATASERIES_API double GetR2XSS(ProjectVectorData const &data, ProjectPtr const &project);

} // namespace DataSeriesUtilities
