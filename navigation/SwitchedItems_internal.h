#pragma once

#include "contribution/ModelRows_internal.h"
#include "platform/identity/PlaceOfItem_internal.h"
#include "platform/project/NCProject.h"
#include "specification/ProjectVectorData.h"

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

// What a switch between models finds again in the other one: terms, rows and batches.
namespace DataSeriesUtilities {

// The model of the specification as an object; empty when it is of none.
boost::shared_ptr<NCModel const> ModelOf(ProjectVectorData const &data, NCProject const &project);

bool IsPredicted(ProjectVectorData const &data);

// The model has anything along the axis of the vector: components, or batches where it is about these.
bool HasAxis(ModelInfo const &info, ProjectVector const &vector);

// The term at a 1-based position; null outside.
ColumnTerm const *TermAt(ColumnTerms const &terms, std::uint32_t position);

// The X terms of a model by what they are. Terms mostly stand where they stood in the other model; their places are
// known from the first one on that does not.
class XTermsOfModel {
public:
    XTermsOfModel(NCProject const &project, boost::shared_ptr<NCModel const> model)
        : m_project(project), m_model(std::move(model)) {}

    // The 1-based position of the term that the specification of another model is about; 0 when it is not here, or the
    // specification is about none.
    int Find(ProjectVectorData const &data, ProjectUtilities::DefaultSelection const *defaults);

private:
    struct Terms {
        ColumnTerms mothers; // of vectors over lags
        ColumnTerms const *terms = nullptr;
        std::optional<PlaceOfItem<ColumnTerms>> places;
    };

    Terms &TermsFor(ProjectVector const &vector);

    NCProject const &m_project;
    boost::shared_ptr<NCModel const> m_model;
    Terms m_terms, m_lagged;
};

// The rows of a model, and those that are predicted on it. Each are fetched when they are first asked for, and once,
// even when that fails.
class RowsOfModel {
public:
    RowsOfModel(NCProject const &project, int model) : m_project(project), m_number(model) {}

    // Null when there are none.
    ObservationInfos const *Get(bool predicted) { return Fetched(predicted).rows; }
    // The 1-based position of an observation; 0 when it is not there.
    int Find(std::uint32_t observation, bool predicted);
    // The same of the row of another model. Rows mostly stand as far from where they stood as the one before.
    int Find(ObservationInfos const &others, int position, bool predicted);

private:
    struct Rows {
        bool isFetched = false;
        ObservationInfos const *rows = nullptr;
        std::optional<RowPositions> positions;
        int shift = 0;
    };

    Rows &Fetched(bool predicted);

    NCProject const &m_project;
    int m_number;
    boost::shared_ptr<NCModel const> m_model;
    boost::shared_ptr<NCPredictions const> m_predictions;
    Rows m_own, m_predicted;
};

// The batches of models by the 1-based index that specifications name them by.
class BatchesOfModels {
public:
    explicit BatchesOfModels(NCProject const &project) : m_project(project) {}

    // The model is one of batches.
    bool AreThere(int model) const;
    int Count(int model, bool predicted) { return static_cast<int>(Of(model, predicted).names.size()); }
    // Empty for an index that no batch has.
    std::string NameOf(int model, bool predicted, int index);
    // The first one of the name; 0 when there is none.
    int Find(int model, bool predicted, std::string const &name);

private:
    struct Batches {
        std::vector<std::string> names;
        std::unordered_map<std::string, int> indexOf;
    };

    // Fetched once, even when that fails.
    Batches const &Of(int model, bool predicted);
    std::vector<std::string> NamesOfModel(int model) const;
    std::vector<std::string> NamesOfPredictions(int model) const;

    NCProject const &m_project;
    std::map<std::pair<int, bool>, Batches> m_batches;
};

} // namespace DataSeriesUtilities
