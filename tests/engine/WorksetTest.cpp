#include "engine/ProjectFile.h"
#include "engine/models/Archive.h"
#include "tests/engine/ModelBuilders.h"
#include "tests/engine/RegistryWalk.h"
#include "tests/engine/SmallProject.h"

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
             TransformationCase{{Logit, 11, 0, 1}, 10, -1, 12},
             TransformationCase{{Exponential, -0.5, 1, 1}, 2, 1, nan},
             TransformationCase{{Power, 2, 1, -0.5}, 12, 0.2, -3},
             TransformationCase{{Power, -2, 25, -0.5}, 12, 1, 13},
         }) {
        EXPECT_EQ(transformation.Falls(), transformation.Apply(value + 0.1) < transformed);
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
        MatrixSource const source(cells);
        auto const workset = Workset::Build(definition, source);
        auto const &scale = workset.xScales[0];
        auto const what = static_cast<int>(scaling);
        EXPECT_NEAR(scale.offset, offset, 1e-12) << what;
        EXPECT_NEAR(scale.weight, weight, 1e-12) << what;
        EXPECT_NEAR(scale.deviation, s, 1e-12) << what;
        EXPECT_EQ(scale.observed, 4) << what;
        EXPECT_NEAR(workset.x.Values()(4, 0), (8 - offset) * weight, 1e-12) << what;
        TermValues const values(definition.xTerms, workset.xScales, 0, source);
        EXPECT_NEAR(values.ToSource(4, workset.x.Values()(4, 0)), 8, 1e-12) << what;
        EXPECT_TRUE(workset.x.IsMissing(2, 0) && !workset.x.IsMissing(2, 1)) << what;
        EXPECT_EQ(workset.xScales[1].weight, 1) << "a constant term is not scaled";
    }
}

