#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <type_traits>
#include <vector>

template <typename List>
using ItemOf = std::remove_cvref_t<decltype(*std::declval<List const &>().begin())>;

template <typename List>
std::size_t SizeOf(List const &list) {
    return static_cast<std::size_t>(std::distance(list.begin(), list.end()));
}

// Finds the 1-based places of items in a list, at cost O(1) each: open addressing with linear probing over the places
// alone. The list must live longer. An item that stands there twice is found at its first place.
template <typename List>
class PlaceOfItem {
    using Item = ItemOf<List>;

public:
    explicit PlaceOfItem(List const &list)
        : m_items(list.begin()), m_places(std::bit_ceil(2 * SizeOf(list) + 2)), m_factor(Factor(list)) {
        int place = 0;
        for (Item const &item : list) {
            ++place;
            if (int &slot = m_places[SlotOf(item)]; slot == 0)
                slot = place;
        }
    }

    // 0 when the item is absent.
    int operator()(Item const &item) const { return m_places[SlotOf(item)]; }

private:
    // Numbers are dense as a rule: where their range fits into the table each has a slot of its own, in their order,
    // which the cache likes. Others are spread by the golden ratio (Knuth 1973).
    std::uint64_t Factor(List const &list) const {
        if constexpr (std::is_integral_v<Item>) {
            if (list.begin() == list.end())
                return 1;
            auto const [smallest, largest] = std::minmax_element(list.begin(), list.end());
            if (static_cast<std::uint64_t>(static_cast<std::int64_t>(*largest) - *smallest) < m_places.size())
                return 1;
        }
        return 0x9e3779b97f4a7c15ULL;
    }

    std::size_t Hash(Item const &item) const {
        std::uint64_t hash;
        if constexpr (std::is_integral_v<Item>)
            hash = static_cast<std::uint32_t>(item);
        else if constexpr (requires { item.Hash(); })
            hash = item.Hash();
        else
            hash = std::hash<Item>()(item);
        hash *= m_factor;
        return hash ^ (hash >> 32);
    }

    // The slot that holds the item, or the empty one where it would stand.
    std::size_t SlotOf(Item const &item) const {
        std::size_t const mask = m_places.size() - 1;
        std::size_t slot = Hash(item) & mask;
        while (m_places[slot] != 0 && !(m_items[m_places[slot] - 1] == item))
            slot = (slot + 1) & mask;
        return slot;
    }

    decltype(std::declval<List const &>().begin()) m_items;
    std::vector<int> m_places;
    std::uint64_t m_factor;
};
