#include "engine/models/Archive.h"
#include "tests/engine/ModelBuilders.h"

#include <gmock/gmock.h>

namespace engine {
namespace {

struct TransformationCase {
    Transformation transformation;
    double value, transformed, outside;
};

TEST(Transformation, AppliesAndInverts) {
    using enum TransformationKind;
    for (auto const &[transformation, value, transformed, outside] : {
             TransformationCase{{None, 1, 0, 1}, 2.5, 2.5, nan},
             TransformationCase{{Log, 2, 10, 1}, 45, 2, -6},
             TransformationCase{{NegLog, 2, 10, 1}, 45, -2, -6},
             TransformationCase{{Logit, 0, 11, 1}, 10, 1, 12},
             TransformationCase{{Exponential, 0.5, 1, 1}, 2, std::exp(2.0), nan},
             TransformationCase{{Power, 2, 1, 0.5}, 12, 5, -3},
         }) {
        EXPECT_NEAR(transformation.Apply(value), transformed, 1e-12) << static_cast<int>(transformation.kind);
        EXPECT_NEAR(transformation.Invert(transformed), value, 1e-12) << static_cast<int>(transformation.kind);
        EXPECT_TRUE(std::isnan(transformation.Apply(outside))) << static_cast<int>(transformation.kind);
    }
}

struct ScalingCase {
    ScalingKind scaling;
    double offset, weight;
};

// Values 2, 4, 6, 8 and a missing one: mean 5, SD sqrt(20/3).
TEST(Workset, ScalesTerms) {
    auto const s = std::sqrt(20.0 / 3);
    RowMatrix const cells = Table({{2, 3}, {4, 3}, {nan, 3}, {6, 3}, {8, 3}});
    using enum ScalingKind;
    for (auto const &[scaling, offset, weight] :
         {ScalingCase{None, 0, 1}, ScalingCase{Centred, 5, 1}, ScalingCase{UnitVariance, 5, 1 / s},
          ScalingCase{Pareto, 5, 1 / std::sqrt(s)}, ScalingCase{UnitVarianceUncentred, 0, 1 / s},
          ScalingCase{ParetoUncentred, 0, 1 / std::sqrt(s)}}) {
        auto definition = Define(cells, 0, 1);
        for (auto &term : definition.xTerms) {
            term.scaling = scaling;
            term.modifier = 2;
            term.blockFactor = HardBlockFactor(4);
        }
        auto const workset = Workset::Build(definition, MatrixSource(cells));
        auto const &scale = workset.xScales[0];
        auto const what = static_cast<int>(scaling);
        EXPECT_NEAR(scale.offset, offset, 1e-12) << what;
        EXPECT_NEAR(scale.weight, weight, 1e-12) << what;
        EXPECT_NEAR(scale.deviation, s, 1e-12) << what;
        EXPECT_EQ(scale.observed, 4) << what;
        EXPECT_NEAR(workset.x.Values()(4, 0), (8 - offset) * weight, 1e-12) << what;
        EXPECT_NEAR(BackTransform(definition.xTerms[0], scale, workset.x.Values()(4, 0)), 8, 1e-12) << what;
        EXPECT_TRUE(workset.x.IsMissing(2, 0) && !workset.x.IsMissing(2, 1)) << what;
        EXPECT_EQ(workset.xScales[1].weight, 1) << "a constant term is not scaled";
    }
}

// Column 1 has its group's value subtracted before it is centred; rows and columns are chosen out of order.
TEST(Workset, ChoosesRowsAndSubtractsLocalCentres) {
    class Centred final : public SourceColumns {
    public:
        std::span<float const> Values(int column) const override { return column == 0 ? m_first : m_second; }
        std::span<float const> LocalCentres(int column) const override {
            return column == 1 ? std::span<float const>(m_centres) : std::span<float const>();
        }
        std::string Name(int) const override { return "V"; }

    private:
        std::vector<float> m_first{1, 2, 3, 4}, m_second{10, 12, 30, 99}, m_centres{10, 10, 20, 20};
    };
    auto definition = Define(RowMatrix(4, 2), 0, 1);
    definition.rows = {2, 0, 1};
    std::swap(definition.xTerms[0], definition.xTerms[1]);
    for (auto &term : definition.xTerms)
        term.scaling = ScalingKind::Centred;
    auto const workset = Workset::Build(definition, Centred());
    EXPECT_LE(Difference(workset.x.Values(), Table({{6, 1}, {-4, -1}, {-2, 0}})), 1e-12);
}

TEST(Workset, RefusesWhatCannotBeFitted) {
    RowMatrix const cells = Table({{1, nan, -1}, {2, nan, -2}, {3, nan, -3}});
    struct {
        char const *expected;
        void (*change)(ModelDefinition &);
    } const cases[] = {
        {"Variable V2 has no value in the 3 chosen", [](ModelDefinition &) {}},
        {"Variable V3 has no value",
         [](ModelDefinition &d) {
             d.xTerms = {d.xTerms[2]};
             d.xTerms[0].transformation.kind = TransformationKind::Log;
         }},
        {"at least 2 observations, 1 are", [](ModelDefinition &d) { d.rows = {1}; }},
        {"at least one X variable", [](ModelDefinition &d) { d.xTerms.clear(); }},
        {"with 0 Y variables", [](ModelDefinition &d) { d.kind = ModelKind::Pls; }},
    };
    for (auto const &[expected, change] : cases) {
        auto definition = Define(cells, 0, 1);
        change(definition);
        try {
            Workset::Build(definition, MatrixSource(cells));
            ADD_FAILURE() << "no error: " << expected;
        } catch (NCError const &error) {
            EXPECT_THAT(error.what(), testing::HasSubstr(expected));
        }
    }
}

TEST(SavedForms, ComeBackAndRefuseDamage) {
    RowMatrix cells = Table({{1, 2, 1, 1.2}, {2, 1, 4, 1.9}, {3, nan, 2, 3.4}, {4, 3, 6, 3.8}, {5, 7, 3, 5.6}});
    auto definition = Define(cells, 1, 2, 3);
    definition.xTerms[1].transformation = {TransformationKind::Power, 2, 1, 0.5};
    Fitted const fitted(cells, definition);
    auto const saved = fitted.model.Save();
    auto const loaded = FittedModel::Load(saved);
    EXPECT_EQ(loaded.Save(), saved);
    EXPECT_EQ(loaded.definition, definition);
    EXPECT_EQ(loaded.crossValidation->rounds[2].wStar, fitted.model.crossValidation->rounds[2].wStar);
    EXPECT_EQ(ModelDefinition::Load(definition.Save()), definition);

    EXPECT_THROW(ModelDefinition::Load(saved), NCError);
    for (std::size_t at = 0; at < saved.size(); at += 37) {
        auto damaged = saved;
        damaged[at] ^= 4;
        EXPECT_THROW(FittedModel::Load(damaged), NCError) << at;
        EXPECT_THROW(FittedModel::Load(saved.substr(0, at)), NCError) << at;
    }
    WritingArchive newer("DSFM", 99);
    EXPECT_THROW(FittedModel::Load(newer.Finish()), NCError);
}

} // namespace
} // namespace engine
