#pragma once

#include "platform/export.h"

class ProjectVector;
class ProjectVectorData;
class SelectDataSeriesData;

// What is set in a selection for the user: axes and variables. Listeners are told of each change.
namespace DataSeriesUtilities {

// The vector of times of the observations of a model, or of those predicted on it.
DATASERIES_API ProjectVector const *GetTimeVector(bool predicted);

// Gives the selection the X axis that goes with a new series over observations: their time, where the project's default
// time variable is among the variables of the data behind the series ("Date/Time" or "Date/Time-PS" for a model,
// "VarDS" and "VarPS" for a data set and the prediction set), else the counting row. Nothing happens where the X axis
// is not in use.
DATASERIES_API void SetDefaultScoreNumAxis(SelectDataSeriesData *selection, ProjectVectorData const &series);
// The same over variables: "VarID", where the data have an identifier that is a number, else the counting row.
DATASERIES_API void SetDefaultLoadingNumAxis(SelectDataSeriesData *selection, ProjectVectorData const &series);

// Sets the term of all specifications in use that are about an X term, or a Y term, of the model.
DATASERIES_API void SetXVariable(SelectDataSeriesData *selection, int model, int term);
DATASERIES_API void SetSelectedYVariable(SelectDataSeriesData *selection, int model, int term);

} // namespace DataSeriesUtilities
