#pragma once

#include "navigation/ModelSwitcher.h"
#include "navigation/SwitchedItems_internal.h"

// Each of these answers one question about specifications: whether they would still mean something for a model. One
// instance serves one model and one pass over a selection. What the project cannot give is not there: no NCError.
namespace DataSeriesUtilities {

using CheckProjectData = ModelSwitcher::CheckProjectData;

// The model has such a vector and, where it is of predicted rows, predictions.
class CheckIfVectorIsAvailable final : public CheckProjectData {
public:
    CheckIfVectorIsAvailable(NCProject const &project, int model)
        : m_info(project.GetModelInfo(model)), m_rows(project, model) {}
    bool operator()(ProjectVectorData const &data) override;

    // Some vector stands there in another form.
    bool VectorChanged = false;

private:
    boost::shared_ptr<ModelInfo const> m_info;
    RowsOfModel m_rows;
};

// The model has components of the kinds of the vector, as far as that needs any.
class CheckIfComponentIsAvailable final : public CheckProjectData {
public:
    CheckIfComponentIsAvailable(NCProject const &project, int model) : m_info(project.GetModelInfo(model)) {}
    bool operator()(ProjectVectorData const &data) override;

private:
    boost::shared_ptr<ModelInfo const> m_info;
};

// The same for a first and a last component.
class CheckIfDoubleCompAvailable final : public CheckProjectData {
public:
    CheckIfDoubleCompAvailable(NCProject const &project, int model) : m_info(project.GetModelInfo(model)) {}
    bool operator()(ProjectVectorData const &data) override;

private:
    boost::shared_ptr<ModelInfo const> m_info;
};

class CheckIfXVarIsAvailable final : public CheckProjectData {
public:
    CheckIfXVarIsAvailable(NCProject const &project, ProjectUtilities::DefaultSelection const *defaults, int model)
        : m_terms(project, project.GetModel(model)), m_defaults(defaults) {}
    bool operator()(ProjectVectorData const &data) override;

private:
    XTermsOfModel m_terms;
    ProjectUtilities::DefaultSelection const *m_defaults;
};

// Two models with one response each always fit.
class CheckIfYVarIsAvailable final : public CheckProjectData {
public:
    CheckIfYVarIsAvailable(NCProject const &project, ProjectUtilities::DefaultSelection const *defaults, int model)
        : m_project(project), m_model(project.GetModel(model)), m_defaults(defaults) {}
    bool operator()(ProjectVectorData const &data) override;

private:
    NCProject const &m_project;
    boost::shared_ptr<NCModel const> m_model;
    ProjectUtilities::DefaultSelection const *m_defaults;
};

class CheckIfObsIsAvailable final : public CheckProjectData {
public:
    CheckIfObsIsAvailable(NCProject const &project, int model) : m_rows(project, model) {}
    bool operator()(ProjectVectorData const &data) override;

private:
    RowsOfModel m_rows;
};

class CheckIfBatchIsAvailable final : public CheckProjectData {
public:
    CheckIfBatchIsAvailable(NCProject const &project, int model) : m_batches(project), m_model(model) {}
    bool operator()(ProjectVectorData const &data) override;

private:
    BatchesOfModels m_batches;
    int m_model;
};

// The groups, the response and a component of a contribution.
class CheckIfContribVectorIsAvailable final : public CheckProjectData {
public:
    CheckIfContribVectorIsAvailable(NCProject const &project, ProjectUtilities::DefaultSelection const *defaults,
                                    int model)
        : m_project(project), m_info(project.GetModelInfo(model)), m_model(project.GetModel(model)),
          m_rows(project, model), m_defaults(defaults) {}
    bool operator()(ProjectVectorData const &data) override;

private:
    bool FitsModel(ProjectVectorData const &data) const;
    bool HasResponse(ProjectVectorData const &data) const;
    bool HasRows(ProjectVectorData const &data);
    bool HasComponents(ProjectVectorData const &data) const;

    NCProject const &m_project;
    boost::shared_ptr<ModelInfo const> m_info;
    boost::shared_ptr<NCModel const> m_model;
    RowsOfModel m_rows;
    ProjectUtilities::DefaultSelection const *m_defaults;
};

// The reference points of a contribution of predicted batches to a model of batches. Neither those of observed batches
// nor the points that are compared are looked at.
class CheckBatchContribProject final : public CheckProjectData {
public:
    CheckBatchContribProject(NCProject const &project, int model)
        : m_model(boost::dynamic_pointer_cast<NCBatchModel const>(project.GetModel(model))), m_batches(project) {}
    bool operator()(ProjectVectorData const &data) override;

private:
    bool IsOnGrid(float maturity, bool isAligned);

    boost::shared_ptr<NCBatchModel const> m_model;
    BatchesOfModels m_batches;
    std::optional<std::vector<float>> m_grids[2]; // rising: of the rows, and of the aligned points
};

} // namespace DataSeriesUtilities
