#pragma once

#include "engine/Project.h"
#include "specification/ProjectVectorData.h"

#include <string>
#include <vector>

// Which variables make an observation, a group or a batch stand out (Miller et al. 1998).

struct ContributionQuestion {
    enum Kind { Score, DModX, DModY, YPred };

    int model = 0;
    Kind kind = Score;
    std::string response; // of YPred
    // Lists of observations, or of batches: "NAME", or "NAME@MATURITY" for one of its points. Without a reference the
    // group is held against the average.
    std::vector<std::string> group, reference;
    bool ofBatches = false;
    std::string outOf;                // of the batches only the points outside of the chart of this vector
    double multiplier = 3;            // of the standard deviation, in that chart
    std::vector<std::string> weights; // of scores
    std::vector<int> components;
    bool ofPredictions = false;
    bool down = false;            // to the model below
    std::vector<std::string> via; // the variables that are followed there; the strongest one
};

struct ContributionBar {
    std::string variable;
    int term = 0; // its position in X or Y of the model, from 1
    float value = 0;
};

struct Contribution {
    std::string title;                 // what is explained, and of which groups
    ProjectVectorData asked;           // without a vector when no point of the batches is out
    std::vector<ContributionBar> bars; // the largest first, without those that are missing
    int missing = 0;
};

// What scores can be weighted by: "p, w*, po, ...".
std::string WeightNames();

// NCError for what the project or the model does not have, UsageError for what can't be meant.
Contribution ReadContribution(boost::shared_ptr<engine::Project> const &project, ContributionQuestion const &question);
