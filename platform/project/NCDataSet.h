#pragma once

#include "platform/containers/NCDataVector.h"
#include "platform/export.h"
#include "platform/identity/AliasAccess.h"
#include "platform/identity/BatchUtilities.h"
#include "platform/identity/VarObs.h"
#include "platform/project/OSCModel.h"

#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <vector>

// What holds data of a project, a data set, a prediction set or the workset of a model: rows are observations, columns
// variables, both by their numbers in the project.
class DATASERIES_API NCDataContainerBase {
public:
    virtual ~NCDataContainerBase() = default;

    virtual ProjectPtr GetProject() const = 0;
    virtual ObservationInfos const &GetObservations() const = 0;
    virtual std::vector<std::uint32_t> const &GetVariables() const = 0;
    // The identifier columns that its observations and its variables have; these items alone decide which of them are
    // numeral.
    virtual AliasAccess GetObservationAliases() const = 0;
    virtual AliasAccess GetVariableAliases() const = 0;
    // The batches among its rows, each once, in the order of their first rows; none without a batch identifier.
    BatchInfoVector GetBatchInfo() const;
    // As they follow each other: who shows one batch counts by these. Without a batch identifier all rows are one.
    // Found when first asked for, and kept. Several threads may ask at once.
    BatchRuns const &GetBatchRuns() const;

private:
    mutable std::once_flag m_batchesFound;
    mutable BatchRuns m_batches;
};

class DATASERIES_API NCDataSet : public NCDataContainerBase {
public:
    virtual int GetNumber() const = 0;
    virtual std::string GetName() const = 0;
    // One value for each observation, empty for a variable that the set does not have.
    virtual NCDataVector<float> GetVariable(std::uint32_t variable) const = 0;
    // The same of a variable that holds dates, as days since 1970-01-01 00:00, NaN where missing; empty for any other
    // variable. Its values, which are floats, count from `GetFirstDay`: the midnight before the first date of the set.
    virtual std::span<double const> GetDates(std::uint32_t) const { return {}; }
    virtual double GetFirstDay() const { return 0; }
    // " (days since 2024-01-01)", what the label of a row ends with that shows values of these variables; empty when
    // none of them holds dates.
    std::string GetDaysLabel(std::span<std::uint32_t const> variables) const;
    // The orthogonal signal correction that made it; null for any other set.
    virtual boost::shared_ptr<OSCModel const> GetOSCModel() const { return {}; }
    // One value for each variable, empty for an observation that the set does not have.
    virtual NCDataVector<float> GetObservation(std::uint32_t observation) const = 0;
};

// What is known of a data set without reading it.
class DATASERIES_API NCDataSetInfo {
public:
    enum Kind : int { Primary = 0, Secondary = 1, WaveletCompressed = 2 };

    int number = 0;
    std::string name;
    Kind kind = Primary;
    std::uint32_t observations = 0;
    std::uint32_t variables = 0;
    std::vector<std::string> phases;
    int oscComponents = 0;         // of the orthogonal signal correction that made it
    int sourceDataSet = 0;         // of a batch-level set: the observations behind its batches
    std::vector<int> sourceModels; // of a batch-level set: the models whose results it holds, one for each phase

    std::vector<std::string> const &GetPhaseInfoVector() const { return phases; }
};
