#include "engine/statistics/Answer.h"

#include "platform/containers/Missing.h"

#include <algorithm>

namespace engine {

NCDataVector<float> StoredValues(Vector const &values) {
    NCDataVector<float> stored(static_cast<int>(values.size()));
    std::ranges::transform(values, stored.MutableValues().begin(), ToStored);
    return stored;
}

NCDataMatrix<float> StoredValues(RowMatrix const &values) {
    NCDataMatrix<float> stored(static_cast<int>(values.rows()), static_cast<int>(values.cols()));
    std::ranges::transform(values.reshaped<Eigen::RowMajor>(), stored.MutableValues().begin(), ToStored);
    return stored;
}

Answer::Answer(ColumnIDs columns, std::size_t rows)
    : m_columns(std::move(columns)), m_rows(rows), m_matrix(0, m_columns.Size()) {}

void Answer::Reserve() {
    if (m_matrix.Rows() == 0)
        m_matrix.reserve(static_cast<int>(m_rows));
}

std::span<float> Answer::Add(std::string const &label) {
    Reserve();
    m_labels.push_back(label);
    m_matrix.AppendRow();
    return m_matrix.MutableRow(m_matrix.Rows());
}

std::span<float> Answer::Add(std::string const &label, Eigen::Ref<Vector const> const &values) {
    return Add(label, values, Vector());
}

std::span<float> Answer::Add(std::string const &label, Eigen::Ref<Vector const> const &values,
                             Eigen::Ref<Vector const> const &further) {
    auto const row = Add(label);
    auto const to = std::transform(values.begin(), values.end(), row.begin(), ToStored);
    std::transform(further.begin(), further.end(), to, ToStored);
    return row;
}

void Answer::AddStored(std::string const &label, std::span<float const> values) {
    Reserve();
    m_labels.push_back(label);
    m_matrix.AppendRow(values);
}

void Answer::AddStored(std::string const &label, NCDataVector<float> const &values) {
    if (m_rows > 1 || m_matrix.Rows() > 0)
        return AddStored(label, values.Values());
    m_labels.push_back(label);
    m_matrix = NCDataMatrix<float>(values);
}

TablePtr Answer::Take() {
    if (m_labels.Size() == 0 || m_columns.Size() == 0)
        return nullptr;
    RowIDs rows(m_labels, m_columns.GetProject());
    return std::make_unique<ProjectData>(std::move(rows), std::move(m_columns), std::move(m_matrix));
}

std::optional<Index> ChosenComponent(int component, Index size) {
    Index const chosen = component == -1 ? size : component;
    return chosen >= 1 && chosen <= size ? std::optional(chosen - 1) : std::nullopt;
}

std::vector<Index> ChosenComponents(IntList const *components, Index size) {
    std::vector<Index> chosen;
    if (!components)
        for (Index component = 0; component < size; ++component)
            chosen.push_back(component);
    else
        for (int const component : *components)
            if (auto const valid = ChosenComponent(component, size))
                chosen.push_back(*valid);
    return chosen;
}

std::vector<Index> ChosenTerms(ColumnTerms const &all, ColumnTerms const *named) {
    std::vector<Index> chosen;
    if (!named)
        for (Index term = 0; term < all.Size(); ++term)
            chosen.push_back(term);
    else
        for (ColumnTerm const &term : *named)
            if (int const found = all.Find(term); found >= 1)
                chosen.push_back(found - 1);
    return chosen;
}

std::string ComponentLabel(Index component) {
    return SizeLabel(component + 1);
}

std::string SizeLabel(Index size) {
    return "[" + std::to_string(size) + "]";
}

std::string RoundLabel(int round) {
    return "[CV. " + std::to_string(round) + "]";
}

void MarkUnobserved(std::span<float> scores, Eigen::Ref<Eigen::VectorXi const> const &observed) {
    for (std::size_t i = 0; i < scores.size(); ++i)
        if (observed[static_cast<Index>(i)] == 0)
            scores[i] = missingValue;
}

} // namespace engine
