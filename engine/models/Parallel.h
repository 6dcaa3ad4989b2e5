#pragma once

#include "engine/Progress.h"

#include <cstddef>
#include <functional>

namespace engine {

// Calls work(0), ..., work(count - 1), spread over the processors in any order; a call must touch nothing that another
// one writes. Reports progress from the calling thread. What a call or the report throws is thrown on when all running
// calls have ended; those not yet begun are dropped. Inside of such a call further ones run one after the other.
void InParallel(std::size_t count, std::function<void(std::size_t)> const &work, Progress const &progress = {});

} // namespace engine
