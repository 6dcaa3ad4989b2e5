#include "app/Interrupt.h"

#include "engine/Progress.h"

#include <atomic>

namespace {

constexpr int signals[] = {SIGINT, SIGTERM};

std::atomic<bool> asked = false;
bool isWatched = false;

} // namespace

Interrupt::Interrupt() : m_outermost(!isWatched) {
    if (!m_outermost)
        return;
    isWatched = true;
    struct sigaction action = {};
    action.sa_handler = [](int) { asked = true; };
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (int i = 0; i < 2; ++i)
        sigaction(signals[i], &action, &m_previous[i]);
}

Interrupt::~Interrupt() {
    if (!m_outermost)
        return;
    for (int i = 0; i < 2; ++i)
        sigaction(signals[i], &m_previous[i], nullptr);
    isWatched = false;
}

bool Interrupt::Asked() {
    return asked;
}

void Interrupt::Check() {
    if (asked)
        throw engine::Cancelled();
}
