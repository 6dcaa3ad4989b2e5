#include "catalogue/ProjectVectorHandler.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "navigation/SelectionList.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/support/ProbeVector.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Selection = SelectDataSeriesData;
using namespace probes;
using Names = std::vector<std::string>;

char const *const sevenRows = "id,batch,phase,x1,x2\no1,A,p1,1,2\no2,A,p1,2,1\no3,A,p2,3,5\no4,B,p1,4,3\no5,B,p2,5,7\n"
                              "o6,B,p2,6,4\no7,C,p1,7,9\n";

// A PCA of seven observations in batches A (3), B (3) and C, with phases p1 and p2; and the same without phases.
class BatchSelection : public testing::Test {
protected:
    static void SetUpTestSuite() {
        s_folder = new TemporaryFolder;
        for (bool const phased : {true, false}) {
            engine::TableOptions options;
            options.batchColumn = "batch";
            options.phaseColumn = phased ? "phase" : "";
            std::istringstream stream(sevenRows);
            auto const project = engine::Project::Create(*s_folder / (phased ? "phased" : "plain"));
            project->AddDataSet(engine::ReadTable(stream, "table", options));
            engine::ModelRequest request;
            request.components = 1;
            project->AddModel(request);
            std::istringstream further("id,batch,x1\no8,D,1\no9,E,2\no10,E,3\n");
            project->AddDataSet(engine::ReadTable(further, "without phases", {.batchColumn = "batch"}));
            (phased ? s_phased : s_plain) = project;
        }
    }
    static void TearDownTestSuite() {
        s_phased.reset();
        s_plain.reset();
        delete s_folder;
    }

    static ProjectVectorData Data(ProjectVector const &vector, int batch = -1) {
        ProjectVectorData data;
        data.SetProjectVector(&vector);
        data.SetModelInfoPtr(s_phased->GetModelInfo(1));
        data.batchIx = batch;
        return data;
    }

    static Selection Selected(bool phased, char const *flags) {
        ProjectVector const &t =
            *ProjectVectorHandler::Instance()->FindVector("t", Scores, OfModel, s_phased->GetModelInfo(1).get());
        Selection selection(phased ? s_phased : s_plain, Selection::Normal, Scores, -1, V::ObsAndPred);
        ProjectVectorData series = Data(t);
        series.SetComponent(1);
        selection.AddSeries(series, true);
        BoolVector objects;
        for (; *flags; ++flags)
            objects.push_back(*flags == '1');
        selection.SetSelectObjects(objects);
        return selection;
    }

    static std::string Flags(Selection const &selection) {
        std::string flags;
        for (bool const flag : selection.GetSelectObjects().Values())
            flags += flag ? '1' : '0';
        return flags;
    }

    static inline TemporaryFolder *s_folder;
    static inline boost::shared_ptr<engine::Project> s_phased, s_plain;
};

} // namespace

TEST_F(BatchSelection, SelectsByNumberAndPhase) {
    struct {
        char const *before;
        std::vector<int> batches;
        bool keepPhase;
        char const *after;
    } const cases[] = {{"1000000", {1, 2}, false, "1111110"}, {"1000000", {3}, false, "0000001"},
                       {"1111111", {}, false, "0000000"},     {"1111111", {9, 0, 2}, false, "0001110"},
                       {"0010000", {1, 2}, true, "0010110"},  {"0010001", {3, 1}, true, "0010000"},
                       {"1000000", {2, 3}, true, "0001001"},  {"0000000", {1, 2}, true, "0000000"}};
    for (auto const &row : cases) {
        Selection selection = Selected(true, row.before);
        selection.SelectBatches(row.batches, row.keepPhase);
        EXPECT_EQ(Flags(selection), row.after) << row.before;
    }
}

