#include "platform/containers/NCIntegralVector.h"

#include "platform/containers/StreamBytes.h"
#include "platform/containers/runs_internal.h"

#include <functional>
#include <istream>
#include <locale>
#include <ostream>

namespace {

constexpr char const *container = "NCIntegralVector";

} // namespace

template <typename T, int Missing>
NCIntegralVector<T, Missing>::NCIntegralVector(int size, value_type fill)
    : m_storage(CheckedSize(container, size), fill) {}

template <typename T, int Missing>
void NCIntegralVector<T, Missing>::reserve(int size) {
    m_storage.Reserve(CheckedSize(container, size));
}

template <typename T, int Missing>
void NCIntegralVector<T, Missing>::resize(int size) {
    m_storage.Resize(CheckedSize(container, size), MissingMark);
}

template <typename T, int Missing>
void NCIntegralVector<T, Missing>::SetAllValues(value_type value) {
    m_storage = SharedStorage<value_type>(m_storage.Size(), value);
}

template <typename T, int Missing>
void NCIntegralVector<T, Missing>::SetRange(int from, int to, value_type value) {
    std::size_t const offset = CheckedOffset(container, from, size() + 1);
    if (to < from - 1 || to > Size())
        ThrowOutOfRange(container, to, from - 1, Size());
    std::ranges::fill(m_storage.Write().subspan(offset, static_cast<std::size_t>(to) - offset), value);
}

template <typename T, int Missing>
void NCIntegralVector<T, Missing>::InsertValues(int at, int count, value_type value) {
    std::size_t const offset = CheckedOffset(container, at, size() + 1);
    std::ranges::fill(m_storage.OpenGap(offset, CheckedSize(container, count)), value);
}

template <typename T, int Missing>
void NCIntegralVector<T, Missing>::RemoveValues(int at, int count) {
    std::size_t const offset = CheckedOffset(container, at, size() + 1);
    std::size_t const removed = CheckedSize(container, count);
    if (removed > size() - offset)
        ThrowOutOfRange(container, count, 0, static_cast<long long>(size() - offset));
    m_storage.Remove(offset, removed);
}

template <typename T, int Missing>
void NCIntegralVector<T, Missing>::Reduce(NCIntegralVector<int, -99> const &positions) {
    SharedStorage<value_type> kept;
    auto to = kept.OpenGap(0, positions.size()).begin();
    for (std::span<int const> rest = positions.Values(); !rest.empty();) {
        std::size_t const length = RunLength(rest);
        std::size_t const first = Offset(rest.front());
        Offset(rest[length - 1]);
        to = std::copy_n(m_storage.Data() + first, length, to);
        rest = rest.subspan(length);
    }
    m_storage = std::move(kept);
}

template <typename T, int Missing>
int NCIntegralVector<T, Missing>::Find(value_type value, SortKind::Kind kind, int from, int to) const {
    const_iterator const first = begin() + std::clamp(from - 1, 0, Size());
    const_iterator const last = std::max(first, begin() + (to < 0 ? Size() : std::min(to, Size())));
    const_iterator found = nullptr;
    if (kind == SortKind::Unsorted)
        found = std::find(first, last, value);
    else if (kind == SortKind::Ascending)
        found = std::lower_bound(first, last, value);
    else
        found = std::lower_bound(first, last, value, std::greater<>());
    return found != last && *found == value ? static_cast<int>(found - begin()) + 1 : -1;
}

template <typename T, int Missing>
int NCIntegralVector<T, Missing>::LowerBound(value_type value, bool ascending) const {
    const_iterator const found =
        ascending ? std::lower_bound(begin(), end(), value) : std::lower_bound(begin(), end(), value, std::greater<>());
    return static_cast<int>(found - begin()) + 1;
}

template class NCIntegralVector<unsigned long, 0>;
template class NCIntegralVector<int, -99>;
template class NCIntegralVector<bool, 0>;

std::ostream &operator<<(std::ostream &stream, NCIntegralVector<unsigned long, 0> const &values) {
    WriteFourByteList<std::uint32_t>(stream, values.Values());
    return stream;
}

std::istream &operator>>(std::istream &stream, NCIntegralVector<unsigned long, 0> &values) {
    values =
        NCIntegralVector<unsigned long, 0>(std::span<std::uint32_t const>(ReadFourByteList<std::uint32_t>(stream)));
    return stream;
}

std::ostream &operator<<(std::ostream &stream, NCIntegralVector<bool, 0> const &flags) {
    stream << std::to_string(flags.Size()) << ' ';
    for (bool const flag : flags)
        stream.put(flag ? '1' : '0');
    return stream;
}

std::istream &operator>>(std::istream &stream, NCIntegralVector<bool, 0> &flags) {
    int size = 0;
    std::locale const before = stream.imbue(std::locale::classic()); // another one may group digits by blanks
    bool whole = stream >> size && size >= 0 && stream.get() == ' ';
    NCIntegralVector<bool, 0> read;
    while (whole && read.Size() < size) {
        int const digit = stream.get();
        whole = digit == '0' || digit == '1';
        read.push_back(digit == '1');
    }
    if (whole)
        flags = read;
    else
        stream.setstate(std::ios::failbit);
    stream.imbue(before);
    return stream;
}
