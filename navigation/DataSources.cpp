#include "navigation/DataSources.h"

#include "navigation/DataSeriesUtilities.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>

namespace DataSeriesUtilities {

namespace {

using Vector = ProjectVector;

bool HasSource(ProjectVectorData const &data) {
    return data.GetProjectVector() && !data.GetProjectVector()->IsNumVector();
}

bool IsPredicted(ProjectVectorData const &data) {
    return data.GetProjectVector()->GetObsPredType() == Vector::Predicted;
}

} // namespace

void CountCurrentDataSources::operator()(ProjectVectorData const &data) {
    if (!HasSource(data))
        return;
    bool const isFirst = !started;
    started = true;
    if (ModelInfo const *const model = data.GetModelInfo()) {
        // The number that is there at first counts as that of a model.
        if (!isFirst && modelNumber != -1 && modelNumber != model->number)
            modelNumber = -1;
        else if (!hasModel)
            modelNumber = model->number;
        areModelsPredicted = areModelsPredicted && IsPredicted(data);
        hasModel = true;
    } else if (IsPredicted(data)) {
        hasPredictionSet = true;
    } else {
        bool const differs = !isFirst && dataSetNumber != -1 && dataSetNumber != data.GetDataSet();
        dataSetNumber = differs ? -1 : data.GetDataSet();
    }
}

bool DataSourceType::operator()(ProjectVectorData const &data) {
    if (!HasSource(data))
        return true;
    if (ModelInfo const *const model = data.GetModelInfo())
        return SharesModel(model->number, IsPredicted(data));
    return SharesData(data.GetDataSet(), data.GetProjectVector()->GetDataType() == Vector::DataTypePredictionSet);
}

bool DataSourceType::SharesModel(int model, bool isPredicted) {
    if (modelNumber == -1) {
        if (dataSetNumber != -1 || predictionSet > 0)
            return false;
        modelNumber = model;
        predicted = isPredicted;
        return true;
    }
    if (modelNumber == model)
        return isPredicted == predicted;
    if (predicted && !isPredicted)
        return false;
    modelNumber = 0;
    return true;
}

bool DataSourceType::SharesData(int dataSet, bool isPredictionSet) {
    if (modelNumber != -1 || (predictionSet != -1 && (predictionSet == 1) != isPredictionSet) ||
        (dataSetNumber != -1 && dataSetNumber != dataSet))
        return false;
    predictionSet = isPredictionSet ? 1 : 0;
    if (!isPredictionSet)
        dataSetNumber = dataSet;
    return true;
}

bool DataSourceType::IterateDataSeries(SelectDataSeriesData const *selection, DataSourceType &type) {
    auto const vectors = selection->VectorsInUse();
    auto const series = vectors.end() - selection->NumberOfSeries();
    auto const shares = [&type](ProjectVectorData const *data) { return type(*data); };
    return std::all_of(vectors.begin(), series,
                       [&](ProjectVectorData const *data) {
                           return IsNumVectorLike(data->GetProjectVector()) || shares(data);
                       }) &&
           std::all_of(series, vectors.end(), shares);
}

} // namespace DataSeriesUtilities
