#pragma once

#include "platform/containers/NCDataVector.h"
#include "platform/export.h"
#include "platform/forward.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

// A choice among the identifier columns of a list of variables or observations, and the way to their texts. Holds on to
// the list, which must live longer.
class DATASERIES_API AliasAccess {
public:
    // All aliases of the list.
    explicit AliasAccess(VarObs const &list);
    // The aliases with these 1-based numbers, the first being the preferred one. Unknown numbers are dropped.
    AliasAccess(std::vector<int> const &aliases, VarObs const &list);
    // The same aliases, of which those are numeral that have numbers, and else blanks only, for these items: those of a
    // data set, whatever other items of the list have.
    AliasAccess Of(std::span<std::uint32_t const> items) const;
    AliasAccess Of(std::span<ObservationInfo const> items) const;

    int SizeAliases() const { return static_cast<int>(m_aliases.size()); }
    std::vector<int> const &GetUsedAliases() const { return m_aliases; }

    // The text of an item in the alias with this number; empty when there is none.
    std::string const &GetAlias(int alias, VarObsInfo const &item) const;
    // In the first chosen alias, when `alias` is not among them.
    std::string const &GetPreferredAlias(int alias, VarObsInfo const &item) const;
    // -99.0 when the text does not read as a number.
    float GetAliasAsFloat(int alias, VarObsInfo const &item) const;
    // One value for each item, by number.
    NCDataVector<float> GetNumeralValues(int alias, std::span<std::uint32_t const> items) const;

    // The heading, with its description in brackets where it has one.
    std::string GetAliasNameWithDescription(int alias) const;
    std::string GetRawAliasName(int alias) const;
    bool IsAliasNumeral(int alias) const;

private:
    template <typename Items>
    AliasAccess DecidedBy(Items items) const;

    VarObs const *m_list;
    std::vector<int> m_aliases;
    std::optional<std::vector<int>> m_numerals; // those that are numeral for certain items; none: for all
};
