#include "engine/models/Kernels.h"

namespace engine {

Kernels const &BestKernels() {
#ifdef __x86_64__
    static Kernels const &best = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("fma") ? avx512Kernels
                                 : __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma")  ? avx2Kernels
                                                                                                    : baselineKernels;
    return best;
#else
    return baselineKernels;
#endif
}

} // namespace engine
