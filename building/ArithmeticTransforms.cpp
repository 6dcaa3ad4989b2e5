#include "building/Transforms_internal.h"

#include "building/TolerantCompare_internal.h"
#include "navigation/DataSeriesUtilities.h"
#include "platform/containers/Missing.h"
#include "selection/SelectDataSeriesData.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <optional>

namespace ProjectDataUtilities {

namespace {

using Multiplier = double (*)(SelectDataSeriesData const &selection, ProjectVectorData const &data);

// All signals of the selection are of predicted rows.
bool IsPredicted(SelectDataSeriesData const &selection) {
    bool predicted = false;
    for (ProjectVectorData const *const data : selection.VectorsInUse()) {
        ProjectVector const *const vector = data->GetProjectVector();
        if (!vector || vector->IsNumVectorLike())
            continue;
        if ((vector->GetObsPredType() & ProjectVector::Observed) != 0)
            return false;
        predicted = predicted || (vector->GetObsPredType() & ProjectVector::Predicted) != 0;
    }
    return predicted;
}

// Between two points, of which either may be missing.
float Interpolated(float x0, float y0, float x1, float y1, float x) {
    if (IsMissing(x))
        return missingValue;
    if (IsMissing(y0) || IsMissing(y1) || IsMissing(x0) || IsMissing(x1))
        return TolerantCompare(x0, x) == 0 ? y0 : TolerantCompare(x1, x) == 0 ? y1 : missingValue;
    if (TolerantCompare(x1, x0) == 0)
        return y0;
    return (x - x0) / (x1 - x0) * (y1 - y0) + y0;
}

// The value at a time of a curve over an axis, which comes from `start` at time 0, and keeps its last value.
float ValueAt(float time, std::span<float const> axis, std::span<float const> curve, float start) {
    float passed = 0.0f, value = start;
    for (std::size_t point = 0; point < std::min(axis.size(), curve.size()); ++point) {
        int const order = TolerantCompare(time, axis[point]);
        if (order == 0)
            return curve[point];
        if (order < 0)
            return Interpolated(passed, value, axis[point], curve[point], time);
        passed = axis[point];
        value = curve[point];
    }
    return value;
}

// Row 1 of a table at the columns of another one; nothing when it does not have all of them.
std::optional<NCDataVector<float>> RowAt(ColumnIDs const &columns, TablePtr const &table) {
    TablePtr const reduced = table ? table->UseOnly(columns) : nullptr;
    if (!reduced || reduced->Columns() != columns.Size())
        return std::nullopt;
    return reduced->GetMatrix()[1];
}

// Reads vectors at the columns of a table. What lies on the axis of aligned batches, and the table on observations, is
// found by the time of each observation.
class Operands {
public:
    // `first` decides whether the vectors are aligned, and tells the model that has the axis.
    Operands(TransformInput const &input, ProjectVectorData const &first)
        : m_input(input), m_first(first), m_table(Read(first)) {
        m_isAligned = m_table && input.data.GetColumnIDs().GetSource() == ColumnIDs::Observations &&
                      m_table->GetColumnIDs().GetSource() == ColumnIDs::AlignedPoints;
    }

    bool IsAligned() const { return m_isAligned; }
    // One value for each column; nothing when the vector can't be read at all of them.
    std::optional<NCDataVector<float>> First() { return At(m_table, 0.0f); }
    std::optional<NCDataVector<float>> Second(ProjectVectorData const &data) { return At(Read(data), 1.0f); }

private:
    TablePtr Read(ProjectVectorData const &data) const {
        ProjectVector const *const vector = data.GetProjectVector();
        return vector ? ReadVector(m_input.selection, data, vector->GetType()) : nullptr;
    }

    void ReadTimes() {
        ProjectVectorData data = WithVector(m_first, "Time/Maturity", ProjectVector::VectorTypeAligned);
        m_axis = ReadVector(m_input.selection, data, ProjectVector::VectorTypeAligned);
        data = WithVector(data, IsPredicted(m_input.selection) ? "YVarPS" : "YVar",
                          ProjectVector::VectorTypeVariablesScores);
        data.SetNumber(1);
        m_times = RowAt(m_input.data.GetColumnIDs(),
                        ReadVector(m_input.selection, data, ProjectVector::VectorTypeVariablesScores));
    }

    std::optional<NCDataVector<float>> At(TablePtr const &table, float start) {
        if (!m_isAligned || !table)
            return RowAt(m_input.data.GetColumnIDs(), table);
        if (!m_axis)
            ReadTimes();
        if (!m_axis || !m_times)
            return std::nullopt;
        NCDataVector<float> values = *m_times;
        for (float &value : values.MutableValues())
            value = ValueAt(value, m_axis->GetMatrix().Row(1), table->GetMatrix().Row(1), start);
        return values;
    }

