#pragma once

#include "platform/export.h"
#include "platform/forward.h"

#include <memory>
#include <string>
#include <utility>

namespace DataSeriesUtilities {

// The batch and the maturity of observations, among the rows of a model of batches or those predicted on it. Rows of
// the model that was asked for last are kept; not for several threads.
class DATASERIES_API ObsMaturityConverter {
public:
    // The project must live longer.
    ObsMaturityConverter(NCProject &project, bool predicted);
    ~ObsMaturityConverter();

    // The name of the batch that the observation (its number in the project) belongs to, empty for 0; and its maturity
    // in the units of the data set: -99.0 where it is missing, 0.0 for an observation that is not among the rows, and
    // where the model is none of batches. NCError for a model that is not there, an Exception without predictions.
    std::pair<std::string, float> GetMaturityValue(int model, unsigned long observation) const;

private:
    struct Rows;

    NCProject const &m_project;
    bool m_predicted;
    mutable std::unique_ptr<Rows> m_rows;
};

} // namespace DataSeriesUtilities
