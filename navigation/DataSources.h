#pragma once

#include "platform/export.h"

class ProjectVectorData;
class SelectDataSeriesData;

// Whether specifications draw on one source: a model, the predictions on it, a data set or the prediction set. Without
// a vector, and as a counting row, they draw on none.
namespace DataSeriesUtilities {

// Folds specifications, one after the other, into the sources that they share. A source that comes behind one of the
// other kind is none that they share.
struct DATASERIES_API CountCurrentDataSources {
    int modelNumber = 0; // -1: several sources
    int dataSetNumber = 0;
    bool hasModel = false;
    bool hasPredictionSet = false;
    bool areModelsPredicted = true; // all vectors of models are predicted
    bool started = false;

    void operator()(ProjectVectorData const &data);
};

// Answers for one specification after the other whether it can share the source of those before. Other models can,
// unless a predicted vector is followed by one of another model that isn't.
struct DATASERIES_API DataSourceType {
    int modelNumber = -1; // 0: several models
    int dataSetNumber = -1;
    int predictionSet = -1; // 1 the prediction set, 0 a data set
    bool predicted = false;

    bool operator()(ProjectVectorData const &data);

    // All of a selection; an axis that is like a counting row is left out.
    static bool IterateDataSeries(SelectDataSeriesData const *selection, DataSourceType &type);

private:
    bool SharesModel(int model, bool isPredicted);
    bool SharesData(int dataSet, bool isPredictionSet);
};

} // namespace DataSeriesUtilities
