#pragma once

#include "engine/models/Matrices.h"

namespace engine {

// Speeds up a fixed-point iteration v <- g(v) of vectors of unit length once it is near its end: then the next v comes
// from the combination of the last steps g(v) - v that nearly cancels them (Anderson 1965; Walker & Ni 2011). Further
// away that would lead to whatever fixed point is near, which for NIPALS is a later component as often as not.
class Acceleration {
public:
    // The v to go on with after `image` = g(v), not of unit length.
    Vector Next(Vector const &v, Vector const &image);

private:
    bool IsNear(double size);

    // Rounds in a row whose steps became smaller.
    int m_falling = 0;
    double m_size = 1;
    // The last step and image, and differences of successive ones, the newest last.
    Vector m_step, m_image;
    Matrix m_steps, m_images;
};

} // namespace engine
