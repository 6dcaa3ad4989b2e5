#pragma once

#include "engine/models/ModelDefinition.h"
#include "engine/models/Workset.h"

#include <optional>

namespace engine {

// Loadings, weights and sums of squares of a model or of one cross-validation round. A matrix has a column for each
// component of its kind and no column where the kind of model has none. The overall order of components is: predictive,
// X-side orthogonal, Y-side orthogonal.
struct Components {
    // Predictive, X terms by A. For PCA w and wStar have no column and p stands for both.
    Matrix p, w, wStar;
    // Predictive, Y terms by A.
    Matrix c, q;
    // X-side orthogonal: X terms by Ax, and Y loadings so, Y terms by Ax.
    Matrix po, wo, woStar, so;
    // Y-side orthogonal: Y terms by Ay, and X loadings r, X terms by Ay.
    Matrix co, qo, r;
    // Weights w and loadings p of the PLS model of A + Ax components that tells the missing cells of X of a model with
    // orthogonal components; no column for other kinds.
    Matrix companionW, companionP;
    // Residual sums of squares over observed cells after the first 0, 1, 2, ... components in the overall order: terms
    // by A + Ax + Ay + 1.
    Matrix ssX, ssY;

    Index Predictive() const { return p.cols(); }
    Index XOrthogonal() const { return po.cols(); }
    Index YOrthogonal() const { return qo.cols(); }
    Index All() const { return Predictive() + XOrthogonal() + YOrthogonal(); }

    // The weights that give t of a row from what earlier components left of it: w, for PCA p.
    Matrix const &ScoreWeights() const { return w.cols() > 0 ? w : p; }
    // The weights that give t of a complete row at once: w*, for PCA p.
    Matrix const &DirectWeights() const { return wStar.cols() > 0 ? wStar : p; }

    // What a component, from 0 in the overall order, took off the residual sum of squares of each term.
    Vector TakenX(Index component) const { return ssX.col(component) - ssX.col(component + 1); }
    Vector TakenY(Index component) const { return ssY.col(component) - ssY.col(component + 1); }
};

// Rows by components. A row without observed cell of its block holds 0, to be shown as missing.
struct Scores {
    Matrix t, u, to, uo;
};

// Every round leaves out one group of rows and fits the others, in the scaling of the whole workset.
struct CrossValidation {
    // Round of each workset row, from 0.
    std::vector<int> roundOfRow;
    // Models of the rounds, each component with the sign of the full model's. A round may have fewer components.
    std::vector<Components> rounds;
    // Sums of squared errors of prediction after 0, 1, ..., A components, in workset scale: terms by A + 1. X terms for
    // PCA, otherwise Y terms.
    Matrix press;
    // Each row's scores from the round that left it out; 0 for a component that the round lacks.
    Scores excluded;
    // Of Q2 on deflated matrices: the errors of each component where it follows those before it in the model of all
    // rows, terms by A; otherwise without column.
    Matrix deflatedPress;
};

// Models of all predictive and Y-side components with 0, 1, ..., Ax X-side orthogonal ones. Only of kinds with
// orthogonal components.
struct Progression {
    // What the predictive components took off the sum of squares of each Y term: Y terms by Ax + 1.
    Matrix takenY;
    // By cross-validation, otherwise empty: sums of squared errors of prediction in workset scale, Y terms by Ax + 1,
    // and for each model the prediction of each row from the round that left it out, rows by Y terms.
    Matrix press;
    std::vector<Matrix> predictedY;
};

// A component whose iteration was stopped before it converged (Wold 1976).
struct Unconverged {
    int component = 0; // from 1, in the order of extraction
    int rounds = 0;
    double change = 0; // of t in the last round: |t - t_before| / |t|
    // Of the PLS model that tells the missing cells of a model with orthogonal components.
    bool ofCompanion = false;
};

// What whoever asked for a fit should know of it. Nothing where no cell is missing.
struct FitNotes {
    std::vector<Unconverged> unconverged;
    // Rows with so few observed cells, or of so little weight, that the denominator of a score is its least one.
    int scarceRows = 0;
};

// All that a fit leaves behind. The rows of X and Y, and what derives from them, are in the workset.
struct FittedModel {
    ModelDefinition definition;
    // Offsets and weights of the terms.
    std::vector<TermScale> xScales, yScales;
    // Observed cells in each row.
    Eigen::VectorXi xObserved, yObserved;

    Components components;
    Scores scores;
    // Rounds that each component took to converge, in the overall order.
    std::vector<int> iterations;

    std::optional<CrossValidation> crossValidation;
    Progression progression;
    FitNotes notes;

    Index Rows() const { return scores.t.rows(); }
    // Whether any term of the block is centred, as 0 or 1: the degrees of freedom that centring takes.
    int XCentred() const;
    int YCentred() const;

    // A binary text with version and checksum. Load throws NCError for a text that Save did not write.
    std::string Save() const;
    static FittedModel Load(std::string const &saved);
};

} // namespace engine
