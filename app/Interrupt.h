#pragma once

#include <csignal>

// While one lives, Ctrl-C (or a request to end) asks the work to stop cleanly instead of ending the program. A second
// one ends it at once. Only the outermost of several counts.
class Interrupt {
public:
    Interrupt();
    ~Interrupt();
    Interrupt(Interrupt const &) = delete;
    Interrupt &operator=(Interrupt const &) = delete;

    static bool Asked();
    // Throws Cancelled when it was asked.
    static void Check();

private:
    bool m_outermost;
    struct sigaction m_previous[2];
};
