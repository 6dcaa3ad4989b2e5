#pragma once

// Three-valued flag of the statistics: no, yes, or what the layer below holds for the default.
struct TriState {
    enum State : int { No = 0, Yes = 1, Undefined = 2 };
};
