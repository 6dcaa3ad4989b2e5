#define DATASERIES_LANES 4
#include "engine/models/KernelLoops.h"

namespace engine {

extern Kernels const avx2Kernels = compiledKernels;

} // namespace engine
