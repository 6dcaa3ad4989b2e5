#include "platform/identity/ProjectData.h"
#include "platform/project/ModelAndDatsetMemoryLock.h"
#include "platform/project/ModelUtilities.h"
#include "platform/project/NCProjectHandler.h"
#include "platform/project/NCSignals.h"
#include "platform/text/Exception.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

constexpr float none = -99.0f;
using Row = std::vector<float>;
using Numbers = std::vector<std::uint32_t>;

ColumnIDs Columns(Numbers const &items) {
    return ColumnIDs(ColumnIDs::Observations, ColumnIDs::Numbers(items), {}, 1);
}

// Columns by number; rows called "r1", "r2", ...
ProjectData Table(Numbers const &items, std::vector<Row> const &rows) {
    NCDataMatrix<float> matrix;
    NCStringVector names;
    for (Row const &row : rows) {
        matrix.AppendRow(row);
        names.push_back("r" + std::to_string(matrix.Rows()));
    }
    return ProjectData(RowIDs(names, {}), Columns(items), matrix);
}

// "1 2 3| r1: 5 6 7| ..." : the columns, then each row.
std::string Text(ProjectData const &data) {
    std::ostringstream text;
    for (int column = 1; column <= data.Columns(); ++column)
        text << data.GetColumnName(column) << ' ';
    for (int row = 1; row <= data.Rows(); ++row) {
        text << "| " << data.GetRowName(row) << ':';
        for (float const value : data.GetMatrix().Row(row))
            text << ' ' << value;
    }
    return text.str();
}

} // namespace

TEST(ProjectData, JoinsOnCommonColumnsAndPicksThem) {
    ProjectData const start = Table({4, 5, 6}, {{1, 2, none}});
    // other's columns and row; after the join; those columns alone
    struct {
        Numbers items;
        Row row;
        char const *joined, *used;
    } const cases[] = {{{4, 5, 6}, {7, 8, 9}, "4 5 6 | r1: 1 2 -99| r1: 7 8 9", "4 5 6 | r1: 1 2 -99"},
                       {{6, 4, 5}, {7, 8, 9}, "4 5 6 | r1: 1 2 -99| r1: 8 9 7", "6 4 5 | r1: -99 1 2"},
                       {{9, 6, 8, 4}, {7, 8, 9, 1}, "4 6 | r1: 1 -99| r1: 1 8", "6 4 | r1: -99 1"},
                       {{5}, {7}, "5 | r1: 2| r1: 7", "5 | r1: 2"},
                       {{1, 2}, {7, 8}, nullptr, nullptr}};
    for (auto const &[items, row, joined, used] : cases) {
        ProjectData data(start);
        data.SetColumnClasses({10, 20, 30});
        data.AddOriginalColumnIDs(Columns({1}), {{1}, {2}, {3}});
        ProjectData const classed(data);
        EXPECT_EQ(data.InterSection(Table(items, {row})), joined != nullptr);
        EXPECT_EQ(Text(data), joined ? joined : Text(start));
        auto const reduced = classed.UseOnly(Columns(items));
        EXPECT_EQ(reduced ? Text(*reduced) : "", used ? used : "");
        for (int column = 1; column <= data.Columns(); ++column) {
            int const place = static_cast<int>(data.GetColumnIDs().GetColumnID(column)) - 3;
            EXPECT_EQ(data.GetColumnClass(column), 10 * place);
            EXPECT_EQ(data.GetOriginalGroups()[static_cast<std::size_t>(column - 1)], std::vector<int>{place});
        }
    }
    ProjectData twice(start);
    EXPECT_TRUE(twice.InterSection(twice));
    EXPECT_EQ(Text(twice), "4 5 6 | r1: 1 2 -99| r1: 1 2 -99");
    EXPECT_THROW(ProjectData(RowIDs("r", {}), Columns({1, 2}), NCDataMatrix<float>(1, 3)), NCInternalError);
}