TEST_F(BatchSelection, SelectsByName) {
    for (auto const &[names, type, after] : std::initializer_list<std::tuple<Names, int, char const *>>{
             {{"B"}, 2, "0001110"}, {{"C", "A", "Z"}, 2, "1110001"}, {{"Z"}, 0, "0000000"}, {{}, 0, "0000000"}}) {
        Selection selection = Selected(true, "0101010");
        EXPECT_EQ(selection.SelectBatches(names), type);
        EXPECT_EQ(Flags(selection), after);
    }
    // Batch, phase (null for none), the selected items with phases and without
    struct {
        char const *batch, *phase, *phased, *plain;
    } const cases[] = {{"B", "p2", "0000110", "0001110"}, {"B", "", "0001110", "0001110"},
                       {"", "p2", "0010000", "1110000"},  {"", nullptr, "1110000", "1110000"},
                       {"Z", "p1", "0000000", "0000000"}, {"C", "p2", "0000000", "0000001"}};
    for (auto const &row : cases)
        for (bool const phased : {true, false}) {
            Selection selection = Selected(phased, "0101010");
            selection.SetSelectedBatchAndPhase(row.batch, row.phase);
            EXPECT_EQ(Flags(selection), phased ? row.phased : row.plain) << row.batch;
        }
}

TEST_F(BatchSelection, SelectsWholeBatchesOfDataWithoutPhases) {
    Selection selection(s_phased, Selection::Normal, Scores, -1, V::ObsAndPred);
    ProjectVectorData series;
    series.SetProjectVector(ProjectVectorHandler::Instance()->FindVector("VarDS", Scores, OfSet, nullptr));
    series.SetDataSet(2);
    series.SetNumber(1);
    selection.AddSeries(series, true);
    for (auto const &[phase, after] : {std::pair("p1", "011"), {"", "011"}, {nullptr, "011"}}) {
        selection.SetSelectedBatchAndPhase("E", phase);
        EXPECT_EQ(Flags(selection), after);
    }
    selection.SelectBatches(std::vector{1}, true);
    EXPECT_EQ(Flags(selection), "100");
}

TEST_F(BatchSelection, TellsWhatIsSelectedWhole) {
    // A hole between the first and the last selected item goes unseen by the last question.
    // Selected items; numbers and names of whole batches; whether it is one phase; the single batch and phase ("-" when
    // there is none), with phases and without
    struct {
        char const *flags;
        std::vector<int> batches;
        bool isPhase;
        Names names;
        char const *phased, *plain;
    } const cases[] = {{"1110000", {1}, false, {"A"}, "-", "A/"},    {"1111110", {1, 2}, false, {"A", "B"}, "-", "-"},
                       {"0000001", {3}, false, {"C"}, "C/p1", "C/"}, {"0010000", {1}, true, {}, "A/p2", "-"},
                       {"0000110", {2}, true, {}, "B/p2", "-"},      {"1100000", {1}, true, {}, "A/p1", "-"},
                       {"0010110", {}, false, {}, "-", "-"},         {"0100000", {}, false, {}, "-", "-"},
                       {"1000000", {}, false, {}, "-", "-"},         {"1010000", {1}, true, {}, "-", "A/"},
                       {"0000000", {}, false, {}, "-", "-"}};
    for (auto const &row : cases) {
        SCOPED_TRACE(row.flags);
        Selection const phased = Selected(true, row.flags), plain = Selected(false, row.flags);
        std::vector<int> batches{9};
        EXPECT_EQ(phased.GetSelectedBatches(batches), row.isPhase);
        EXPECT_EQ(batches, row.batches);
        EXPECT_FALSE(plain.GetSelectedBatches(batches));
        EXPECT_EQ(batches, row.isPhase ? std::vector<int>() : row.batches);
        Names names{"old"};
        phased.GetSelectedBatches(names);
        EXPECT_EQ(names, row.names);
        for (auto const &[selection, expected] : {std::pair(&phased, row.phased), {&plain, row.plain}}) {
            std::string batch, phase;
            bool const found = selection->HasSingleBatchAndPhase(batch, phase);
            EXPECT_EQ(found ? batch + "/" + phase : "-", expected);
        }
    }
}

