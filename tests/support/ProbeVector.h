#pragma once

#include "catalogue/ProjectVector.h"

#include <functional>
#include <string>
#include <vector>

// What a test wants a vector to be.
struct VectorTraits {
    char const *name = "probe";
    ProjectVector::VectorTypeEnum type = ProjectVector::VectorTypeVariablesScores;
    ProjectVector::NumberType number = ProjectVector::NumberNone;
    int components = ProjectVector::ComponentNone;
    ProjectVector::DataTypeEnum data = ProjectVector::DataTypeModel;
    ProjectVector::ObsOrPredType obsPred = ProjectVector::Observed;
    int contribution = 0;
    // A letter for each: u has units, r validation rounds, l lags, m multipliers, c a coefficient status, n is like a
    // counting row, R is registered: lookups find it, before any other of its name.
    char const *flags = "";
    int contributionSource = 0;
    int pairLimit = ProjectVector::ComponentPredictive; // the kind of the second component of a pair

    bool Has(char flag) const { return std::string(flags).find(flag) != std::string::npos; }
};

// Short names for tables.
namespace probes {

using V = ProjectVector;

constexpr auto Scores = V::VectorTypeVariablesScores;
constexpr auto Loadings = V::VectorTypeObservationsLoadings;
constexpr auto PerComponent = V::VectorTypeComponent;
constexpr auto Lag = V::VectorTypeLag;
constexpr auto Aligned = V::VectorTypeAligned;
constexpr auto PerBatch = V::VectorTypeBatch;
constexpr auto NoNumber = V::NumberNone;
constexpr auto ObsOrVar = V::NumberObsOrVar;
constexpr auto Y = V::NumberYVariable;
constexpr auto X = V::NumberXVariable;
constexpr auto XY = V::NumberXAndYVariable;
constexpr auto Range = V::NumberComponentRange;
constexpr auto Batch = V::NumberBatch;
constexpr auto BatchX = V::NumberBatchXVariable;
constexpr auto BatchY = V::NumberBatchYVariable;
constexpr auto YPhase = V::NumberBatchVIPPhase;
constexpr auto BatchRange = V::NumberBatchComponentRange;
constexpr auto BatchOnly = V::NumberBatchIndexOnly;
constexpr auto Identifier = V::NumberIdentifier;
constexpr auto Phase = V::NumberBatchVIPSecond;
constexpr auto OfModel = V::DataTypeModel;
constexpr auto OfSet = V::DataTypeDataSet;
constexpr auto OfPredSet = V::DataTypePredictionSet;
constexpr auto Predicted = V::Predicted;

} // namespace probes

// A vector of a test's own, which answers with what the test gives it: nothing, as it stands. Keeps what it was asked.
class VectorProbe final : public ProjectVector {
public:
    std::function<TablePtr(ProjectPtr const &, std::string const &)> table;
    std::function<::ColumnIDs(ProjectPtr const &, std::string const &)> columns;
    mutable std::vector<std::string> asked;

    explicit VectorProbe(VectorTraits const &traits)
        : ProjectVector(traits.type, traits.name, traits.data, traits.components, traits.number), m_traits(traits) {
        auto const models =
            (traits.data & DataTypeModel) != 0 ? ModelTypeE::Any : static_cast<ModelTypeE::Model>(ModelTypeE::None);
        if (traits.Has('R'))
            Init(traits.name, traits.type, traits.data, models, traits.components, traits.number, AllScoreLoading,
                 traits.obsPred, true);
        m_obsPredType = traits.obsPred;
        m_longName = std::string("long ") + traits.name;
        m_contributionKind = traits.contribution;
        m_contributionSource = traits.contributionSource;
        m_isContribution = traits.contribution != 0;
        m_useUnscalingTransform = traits.Has('u');
        m_needsValidationRounds = traits.Has('r');
        m_isImpulseResponseVector = traits.Has('l');
    }
    VectorProbe(VectorProbe const &) = delete;

    bool HasMultiplier() const override { return m_traits.Has('m'); }
    bool HasResolvableCoefficients() const override { return m_traits.Has('c'); }
    bool IsNumVectorLike() const override { return m_traits.Has('n'); }
    ComponentType GetDoubleCompComponentType(int which) const override {
        return which == 2 ? static_cast<ComponentType>(m_traits.pairLimit) : ComponentPredictive;
    }
    TablePtr CreateVectorRaw(ProjectPtr project, char const *args) const override {
        asked.push_back(args);
        return table ? table(project, args) : nullptr;
    }
    ::ColumnIDs CreateColumnIDsRaw(ProjectPtr project, char const *args) const override {
        return columns ? columns(project, args) : ::ColumnIDs(project);
    }

private:
    VectorTraits m_traits;
};
