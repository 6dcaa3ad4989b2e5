#define DATASERIES_LANES 2
#include "engine/models/KernelLoops.h"

namespace engine {

extern Kernels const baselineKernels = compiledKernels;

} // namespace engine
