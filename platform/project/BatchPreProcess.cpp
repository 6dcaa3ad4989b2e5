#include "platform/project/BatchPreProcess.h"

#include "platform/project/BatchYVarTreatment.h"
#include "platform/project/NCProject.h"

#include <limits>

NCDataMatrix<float> BatchPreProcessSegment::Forward(NCDataMatrix<float> matrix) const {
    std::vector<double> values(static_cast<std::size_t>(matrix.Rows()));
    for (int column = 1; column <= matrix.Columns(); ++column) {
        for (int row = 1; float const value : matrix.GetColumn(column))
            values[static_cast<std::size_t>(row++ - 1)] =
                IsMissing(value) ? std::numeric_limits<double>::quiet_NaN() : static_cast<double>(value);
        BatchYVarTreatment::Apply(m_treatment, values);
        for (int row = 1; double const value : values)
            matrix(row++, column) = ToStored(value);
    }
    return matrix;
}

BatchPreProcessSegment PSPipe::GetPipeSegment(NCProject const &project, int model) {
    auto const batchModel = boost::dynamic_pointer_cast<NCBatchModel const>(project.GetModel(model));
    return BatchPreProcessSegment(batchModel ? BatchYVarTreatment::GetTreatment(*batchModel)
                                             : BatchYVarTreatment::None);
}
