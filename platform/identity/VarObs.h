#pragma once

#include "platform/export.h"
#include "platform/forward.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// One item of a project's list of variables or observations. Its texts stay in the list.
class DATASERIES_API VarObsInfo {
public:
    VarObsInfo() = default;
    explicit VarObsInfo(std::uint32_t id) : m_id(id) {}

    bool operator==(VarObsInfo const &) const = default;

    // The number of the item in the project, from 1; 0 for no item.
    std::uint32_t GetUniqueID() const { return m_id; }
    // The number by which an item is told in a row of numbers, whatever the alias: floats hold it exactly up to 2^24.
    std::uint32_t GetUserFloatID(int) const { return m_id; }

    // The batch and the phase of the item; empty where the list has no such identifier.
    std::string GetBatchName(VarObs const &list) const;
    std::string GetPhaseName(VarObs const &list) const;

private:
    std::uint32_t m_id = 0;
};

class DATASERIES_API ObservationInfo : public VarObsInfo {
public:
    using VarObsInfo::VarObsInfo;
};

class DATASERIES_API VariableInfo : public VarObsInfo {
public:
    using VarObsInfo::VarObsInfo;

    // 0 an ordinary variable, 1 to 13 special ones (time, maturity, batch, ...), 14 to 19 results of another model used
    // as a variable.
    enum Result : int { Score = 14, PredictedY = 15, Distance = 16, T2 = 17, Residual = 18, OrthogonalScore = 19 };
    static bool IsResult(int kind) { return kind >= Score && kind <= OrthogonalScore; }

    int kind = 0;
    float maturity = -99.0f; // of a batch-level variable: its aligned point; -99.0 for others
    std::string sourceName;  // of a batch-level variable: the lower-level variable or score behind it
    int lowerModel = 0;      // of a hierarchical variable: the model whose result it is
    int lowerComponent = 0;  // and the component of that result, from 1; 0 where it has none
    bool dateTime = false;
    std::vector<std::string> levels; // of a qualitative variable: the texts of its settings, from 1

    bool IsHierarchical() const { return IsResult(kind); }
    float GetMaturity() const { return maturity; }
    std::string GetSourceName(NCVariables const &variables, AliasAccess const &aliases) const;
};

template <typename Info>
using VarObsInfoVector = std::vector<Info>;

using ObservationInfos = VarObsInfoVector<ObservationInfo>;

// The shared empty list.
DATASERIES_API ObservationInfos const &EmptyObservationInfoVector();

// Identifiers of the variables or observations of a project: columns of text, the aliases, numbered from 1. Alias 1 is
// the primary identifier, and unlike in the list. Items are numbered from 1.
class DATASERIES_API VarObs {
public:
    enum class Role { Plain, Batch, Phase, Maturity, Source };

    struct Alias {
        std::string name;        // heading of the column
        std::string description; // empty, or what the heading stands for
        Role role = Role::Plain;
        std::vector<std::string> texts; // item i at i - 1; a shorter list leaves the rest empty
        bool hasNumbers = false;        // a text reads as a number
        bool numeral = false;           // and every other one that is not blank, too
        bool hasWords = false;          // a text is neither a number nor blank
    };

    std::uint32_t Size() const { return m_aliases.empty() ? 0 : static_cast<std::uint32_t>(m_aliases[0].texts.size()); }
    int SizeAliases() const { return static_cast<int>(m_aliases.size()); }

    // The alias at a 1-based number; an alias or an item outside the list has the empty text.
    Alias const *GetAlias(int alias) const;
    std::string const &GetText(std::uint32_t item, int alias) const;

    // At least one alias has numbers. Whether it is numeral for the items of a data set is up to these alone, so that
    // it stays so when data with other texts come in.
    bool HasNumeralIDs() const;
    // For these items the alias has a number, and else numbers and blanks only.
    bool IsNumeralFor(int alias, std::span<std::uint32_t const> items) const;
    bool IsNumeralFor(int alias, std::span<ObservationInfo const> items) const;

    // The number of the alias with that role; 0 when there is none. The aliases limit which are looked at.
    int GetBatchID(AliasAccess const &aliases) const { return FindRole(aliases, Role::Batch); }
    int GetPhaseID(AliasAccess const &aliases) const { return FindRole(aliases, Role::Phase); }
    // Among all aliases.
    int GetBatchID() const { return FindRole(Role::Batch); }
    int GetPhaseID() const { return FindRole(Role::Phase); }

    // Appends an alias and decides whether it has numbers, and is numeral. Answers its number.
    int AddAlias(Alias alias);
    // Gives an item its text of an alias; nothing happens where it has one. The list grows up to an item that is new.
    void AddText(int alias, std::uint32_t item, std::string_view text);
    void SetRole(int alias, Role role) { m_aliases.at(static_cast<std::size_t>(alias - 1)).role = role; }

protected:
    int FindRole(AliasAccess const &aliases, Role role) const;

private:
    int FindRole(Role role) const;

    std::vector<Alias> m_aliases;
};

class DATASERIES_API NCObservations : public VarObs {
public:
    // No item (number 0) for a number outside the list.
    ObservationInfo operator[](std::uint32_t item) const;
    ObservationInfos GetInfoVector(std::span<std::uint32_t const> items) const;
};

class DATASERIES_API NCVariables : public VarObs {
public:
    // No item (number 0) for a number outside the list.
    VariableInfo operator[](std::uint32_t item) const;

    // Replaces what is known of the variable with this number beside its identifiers.
    void SetInfo(VariableInfo const &info);

    // The variable that holds the time of an observation unless another is chosen; null when there is none. Its info
    // must be set first.
    VariableInfo const *GetDefaultTimeVariable() const;
    void SetDefaultTimeVariable(std::uint32_t item) { m_timeVariable = item; }

    int GetMaturityID(AliasAccess const &aliases) const { return FindRole(aliases, Role::Maturity); }
    int GetSourceID(AliasAccess const &aliases) const { return FindRole(aliases, Role::Source); }

private:
    std::vector<VariableInfo> m_infos; // those that are more than their number, rising
    std::uint32_t m_timeVariable = 0;
};
