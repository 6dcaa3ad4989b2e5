#pragma once

#include "catalogue/ProjectVector.h"
#include "platform/containers/BoolVector.h"
#include "platform/export.h"
#include "platform/forward.h"
#include "platform/identity/ColumnIDs.h"

#include <memory>
#include <vector>

class ProjectVectorData;
class SelectDataSeriesData;

// What windows ask about vectors and selections. The specifications of a selection are its axes in use and its series.
namespace DataSeriesUtilities {

// Which items the number of a specification, or of a selection, chooses among.
enum ArgumentType : int { NoArgument = 0, ObservationArgument = 1, VariableArgument = 2 };

// Counts specifications that show observed, and predicted, items; those that show both count twice. One without a
// vector, and one like a counting row, shows none.
struct DATASERIES_API ObsPredTypeChecker {
    int observed = 0;
    int predicted = 0;

    void operator()(ProjectVectorData const &data);
    void Add(ProjectVector::ObsOrPredType type);
    // Both where there are both, or none.
    ProjectVector::ObsOrPredType Type() const;
};

// The vector holds dates or times. Null doesn't.
DATASERIES_API bool IsTimeVector(ProjectVector const *vector);

DATASERIES_API ArgumentType GetProjectDataArgumentType(ProjectVectorData const &data);
// That of the X axis if it is in use, else of the first series that has one. An axis Y in use asks the X axis again.
DATASERIES_API ArgumentType GetVectorArgumentType(SelectDataSeriesData const *selection);

// The data behind the first vector in use that has any; empty when there is none.
DATASERIES_API boost::shared_ptr<NCDataContainerBase const> GetDataSource(SelectDataSeriesData const *selection);

// A distance to the model, in X or Y; and in Y alone.
DATASERIES_API bool IsDistanceToModel(ProjectVectorData const &data);
DATASERIES_API bool IsDistanceToModelY(ProjectVectorData const &data);

// Those of all specifications together, as masks; counting rows don't count. 0 when there are none.
DATASERIES_API ProjectVector::ScoreLoadingType GetScoreLoadingType(SelectDataSeriesData const &selection);
DATASERIES_API ProjectVector::DataTypeEnum GetDataType(SelectDataSeriesData const *selection);
// A specification shows that model.
DATASERIES_API bool ContainsModel(SelectDataSeriesData const &selection, int model);
// The data behind the selection have one row for each batch.
DATASERIES_API bool IsBatchLevelData(SelectDataSeriesData const *selection);

// The batches that are shown, in a new list: of series along aligned points their batch indexes, averages included;
// else those selected among the items (SelectDataSeriesData::GetSelectedBatches). True when there are any.
DATASERIES_API bool GetAllSelectedBatches(SelectDataSeriesData const *selection, std::vector<int> &batches);

// The selection could be shown for another prediction set: it shows no predicted vectors, or these run neither along
// aligned points nor are contributions. The number of a predicted vector over observations must be that of an
// observation of the prediction set, or of the predictions on its model.
DATASERIES_API bool CanChangePredSet(SelectDataSeriesData const *selection);

// All series, and with `axes` all axes in use, are about a Y term, or an X term; counting rows don't count. Also tells
// whether all have one number, and whether all are one vector of one model, as far as the first one of another kind.
DATASERIES_API bool HasYVariablesSelected(SelectDataSeriesData const *selection, bool &equalNumbers, bool &equalVectors,
                                          bool axes);
DATASERIES_API bool HasXVariablesSelected(SelectDataSeriesData const *selection, bool &equalNumbers, bool &equalVectors,
                                          bool axes);

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
