#pragma once

#include <Eigen/Core>

namespace engine {

using Index = Eigen::Index;
using Matrix = Eigen::MatrixXd;
using RowMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
using Vector = Eigen::VectorXd;

// Neighbouring rows, from 0.
struct RowRange {
    Index first = 0;
    Index count = 0;
};

// The columns of both.
inline Matrix Joined(Matrix const &left, Matrix const &right) {
    Matrix joined(left.rows(), left.cols() + right.cols());
    joined.leftCols(left.cols()) = left;
    joined.rightCols(right.cols()) = right;
    return joined;
}

} // namespace engine
