#pragma once

#include "engine/Project.h"
#include "specification/ProjectVectorData.h"

#include <optional>
#include <string>
#include <vector>

// Batches against the limits that those of the workset give (Nomikos & MacGregor 1995).

struct ChartQuestion {
    int model = 0;
    std::string vector; // "t:1", "DModX", "XVar:oxygen"
    bool ofPredictions = false;
    double multiplier = 3; // of the standard deviation
};

// The statistic of one batch, a value for each aligned point.
struct BatchCurve {
    std::string batch;
    std::vector<float> values;
    std::optional<std::size_t> group = {}; // by which it is coloured, from 0
    bool isMarked = false;
};

// What one model has: all of its vectors have a value for each aligned point, -99 for a missing one.
struct ChartPhase {
    std::string name; // empty for a model of whole batches
    std::string maturityName;
    std::vector<float> maturity, average, upper;
    std::vector<float> lower; // empty for a statistic that is only too large: DModX, T2Range
    std::vector<BatchCurve> curves;

    bool IsOutside(BatchCurve const &curve, std::size_t point) const;
};

// The model and those that were fitted together with it, one for each phase. A phase whose model lacks the component or
// the variable is left out. NCError for a model that is none of batches and for what the model asked lacks, UsageError
// for a vector that has no limits.
std::vector<ChartPhase> ReadChart(boost::shared_ptr<engine::Project> const &project, ChartQuestion const &question);

// How far a batch is outside: the sum for each phase, 0 where the batch does not have the phase.
struct BatchSum {
    std::string batch;
    std::vector<float> sums;
    bool isMarked = false;
    double Total() const;
};
struct ChartSums {
    std::vector<std::string> phases;
    std::vector<BatchSum> batches; // the largest total first
};
// Errors as above.
ChartSums ReadSums(boost::shared_ptr<engine::Project> const &project, ChartQuestion const &question);

// What tells how far batches are outside in the model asked alone. Errors as above.
ProjectVectorData ChartedSums(boost::shared_ptr<engine::Project> const &project, ChartQuestion const &question);