TEST_F(BatchSelection, LeavesSeriesOfBatchesAlone) {
    VectorProbe batchVector({.name = "ofBatch", .number = Batch, .flags = "R"});
    VectorProbe aligned({"al", Aligned, Batch, 0, OfModel, V::Observed, 0, "R"});
    VectorProbe perBatch({.name = "per", .type = PerBatch, .flags = "R"});
    batchVector.columns = [](ProjectPtr const &project, std::string const &) {
        return ColumnIDs(ColumnIDs::Observations, {1, 2, 3, 4, 5, 6, 7}, project, 1);
    };
    perBatch.columns = [](ProjectPtr const &project, std::string const &) {
        return ColumnIDs(NCStringVector{"A", "B", "C"}, "batch", project, ColumnIDs::Batches, 1);
    };
    Selection series = Selected(true, "0101010");
    series.AddSeries(Data(batchVector, 1), true);
    EXPECT_EQ(series.SelectBatches(Names{"A"}), Selection::SeriesHaveBatches);
    EXPECT_EQ(Flags(series), "0101010");
    for (auto const &[mode, x, type] : {std::tuple(Selection::AxisX, true, 1),
                                        {Selection::AxisY, true, 1},
                                        {Selection::AxisY, false, 2},
                                        {Selection::Normal, true, 2}}) {
        Selection axes = Selected(true, "0101010");
        axes.SetMode(mode);
        axes.SetXAxis(x ? Data(batchVector, 1) : axes.GetSeries(1)); // speaks for both axes
        axes.SetYAxis(x ? axes.GetSeries(1) : Data(batchVector, 1));
        EXPECT_EQ(axes.SelectBatches(Names{"A"}), type);
    }

    Selection batches(s_phased, Selection::Normal, PerBatch, -1, V::ObsAndPred);
    batches.AddSeries(Data(perBatch), true);
    EXPECT_EQ(batches.SelectBatches(Names{"C", "A"}), Selection::ItemsSelected);
    Names names;
    batches.GetSelectedBatches(names);
    EXPECT_EQ(names, Names({"A", "C"}));
    EXPECT_EQ(batches.SelectBatches(Names{"Z"}), Selection::NothingSelected);
    EXPECT_EQ(Flags(batches), "000");
    batches.SelectBatches(std::vector{1}, false); // rows of another kind
    EXPECT_EQ(Flags(batches), "000");

    Selection shown(s_phased, Selection::Normal, Aligned, -1, V::ObsAndPred);
    for (int const batch : {3, -1, 1, 3, 0})
        shown.AddSeries(Data(aligned, batch), false);
    std::vector<int> numbers;
    EXPECT_FALSE(shown.GetSelectedBatches(numbers));
    EXPECT_EQ(numbers, std::vector({3, 1, 3}));
    shown.GetSelectedBatches(names);
    EXPECT_EQ(names, Names({"A", "C"}));
}

TEST_F(BatchSelection, BelongsToItsProjectWithOneBatch) {
    for (auto const &[phased, flags, type] :
         std::initializer_list<std::tuple<bool, char const *, Selection::DataSeriesGlobalType>>{
             {true, "1111111", Selection::GlobalTypeIndependent},
             {true, "1100000", Selection::GlobalTypeProject},
             {true, "0110000", Selection::GlobalTypeIndependent},
             {false, "1110000", Selection::GlobalTypeProject}})
        EXPECT_EQ(Selected(phased, flags).IsProjectIndependent(), type) << flags;
}

TEST_F(BatchSelection, IsOneOfSeveral) {
    Selection one = Selected(false, "0001110"), other = Selected(false, "1110001");
    DataSeriesUtilities::SelectionList const all{&one, &other};
    EXPECT_EQ(DataSeriesUtilities::GetAllBatches(all), Names({"A", "B", "C"}));
    EXPECT_EQ(DataSeriesUtilities::GetSelectedBatches(all), Names({"B", "A", "C"}));
    EXPECT_TRUE(DataSeriesUtilities::SetAllSelectedBatches(all, {"C"}));
    EXPECT_EQ(Flags(one) + Flags(other), "00000010000001");
}

TEST_F(BatchSelection, SurvivesItsProject) {
    Selection selection = Selected(true, "1110000");
    selection.SetProject(nullptr, false);
    std::vector<int> batches;
    selection.SelectBatches(std::vector{1}, true);
    selection.SetSelectedBatchAndPhase("A", "p1");
    EXPECT_EQ(selection.SelectBatches(Names{"A"}), Selection::NothingSelected);
    EXPECT_FALSE(selection.GetSelectedBatches(batches));
    EXPECT_EQ(Flags(selection), "1110000");
}
