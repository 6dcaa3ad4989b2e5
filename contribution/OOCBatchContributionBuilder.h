#pragma once

#include "platform/containers/NCDataMatrix.h"
#include "platform/forward.h"

#include <set>
#include <vector>

class ProjectVectorData;

namespace ProjectUtilities {
class DefaultSelection;
}

// Finds the aligned points at which batches were out of control in a plot of out-of-control sums, as the group of an
// aligned contribution.
//
// Out of control is a value beyond average plus multiplier times standard deviation, both over the batches of the
// workset at that point: above the limit for a multiplier above 0, below it for any other; equal to it is in control.
// T2 has one upper limit, the critical value of new batches at the level 0.01 (Jackson 1991). A value that is missing,
// or whose limit is, is in control. The project must live longer.
class DATASERIES_API OOCBatchContributionBuilder {
public:
    explicit OOCBatchContributionBuilder(NCProject const &project) : m_project(&project) {}

    // Appends the points (name of the batch, maturity) of the selected batches, batch after batch and rising. A batch
    // that is not among the rows is passed over, and a vector other than an out-of-control sum, or one without numbers
    // behind it, has none. Exception when there are too few batches for the limit of T2 or no predictions, NCError
    // without the model. Defaults say which variable is meant where the specification leaves it open.
    void GetContributionVector(ProjectVectorData const &data, ColumnIDs const *batches, BatchPoints &group,
                               ProjectUtilities::DefaultSelection *defaults) const;

private:
    // For each batch the 1-based points that are out of control.
    using PointSets = std::vector<std::set<int>>;

    void GetOOCBatches(ProjectVectorData const &data, PointSets &out,
                       ProjectUtilities::DefaultSelection *defaults) const;
    void GetOOCOfT2(ProjectVectorData const &data, bool predicted, PointSets &out) const;
    static void CalculateOOCBatches(NCDataMatrix<float> const &matrix, NCDataVector<float> const &average,
                                    NCDataVector<float> const &deviation, double multiplier1, double multiplier2,
                                    PointSets &out);

    NCProject const *m_project;
};
