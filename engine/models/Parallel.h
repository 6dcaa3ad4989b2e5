#pragma once

#include "engine/Progress.h"

#include <cstddef>
#include <functional>

namespace engine {

// Starts a thread that is not joined. Throws std::system_error when there can be no more.
void StartThread(std::function<void()> run);

// Calls work(0), ..., work(count - 1), spread over the processors in any order; a call must touch nothing that another
// one writes. Reports progress from the calling thread. What a call or the report throws is thrown on when all running
// calls have ended; those not yet begun are dropped. Inside of such a call further ones run one after the other.
// When no more threads can be made, those that there are do all.
void InParallel(std::size_t count, std::function<void(std::size_t)> const &work, Progress const &progress = {},
                void (*start)(std::function<void()>) = StartThread);

} // namespace engine
