#include "platform/identity/ColumnTerm.h"

#include "platform/containers/Missing.h"
#include "platform/identity/AliasAccess.h"
#include "platform/identity/VarObs.h"

#include <algorithm>
#include <functional>
#include <istream>
#include <locale>
#include <ostream>
#include <unordered_set>

namespace {

std::string LevelName(VariableInfo const &variable, int setting) {
    auto const place = static_cast<std::size_t>(setting) - 1;
    return place < variable.levels.size() ? variable.levels[place] : std::to_string(setting);
}

} // namespace

ColumnTerm::ColumnTerm(std::uint32_t mother, int lag) : m_factors{{mother, lag, 0}} {}

ColumnTerm::ColumnTerm(std::vector<std::uint32_t> mothers, std::vector<int> lags, std::vector<int> settings) {
    lags.resize(mothers.size());
    settings.resize(mothers.size());
    m_factors.reserve(mothers.size());
    for (std::size_t i = 0; i < mothers.size(); ++i)
        m_factors.push_back({mothers[i], lags[i], settings[i]});
}

ColumnTerm::FactorOfTerm ColumnTerm::Factor(int position) const {
    return position >= 1 && position <= Size() ? m_factors[static_cast<std::size_t>(position - 1)] : FactorOfTerm();
}

std::string ColumnTerm::GetName(NCVariables const &variables, int alias, AliasAccess const &aliases) const {
    std::string name;
    for (FactorOfTerm const &factor : m_factors) {
        if (!name.empty())
            name += '*';
        name += factor.mother == Constant ? "Constant" : aliases.GetAlias(alias, variables[factor.mother]);
        if (factor.lag != 0)
            name += ".L" + std::to_string(factor.lag);
        if (factor.setting != 0)
            name += "(" + LevelName(variables[factor.mother], factor.setting) + ")";
    }
    return name;
}

std::string ColumnTerm::GetPrimaryName(NCVariables const &variables) const {
    return GetName(variables, 1, AliasAccess({1}, variables));
}

std::uint32_t ColumnTerm::GetVariableFromObsLevelInBatchLevel(NCVariables const &variables) const {
    VariableInfo const variable = variables[GetMotherVariable(1)];
    return IsMissing(variable.GetMaturity()) ? 0 : variable.GetUniqueID();
}

std::size_t ColumnTerm::Hash() const {
    std::size_t hash = m_factors.size();
    auto const mix = [&hash](std::size_t value) { hash ^= value + 0x9e3779b97f4a7c15ULL + (hash << 6) + (hash >> 2); };
    for (FactorOfTerm const &factor : m_factors) {
        mix(factor.mother);
        mix(static_cast<std::size_t>(factor.lag));
        mix(static_cast<std::size_t>(factor.setting));
    }
    return hash;
}

std::ostream &operator<<(std::ostream &stream, ColumnTerm const &term) {
    // Not through the stream's own locale, which may group digits.
    std::string text = std::to_string(term.m_factors.size());
    for (auto const &factor : term.m_factors)
        text += ' ' + std::to_string(factor.mother) + ' ' + std::to_string(factor.lag) + ' ' +
                std::to_string(factor.setting);
    return stream << text;
}

std::istream &operator>>(std::istream &stream, ColumnTerm &term) {
    term.Clear();
    std::locale const before = stream.imbue(std::locale::classic());
    std::size_t size = 0;
    stream >> size;
    for (ColumnTerm::FactorOfTerm factor; size > 0 && stream >> factor.mother >> factor.lag >> factor.setting; --size)
        term.m_factors.push_back(factor);
    if (!stream)
        term.Clear();
    stream.imbue(before);
    return stream;
}

int ColumnTerms::Find(ColumnTerm const &term) const {
    auto const found = std::find(m_terms.begin(), m_terms.end(), term);
    return found == m_terms.end() ? -1 : static_cast<int>(found - m_terms.begin()) + 1;
}

int ColumnTerms::FindFirst(unsigned variable) const {
    auto const isOf = [variable](ColumnTerm const &term) { return term.GetMotherVariable(1) == variable; };
    auto const found = std::find_if(m_terms.begin(), m_terms.end(), isOf);
    return found == m_terms.end() ? -1 : static_cast<int>(found - m_terms.begin()) + 1;
}

std::vector<std::uint32_t> ColumnTerms::GetLaggedColumnTermMothers() const {
    std::vector<std::uint32_t> mothers;
    std::unordered_set<std::uint32_t> known;
    for (ColumnTerm const &term : m_terms)
        for (int position = 1; position <= term.Size(); ++position)
            if (term.GetLag(position) != 0 && known.insert(term.GetMotherVariable(position)).second)
                mothers.push_back(term.GetMotherVariable(position));
    return mothers;
}