TEST(ProjectData, AdjustsRowsAndKeepsMissingValues) {
    struct {
        Row multipliers, offsets;
        bool label;
        char const *result;
    } const cases[] = {{{2, 1}, {0.5f, 0}, false, "1 2 | r1: 2.5 -99| r2: 3 4"},
                       {{2, 1}, {-0.5f, 0}, true, "1 2 | r1 * 2 - 0.5: 1.5 -99| r2: 3 4"},
                       {{0, -1}, {-99, 1}, true, "1 2 | r1 * 0 - 99: -99 -99| r2 * -1 + 1: -2 -3"},
                       {{3}, {1, 1}, false, "1 2 | r1: 4 -99| r2: 3 4"},
                       {{}, {}, true, "1 2 | r1: 1 -99| r2: 3 4"}};
    for (auto const &[multipliers, offsets, label, result] : cases) {
        ProjectData data = Table({1, 2}, {{1, none}, {3, 4}});
        data.AdjustRows(multipliers, offsets, label);
        EXPECT_EQ(Text(data), result);
    }
    ProjectData mark = Table({1}, {{1}});
    mark.AdjustRows({0}, {-99}, false);
    EXPECT_GT(mark.GetMatrix()(1, 1), none) << "a computed -99 is not taken for a missing value";
}

TEST(ProjectData, TravelsInStreamsAndRefusesDamage) {
    ProjectData data = Table({1, 2}, {{1, none}});
    data.AppendNumRow({5, 6}, "%.3g");
    data.SetColumnClasses({1, 2});
    data.AddOriginalColumnIDs(Columns({7, 8, 9}), {{1, 3}, {2}});
    ProjectData longer = Table({1, 2}, {{0, 0}});
    EXPECT_TRUE(longer.InterSection(data));
    EXPECT_EQ(longer.GetRowFormat(1) + longer.GetRowFormat(2) + longer.GetRowFormat(3), "%.3g");
    std::ostringstream out;
    out << data;
    std::istringstream in(out.str());
    ProjectData read = Table({4}, {{4}});
    in >> read;
    EXPECT_EQ(Text(read), "1 2 | r1: 1 -99| Num: 5 6");
    EXPECT_EQ(read.GetRowFormat(2), "%.3g");
    EXPECT_EQ(read.GetColumnClass(2), 2);
    EXPECT_EQ(read.GetOriginalColumnIDs(), Columns({7, 8, 9}));
    EXPECT_EQ(read.GetOriginalGroups(), data.GetOriginalGroups());
    for (std::size_t size = 0; size < out.str().size(); ++size) {
        std::istringstream cut(out.str().substr(0, size));
        EXPECT_THROW(cut >> read, VqStreamError) << size;
    }
    EXPECT_EQ(read.Rows(), 2);
}

TEST(ModelInfo, TravelsInStreams) {
    ModelInfo info;
    info.number = 3;
    info.name = "M3";
    info.type = ModelTypeE::OPLS;
    info.predictiveComponents = 2;
    info.isBatchModel = info.hasDateTime = true;
    info.classOrPhaseNames = {"heat", ""};
    info.dataSets = {1, 4};
    info.phaseGroup = 7;
    info.responseWeighting = 1;
    std::stringstream stream;
    stream << info;
    ModelInfo read;
    stream >> read;
    EXPECT_EQ(read, info);
    std::istringstream cut(stream.str().substr(0, stream.str().size() - 1));
    EXPECT_THROW(cut >> read, VqStreamError);
}

TEST(ModelUtilities, PutAnswersTogether) {
    auto const project = MakeRecordingProject();
    for (int predictive : {0, 2, 2, 1, 2, 0})
        project->AddModel(predictive == 1 ? ModelTypeE::PLS : ModelTypeE::PCA, predictive);
    for (int lagged : {1, 3, 4})
        project->Info(lagged).hasLaggedVariables = true;
    for (int phase : {3, 4, 6}) {
        project->Info(phase).isBatchModel = true;
        project->Info(phase).phaseGroup = 8;
        project->Info(phase).classOrPhaseNames = {"p" + std::to_string(phase)};
    }
    project->Info(5).isBatchLevel = true;
    project->Info(5).dataSets = {1, 2};
    project->dataSets[2].sourceDataSet = 1;
    project->dataSets[2].sourceModels = {3, 4};
    project->dataSets[1].oscComponents = 2;
    // model; has components, first lagged model, source data set and model, source model of phase p4, phase, matching
    // models with and without those that are not fitted, and of the same type
    using Models = std::vector<int>;
    struct {
        int model;
        bool has;
        int lagged, sourceSet, sourceModel, sourceOfPhase;
        char const *phase;
        Models fitted, all, sameType;
    } const cases[] = {{1, false, 3, 0, 0, 0, "", {}, {1}, {1}},
                       {4, true, 4, 0, 0, 0, "p4", {3, 4}, {3, 4, 6}, {4}},
                       {3, true, 3, 0, 0, 0, "p3", {3, 4}, {3, 4, 6}, {3, 6}},
                       {5, true, 3, 1, 3, 4, "", {5}, {5}, {5}},
                       {9, false, 3, 0, 0, 0, "", {}, {}, {}}};
    for (auto const &row : cases) {
        SCOPED_TRACE(row.model);
        EXPECT_EQ(ModelUtilities::ModelHasComponents(*project, row.model), row.has);
        EXPECT_EQ(ModelUtilities::GetFirstLaggedModel(*project, row.model), row.lagged);
        EXPECT_EQ(ModelUtilities::GetBatchLevelSourceDS(*project, row.model), row.sourceSet);
        EXPECT_EQ(ModelUtilities::GetBatchLevelSourceModel(*project, row.model), row.sourceModel);
        EXPECT_EQ(ModelUtilities::GetBatchLevelSourceModel(*project, row.model, "p4"), row.sourceOfPhase);
        EXPECT_EQ(ModelUtilities::GetPhaseName(*project, row.model), row.phase);
        auto const matching = [&](bool fitted, MatchingModelE::Matching how) {
            return ModelUtilities::FindMatchingModels(*project, row.model, fitted, how);
        };
        EXPECT_EQ(matching(true, MatchingModelE::SamePhaseGroup), row.fitted);
        EXPECT_EQ(matching(false, MatchingModelE::SamePhaseGroup), row.all);
        EXPECT_EQ(matching(false, MatchingModelE::SameType), row.sameType);
    }
    EXPECT_EQ(ModelUtilities::GetFirstLaggedModel(*MakeRecordingProject(), 1), 0);
    EXPECT_EQ(ModelUtilities::NumberOfOSCComponents(*project, 1) * 10 +
                  ModelUtilities::NumberOfOSCComponents(*project, 9),
              20);
}

