#pragma once

#include "engine/models/Matrices.h"
#include "platform/identity/ProjectData.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace engine {

// Numbers as finished tables hold them; what is not finite becomes missing.
NCDataVector<float> StoredValues(Vector const &values);
NCDataMatrix<float> StoredValues(RowMatrix const &values);

// Builds the table of an answer row by row. Here alone results are rounded to float.
class Answer {
public:
    // With room for `rows` rows: to grow beyond them moves all.
    explicit Answer(ColumnIDs columns, std::size_t rows = 1);

    // A row of missing values, open as below.
    std::span<float> Add(std::string const &label);
    // A row of one value for each column; what is not finite becomes missing. The row stays open for changes until the
    // next one is added.
    std::span<float> Add(std::string const &label, Eigen::Ref<Vector const> const &values);
    // A row of values that were stored before, as they are. The only row of an answer shares the elements of one that
    // has them whole.
    void AddStored(std::string const &label, std::span<float const> values);
    void AddStored(std::string const &label, NCDataVector<float> const &values);
    // The same from two parts, one behind the other.
    std::span<float> Add(std::string const &label, Eigen::Ref<Vector const> const &values,
                         Eigen::Ref<Vector const> const &further);

    // Null when it has no row or no column.
    TablePtr Take();

private:
    void Reserve();

    ColumnIDs m_columns;
    std::size_t m_rows;
    NCStringVector m_labels;
    NCDataMatrix<float> m_matrix;
};

// The valid components of a list, counted from 0: all `size` ones for a null list, the last one for -1. Others are
// dropped.
std::vector<Index> ChosenComponents(IntList const *components, Index size);
std::optional<Index> ChosenComponent(int component, Index size);

// The places, from 0, of the terms that a question names; all for null. Those that the model lacks are dropped.
std::vector<Index> ChosenTerms(ColumnTerms const &all, ColumnTerms const *named);

// "[2]" for a component counted from 0, "[CV. 3]" for a round counted from 1.
std::string ComponentLabel(Index component);
std::string RoundLabel(int round);

// "[2]" for a model of 2 components.
std::string SizeLabel(Index size);

// A row of a block that has no observed cell has no score.
void MarkUnobserved(std::span<float> scores, Eigen::Ref<Eigen::VectorXi const> const &observed);

} // namespace engine
