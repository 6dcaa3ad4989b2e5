#pragma once

#include "navigation/ModelSwitcher.h"
#include "specification/ProjectVectorData.h"

#include <memory>

namespace ProjectUtilities {
class DefaultSelection;
}

namespace DataSeriesUtilities {

// Replaces a vector by the form of it that the kind of a model has.
struct DATASERIES_API ModelTypeVectorUpdate {
    ProjectPtr project;
    boost::shared_ptr<ModelInfo const> info;
    boost::shared_ptr<NCModel const> model;
    bool isWCS = false; // the model is one of wavelet coefficients

    ModelTypeVectorUpdate(ProjectPtr const &ofProject, int modelNumber);

    // True when the vector is another one now. Where the model has no such vector, there is none afterwards: false.
    bool operator()(ProjectVectorData &data) const;
};

// Brings specifications to another model, all but the model itself, which the caller sets afterwards. X and Y terms are
// found by what they are, batches by name. With `keepOnMismatch` an item that is not there gives way to the default one
// of the model. Predictions are fetched once. Not for several threads.
class DATASERIES_API SwitchModelUpdate : public ModelSwitcher::UpdateProjectData {
public:
    // Project and defaults must live longer.
    SwitchModelUpdate(NCProject const &project, ModelInfo const *target, ProjectUtilities::DefaultSelection *defaults,
                      bool keepOnMismatch);
    ~SwitchModelUpdate() override;

    // What is of no model, and a counting row, stays and is true. After false the record is of no use.
    bool operator()(ProjectVectorData &data) const override;

private:
    struct Target;

    void UpdateComponents(ProjectVectorData &data, ModelInfo const &source) const;
    void UpdatePair(ProjectVectorData &data) const;
    bool UpdateXTerm(ProjectVectorData &data) const;
    bool UpdateYTerm(ProjectVectorData &data) const;
    bool UpdateBatch(ProjectVectorData &data) const;
    bool UpdateContribution(ProjectVectorData &data) const;
    bool UpdateYVar(ProjectVectorData &data) const;
    bool UpdateWeights(ProjectVectorData &data) const;
    void UpdateRows(ProjectVectorData &data) const;
    bool UpdatePoints(ProjectVectorData &data) const;
    bool TakeDefaultNumber(ProjectVectorData &data) const;

    NCProject const &m_project;
    ProjectUtilities::DefaultSelection *m_defaults;
    bool m_keepOnMismatch;
    ModelTypeVectorUpdate m_vectorUpdate;
    std::unique_ptr<Target> m_target;
};

} // namespace DataSeriesUtilities
