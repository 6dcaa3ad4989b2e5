#pragma once

#include "engine/statistics/Handlers.h"
#include "platform/numerics/Wavelet.h"

namespace engine {

// Statistics of models of wavelet coefficients at the variables that the coefficients were made of: with orthonormal
// wavelets Psi and a value v for each coefficient, Psi v (Trygg & Wold 1998). Where an operation asks for it: by its
// flag Reconstruct, which by itself is on exactly when all X terms are coefficients as they are. Contributions stay
// those of coefficients: they are products of two values for each.
class Reconstruction {
public:
    // Nothing where none is asked for, or there is nothing to reconstruct.
    static std::optional<Reconstruction> Of(Call const &call, Subject const &subject);

    // The arguments of the call with values in unscaled units.
    std::vector<Argument> const &Arguments() const { return m_arguments; }

    // The variables in place of the coefficients; other columns stay.
    ColumnIDs Columns(ColumnIDs const &columns) const;
    // Absent coefficients and missing values count as 0.
    TablePtr Table(TablePtr table) const;

private:
    // What is done to the value of a coefficient before it goes back, by the weight with which it was scaled.
    enum class Factor { One, OverWeight, TimesWeight };
    // Whether squares go back, the root of whose sum is the answer: sizes that add up like variances.
    struct Form {
        Factor factor = Factor::One;
        bool ofSquares = false;
    };
    struct Asked {
        Form form;
        std::size_t flag = 0; // place of the flag among the arguments
    };
    static std::optional<Asked> AskedBy(Call const &call);

    Reconstruction(ModelView const &model, DataSet const &source, CompressionRecipe const &recipe, Form form,
                   std::vector<Argument> arguments);

    std::vector<double> Back(std::vector<double> const &values) const;
    // Of each column the place of its coefficient among the X terms, from 0; -1 for any other.
    std::vector<int> CoefficientsIn(ColumnIDs const &columns) const;
    ColumnIDs Columns(ColumnIDs const &columns, std::vector<int> const &coefficients) const;

    ModelView const &m_model;
    DataSet const &m_source;
    CompressionRecipe const &m_recipe;
    Wavelet::Filter m_filter;
    Form m_form;
    std::vector<Argument> m_arguments;
};

} // namespace engine
