#include "platform/containers/NCDataVector.h"

#include "platform/containers/StreamBytes.h"
#include "platform/containers/observed_internal.h"

#include <numeric>

namespace {

constexpr char const *container = "NCDataVector";

} // namespace

template <typename T>
NCDataVector<T>::NCDataVector(int size, T fill) : m_storage(CheckedSize(container, size), fill) {}

template <typename T>
void NCDataVector<T>::reserve(int size) {
    m_storage.Reserve(CheckedSize(container, size));
}

template <typename T>
void NCDataVector<T>::resize(int size) {
    m_storage.Resize(CheckedSize(container, size), MissingMark);
}

template <typename T>
void NCDataVector<T>::SetAllValues(T value) {
    m_storage = SharedStorage<T>(m_storage.Size(), value);
}

template <typename T>
void NCDataVector<T>::Reduce(NCIntegralVector<int, -99> const &positions) {
    SharedStorage<T> kept;
    std::ranges::transform(positions.Values(), kept.OpenGap(0, positions.size()).begin(),
                           [this](int position) { return (*this)[position]; });
    m_storage = std::move(kept);
}

template <typename T>
void NCDataVector<T>::Sort(NCIntegralVector<int, -99> &destination, bool ascending) const {
    NCIntegralVector<int, -99> order(Size());
    std::span<int> const positions = order.MutableValues();
    std::iota(positions.begin(), positions.end(), 1);
    T const *const values = m_storage.Data();
    auto const observed = [&](int position) { return values[position - 1] != MissingMark; };
    std::span<int> const present(positions.begin(),
                                 std::stable_partition(positions.begin(), positions.end(), observed));
    auto const value = [&](int position) { return values[position - 1]; };
    if (ascending)
        std::ranges::stable_sort(present, std::ranges::less(), value);
    else
        std::ranges::stable_sort(present, std::ranges::greater(), value);
    destination = order;
}

template <typename T>
double NCDataVector<T>::GetMean() const {
    return SumObserved(m_storage.Data(), size(), 1).Mean();
}

template <typename T>
double NCDataVector<T>::GetSS() const {
    ObservedSum const total = SumObserved(m_storage.Data(), size(), 1);
    return total.count > 0 ? GetSS(total.sum / static_cast<double>(total.count)) : missingValue;
}

template <typename T>
double NCDataVector<T>::GetSS(long double center) const {
    ObservedSum const squares = SquaresObserved(m_storage.Data(), size(), 1, static_cast<double>(center));
    return squares.count > 0 ? KeepOffMissing(squares.sum) : missingValue;
}

template <typename T>
NCDataVector<T> NCDataVector<T>::operator+(NCDataVector const &other) const {
    if (other.size() != size())
        ThrowOutOfRange(container, other.Size(), Size(), Size());
    NCDataVector sum;
    auto const add = [](T a, T b) {
        return IsMissing(a) || IsMissing(b) ? MissingMark : ToStored(static_cast<double>(a) + b);
    };
    std::ranges::transform(Values(), other.Values(), sum.m_storage.OpenGap(0, size()).begin(), add);
    return sum;
}

template <typename T>
NCDataVector<T> NCDataVector<T>::operator*(double factor) const {
    NCDataVector product;
    auto const multiply = [factor](T value) { return IsMissing(value) ? MissingMark : ToStored(value * factor); };
    std::ranges::transform(Values(), product.m_storage.OpenGap(0, size()).begin(), multiply);
    return product;
}

template class NCDataVector<float>;

std::ostream &operator<<(std::ostream &stream, NCDataVector<float> const &values) {
    WriteFourByteList<float>(stream, values.Values());
    return stream;
}

std::istream &operator>>(std::istream &stream, NCDataVector<float> &values) {
    values = NCDataVector<float>(std::span<float const>(ReadFourByteList<float>(stream)));
    return stream;
}