    TransformInput const &m_input;
    ProjectVectorData const &m_first;
    TablePtr m_table, m_axis;
    bool m_isAligned = false;
    std::optional<NCDataVector<float>> m_times; // of the columns
};

// The table with new signals, below an axis that stays but loses its label.
template <typename Operation>
TablePtr WithSignals(TransformInput const &input, std::vector<std::string> const &labels, Operation operation) {
    NCDataMatrix<float> matrix = input.data.GetMatrix();
    for (int row = input.FirstRow(); row <= matrix.Rows(); ++row) {
        std::span<float> const values = matrix.MutableRow(row);
        for (std::size_t column = 0; column < values.size(); ++column)
            values[column] = operation(values[column], column);
    }
    return std::make_unique<ProjectData>(Labels(labels, input.data.GetProject()), input.data.GetColumnIDs(),
                                         std::move(matrix));
}

// Of the signals, with none for the axis; all of them that of the first one where `repeats`.
std::vector<std::string> LabelsOfSignals(TransformInput const &input, bool repeats = false) {
    std::vector<std::string> labels(static_cast<std::size_t>(input.data.Rows()));
    for (int row = input.FirstRow(); row <= input.data.Rows(); ++row)
        labels[static_cast<std::size_t>(row - 1)] = input.data.GetRowName(repeats ? input.FirstRow() : row, 1);
    return labels;
}

// One multiplier for each axis and series of the selection.
TablePtr Multiplied(TransformInput const &input, Multiplier multiplier) {
    std::vector<float> multipliers;
    for (ProjectVectorData const *const data : input.selection.VectorsInUse()) {
        ProjectVector const *const vector = data->GetProjectVector();
        bool const isSignal = vector && !vector->IsNumVectorLike();
        multipliers.push_back(isSignal ? static_cast<float>(multiplier(input.selection, *data)) : 1.0f);
    }
    auto table = std::make_unique<ProjectData>(input.data);
    table->AdjustRows(multipliers, std::vector<float>(multipliers.size()), false);
    return table;
}

// The vector whose length normalises another one.
constexpr struct {
    char const *name, *base;
} bases[] = {{"c", "c"},       {"ccvSE", "c"},     {"p", "p"},       {"pc", "pc"},     {"pccvSE", "pc"},
             {"pcvSE", "p"},   {"po", "po"},       {"pocvSE", "po"}, {"poso", "poso"}, {"pq", "pq"},
             {"pqcvSE", "pq"}, {"q", "q"},         {"qcvSE", "q"},   {"qo", "qo"},     {"qocvSE", "qo"},
             {"qor", "qor"},   {"w", "w"},         {"wcvSE", "w"},   {"w*", "w*"},     {"w*cvSE", "w*"},
             {"w*c", "w*c"},   {"w*ccvSE", "w*c"}, {"wo", "wo"},     {"wocvSE", "wo"}};

// Null for one that has none.
char const *BaseOf(ProjectVector const &vector) {
    auto const found =
        std::ranges::find_if(bases, [&](auto const &row) { return std::strcmp(row.name, vector.GetName()) == 0; });
    return found == std::end(bases) ? nullptr : found->base;
}

double InverseLength(SelectDataSeriesData const &selection, ProjectVectorData const &data) {
    char const *const name = BaseOf(*data.GetProjectVector());
    if (!name)
        return 1.0;
    ProjectVectorData const base = WithVector(data, name, ProjectVector::VectorTypeObservationsLoadings);
    TablePtr const table = ReadVector(selection, base, base.GetProjectVector()->GetType());
    if (!table)
        return 1.0;
    double const square = table->GetMatrix()[1].GetSS(0.0L);
    return square > 0 ? 1.0 / std::sqrt(square) : 1.0;
}

double ExplainedShare(SelectDataSeriesData const &selection, ProjectVectorData const &data) {
    return DataSeriesUtilities::GetR2XSS(data, selection.GetProject());
}

} // namespace

TablePtr SubtractVector(TransformInput const &input, TransformationData const &settings) {
    auto const subtracted = Operands(input, settings.GetSubtractVector()).First();
    if (!subtracted)
        return nullptr;
    return WithSignals(input, LabelsOfSignals(input), [values = subtracted->Values()](float value, std::size_t column) {
        return value - values[column];
    });
}

TablePtr SubtractAndDivideVector(TransformInput const &input, TransformationData const &settings) {
    Operands operands(input, settings.GetSubtractVector());
    auto const subtracted = operands.First();
    auto divisors = operands.Second(settings.GetDivideVector());
    if (!subtracted || !divisors)
        return nullptr;
    constexpr float smallest = 1.1920928955078125e-7f; // what is not above counts as 0
    for (float &divisor : divisors->MutableValues())
        if (std::abs(divisor) <= smallest)
            divisor = 1.0f;
    return WithSignals(input, LabelsOfSignals(input, operands.IsAligned()),
                       [values = subtracted->Values(), divisors = divisors->Values()](float value, std::size_t column) {
                           return (value - values[column]) / divisors[column];
                       });
}

TablePtr ScaledByR2X(TransformInput const &input) {
    return Multiplied(input, &ExplainedShare);
}

TablePtr Normalized(TransformInput const &input) {
    return Multiplied(input, &InverseLength);
}

bool CanNormalize(ProjectVector const &vector) {
    return BaseOf(vector) != nullptr;
}

} // namespace ProjectDataUtilities
