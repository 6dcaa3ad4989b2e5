#include "platform/identity/AliasAccess.h"

#include "platform/identity/VarObs.h"
#include "platform/text/VqString.h"

#include <algorithm>
#include <iterator>
#include <numeric>

AliasAccess::AliasAccess(VarObs const &list) : m_list(&list), m_aliases(static_cast<std::size_t>(list.SizeAliases())) {
    std::iota(m_aliases.begin(), m_aliases.end(), 1);
}

AliasAccess::AliasAccess(std::vector<int> const &aliases, VarObs const &list) : m_list(&list) {
    for (int const alias : aliases)
        if (list.GetAlias(alias))
            m_aliases.push_back(alias);
}

template <typename Items>
AliasAccess AliasAccess::DecidedBy(Items items) const {
    AliasAccess decided(*this);
    decided.m_numerals.emplace();
    std::ranges::copy_if(m_aliases, std::back_inserter(*decided.m_numerals),
                         [&](int alias) { return m_list->IsNumeralFor(alias, items); });
    return decided;
}

AliasAccess AliasAccess::Of(std::span<std::uint32_t const> items) const {
    return DecidedBy(items);
}

AliasAccess AliasAccess::Of(std::span<ObservationInfo const> items) const {
    return DecidedBy(items);
}

std::string const &AliasAccess::GetAlias(int alias, VarObsInfo const &item) const {
    return m_list->GetText(item.GetUniqueID(), alias);
}

std::string const &AliasAccess::GetPreferredAlias(int alias, VarObsInfo const &item) const {
    bool const chosen = std::find(m_aliases.begin(), m_aliases.end(), alias) != m_aliases.end();
    return GetAlias(chosen || m_aliases.empty() ? alias : m_aliases.front(), item);
}

float AliasAccess::GetAliasAsFloat(int alias, VarObsInfo const &item) const {
    float value;
    return VqString::ToFloat(GetAlias(alias, item), value) ? value : missingValue;
}

NCDataVector<float> AliasAccess::GetNumeralValues(int alias, std::span<std::uint32_t const> items) const {
    NCDataVector<float> values(static_cast<int>(items.size()));
    std::ranges::transform(items, values.MutableValues().begin(),
                           [&](std::uint32_t item) { return GetAliasAsFloat(alias, VarObsInfo(item)); });
    return values;
}

std::string AliasAccess::GetAliasNameWithDescription(int alias) const {
    VarObs::Alias const *const column = m_list->GetAlias(alias);
    if (!column)
        return {};
    return column->description.empty() ? column->name : column->name + " (" + column->description + ")";
}

std::string AliasAccess::GetRawAliasName(int alias) const {
    VarObs::Alias const *const column = m_list->GetAlias(alias);
    return column ? column->name : std::string();
}

bool AliasAccess::IsAliasNumeral(int alias) const {
    if (m_numerals)
        return std::find(m_numerals->begin(), m_numerals->end(), alias) != m_numerals->end();
    VarObs::Alias const *const column = m_list->GetAlias(alias);
    return column && column->numeral;
}
