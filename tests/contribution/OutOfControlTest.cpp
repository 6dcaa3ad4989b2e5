#include "contribution/OOCBatchContributionBuilder.h"
#include "tests/contribution/Plant.h"
#include "utilities/DefaultSelection.h"

namespace {

NCDataMatrix<float> MatrixOf(std::vector<std::vector<float>> const &rows) {
    NCDataMatrix<float> matrix;
    for (std::vector<float> const &row : rows)
        matrix.AppendRow(row);
    return matrix;
}

std::string PointsOf(RecordingProject const &project, ProjectVectorData const &data,
                     std::vector<std::string> const &batches) {
    ColumnIDs const columns(NCStringVector(batches), "Batch", project.shared_from_this(), ColumnIDs::Batches, 5);
    BatchPoints points;
    OOCBatchContributionBuilder(project).GetContributionVector(data, &columns, points, nullptr);
    std::string text;
    for (auto const &[batch, maturity] : points)
        text += batch + std::to_string(static_cast<int>(maturity)) + ' ';
    return text;
}

void SetPoints(RecordingProject &project, NCDataVector<float> const &maturity) {
    for (char const *operation : {"GetAlignedColumnIDs", "GetAlignedPSColumnIDs"})
        project.source.columnsOf[operation] = [=](Call const &call) {
            return ColumnIDs(maturity, "time", call.project.shared_from_this(), ColumnIDs::AlignedPoints, 5);
        };
}

// Averages 0, 10 and none, deviations 1, 0 and none. The batches of the predictions are C and A, those of the workset A
// and B.
TEST(OutOfControl, FindsPointsBeyondLimits) {
    Plant const plant;
    RecordingProject &project = *plant.project;
    SetPoints(project, {7, 8, 9});
    auto const limits = MatrixOf({{-1, 10, -99}, {0, 10, -99}, {1, 10, -99}});
    auto const shown = MatrixOf({{3, 10, 5}, {-3.5f, 9, -99}});
    struct {
        double first, second;
        char const *expected;
    } const bands[] = {{3, -3, "A7 A8 "},  {3, -99, ""},      {2.9, -99, "C7 "}, {-3, -99, "A7 A8 "},
                       {0, -99, "A7 A8 "}, {2, -4, "A8 C7 "}, {-99, 2, "C7 "}};
    struct {
        char const *vector, *shown, *limits;
    } const vectors[] = {{"TPSAlignedOOCSum", "GetAlignedTPSMat", "scores"},
                         {"DModXPSAlignedOOCSum", "GetAlignedDModXPSMat", "distances"},
                         {"XVarPSAlignedOOCSum", "GetAlignedXVarPSMat", "GetAlignedXVarMatrix"},
                         {"YPredPSAlignedOOCSum", "GetAlignedYPredPSMat", "GetAlignedYPredMat"}};
    for (auto const &row : vectors) {
        project.source.matrixOf = {{row.shown, shown}, {row.limits, limits}};
        project.Model(5).alignedScores = std::string(row.limits) == "scores" ? limits : NCDataMatrix<float>();
        project.Model(5).alignedDModX = std::string(row.limits) == "distances" ? limits : NCDataMatrix<float>();
        for (auto const &band : bands) {
            ProjectVectorData data = plant.Series(row.vector, 5, 1);
            data.SetNumber(1);
            data.multiplier1 = band.first;
            data.multiplier2 = band.second;
            EXPECT_EQ(PointsOf(project, data, {"A", "no", "C"}), band.expected) << row.vector << band.first;
        }
    }
    // A workset makes its own limits: 0.71 and -0.71 for 1 and -1.
    auto const own = MatrixOf({{1, 0}, {-1, 0}});
    project.Model(5).alignedScores = project.Model(5).alignedDModX = own;
    project.source.matrixOf = {{"GetAlignedTOMat", own}, {"GetAlignedXVarMatrix", own}, {"GetAlignedYPredMat", own}};
    project.Info(5).type = ModelTypeE::OPLS;
    for (char const *vector :
         {"TAlignedOOCSum", "TOAlignedOOCSum", "DModXAlignedOOCSum", "XVarAlignedOOCSum", "YPredAlignedOOCSum"}) {
        ProjectVectorData data = plant.Series(vector, 5, 1);
        data.SetNumber(1);
        data.multiplier1 = 0.5;
        EXPECT_EQ(PointsOf(project, data, {"B", "A"}), "A7 ") << vector;
        data.multiplier2 = -0.5;
        EXPECT_EQ(PointsOf(project, data, {"B", "A"}), "B7 A7 ") << vector;
        data.SetNumber(99); // no such variable
        std::string const name = vector;
        EXPECT_EQ(PointsOf(project, data, {"A"}), name[0] == 'X' || name[0] == 'Y' ? "" : "A7 ") << vector;
    }
    EXPECT_EQ(PointsOf(project, plant.Series("t", 5, 1), {"A"}), "");
}

// Ten batches: F(3, 7) is 8.4513 at 0.01, and the limit of three components 32.598.
TEST(OutOfControl, LimitsT2ByItsDistribution) {
    auto const project = MakeRecordingProject();
    std::vector<std::string> names;
    std::vector<std::uint32_t> rows;
    for (std::uint32_t row = 1; row <= 10; ++row) {
        names.push_back(std::string(1, static_cast<char>('A' + row - 1)));
        rows.push_back(row);
    }
    project->observations.AddAlias({"id", "", VarObs::Role::Plain, names});
    project->observations.AddAlias({"batch", "", VarObs::Role::Batch, names});
    project->AddBatchModel(12, names);
    project->AddWorkset(1, rows, {1});
    project->AddPredictions(1, {10, 9});
    SetPoints(*project, {7, 8});
    project->source.matrixOf["GetAlignedT2RangeMat"] = MatrixOf({{32.6f, 32.59f}, {0, 33}});
    project->source.matrixOf["GetAlignedT2RangePSMat"] = MatrixOf({{0, 32.6f}, {0, -99}});
    ProjectVectorData data;
    data.SetModelInfoPtr(project->GetModelInfo(1));
    for (auto const &[vector, expected] :
         {std::pair("T2RangeAlignedOOCSum", "B8 A7 "), {"T2RangePSAlignedOOCSum", "J8 "}}) {
        data.SetProjectVector(ProjectVectorHandler::Instance()->FindVector(
            vector, ProjectVector::VectorTypeBatch, ProjectVector::DataTypeModel, data.GetModelInfoPtr().get()));
        for (std::uint32_t const first : {1u, ProjectVectorData::NotSet}) {
            data.SetNumber(first);
            data.SetNumberID2(3);
            EXPECT_EQ(PointsOf(*project, data, {"B", "A", "J"}), expected);
        }
        for (std::uint32_t const last : {10u, ProjectVectorData::NotSet}) { // as many components as batches, or more
            data.SetNumberID2(last);
            EXPECT_EQ(MessageOf([&] { PointsOf(*project, data, {"A"}); }), "T2Crit can not be calculated.");
        }
    }
}

} // namespace
