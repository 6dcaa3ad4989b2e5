#pragma once

#include "catalogue/ProjectVector.h"
#include "platform/export.h"
#include "platform/forward.h"

#include <boost/smart_ptr/shared_ptr.hpp>

#include <cstdint>

namespace DataSeriesUtilities {

// Which vectors of the catalogue a window offers.
class DATASERIES_API ProjectVectorFilter2 {
public:
    virtual ~ProjectVectorFilter2();
    virtual bool UseProjectVector(ProjectVector const *vector) const = 0;
    bool operator()(ProjectVector const *vector) const { return UseProjectVector(vector); }
};

// What is done about correlation-scaled vectors: nothing, they are left out, nothing else is taken.
enum CorrCheckType : int { NoCorrCheck = 0, RejectCorrScaled = 1, OnlyCorrScaled = 2 };

// The vectors that have something to show for a model, a data set or the current prediction set, and that are of the
// kinds wanted. What is known of the source is read once; a source that the project does not have is not tested.
class DATASERIES_API DefaultProjectFilter final : public ProjectVectorFilter2 {
public:
    ProjectVector::ObsOrPredType ObsPredType; // tested only for data set 0
    bool HasValidationRounds = true;
    bool NoPredictiveComponents = false;
    bool NoXSideOrthogonalComponents = false;
    bool NoYSideOrthogonalComponents = false;
    bool IsWaveletModel = false;
    bool CheckScoreLoading;
    bool IsBatchSource = false;        // one row for each batch
    bool IsDateTimeSource = false;     // a variable holds dates or times
    bool HasSeveralComponents = false; // of all kinds together
    ProjectVector::ScoreLoadingType ScoreLoadingType;
    DataSeriesUtilities::CorrCheckType CorrCheckType;
    NCProject const &Project; // must live longer
    bool OSCAvailable = false;
    std::int32_t Model;   // below 1 for none
    std::int32_t Dataset; // below 1 for none
    boost::shared_ptr<ModelInfo const> ModelInfoPtr;

    DefaultProjectFilter(NCProject const &project, int model, int dataset, ProjectVector::DataTypeEnum dataType,
                         ProjectVector::ObsOrPredType obsPredType, bool checkScoreLoading,
                         ProjectVector::ScoreLoadingType scoreLoadingType,
                         DataSeriesUtilities::CorrCheckType corrCheckType);

    // Null is no vector, and not taken.
    bool UseProjectVector(ProjectVector const *vector) const override;

private:
    void ReadModel();
    void ReadData(NCDataContainerBase const &data);
    bool HasComponentsFor(ProjectVector const &vector) const;
    bool IsValid(ProjectVector const &vector) const;
    bool IsOfWantedScale(ProjectVector const &vector) const;
    bool HasLocalCentres() const;
};

} // namespace DataSeriesUtilities
