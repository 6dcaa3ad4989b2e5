#pragma once

#include "app/Interrupt.h"
#include "engine/Progress.h"

#include <chrono>
#include <string>

// Shows how far long work is on standard error, when that is a terminal and the work takes longer than half a second,
// and lets Ctrl-C cancel it. Gone from the screen with the object.
class ProgressBar {
public:
    explicit ProgressBar(std::string label);
    ~ProgressBar();

    // For the work; good as long as this object lives.
    engine::Progress Listener();

private:
    using Clock = std::chrono::steady_clock;

    void Show(double fraction);

    Interrupt m_interrupt;
    std::string m_label;
    bool m_isTerminal;
    bool m_isShown = false;
    Clock::time_point m_next;
};
