#include "catalogue/ProjectVectorHandler.h"
#include "navigation/LabelOptionsManager.h"
#include "selection/SelectDataSeriesData.h"
#include "selection/SelectLabelArgument.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

namespace {

using namespace DataSeriesUtilities;
using Selection = SelectDataSeriesData;

constexpr int untouched = 77;

// The variable of data set 4 stands for an aligned point: its rows are batches. Data set 3 is an ordinary one.
class Labels : public testing::Test {
protected:
    Labels() {
        VariableInfo aligned(5);
        aligned.maturity = 1.5f;
        world.project->variables.SetInfo(aligned);
        world.project->AddData(3, {1, 2, 3}, {1, 2});
        world.project->AddData(4, {4, 5}, {5});
        world.project->options.observations = {2, 3, 4, 5};
        world.project->options.variables = {6, 7, 8, 9};
    }

    Selection Make(V::VectorTypeEnum axis, bool isOfBatches, bool isOfItem = false) {
        m_probes.push_back(std::make_unique<VectorProbe>(
            VectorTraits{.type = axis, .number = isOfItem ? ObsOrVar : NoNumber, .data = OfSet}));
        Selection selection(world.project, Selection::Normal, V::VectorTypeNone, -1, V::ObsAndPred);
        selection.AddSeries(world.Data(*m_probes.back(), isOfBatches ? "DS4" : "DS3"), false);
        selection.SetVectorType(axis);
        return selection;
    }

    std::string Options(Selection const &selection) const {
        SelectLabelArgument label;
        LabelOptionsManager(selection).SetLabelArgFromOptions(label);
        return std::to_string(label.GetType()) + ": " + std::to_string(label.GetSelID()) + ' ' +
               std::to_string(label.GetStartPos()) + ' ' + std::to_string(label.GetLength()) +
               (label.FromOptions() ? "" : " own");
    }

    World world;
    std::vector<std::unique_ptr<VectorProbe>> m_probes;
};

} // namespace

TEST_F(Labels, ComeFromTheProjectOrFromWholeBatches) {
    struct {
        V::VectorTypeEnum axis;
        char const *ordinary, *unsaved, *saved;
    } const cases[] = {{Scores, "1: 2 3 4", "1: 3 3 4 own", "1: 11 12 13"},
                       {Loadings, "2: 6 7 8", "2: 6 7 8", "2: 21 22 23"},
                       {PerComponent, "3: 1 1 20", "3: 1 1 20", "3: 1 1 20"},
                       {Aligned, "5: -1 1 20", "5: -1 1 20", "5: -1 1 20"},
                       {PerBatch, "6: 1 3 4", "6: 1 1 10", "6: 1 12 13"}};
    for (auto const &test : cases) {
        EXPECT_EQ(Options(Make(test.axis, false)), test.ordinary);
        EXPECT_EQ(Options(Make(test.axis, true)), test.unsaved);
    }
    for (auto const &[axis, first] : {std::pair(Scores, 11), {Loadings, 21}})
        LabelOptionsManager(Make(axis, true)).SaveAsDefaultOptions({first, first + 1, first + 2, first + 3});
    for (auto const &test : cases)
        EXPECT_EQ(Options(Make(test.axis, true)), test.saved);
    EXPECT_EQ(Options(Make(Scores, false)), "1: 2 3 4") << "ordinary data have labels of their own";

    EXPECT_EQ(SourceTypeEnum::GetSourceType(nullptr), SourceTypeEnum::NoSelection);
    Selection const ordinary = Make(Scores, false), ofBatches = Make(Scores, true);
    EXPECT_EQ(SourceTypeEnum::GetSourceType(&ordinary), SourceTypeEnum::OrdinaryData);
    EXPECT_EQ(SourceTypeEnum::GetSourceType(&ofBatches), SourceTypeEnum::BatchLevelData);
}

TEST_F(Labels, AreReadFromSectionsUnlessTheyFollowTheOptions) {
    Selection const selection = Make(Scores, false);
    for (bool const follows : {false, true})
        for (bool const isWhole : {false, true}) {
            SelectLabelArgument saved, read;
            saved.SetType(PerComponent);
            saved.SetFromOptions(follows);
            XercesXMLSection section;
            saved.WriteSection(&section);
            if (!isWhole)
                section.DeleteKey("Type");
            EXPECT_EQ(LabelOptionsManager(selection).ReadLabelArgSection(read, &section), isWhole);
            bool const isOwn = isWhole && !follows;
            EXPECT_EQ(read.GetType(), isOwn ? PerComponent : Scores) << follows << isWhole;
            EXPECT_EQ(read.GetLength(), isOwn ? 20 : 4) << follows << isWhole;
        }
}

TEST_F(Labels, BecomeDefaults) {
    auto const setting = [](Selection const &selection) {
        LabelSetting read{untouched, untouched, untouched, untouched};
        LabelOptionsManager(selection).GetLabelSetting(read);
        return std::vector{read.LabelID, read.StartPos, read.Length, read.TitleLabel};
    };
    EXPECT_EQ(setting(Make(Scores, false, true)), (std::vector{2, 3, 4, 9})) << "the title is that of a variable";
    EXPECT_EQ(setting(Make(Loadings, false, true)), (std::vector{6, 7, 8, 5}));
    EXPECT_EQ(setting(Make(Scores, false)), (std::vector{2, 3, 4, untouched}));
    EXPECT_EQ(setting(Make(PerComponent, false)), (std::vector{1, 1, 10, 1}));
    EXPECT_EQ(setting(Make(Scores, true)), (std::vector(4, untouched)));
    Selection averaged = Make(Scores, false);
    TransformationData transformation;
    transformation.SetTransformationType(TransformationData::EWMA);
    transformation.SetSampleSize(5);
    averaged.SetTransformationData(transformation);
    EXPECT_EQ(setting(averaged), (std::vector(4, untouched)));

    NCProjectOptions const before = world.project->options;
    LabelOptionsManager(averaged).SaveAsDefaultOptions({1, 1, 1, 1});
    LabelOptionsManager(Make(PerComponent, false)).SaveAsDefaultOptions({1, 1, 1, 1});
    EXPECT_EQ(world.project->options, before);
    LabelOptionsManager(Make(Loadings, false, true)).SaveAsDefaultOptions({31, 32, 33, 34});
    EXPECT_EQ(world.project->options.variables, (NCProjectOptions::LabelSettings{31, 32, 33, 9}));
    EXPECT_EQ(world.project->options.observations, (NCProjectOptions::LabelSettings{2, 3, 4, 34}));
}
