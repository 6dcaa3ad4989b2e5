#pragma once

#include "engine/Project.h"
#include "specification/ProjectVectorData.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

// A statistic of one X or Y variable, by its position in the model, in the units of the data set.
struct VariableQuestion {
    std::string vector; // "XVar", "YPredPS"
    int model = 0;
    int term = 1;
    int component = -1; // -1: the last one
};
// A value for each row.
TablePtr ReadRows(boost::shared_ptr<engine::Project> const &project, VariableQuestion const &question);
// A value for each aligned point of a batch, by its place among those of the vector; -1 is the average of all, 0 their
// standard deviation.
TablePtr ReadBatch(boost::shared_ptr<engine::Project> const &project, VariableQuestion const &question, int batch);

// A part of a picture of one variable.
struct VariableLayer {
    enum Kind { Others, Average, Limit, Curve, Group, Reference };
    Kind kind;
    std::string name; // in the key, unless it is empty
    std::vector<float> x = {}, y = {};
};
struct VariableView {
    std::string axis;
    std::vector<VariableLayer> layers;
};

// The groups of a contribution in the units of a variable of its model.
class ContributionValues {
public:
    ContributionValues(boost::shared_ptr<engine::Project> const &project, ProjectVectorData const &asked);

    // What the group is held against: the "reference", the "average" of the model or, for distances of observations,
    // what is "predicted" of the group.
    std::string HeldAgainst() const;
    // The means of the group and of what it is held against, of observed cells; missing without any.
    std::pair<float, float> Means(int term) const;
    // All rows with the group marked, or the batches against the average one with its limits.
    VariableView View(int term) const;

private:
    using Values = std::vector<float>;

    bool IsPredicted() const { return m_asked.GetProjectVector()->GetObsPredType() == ProjectVector::Predicted; }
    bool IsAligned() const { return m_asked.GetProjectVector()->IsAlignedContribution(); }
    bool IsHeldAgainstModel() const { return HeldAgainst() == "predicted"; }
    VariableQuestion Question(int term, std::string const &vector, bool predicted) const;
    Values Rows(int term, std::string const &vector, bool predicted) const;
    // The average batch has no name, and is that of the workset.
    Values Batch(int term, std::string const &name) const;
    float MeanOf(int term, BatchPoints const &points) const;
    std::size_t NearestPoint(float maturity) const;
    VariableView ViewOfRows(int term) const;
    VariableView ViewOfBatches(int term) const;
    void AddBatches(int term, BatchPoints const &points, VariableLayer const &marks, VariableView &view) const;

    boost::shared_ptr<engine::Project> m_project;
    ProjectVectorData m_asked;
    int m_model;
    bool m_isDistance, m_isOfY;
    std::vector<int> m_rows, m_referenceRows;
    BatchPoints m_points, m_referencePoints;
    std::map<std::string, int> m_places; // of the batches of both groups
    Values m_maturity;                   // of the aligned points
};
