#pragma once

#include "platform/export.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <type_traits>
#include <utility>

// Throws NCInternalError: `position` is outside `first` to `last` of `container`.
[[noreturn]] DATASERIES_API void ThrowOutOfRange(char const *container, long long position, long long first,
                                                 long long last);

// A size given as int, checked to be no negative number (NCInternalError).
inline std::size_t CheckedSize(char const *container, int size) {
    if (size < 0)
        ThrowOutOfRange(container, size, 0, 0x7fffffff);
    return static_cast<std::size_t>(size);
}

// The 0-based offset of a 1-based position, checked against the number of elements (NCInternalError).
inline std::size_t CheckedOffset(char const *container, int position, std::size_t size) {
    if (position < 1 || static_cast<std::size_t>(position) > size)
        ThrowOutOfRange(container, position, 1, static_cast<long long>(size));
    return static_cast<std::size_t>(position) - 1;
}

// Memory for blocks of LargeBlock bytes and more.
constexpr std::size_t LargeBlock = std::size_t(32) << 20;
DATASERIES_API void *AllocateLarge(std::size_t bytes);
DATASERIES_API void ReleaseLarge(void *block);

// Contiguous elements that copies share until one of them is written. A copy is O(1); reading is one indirection and
// never separates; each mutating operation first gives this object its own elements. Offsets count from 0 and are not
// checked here.
//
// A reference or span got from Write() is good until this object is next copied or changed: what is written through it
// after a copy would be seen by the copy.
template <typename T>
class SharedStorage {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    SharedStorage() = default;
    SharedStorage(std::size_t size, T fill) { Resize(size, fill); }
    explicit SharedStorage(std::span<T const> values) { Insert(0, values); }
    SharedStorage(SharedStorage const &other) = default;
    SharedStorage(SharedStorage &&other) noexcept { Swap(other); }
    SharedStorage &operator=(SharedStorage other) noexcept {
        Swap(other);
        return *this;
    }

    std::size_t Size() const { return m_size; }
    T const *Data() const { return m_block.get(); }
    std::span<T const> Values() const { return {Data(), m_size}; }

    // True means equal without a walk; two objects that were filled separately answer false, be they equal or not.
    bool SharesStorageWith(SharedStorage const &other) const {
        return m_block == other.m_block && m_size == other.m_size;
    }
    // Another object has the same elements, so that writing would copy them.
    bool IsShared() const { return m_block.use_count() > 1; }
    bool operator==(SharedStorage const &other) const {
        return SharesStorageWith(other) || std::ranges::equal(Values(), other.Values());
    }

    // Gives this object its own elements.
    void Unlink() {
        if (m_block.use_count() > 1)
            Reallocate(m_size);
    }

    std::span<T> Write() {
        Unlink();
        return {m_block.get(), m_size};
    }

    // Room for `capacity` elements without another allocation.
    void Reserve(std::size_t capacity) {
        if (capacity > m_capacity || m_block.use_count() > 1)
            Reallocate(std::max(capacity, m_size));
    }

    void Resize(std::size_t size, T fill) {
        if (size > m_size)
            std::ranges::fill(OpenGap(m_size, size - m_size), fill);
        else
            m_size = size;
    }

    void Clear() { *this = SharedStorage(); }

    // Opens `count` elements before `offset` for the caller to fill.
    std::span<T> OpenGap(std::size_t offset, std::size_t count) {
        std::size_t const size = m_size + count;
        if (size > m_capacity)
            Reallocate(std::max(size, m_capacity + m_capacity / 2));
        else if (m_block.use_count() > 1)
            Reallocate(m_capacity);
        T *const gap = m_block.get() + offset;
        std::copy_backward(gap, m_block.get() + m_size, m_block.get() + size);
        m_size = size;
        return {gap, count};
    }

    // `values` may be elements of this object.
    void Insert(std::size_t offset, std::span<T const> values) {
        bool const within =
            std::less_equal<>()(Data(), values.data()) && std::less<>()(values.data(), Data() + m_capacity);
        if (within)
            Insert(offset, SharedStorage(values).Values());
        else
            std::ranges::copy(values, OpenGap(offset, values.size()).begin());
    }

    // Keeps the first `size` elements; memory that this leaves unused for the most part is given back.
    void Truncate(std::size_t size) {
        m_size = size;
        if (size < m_capacity / 2)
            Reallocate(size);
    }

    void Remove(std::size_t offset, std::size_t count) {
        Unlink();
        T *const first = m_block.get() + offset;
        std::copy(first + count, m_block.get() + m_size, first);
        m_size -= count;
    }

private:
    void Swap(SharedStorage &other) noexcept {
        m_block.swap(other.m_block);
        std::swap(m_size, other.m_size);
        std::swap(m_capacity, other.m_capacity);
    }

    // Uninitialised. The pages of a large one are large too where the system has such: to get each for the first time
    // costs as much as to fill it.
    static std::shared_ptr<T[]> NewBlock(std::size_t capacity) {
        if (capacity * sizeof(T) < LargeBlock)
            return std::make_shared_for_overwrite<T[]>(capacity);
        return std::shared_ptr<T[]>(static_cast<T *>(AllocateLarge(capacity * sizeof(T))), ReleaseLarge);
    }

    void Reallocate(std::size_t capacity) {
        std::shared_ptr<T[]> block = NewBlock(capacity);
        std::copy_n(m_block.get(), m_size, block.get());
        m_block = std::move(block);
        m_capacity = capacity;
    }

    std::shared_ptr<T[]> m_block;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};
