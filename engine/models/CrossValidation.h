#pragma once

#include "engine/Progress.h"
#include "engine/models/Extraction.h"

#include <functional>
#include <optional>

namespace engine {

// Number of the round, from 0, that leaves out each of `rows` rows: the definition's own groups, or i mod G, or,
// with lagged terms, blocks of neighbours, floor(i G / N); empty groups left out of the count. Empty when there are
// fewer than two groups: then nothing is cross-validated.
std::vector<int> RoundsOfRows(ModelDefinition const &definition, Index rows);

// The rows, from 0, that a round fits and those that it leaves out.
struct RoundRows {
    std::vector<Index> in, out;
};
std::vector<RoundRows> SplitRows(std::vector<int> const &roundOfRow);

// The squared errors of prediction of a component, and what they are compared with: a number for each term.
// Q2 = 1 - errors / before.
struct ComparedErrors {
    Vector errors, before;
};
// Of a component, from 1 in the overall order. Orthogonal components have no errors of their own.
ComparedErrors ErrorsOf(CrossValidation const &validation, Components const &model, Index component);

// Cross-validates a PCA or PLS model while it grows (Wold 1978; Martens & Naes 1989; for PCA Bro et al. 2008).
class CrossValidator {
public:
    // The workset and the model must outlive it. `roundOfRow` is not empty.
    CrossValidator(Workset const &workset, std::vector<int> roundOfRow, Extraction const &model, Q2Form form);

    enum class Rounds { Grow, End };
    // Brings all rounds to the number of components of the model. Rounds that end keep nothing of the rows that they
    // fit, and cannot be extended again.
    void Extend(Rounds rounds, Progress const &progress);

    // Of the model's last component.
    ComparedErrors LastErrors() const;

    // The rounds with the first `components` components of each.
    CrossValidation Result(Index components) const;

private:
    struct Round {
        RoundRows rows;
        std::unique_ptr<Extraction> extraction; // none before the first component, and behind the last
        Components model;
        Matrix t;     // of the rows left out
        Matrix press; // its part of the sums
    };

    void ExtendRound(Round &round, Index to);
    static void AddPress(Round &round, BlockView const &outY, Index from);
    static void AddPcaPress(Round &round, BlockView const &outX, Index from);
    Vector DeflatedPress(Index before) const;

    Workset const &m_workset;
    bool m_hasY;
    Extraction const &m_model;
    Q2Form m_form;
    std::vector<int> m_roundOfRow;
    std::vector<Round> m_rounds;
    Matrix m_press, m_deflatedPress; // as in CrossValidation
};

// No scores yet, for components like those of a model.
Scores ZeroScores(Index rows, Components const &model);
// Puts the scores of some rows, of the first components of each kind, to their places among those of all rows.
void PutScores(Scores const &some, std::vector<Index> const &rows, Scores &all);

// What cross-validation predicts for each row, from the round that left it out: rows by Y terms, by the first
// `predictive` components.
Matrix CrossValidatedY(CrossValidation const &validation, Index predictive);
// Of one Y term.
Vector CrossValidatedY(CrossValidation const &validation, Index term, Index predictive);

// Standard errors over the rounds (Efron & Gong 1983) of the elements of a quantity.
struct JackknifeError {
    Matrix error; // without element with fewer than two rounds
    int freedom = 0;
};

// `quantity` gives its value in one round, or nothing where the round lacks it.
JackknifeError Jackknife(CrossValidation const &validation,
                         std::function<std::optional<Matrix>(Components const &)> const &quantity);

} // namespace engine
