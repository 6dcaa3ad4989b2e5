#pragma once

#include "platform/containers/NCDataMatrix.h"
#include "platform/containers/NCDataVector.h"
#include "platform/containers/TriState.h"
#include "platform/identity/BatchUtilities.h"
#include "platform/identity/ColumnTerm.h"
#include "platform/identity/VarObs.h"
#include "platform/project/LocalCentering.h"
#include "platform/project/PLSTrees.h"

#include <string>
#include <vector>

// A model of the project, fitted or not.
class DATASERIES_API NCModel {
public:
    virtual ~NCModel() = default;

    virtual int GetModelNumber() const = 0;
    virtual ColumnTerms const &GetXColumnTerms() const = 0;
    // Empty for a model without Y.
    virtual ColumnTerms const &GetYColumnTerms() const = 0;
    // The rows of the workset.
    virtual ObservationInfos const &GetObservations() const = 0;
    // 0 CoeffCS, 1 CoeffMLR, 2 Coeff, 3 CoeffRot: the form of coefficients that the user prefers for this model.
    virtual int GetCoefficientKind() const { return 0; }
    // Without variables when none of the model is locally centred.
    virtual DefaultCenterValues GetCenterValues() const { return {}; }
    // By what a PLS tree cuts the observations of the model; those of every tree unless it is a part of one.
    virtual PLSTreeProperties GetTreeProperties() const { return {}; }
};

// A model with components.
class DATASERIES_API ProjectionModel : public NCModel {
public:
    // The distance to the model that is exceeded with the probability `level` (-1.0: the model's own level) after so
    // many components; -99.0 when there is none. Normalised in units of the pooled distance.
    virtual float GetDModXCrit(int component, float level, TriState::State normalised) const = 0;
    // How distances to the model are shown when nobody says otherwise: in units of the pooled distance, and with the
    // residuals weighted by modelling power.
    virtual bool IsDModNormalized() const { return true; }
    virtual bool IsDModXWeighted() const { return false; }
    // Degrees of freedom of the jack-knife standard errors; 0 without cross-validation.
    virtual double GetCVStdDevDF(int component) const = 0;
    // Degrees of freedom that so many X-side components leave of the rows of X or Y: observations, less the components,
    // less one for centring. 0 where there are none, or where they are not known.
    virtual double GetRowDF(int, bool /*ofY*/) const { return 0; }
};

class DATASERIES_API PredictiveModel : public ProjectionModel {
public:
    // Units of rotated coefficients.
    enum CoefficientType : int { CenteredScaled = 0, MLR = 1, Unscaled = 2, Rotated = 3 };
};

// A model of batches.
class DATASERIES_API NCBatchModel : public PredictiveModel {
public:
    // Positions of the model's batches in the project's batch information, from 1.
    virtual std::vector<int> GetBatchIndexes() const = 0;
    // The model's batches, each with its observations, in their order.
    virtual BatchInfoVector GetBatchInfo() const { return {}; }
    virtual std::string GetBatchName(int index) const = 0;
    // What is done to the Y variable batch by batch (BatchYVarTreatment).
    virtual int GetYVarTreatment() const { return 0; }
    // The maturity of each observation of the workset, in the units of the data set; -99.0 where missing.
    virtual NCDataVector<float> GetMaturity() const { return {}; }
    // The maturity of each aligned point.
    virtual NCDataVector<float> GetTimeMaturityVector() const = 0;
    // Rows: batches, columns: aligned points.
    virtual NCDataMatrix<float> GetAlignedScores(int component) const = 0;
    virtual NCDataMatrix<float> GetAlignedDModX(int component) const = 0;
};

// The rows that are projected on a model beside its workset.
class DATASERIES_API NCPredictions {
public:
    virtual ~NCPredictions() = default;

    virtual boost::shared_ptr<NCModel const> GetModel() const = 0;
    virtual ObservationInfos const &GetObservations() const = 0;
    // The batches among them as they follow each other.
    virtual BatchRuns const &GetBatchRuns() const = 0;
    // Of a model of batches: the maturity of each row, in the units of the data set; -99.0 where missing.
    virtual NCDataVector<float> GetMaturity() const { return {}; }
};
