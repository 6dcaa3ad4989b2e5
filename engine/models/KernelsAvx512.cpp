#define DATASERIES_LANES 8
#include "engine/models/KernelLoops.h"

namespace engine {

extern Kernels const avx512Kernels = compiledKernels;

} // namespace engine
