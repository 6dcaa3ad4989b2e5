#include "platform/containers/SharedStorage.h"

#include "platform/text/Exception.h"

#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

void ThrowOutOfRange(char const *container, long long position, long long first, long long last) {
    throw NCInternalError(container, ExceptionMessage::translate("{1} is given where {2} to {3} is expected.") %
                                         position % first % last);
}

namespace {

constexpr std::align_val_t largePage{std::size_t(2) << 20};

} // namespace

void *AllocateLarge(std::size_t bytes) {
    void *const block = ::operator new(bytes, largePage);
#ifdef MADV_HUGEPAGE
    // A wish: without it the block works as well.
    madvise(block, bytes, MADV_HUGEPAGE);
#endif
    return block;
}

void ReleaseLarge(void *block) {
    ::operator delete(block, largePage);
}
