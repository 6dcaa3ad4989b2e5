#pragma once

#include "platform/containers/TriState.h"
#include "platform/forward.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/identity/ColumnTerm.h"
#include "platform/identity/ProjectData.h"
#include "platform/project/NCModel.h"
#include "platform/project/WeightTypeE.h"

#include <string>
#include <utility>
#include <vector>

// Reads statistics from a project. Made on the stack for one call: every operation hands its arguments to the project's
// StatisticSource. A table is null, and columns are none, when the project has nothing to tell for the arguments;
// errors of the project are NCErrors. What each operation holds in its rows and columns is the source's to say.
class DATASERIES_API GetProjectData {
public:
    explicit GetProjectData(NCProject const &project, boost::shared_ptr<NCPredictions const> predictions = {});

#define TABLE(name, parameters, arguments) TablePtr name parameters const;
#define TABLE_OVERLOAD(key, name, parameters, arguments) TablePtr name parameters const;
#define COLUMNS(name, parameters, arguments) ColumnIDs name parameters const;
#include "platform/project/operations.def"

private:
    NCProject const &m_project;
    boost::shared_ptr<NCPredictions const> m_predictions;
};

// The figures of aligned batches as plain matrices: one row for each batch, one column for each aligned point. An empty
// matrix when there is nothing to tell.
class DATASERIES_API GetProjectDataMatrix {
public:
    // With `sourceUnits` values of variables are in the units of the data set, otherwise as in the model.
    GetProjectDataMatrix(NCProject const &project, boost::shared_ptr<NCPredictions const> predictions,
                         bool sourceUnits);

#define MATRIX(name, parameters, arguments) NCDataMatrix<float> name parameters const;
#include "platform/project/operations.def"

    // Row 1 the average of each column, row 2 its standard deviation, missing values left out.
    static NCDataMatrix<float> CreateAlignedStdDevAndAverageMatrix(NCDataMatrix<float> const &matrix);

private:
    NCProject const &m_project;
    boost::shared_ptr<NCPredictions const> m_predictions;
    bool m_sourceUnits;
};
