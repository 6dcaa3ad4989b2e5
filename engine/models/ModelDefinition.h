#pragma once

#include "platform/project/PLSTrees.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace engine {

// One bit each, so that a set of types is a mask.
enum class ModelKind { Pca = 1, Pls = 2, PlsDiscriminant = 4, Opls = 8, O2Pls = 16 };

enum class TransformationKind { None, Log, NegLog, Logit, Exponential, Power };

// v -> g(v) with the constants of the kind:
//   Log           log10(c1 v + c2)           NegLog  -log10(c1 v + c2)
//   Logit         log10((v - c1)/(c2 - v))   Exponential  exp(c1 v + c2)
//   Power         (c1 v + c2)^c3
struct Transformation {
    TransformationKind kind = TransformationKind::None;
    double c1 = 1;
    double c2 = 0;
    double c3 = 1;

    // NaN where v is outside of the domain.
    double Apply(double v) const;
    // The v whose transform is g, NaN or infinite where there is none.
    double Invert(double g) const;
    // Whether a larger v has the smaller transform.
    bool Falls() const;

    bool operator==(Transformation const &) const = default;
};

// The forms with N scale alike but do not centre.
enum class ScalingKind { None, Centred, UnitVariance, Pareto, UnitVarianceUncentred, ParetoUncentred };

// One level of a qualitative variable, which is a column of texts of the observations. Its column of numbers holds 1
// for an observation with this text, 0 for one with that of another level of the model. An observation without text, or
// with one that is no level of the model, is missing.
struct Level {
    std::string variable; // the heading of the texts
    std::string text;

    std::string Name() const { return variable + "(" + text + ")"; }

    bool operator==(Level const &) const = default;
};

// A column of X or Y: a column of the source data set, as it is or some rows earlier, or a product of such columns.
struct Term {
    // Of the data set, from 0; below 0 that of a level: -1 for the first one of the model, -2 for the second. Not used
    // for a product.
    int column = 0;
    Transformation transformation;
    ScalingKind scaling = ScalingKind::UnitVariance;
    double modifier = 1;
    double blockFactor = 1;
    // Local centring: what is subtracted from the transformed value, one number for each group of rows. None: nothing.
    // -99 for a group without; double, lest rounding leaves noise of a variable that is constant in each group.
    std::vector<double> centres = {};
    // Of a square or cross term: the places, from 0, of the terms of the same block whose centred and scaled values
    // (but for modifier and block factor) are multiplied. They are columns, and stand before all products.
    std::vector<int> factors = {};
    // Of a lagged term of X: how many rows earlier in its batch its value stands, treated as it is there. 0 for none.
    int lag = 0;

    bool IsProduct() const { return !factors.empty(); }
    bool IsLevel() const { return column < 0; }

    bool operator==(Term const &) const = default;
};

// Block scaling of a block with `terms` terms (Westerhuis et al. 1998).
inline double SoftBlockFactor(int terms) {
    return std::pow(terms, -0.25);
}
inline double HardBlockFactor(int terms) {
    return std::pow(terms, -0.5);
}

// What a component's squared errors of prediction, PRESS, are by which Q2 judges it.
enum class Q2Form {
    // Those of rounds that fit all components anew, compared with PRESS before the component (Bro et al. 2008).
    Rounds,
    // Those of rounds that fit the component to what those before it leave of X and Y, compared with the sum of squares
    // of that (Wold 1978; Wold et al. 2001).
    Deflated
};

// How the rows of different batches are laid side by side.
enum class AlignmentMode {
    Length,  // each batch is stretched, row after row, to the same number of points (Nomikos & MacGregor 1995)
    Maturity // each batch is read at the same maturities (Wold et al. 1998b)
};

// What makes a model one of batches at the observation level: of the evolution of batches with their maturity, Y (Wold
// et al. 1998b).
struct Evolution {
    std::string phase = {}; // whose rows the model has; empty for whole batches
    int phaseGroup = 0;     // number of the first of the models that were made together, one for each phase
    int treatment = 0;      // of Y, batch by batch (BatchYVarTreatment)
    AlignmentMode alignment = AlignmentMode::Length;
    int points = 0; // of aligned batches; 0 for the median length of the batches

    bool operator==(Evolution const &) const = default;
};

// What makes a model a node of a tree of PLS models: of some of the rows of the one above it, which was cut in two.
struct TreePlace {
    int root = 0;                      // number of the model of all rows
    int parent = 0;                    // number of the model above, 0 for the root
    int depth = 0;                     // how many models are above
    bool isAbove = false;              // of the two parts of the model above the one with the larger t_1
    PLSTreeProperties properties = {}; // by which it was cut, or would be

    bool operator==(TreePlace const &) const = default;
};

// All that a fit needs to know beside the data. A plain value.
struct ModelDefinition {
    static constexpr int autofit = -1;

    ModelKind kind = ModelKind::Pca;
    std::vector<Term> xTerms;
    std::vector<Term> yTerms;
    std::vector<int> rows;     // of the data set, from 0
    std::vector<Level> levels; // of all qualitative variables in X and Y, in order of appearance among the rows
    // What a row's text in the identifier column of this name must be to belong to each of the groups that terms are
    // centred by.
    std::string centringIdentifier = {};
    std::vector<std::string> centringGroups = {};

    int components = autofit; // predictive ones
    int xOrthogonal = 0;
    int yOrthogonal = 0;

    int groups = 7; // of the cross-validation, 0 for none
    // A group number for each row, or none: then row i, from 0, is in group i mod groups + 1, and with lagged terms, by
    // which neighbours tell of each other, in one of as many blocks of neighbours.
    std::vector<int> givenGroups;
    Q2Form q2 = Q2Form::Rounds; // the deflated one for PCA and PLS only
    double alpha = 0.05;
    std::optional<Evolution> evolution = {}; // of PLS and OPLS with one response
    std::optional<TreePlace> tree = {};      // of PLS

    bool HasY() const { return kind != ModelKind::Pca; }
    bool HasLags() const {
        return std::ranges::any_of(xTerms, [](Term const &term) { return term.lag > 0; });
    }
    Level const &LevelOf(int column) const { return levels[static_cast<std::size_t>(-1 - column)]; }
    // The classes that a discriminant model tells apart: the levels of the Y terms, where these are those of one
    // qualitative variable. None of any other model.
    std::vector<std::string> Classes() const;
    // Whether the kind sets orthogonal components apart from the predictive ones.
    bool HasOrthogonal() const { return kind == ModelKind::Opls || kind == ModelKind::O2Pls; }

    // A binary text with version and checksum. Load throws NCError for a text that Save did not write.
    std::string Save() const;
    static ModelDefinition Load(std::string const &saved);

    bool operator==(ModelDefinition const &) const = default;
};

} // namespace engine
