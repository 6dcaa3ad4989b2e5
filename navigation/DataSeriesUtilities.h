#pragma once

#include "catalogue/ProjectVector.h"
#include "platform/containers/BoolVector.h"
#include "platform/export.h"
#include "platform/forward.h"
#include "platform/identity/BatchUtilities.h"
#include "platform/identity/ColumnIDs.h"

#include <memory>
#include <string>
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

// A counting row or an identifier. Null is one.
DATASERIES_API bool IsNumVectorLike(ProjectVector const *vector);
// The name without the mark of predicted rows: "t" of "tPS", "DModX+" of "DModXPS+", "Date/Time" of "Date/Time-PS".
DATASERIES_API std::string GetNameWithoutPS(char const *name);
// T2 over a range of components.
DATASERIES_API bool IsT2RangeDataSeries(ProjectVectorData const &data);
// How much of the variation is explained or predicted, whatever it is counted over: R2X, Q2VYcum, ...; and a selection
// whose series are that alone, of which there must be one.
DATASERIES_API bool IsR2Q2Data(ProjectVectorData const &data);
DATASERIES_API bool IsOnlyR2Q2Series(SelectDataSeriesData const *selection);
// A specification is a contribution.
DATASERIES_API bool IsContribution(SelectDataSeriesData const *selection);
// The largest and the smallest multiplier of a standard deviation in the specifications whose vectors have them;
// ProjectVectorData::NoMultiplier when none is set.
DATASERIES_API double GetMaxMultiplierValue(SelectDataSeriesData const *selection);
DATASERIES_API double GetMinMultiplierValue(SelectDataSeriesData const *selection);

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

// The batches of that data, in order; none without data or batches.
DATASERIES_API BatchInfoVector GetBatchInfoVector(SelectDataSeriesData const *selection);
// The data sets whose observations are behind the rows of a model, through batch levels down, rising.
DATASERIES_API std::vector<int> GetBaseDatasets(NCProject const &project, int model);
// The critical distance to the model for the first specification that is a distance in X, at the significance of the
// selection; -99.0 without one, and where there is none.
DATASERIES_API float GetDCrit(SelectDataSeriesData const *selection);

// How much of the sum of squares of X the component of the specification explains, as a share (R2X); of Y (R2Y) for a
// Y-side component. 1 for what has no single component or no model, and where the share is not known.
DATASERIES_API double GetR2XSS(ProjectVectorData const &data, ProjectPtr const &project);

} // namespace DataSeriesUtilities
