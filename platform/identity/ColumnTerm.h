#pragma once

#include "platform/containers/SharedStorage.h"
#include "platform/export.h"
#include "platform/forward.h"

#include <compare>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

// One term of a model: a variable, possibly lagged, or a product of several of them, or one level of a qualitative
// variable. Each factor has its mother variable (the number of the variable in the project), a lag in observations (0
// without) and a qualitative setting (the 1-based level, 0 for a quantitative factor).
class DATASERIES_API ColumnTerm {
public:
    // The mother that stands for the constant of a regression equation.
    static constexpr std::uint32_t Constant = 0xC271D502;

    ColumnTerm() = default;
    explicit ColumnTerm(std::uint32_t mother, int lag = 0);

    // Lists of different length are filled up with 0.
    ColumnTerm(std::vector<std::uint32_t> mothers, std::vector<int> lags, std::vector<int> settings);

    bool operator==(ColumnTerm const &) const = default;

    void Clear() { *this = ColumnTerm(); }
    int Size() const { return static_cast<int>(m_factors.size()); }

    // Of the factor at a 1-based position; 0 outside.
    std::uint32_t GetMotherVariable(int position) const { return Factor(position).mother; }
    int GetLag(int position) const { return Factor(position).lag; }
    int GetQualSetting(int position) const { return Factor(position).setting; }

    // The label in the given alias of the variables: "length", "length.L2" (two rows earlier), "length*width",
    // "colour(red)" (a level; "colour(2)" where it has no text), and "Constant" for the constant.
    std::string GetName(NCVariables const &variables, int alias, AliasAccess const &aliases) const;
    std::string GetPrimaryName(NCVariables const &variables) const;

    // The variable of a batch-level term that holds what the observation level had at one aligned point; 0 for any
    // other term.
    std::uint32_t GetVariableFromObsLevelInBatchLevel(NCVariables const &variables) const;

    std::size_t Hash() const;

    // Text form "mother lag setting ..." with the count of factors in front. Text that is no term gives the term
    // without factors and sets the stream's failbit.
    friend DATASERIES_API std::ostream &operator<<(std::ostream &, ColumnTerm const &);
    friend DATASERIES_API std::istream &operator>>(std::istream &, ColumnTerm &);

private:
    struct FactorOfTerm {
        std::uint32_t mother = 0;
        int lag = 0;
        int setting = 0;
        bool operator==(FactorOfTerm const &) const = default;
    };

    FactorOfTerm Factor(int position) const;

    std::vector<FactorOfTerm> m_factors;
};

// An ordered list of terms, positions from 1.
class DATASERIES_API ColumnTerms {
public:
    ColumnTerms() = default;
    explicit ColumnTerms(std::vector<ColumnTerm> terms) : m_terms(std::move(terms)) {}

    bool operator==(ColumnTerms const &) const = default;

    int Size() const { return static_cast<int>(m_terms.size()); }
    // A position outside the list is misuse (NCInternalError).
    ColumnTerm const &operator[](int position) const {
        return m_terms[CheckedOffset("ColumnTerms", position, m_terms.size())];
    }
    void AppendTerm(ColumnTerm term) { m_terms.push_back(std::move(term)); }

    // The 1-based position of the term; -1 when it is absent.
    int Find(ColumnTerm const &term) const;
    // The position of the first term that has the variable as its first mother; -1 when there is none.
    int FindFirst(unsigned variable) const;

    // The mothers of all terms with a lag, each once, in order of appearance.
    std::vector<std::uint32_t> GetLaggedColumnTermMothers() const;

    auto begin() const { return m_terms.begin(); }
    auto end() const { return m_terms.end(); }

private:
    std::vector<ColumnTerm> m_terms;
};
