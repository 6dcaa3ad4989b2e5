#include "platform/project/GetProjectData.h"

#include "platform/project/NCProject.h"
#include "platform/project/StatisticSource.h"

#include <array>

namespace {

// Plain values are copied into the call, everything else is borrowed.
template <typename Value>
Argument ToArgument(Value const &value) {
    if constexpr (std::is_same_v<Value, float>)
        return static_cast<double>(value);
    else if constexpr (std::is_arithmetic_v<Value> || std::is_enum_v<Value> || std::is_pointer_v<Value>)
        return value;
    else
        return &value;
}

template <typename... Values>
std::array<Argument, sizeof...(Values)> Pack(Values const &...values) {
    return {ToArgument(values)...};
}

} // namespace

GetProjectData::GetProjectData(NCProject const &project, boost::shared_ptr<NCPredictions const> predictions)
    : m_project(project), m_predictions(std::move(predictions)) {}

#define TABLE_OVERLOAD(key, name, parameters, arguments)                                                               \
    TablePtr GetProjectData::name parameters const {                                                                   \
        auto const packed = Pack arguments;                                                                            \
        return m_project.GetStatisticSource().Table({Operation::key, packed, m_project, m_predictions});               \
    }
#define TABLE(name, parameters, arguments) TABLE_OVERLOAD(name, name, parameters, arguments)
#define COLUMNS(name, parameters, arguments)                                                                           \
    ColumnIDs GetProjectData::name parameters const {                                                                  \
        auto const packed = Pack arguments;                                                                            \
        return m_project.GetStatisticSource().Columns({Operation::name, packed, m_project, m_predictions});            \
    }
#include "platform/project/operations.def"

GetProjectDataMatrix::GetProjectDataMatrix(NCProject const &project, boost::shared_ptr<NCPredictions const> predictions,
                                           bool sourceUnits)
    : m_project(project), m_predictions(std::move(predictions)), m_sourceUnits(sourceUnits) {}

// The choice of units follows the arguments of each call.
#define MATRIX(name, parameters, arguments)                                                                            \
    NCDataMatrix<float> GetProjectDataMatrix::name parameters const {                                                  \
        auto const pack = [this](auto const &...values) { return Pack(values..., m_sourceUnits); };                    \
        auto const packed = pack arguments;                                                                            \
        return m_project.GetStatisticSource().Matrix({Operation::name, packed, m_project, m_predictions});             \
    }
#include "platform/project/operations.def"

NCDataMatrix<float> GetProjectDataMatrix::CreateAlignedStdDevAndAverageMatrix(NCDataMatrix<float> const &matrix) {
    int const columns = matrix.Columns();
    NCDataMatrix<float> result(2, columns, -99.0f);
    for (int column = 1; column <= columns; ++column) {
        float const mean = static_cast<float>(matrix.GetColumnMean(column));
        result(1, column) = mean;
        result(2, column) = static_cast<float>(matrix.GetColumnStdDev(column, mean));
    }
    return result;
}
