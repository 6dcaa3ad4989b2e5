#include "platform/identity/VarObs.h"

#include "platform/identity/AliasAccess.h"
#include "platform/text/VqString.h"

#include <algorithm>
#include <functional>

namespace {

bool ReadsAsNumber(std::string const &text) {
    float value;
    return VqString::ToFloat(text, value);
}

bool IsBlank(std::string const &text) {
    return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

bool IsBlankOrNumber(std::string const &text) {
    return IsBlank(text) || ReadsAsNumber(text);
}

void Classify(VarObs::Alias &alias, std::string const &text) {
    if (alias.hasNumbers && alias.hasWords)
        return;
    if (ReadsAsNumber(text))
        alias.hasNumbers = true;
    else
        alias.hasWords = alias.hasWords || !IsBlank(text);
    alias.numeral = alias.hasNumbers && !alias.hasWords;
}

// `number` gives the number of an item.
template <typename Item, typename Number>
bool IsNumeral(VarObs const &list, int alias, std::span<Item const> items, Number number) {
    VarObs::Alias const *const column = list.GetAlias(alias);
    if (!column || !column->hasNumbers)
        return false;
    auto const text = [&](Item const &item) -> std::string const & {
        return list.GetText(std::invoke(number, item), alias);
    };
    return (column->numeral || std::ranges::all_of(items, IsBlankOrNumber, text)) &&
           std::ranges::any_of(items, ReadsAsNumber, text);
}

bool ComesBefore(VariableInfo const &info, std::uint32_t item) {
    return info.GetUniqueID() < item;
}

} // namespace

std::string VarObsInfo::GetBatchName(VarObs const &list) const {
    return list.GetText(m_id, list.GetBatchID());
}

std::string VarObsInfo::GetPhaseName(VarObs const &list) const {
    return list.GetText(m_id, list.GetPhaseID());
}

std::string VariableInfo::GetSourceName(NCVariables const &variables, AliasAccess const &aliases) const {
    int const alias = variables.GetSourceID(aliases);
    return alias == 0 ? sourceName : aliases.GetAlias(alias, *this);
}

ObservationInfos const &EmptyObservationInfoVector() {
    static ObservationInfos const empty;
    return empty;
}

VarObs::Alias const *VarObs::GetAlias(int alias) const {
    return alias >= 1 && alias <= SizeAliases() ? &m_aliases[static_cast<std::size_t>(alias - 1)] : nullptr;
}

std::string const &VarObs::GetText(std::uint32_t item, int alias) const {
    static std::string const none;
    Alias const *const column = GetAlias(alias);
    return column && item >= 1 && item <= column->texts.size() ? column->texts[item - 1] : none;
}

bool VarObs::HasNumeralIDs() const {
    return std::any_of(m_aliases.begin(), m_aliases.end(), [](Alias const &alias) { return alias.hasNumbers; });
}

int VarObs::AddAlias(Alias alias) {
    for (std::string const &text : alias.texts)
        Classify(alias, text);
    m_aliases.push_back(std::move(alias));
    return SizeAliases();
}

void VarObs::AddText(int alias, std::uint32_t item, std::string_view text) {
    Alias &column = m_aliases.at(static_cast<std::size_t>(alias - 1));
    if (column.texts.size() < item)
        column.texts.resize(item);
    std::string &own = column.texts[item - 1];
    if (!own.empty() || text.empty())
        return;
    own = text;
    Classify(column, own);
}

bool VarObs::IsNumeralFor(int alias, std::span<std::uint32_t const> items) const {
    return IsNumeral(*this, alias, items, std::identity());
}

bool VarObs::IsNumeralFor(int alias, std::span<ObservationInfo const> items) const {
    return IsNumeral(*this, alias, items, &ObservationInfo::GetUniqueID);
}

int VarObs::FindRole(AliasAccess const &aliases, Role role) const {
    for (int const alias : aliases.GetUsedAliases())
        if (Alias const *const column = GetAlias(alias); column && column->role == role)
            return alias;
    return 0;
}

int VarObs::FindRole(Role role) const {
    auto const found =
        std::find_if(m_aliases.begin(), m_aliases.end(), [role](Alias const &a) { return a.role == role; });
    return found == m_aliases.end() ? 0 : static_cast<int>(found - m_aliases.begin()) + 1;
}

ObservationInfo NCObservations::operator[](std::uint32_t item) const {
    return ObservationInfo(item <= Size() ? item : 0);
}

ObservationInfos NCObservations::GetInfoVector(std::span<std::uint32_t const> items) const {
    ObservationInfos infos;
    infos.reserve(items.size());
    for (std::uint32_t const item : items)
        infos.push_back((*this)[item]);
    return infos;
}

VariableInfo NCVariables::operator[](std::uint32_t item) const {
    auto const known = std::lower_bound(m_infos.begin(), m_infos.end(), item, ComesBefore);
    if (known != m_infos.end() && known->GetUniqueID() == item)
        return *known;
    return VariableInfo(item <= Size() ? item : 0);
}

void NCVariables::SetInfo(VariableInfo const &info) {
    auto const at = std::lower_bound(m_infos.begin(), m_infos.end(), info.GetUniqueID(), ComesBefore);
    if (at != m_infos.end() && at->GetUniqueID() == info.GetUniqueID())
        *at = info;
    else
        m_infos.insert(at, info);
}

VariableInfo const *NCVariables::GetDefaultTimeVariable() const {
    auto const known = std::lower_bound(m_infos.begin(), m_infos.end(), m_timeVariable, ComesBefore);
    return known != m_infos.end() && known->GetUniqueID() == m_timeVariable ? &*known : nullptr;
}