TEST(NCSignals, ReachListenersInOrderUntilTheyDisconnect) {
    auto const project = MakeRecordingProject();
    std::string told;
    auto const tell = [&told](std::string const &what) { told += what + " "; };
    using Purged = NCSignals::Numbers;
    boost::signals2::connection const connections[] = {
        NCSignals::ConnectProjectDestroying([&] { tell("gone"); }),
        NCSignals::ConnectModelDestroying([&](NCProject const &, int model) { tell("m" + std::to_string(model)); }),
        NCSignals::ConnectActiveProjectChanged([&](NCProject const *active) { tell(active ? "active" : "none"); }),
        NCSignals::ConnectVarObsDeleted([&](int set) { tell("d" + std::to_string(set)); }),
        NCSignals::ConnectVarObsDeleted([&](int) { tell("first"); }, NCSignals::AtFront),
        NCSignals::ConnectDatasetDeleted([&](NCProject const &, int set) { tell("D" + std::to_string(set)); }),
        NCSignals::ConnectVariablesPurged(
            [&](NCProject const &, Purged const &n) { tell("v" + std::to_string(n[1])); }),
        NCSignals::ConnectObservationsPurged(
            [&](NCProject const &, Purged const &n) { tell("o" + std::to_string(n[1])); })};
    for (bool connected : {true, false}) {
        NCSignals::FireProjectDestroying();
        NCSignals::FireModelDestroying(*project, 3);
        NCSignals::FireActiveProjectChanged(project.get());
        NCSignals::FireActiveProjectChanged(nullptr);
        NCSignals::FireVarObsDeleted(4);
        NCSignals::FireDatasetDeleted(*project, 5);
        NCSignals::FireVariablesPurged(*project, {6});
        NCSignals::FireObservationsPurged(*project, {7});
        EXPECT_EQ(told, connected ? "gone m3 active none first d4 D5 v6 o7 " : "");
        told.clear();
        for (auto const &connection : connections)
            connection.disconnect();
    }
}

TEST(NCProjectHandler, IsTheOneThatTheApplicationMade) {
    struct Handler final : NCProjectHandler {
        boost::shared_ptr<NCProject> NCGetProject(int id) const override { return id == 1 ? project : nullptr; }
        boost::shared_ptr<RecordingProject> project = MakeRecordingProject();
    };
    EXPECT_THROW(NCProjectHandler::Instance(), Exception);
    Handler const handler;
    EXPECT_EQ(NCProjectHandler::Instance().NCGetProject(1), handler.project);
    EXPECT_EQ(NCProjectHandler::Instance().GetGeneralOptions().GetEWMAType(), ControlChart::Filtered);
    {
        ModelAndDatsetMemoryLock const outer(*handler.project), inner(*handler.project);
        EXPECT_EQ(handler.project->memoryLocks, 2);
    }
    EXPECT_EQ(handler.project->memoryLocks, 0);
}
