#pragma once

#include "engine/models/Fit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace engine {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

// A data set held as a matrix, NaN for missing. Values go through float as real data do.
class MatrixSource final : public SourceColumns {
public:
    explicit MatrixSource(RowMatrix const &cells) : m_cells(cells.cast<float>()) {
        m_cells = m_cells.unaryExpr([](float v) { return std::isnan(v) ? -99.0f : v; });
    }
    std::span<float const> Values(int column) const override {
        if (column >= m_cells.cols())
            return {};
        return {m_cells.col(column).data(), static_cast<std::size_t>(m_cells.rows())};
    }
    std::string Name(int column) const override { return "V" + std::to_string(column + 1); }

private:
    Eigen::MatrixXf m_cells;
};

inline RowMatrix Table(std::initializer_list<std::initializer_list<double>> rows) {
    RowMatrix table(rows.size(), rows.begin()->size());
    Index i = 0;
    for (auto const &row : rows)
        table.row(i++) = Eigen::Map<Eigen::RowVectorXd const>(row.begin(), static_cast<Index>(row.size()));
    return table;
}

inline std::vector<int> Counting(Index n) {
    std::vector<int> numbers(n);
    std::iota(numbers.begin(), numbers.end(), 0);
    return numbers;
}

// The first columns of a data set are X, the following `responses` are Y; all rows, unit variance.
inline ModelDefinition Define(RowMatrix const &cells, int responses, int components, int groups = 0) {
    ModelDefinition definition;
    definition.kind = responses > 0 ? ModelKind::Pls : ModelKind::Pca;
    auto const terms = static_cast<int>(cells.cols());
    for (int k = 0; k < terms; ++k) {
        Term term;
        term.column = k;
        (k < terms - responses ? definition.xTerms : definition.yTerms).push_back(term);
    }
    definition.rows = Counting(cells.rows());
    definition.components = components;
    definition.groups = groups;
    return definition;
}

// A workset and a model of it.
struct Fitted {
    Workset workset;
    FittedModel model;

    Fitted(RowMatrix const &cells, ModelDefinition const &definition)
        : workset(Workset::Build(definition, MatrixSource(cells))), model(Fit(definition, workset)) {}
};

inline Matrix Column(std::vector<double> const &values) {
    return Eigen::Map<Vector const>(values.data(), static_cast<Index>(values.size()));
}

// One number for each element in which the matrices differ most, so that a failure shows by how much.
inline double Difference(Matrix const &actual, Matrix const &expected) {
    if (actual.rows() != expected.rows() || actual.cols() != expected.cols())
        return std::numeric_limits<double>::infinity();
    return actual.size() == 0 ? 0 : (actual - expected).cwiseAbs().maxCoeff();
}

struct Shape {
    Index rows, columns;
    int responses, components;
    double missing;

    friend void PrintTo(Shape const &s, std::ostream *out) {
        *out << s.rows << " x " << s.columns << ", " << s.responses << " responses, " << s.components
             << " components, missing " << s.missing;
    }
};

inline RowMatrix Random(Index rows, Index columns, unsigned seed) {
    std::mt19937 generator(seed);
    std::normal_distribution<double> normal;
    return RowMatrix::NullaryExpr(rows, columns, [&] { return normal(generator); });
}

// Three hidden variables behind all columns, and noise.
inline RowMatrix MakeData(Shape const &shape) {
    auto const columns = shape.columns + shape.responses;
    RowMatrix cells = Random(shape.rows, 3, 1) * Random(3, columns, 2) + 0.5 * Random(shape.rows, columns, 3);
    std::mt19937 generator(4);
    std::bernoulli_distribution lost(shape.missing);
    for (auto &cell : cells.reshaped())
        if (lost(generator))
            cell = nan;
    return cells;
}

inline double OffDiagonal(Matrix const &gram) {
    return Difference(gram, gram.diagonal().asDiagonal());
}

// The columns with the signs of those of `like`.
inline Matrix Signless(Matrix const &columns, Matrix const &like) {
    return columns * (columns.transpose() * like).diagonal().cwiseSign().asDiagonal();
}

// A row of a table of worked figures.
struct Figure {
    char const *name;
    Matrix actual;
    std::vector<double> expected;
};

inline void ExpectFigures(std::vector<Figure> const &figures, double tolerance) {
    for (auto const &figure : figures) {
        Matrix const flat = figure.actual.reshaped();
        EXPECT_LE(Difference(flat, Column(figure.expected)), tolerance)
            << figure.name << " is " << flat.transpose() << ", expected " << Column(figure.expected).transpose();
    }
}

} // namespace engine
