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
    bool unscales = false;
    bool hasRounds = false;
    bool hasLags = false;
    bool hasMultiplier = false;
    bool hasCoefficientStatus = false;
    bool isNumLike = false;
    bool isRegistered = false; // lookups find it, before any other of its name
    int contributionSource = 0;
    int pairLimit = ProjectVector::ComponentPredictive; // the kind of the second component of a pair
};

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
        if (traits.isRegistered)
            Init(traits.name, traits.type, traits.data, models, traits.components, traits.number, AllScoreLoading,
                 traits.obsPred, true);
        m_obsPredType = traits.obsPred;
        m_longName = std::string("long ") + traits.name;
        m_contributionKind = traits.contribution;
        m_contributionSource = traits.contributionSource;
        m_isContribution = traits.contribution != 0;
        m_useUnscalingTransform = traits.unscales;
        m_needsValidationRounds = traits.hasRounds;
        m_isImpulseResponseVector = traits.hasLags;
    }
    VectorProbe(VectorProbe const &) = delete;

    bool HasMultiplier() const override { return m_traits.hasMultiplier; }
    bool HasResolvableCoefficients() const override { return m_traits.hasCoefficientStatus; }
    bool IsNumVectorLike() const override { return m_traits.isNumLike; }
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
