#include "engine/models/Acceleration.h"

#include <Eigen/QR>

#include <algorithm>

namespace engine {
namespace {

constexpr Index depth = 8;
constexpr double nearby = 1e-4;
constexpr int patience = 20;

void Push(Matrix &matrix, Vector const &column) {
    auto const kept = std::min(matrix.cols(), depth - 1);
    matrix = Joined(matrix.rightCols(kept), column);
}

} // namespace

// Steps become smaller for some time on the way to a component that is not the next one, too, but then they grow again
// before they are this small. Once accelerated, they may vary.
bool Acceleration::IsNear(double size) {
    auto const falls = size < m_size || m_falling >= patience;
    m_falling = falls && size < nearby ? m_falling + 1 : 0;
    m_size = size;
    return m_falling >= patience;
}

Vector Acceleration::Next(Vector const &v, Vector const &image) {
    Vector const step = image - v;
    if (!IsNear(step.norm())) {
        m_step.resize(0);
        return image;
    }
    if (m_step.size() == 0) {
        m_steps.resize(v.size(), 0);
        m_images.resize(v.size(), 0);
    } else {
        Push(m_steps, step - m_step);
        Push(m_images, image - m_image);
    }
    m_step = step;
    m_image = image;
    if (m_steps.cols() == 0)
        return image;
    Vector const parts = m_steps.colPivHouseholderQr().solve(step);
    return image - m_images * parts;
}

} // namespace engine
