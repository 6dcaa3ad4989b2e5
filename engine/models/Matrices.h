#pragma once

#include <Eigen/Core>

namespace engine {

using Index = Eigen::Index;
using Matrix = Eigen::MatrixXd;
using RowMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
using Vector = Eigen::VectorXd;

} // namespace engine
