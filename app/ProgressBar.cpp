#include "app/ProgressBar.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <unistd.h>

ProgressBar::ProgressBar(std::string label)
    : m_label(std::move(label)), m_isTerminal(isatty(STDERR_FILENO) == 1),
      m_next(Clock::now() + std::chrono::milliseconds(500)) {}

ProgressBar::~ProgressBar() {
    if (m_isShown)
        std::fputs("\r\033[K", stderr);
}

engine::Progress ProgressBar::Listener() {
    return engine::Progress([this](double fraction) {
        if (m_isTerminal && Clock::now() >= m_next)
            Show(fraction);
        return !Interrupt::Asked();
    });
}

void ProgressBar::Show(double fraction) {
    constexpr int width = 40;
    int const done = static_cast<int>(std::lround(width * std::clamp(fraction, 0.0, 1.0)));
    std::fprintf(stderr, "\r%s [%s%s] %3d %%", m_label.c_str(),
                 std::string(static_cast<std::size_t>(done), '#').c_str(),
                 std::string(static_cast<std::size_t>(width - done), ' ').c_str(), done * 100 / width);
    std::fflush(stderr);
    m_isShown = true;
    m_next = Clock::now() + std::chrono::milliseconds(100);
}