// A constant term is 0, whatever rounding does to sums over many rows.
TEST(Workset, HasNothingOfConstantTerms) {
    MatrixSource const source(RowMatrix::Constant(300'000, 1, 0.7));
    auto definition = Define(RowMatrix(300'000, 1), 0, 1);
    for (auto const kind : {TransformationKind::None, TransformationKind::Log, TransformationKind::Power}) {
        definition.xTerms[0].transformation = {kind, 1, 0, 0.3};
        auto const workset = Workset::Build(definition, source);
        EXPECT_TRUE(workset.xScales[0].IsConstant() && workset.x.Values().isZero(0)) << static_cast<int>(kind);
    }
}

// Rows in groups, the last one in none, and in two batches.
class GroupedSource final : public SourceColumns {
public:
    std::span<float const> Values(int column) const override { return column == 0 ? m_first : m_second; }
    std::span<int const> Groups() const override { return m_groups; }
    std::span<int const> BatchBeginnings() const override { return m_beginnings; }
    std::string Name(int) const override { return "V"; }

private:
    std::vector<float> m_first{1, 2, 3, 4}, m_second{10, 12, 30, 99};
    std::vector<int> m_groups{0, 0, 1, -1};
    std::vector<int> m_beginnings{0, 0, 0, 3};
};

// The term of column 1 has its group's value subtracted before it is centred; rows and columns are chosen out of order.
TEST(Workset, ChoosesRowsAndSubtractsLocalCentres) {
    auto definition = Define(RowMatrix(4, 2), 0, 1);
    definition.rows = {2, 0, 1};
    std::swap(definition.xTerms[0], definition.xTerms[1]);
    definition.xTerms[0].centres = {10, 20};
    for (auto &term : definition.xTerms)
        term.scaling = ScalingKind::Centred;
    auto workset = Workset::Build(definition, GroupedSource());
    EXPECT_LE(Difference(workset.x.Values(), Table({{6, 1}, {-4, -1}, {-2, 0}})), 1e-12);
    // Without a centre value a cell is missing.
    definition.rows = {0, 1, 3};
    workset = Workset::Build(definition, GroupedSource());
    EXPECT_TRUE(workset.x.IsMissing(2, 0) && !workset.x.IsMissing(2, 1));
    definition.rows = {0, 1, 2};
    definition.xTerms[0].centres = {10, -99};
    workset = Workset::Build(definition, GroupedSource());
    EXPECT_TRUE(workset.x.IsMissing(2, 0) && !workset.x.IsMissing(1, 0));
}

// A lagged term has the value of its mother as it is treated where it stands, with the centre of that row's group.
TEST(Workset, HasValuesOfEarlierRowsOfTheBatch) {
    auto definition = Define(RowMatrix(4, 2), 0, 1);
    definition.xTerms[1].centres = {10, 20};
    definition.xTerms[0].lag = definition.xTerms[1].lag = 1;
    definition.rows = {3, 1, 2};
    for (auto &term : definition.xTerms)
        term.scaling = ScalingKind::None;
    GroupedSource const source;
    auto const workset = Workset::Build(definition, source);
    EXPECT_TRUE(workset.x.IsMissing(0, 0) && workset.x.IsMissing(0, 1));
    EXPECT_EQ(workset.x.Values().bottomRows(2), Table({{1, 0}, {2, 2}}));
    EXPECT_EQ(TermValues(definition.xTerms, workset.xScales, 1, source).ToSource(2, 2), 12);
}

// Products of what is centred and scaled, but for modifiers, and then centred and scaled themselves.
TEST(Workset, MultipliesFactors) {
    auto definition = Define(Table({{1, 2}, {2, 8}, {3, 5}, {6, nan}}), 0, 1);
    definition.xTerms[0].modifier = 3;
    for (std::vector<int> const &factors : {std::vector{0, 0}, std::vector{0, 1}}) {
        Term product;
        product.scaling = ScalingKind::Centred;
        product.factors = factors;
        definition.xTerms.push_back(product);
    }
    MatrixSource const source(Table({{1, 2}, {2, 8}, {3, 5}, {6, nan}}));
    auto const workset = Workset::Build(definition, source);
    double const s1 = std::sqrt(14.0 / 3);
    double const first[] = {-2 / s1, -1 / s1, 0, 3 / s1};
    double const second[] = {-1, 1, 0};
    double const meanSquare = (4 + 1 + 0 + 9) / (4 * s1 * s1);
    double const meanCross = (2 / s1 - 1 / s1) / 3;
    for (Index i = 0; i < 4; ++i) {
        EXPECT_NEAR(workset.x.Values()(i, 0), 3 * first[i], 1e-7) << i;
        EXPECT_NEAR(workset.x.Values()(i, 2), first[i] * first[i] - meanSquare, 1e-7) << i;
        if (i < 3) {
            EXPECT_NEAR(workset.x.Values()(i, 3), first[i] * second[i] - meanCross, 1e-7) << i;
        }
    }
    EXPECT_TRUE(workset.x.IsMissing(3, 3));
    // New rows take the scales of the workset.
    EXPECT_LE(
        Difference(ScaleRows(definition.xTerms, workset.xScales, source, {1}).Values(), workset.x.Values().row(1)),
        1e-12);
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

// With the checksum that belongs to it: an archive writes a name, a version, and the checksum of both.
std::string Sealed(std::string_view bytes) {
    std::uint32_t last = 0;
    bytes.remove_suffix(sizeof(last));
    std::memcpy(&last, bytes.data() + bytes.size(), sizeof(last));
    return WritingArchive(bytes, last).Finish();
}

TEST(SavedForms, ComeBackAndRefuseDamage) {
    RowMatrix cells = Table({{1, 2, 1, 1.2}, {2, 1, 4, 1.9}, {3, nan, 2, 3.4}, {4, 3, 6, 3.8}, {5, 7, 3, 5.6}});
    auto definition = Define(cells, 1, 2, 3);
    definition.xTerms[1].transformation = {TransformationKind::Power, 2, 1, 0.5};
    definition.centringIdentifier = "site";
    definition.centringGroups = {"north", "south"};
    definition.levels = {{"colour", "red"}, {"colour", "blue"}};
    definition.xTerms.push_back({0, {}, ScalingKind::Centred, 1, 1, {}, {0, 1}});
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
    // The form before lagged terms has no number for it at the end of each term, and tells of no levels and no tree.
    for (Term &term : definition.xTerms)
        term.lag = term.IsProduct() ? 0 : 0x01020304;
    definition.xTerms.pop_back();
    definition.levels.clear();
    definition.yTerms.clear();
    definition.kind = ModelKind::Pca;
    std::string older = definition.Save();
    for (Term &term : definition.xTerms) {
        older.erase(older.find("\x04\x03\x02\x01"), 4);
        term.lag = 0;
    }
    older[4] = 5;
    older.resize(older.size() - 2 * sizeof(std::uint64_t) - sizeof(bool));
    EXPECT_EQ(ModelDefinition::Load(Sealed(older)), definition);

    WritingArchive newer("DSFM", 99);
    EXPECT_THROW(FittedModel::Load(newer.Finish()), NCError);
}

void AskAll(std::filesystem::path const &path) {
    auto const project = Project::OpenToRead(path);
    for (ProjectVector const *vector : *ProjectVectorHandler::Instance())
        try {
            walk::ForModels(*vector, project, [&](ModelInfo const *info) {
                vector->CreateVectorRaw(project, walk::ArgumentsOf(*vector, info, 1).c_str());
            });
        } catch (NCError const &) {
        }
}

// Each byte in turn. What passes for a model answers, if with nonsense.
TEST(SavedForms, AreRefusedWhenTheirCountsDisagree) {
    TemporaryFolder const folder;
    small::ModelCase const cases[] = {{ModelTypeE::PCA, {}, {"y"}, 2}, {ModelTypeE::O2PLS, {"y", "x1"}, {}, 1}};
    for (auto const &model : cases) {
        auto const path = folder / (model.responses.empty() ? "pca.dsp" : "o2pls.dsp");
        auto project = Project::Create(path);
        project->AddDataSet(small::Read(small::oneMissing));
        small::AddModel(*project, model, small::newRows);
        project.reset();
        auto file = ProjectFile::OpenToWrite(path);
        auto const results = *file.Results(1);
        std::string const saved(reinterpret_cast<char const *>(results.data()), results.size() - sizeof(std::uint64_t));
        int refused = 0, loaded = 0;
        for (std::size_t at = 8; at < saved.size(); ++at) {
            auto damaged = saved;
            damaged[at] = static_cast<char>(at % 3 == 0 ? -1 : damaged[at] ^ (at % 3));
            damaged = Sealed(damaged);
            try {
                FittedModel::Load(damaged);
            } catch (NCError const &) {
                ++refused;
                continue;
            }
            if (++loaded % 100 != 0)
                continue;
            file.SetResults(1, std::as_bytes(std::span(damaged)));
            AskAll(path);
        }
        EXPECT_TRUE(refused > 500 && loaded > 500) << refused << ' ' << loaded;
    }
}

} // namespace
} // namespace engine
