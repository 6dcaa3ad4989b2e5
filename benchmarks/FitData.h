#pragma once

#include "engine/models/Workset.h"

#include <cmath>
#include <random>
#include <string>
#include <utility>

namespace engine {

// `latent` hidden variables behind all columns, and noise.
inline Matrix SimulateCells(Index rows, Index columns, Index latent, std::mt19937_64 &generator) {
    std::normal_distribution<double> normal;
    auto const draw = [&](Index n, Index k) { return Matrix::NullaryExpr(n, k, [&] { return normal(generator); }); };
    Matrix const hidden = draw(rows, latent);
    Matrix const pattern = draw(latent, columns);
    Matrix cells = draw(rows, columns) * 2;
    cells.noalias() += hidden * pattern;
    return cells;
}

// A data set held as the engine holds one: a contiguous float column for each variable, NaN told as missing.
class FloatColumns final : public SourceColumns {
public:
    explicit FloatColumns(Matrix const &cells)
        : m_cells(cells.unaryExpr([](double v) { return std::isnan(v) ? -99.0f : static_cast<float>(v); })) {}

    std::span<float const> Values(int column) const override {
        return {m_cells.col(column).data(), static_cast<std::size_t>(m_cells.rows())};
    }
    std::string Name(int column) const override { return std::to_string(column + 1); }

private:
    Eigen::MatrixXf m_cells;
};

// X are the first columns, Y the last `responses`; all rows.
inline ModelDefinition DefineFit(Matrix const &cells, int responses, int components, ScalingKind scaling) {
    ModelDefinition definition;
    definition.kind = responses > 0 ? ModelKind::Pls : ModelKind::Pca;
    for (int k = 0; k < cells.cols(); ++k) {
        Term term;
        term.column = k;
        term.scaling = scaling;
        (k < cells.cols() - responses ? definition.xTerms : definition.yTerms).push_back(std::move(term));
    }
    for (int i = 0; i < cells.rows(); ++i)
        definition.rows.push_back(i);
    definition.components = components;
    definition.groups = 0;
    return definition;
}

} // namespace engine
