#pragma once

#include "platform/containers/NCDataMatrix.h"
#include "platform/forward.h"

#include <optional>

// By what a PLS tree cuts the observations of a model.
struct DATASERIES_API PLSTreeProperties {
    double scoreShare = 0.5;    // alpha_T: of the score beside the responses, 0 to 1
    double balanceShare = 0.25; // beta: of parts of one size beside what they are, 0 to 1
    int smallest = 0;           // observations that a part has at least; 0 for LeastPart

    // A quarter of the observations, but one at least and not more than five.
    static int LeastPart(int observations);

    bool operator==(PLSTreeProperties const &) const = default;
};

// Where a PLS model is cut into two (after Eriksson, Trygg & Wold 2009; the weights are this system's own): its N
// observations stand in rising order of t_1, and a cut after position j leaves j of them below and N - j above. With
// the sums of squares of both parts, each about its own mean, and that of all,
//   T = (SS_below(t_1) + SS_above(t_1))/SS(t_1)
//   Y = the same of a response, averaged over the responses
//   N = ((2 j - N)/N)^2
//   cut = (1 - beta) (alpha_T T + (1 - alpha_T) Y) + beta N
// and the model is cut where this is least. An observation without t_1 is in neither part, a response that is constant
// counts for nothing, and what is missing of a response is left out of its sums.
class DATASERIES_API PLSTrees {
public:
    enum Row : int { Cut = 1, NCut = 2, TCut = 3, YCut = 4 }; // of the weights
    enum Mode : int {
        AllPositions = 0,  // in the order of the observations: the weight of the cut behind each
        InOrder = 1,       // the same, -99 where a part is smaller than the smallest
        SortedByScore = 2, // by position, -99 where a part is smaller than the smallest
    };

    PLSTrees(NCProject const &project, PLSTreeProperties const &properties)
        : m_project(project), m_properties(properties) {}

    // What a model of the project is cut by: a row of t_1, then one for each response, scaled as in its workset.
    // Without rows for a model that has no component.
    NCDataMatrix<float> GetValues(int model) const;

    // Makes `out` four rows of weights, one for each column of `in`, whose first row is t_1 and the others the scaled
    // responses. A weight that can't be computed is -99, as is that behind the last observation.
    void GetAllCutWeights(NCDataMatrix<float> const &in, NCDataMatrix<float> &out, int mode) const;

    struct Place {
        int below = 0;    // how many observations are below the cut
        float weight = 0; // of the cut
        float score = 0;  // t_1 halfway between the last one below and the first one above
        // Positions from 1 of the observations, in rising order of t_1; those without t_1 are not there.
        std::vector<int> order;
    };
    // The first position of least weight; nothing where there is none.
    std::optional<Place> FindCut(NCDataMatrix<float> const &in) const;

private:
    NCProject const &m_project;
    PLSTreeProperties m_properties;
};
