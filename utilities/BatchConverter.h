#pragma once

#include "platform/forward.h"
#include "platform/identity/BatchUtilities.h"
#include "platform/project/NCDataSet.h"
#include "platform/project/NCModel.h"

#include <string>
#include <vector>

namespace ProjectUtilities {

// Between the names of batches and their 1-based order among the rows of a model, or of the rows predicted on it. The
// project must live longer.
class DATASERIES_API BatchConverter {
public:
    // NCError when the predictions, or the model, are not there.
    BatchConverter(NCProject const &project, int model, bool predicted);

    // Replaces `indexes`; a name that is no batch here is left out, of equal names the last one counts.
    void FromBatchToIndex(std::vector<std::string> const &names, std::vector<int> &indexes) const;
    // Replaces `names`. An index that is no batch here is misuse (NCInternalError).
    void FromIndexToBatch(std::vector<int> const &indexes, std::vector<std::string> &names) const;
    bool HasBatch(std::string const &name) const;
    int Size() const { return m_beginnings.Size(); }

private:
    std::string NameOf(int index) const;

    NCProject const *m_project;
    boost::shared_ptr<NCModel const> m_model;
    boost::shared_ptr<NCPredictions const> m_predictions;
    ObservationInfos const *m_observations;
    NCIntegralVector<int, -99> m_beginnings;
};

// Between the order of batches in the batch information of a data source and their order among some of its rows.
class DATASERIES_API BatchInfoConverter {
public:
    BatchInfoConverter(NCProject const &project, boost::shared_ptr<NCDataContainerBase const> const &source,
                       ObservationInfos const &rows);

    // The 1-based local position of a batch by its 1-based position in the batch information; -1 when it is not there.
    int FromBatchInfoToLocalIndex(int batchInfo) const;
    // The other way round; here the local index counts from 0. -1 for one that is no batch here.
    int FromLocalIndexToBatchInfo(int local) const;

private:
    std::vector<int> m_batchInfos;
};

} // namespace ProjectUtilities
