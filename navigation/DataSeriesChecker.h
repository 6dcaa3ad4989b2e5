#pragma once

#include "platform/export.h"
#include "platform/forward.h"

#include <cstdint>
#include <vector>

class ProjectVectorData;
class SelectDataSeriesData;

namespace DataSeriesUtilities {

// Tells what the specifications of a selection step over: which kind of argument they have in common. For one thread:
// it keeps the data behind the specification that it saw last.
class DATASERIES_API DataSeriesChecker {
public:
    // The parts of a selection to look at, as a bit mask. An axis counts only where it is in use.
    enum CheckType : int { CheckXAxis = 1, CheckYAxis = 2, CheckSeries = 4, CheckAll = 7 };

    enum Kind : std::int32_t {
        KindNone = 0,        // nothing that moves
        KindMixed = 1,       // they disagree
        KindComponent = 2,   // a component, of one kind
        KindXVariable = 3,   // an X term
        KindVariable = 4,    // a variable of a data source
        KindObservation = 5, // an observation
        KindYVariable = 6    // a Y term
    };

    struct VectorTypeStruct {
        std::int32_t SeriesKind = KindNone;
        std::int32_t ComponentMask = 0; // of ProjectVector::ComponentType
        bool IsBatchData = false;       // a vector of batches, or data with batches
    };

    explicit DataSeriesChecker(CheckType parts) : m_parts(parts) {}

    // Starts anew but for `IsBatchData`, which once true stays so.
    void GetDataSeriesType(SelectDataSeriesData const *selection, VectorTypeStruct &type) const;
    // Folds one specification into the answer. One without a vector changes nothing.
    void GetProjectDataType(ProjectPtr project, ProjectVectorData const &data, VectorTypeStruct &type) const;

private:
    mutable boost::shared_ptr<NCDataContainerBase const> m_source;
    CheckType m_parts;
};

// Appends the components of scores, or of predicted responses, that the specification shows and that are not in the
// list; of T2 over a whole model all of them, even so. Of other vectors nothing.
DATASERIES_API void AddPredictiveComponents(ProjectVectorData const &data, std::vector<int> &components);
DATASERIES_API void AddOrthogonalComponents(ProjectVectorData const &data, std::vector<int> &components);

} // namespace DataSeriesUtilities
