#include "catalogue/ProjectVectorHandler.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

#include <list>
#include <tuple>

namespace {

// The vectors that defaults choose among, in front of others of these names.
class Catalogue {
public:
    Catalogue() {
        std::tuple<char const *, V::VectorTypeEnum, V::NumberType, int, V::DataTypeEnum, V::ObsOrPredType> const
            rows[] = {{"XVar", Scores, X, 0, OfModel, V::Observed},
                      {"XVarPS", Scores, X, 0, OfModel, Predicted},
                      {"R2Xcum", PerComponent, NoNumber, 0, OfModel, V::Observed},
                      {"pLag", Lag, NoNumber, 1, OfModel, V::Observed},
                      {"t", Aligned, NoNumber, 1, OfModel, V::Observed},
                      {"tPS", Aligned, NoNumber, 1, OfModel, V::Observed},
                      {"XVar", Aligned, BatchX, 0, OfModel, V::Observed},
                      {"XVarPS", Aligned, BatchX, 0, OfModel, Predicted},
                      {"TAlignedOOCSum", PerBatch, NoNumber, 1, OfModel, V::Observed},
                      {"XObs", Loadings, ObsOrVar, 0, OfModel, V::Observed},
                      {"VarDS", Scores, ObsOrVar, 0, OfSet, V::Observed},
                      {"VarPS", Scores, ObsOrVar, 0, OfPredSet, Predicted},
                      {"ObsDS", Loadings, ObsOrVar, 0, OfSet, V::Observed},
                      {"ObsPS", Loadings, ObsOrVar, 0, OfPredSet, Predicted}};
        for (auto const &[name, type, number, components, data, obsPred] : rows)
            m_vectors.emplace_back(VectorTraits{name, type, number, components, data, obsPred, 0, "R"});
    }

    ProjectVector const &XVar() const { return m_vectors.front(); }

private:
    std::list<VectorProbe> m_vectors;
};

// "t 1 M1 c1 n-1,-1 b-1": vector and axis, source, stored predictive component, numbers, batch.
std::string Text(ProjectVectorData const &data) {
    ProjectVector const *const vector = data.GetProjectVector();
    ProjectVectorData raw(data);
    VectorProbe const stored({.components = 1});
    raw.SetProjectVector(&stored);
    int const component = raw.GetModelInfo() ? raw.GetPredComponent(false) : 0;
    std::string const number2 = std::to_string(static_cast<int>(data.GetNumberID2(nullptr, false)));
    return (vector ? vector->GetName() + std::string(" ") + std::to_string(vector->GetType()) : "none") + " " +
           data.GetDataSourceName() + " c" + std::to_string(component) + " n" +
           std::to_string(static_cast<int>(data.GetNumberID())) + "," + number2 + " b" + std::to_string(data.batchIx);
}

} // namespace

TEST(VectorDefaults, ChooseTheFirstVector) {
    World const world; // 1 PLS, 2 OPLS, 3 O2PLS, 4 of batches, all fitted
    RecordingProject &project = *world.project;
    project.AddBatchModel(0, {"A"});      // 5: of batches, without components
    project.AddModel(ModelTypeE::PCA, 0); // 6: without components
    project.AddWorkset(5, {3, 4}, {1, 2, 3});
    project.AddWorkset(6, {2, 3}, {1, 2, 3});
    project.AddModel(ModelTypeE::PCA, 2); // 7: lagged
    project.Info(7).hasLaggedVariables = true;
    World const empty; // nothing fitted, no prediction set
    for (int model = 1; model <= 4; ++model)
        empty.project->Info(model).fitted = false;
    auto const none = MakeRecordingProject(); // no models
    none->AddData(3, {7, 8}, {9, 10});
    none->AddData(0, {5}, {6});
    auto const bare = MakeRecordingProject(); // nothing
    Catalogue const catalogue;

    constexpr auto Component = PerComponent, Batch = PerBatch;
    constexpr int Obs = 1, Pred = 2, Both = 3;
    constexpr char const *no = nullptr;
    // Project; axis; data type; model (0 none); observed or predicted; then the record: for an empty record, and for
    // one that shows XVar of model 2. "=" is the same, null false with nothing changed.
    struct {
        boost::shared_ptr<RecordingProject> project;
        V::VectorTypeEnum type;
        int data, model, obsPred;
        char const *ofEmpty, *ofUsed;
    } const cases[] = {
        {world.project, Component, 4, 0, Both, "R2Xcum 3 M1 c-1 n1,-1 b-1", "R2Xcum 3 M2 c-1 n3,-1 b-1"},
        {world.project, Component, 4, 3, Both, "R2Xcum 3 M3 c-1 n1,-1 b-1", "R2Xcum 3 M3 c-1 n3,-1 b-1"},
        {empty.project, Component, 4, 0, Both, "none  c0 n1,-1 b-1", "R2Xcum 3 M2 c-1 n3,-1 b-1"},
        {world.project, Lag, 4, 0, Both, "pLag 4 M7 c1 n1,-1 b-1", "="},
        {world.project, Lag, 4, 7, Both, "pLag 4 M7 c1 n1,-1 b-1", "="},
        {world.project, Lag, 4, 1, Both, "pLag 4 M7 c1 n1,-1 b-1", "="},
        {empty.project, Lag, 4, 1, Both, no, no},
        {world.project, Aligned, 4, 0, Both, "t 5 M4 c1 n-1,-1 b1", "t 5 M4 c1 n3,-1 b1"},
        {world.project, Aligned, 4, 1, Pred, "tPS 5 M4 c1 n-1,-1 b1", "tPS 5 M1 c1 n3,-1 b1"},
        {world.project, Aligned, 4, 5, Obs, "XVar 5 M5 c-1 n1,-1 b1", "="},
        {world.project, Aligned, 4, 5, Pred, "XVarPS 5 M5 c-1 n1,-1 b1", "="},
        {world.project, Batch, 4, 0, Both, "TAlignedOOCSum 6 M4 c1 n-1,-1 b-1", "TAlignedOOCSum 6 M4 c1 n3,-1 b-1"},
        {world.project, Batch, 4, 5, Both, "Num 6 M5 c-1 n-1,-1 b-1", "Num 6 M5 c-1 n3,-1 b-1"},
        {empty.project, Batch, 4, 0, Both, "Num 6  c0 n-1,-1 b-1", "Num 6  c0 n3,-1 b-1"},
        // Scores and loadings of models.
        {world.project, Scores, 4, 0, Both, "t 1 M1 c1 n-1,-1 b-1", "t 1 M2 c1 n3,-1 b-1"},
        {world.project, Scores, 4, 3, Obs, "t 1 M3 c1 n-1,-1 b-1", "t 1 M3 c1 n3,-1 b-1"},
        {world.project, Scores, 4, 1, Pred, "tPS 1 M1 c1 n-1,-1 b-1", "tPS 1 M1 c1 n3,-1 b-1"},
        {world.project, Scores, 4, 6, Both, "XVar 1 M6 c-1 n-1,-1 b-1", "="},
        {world.project, Scores, 4, 6, Pred, "XVarPS 1 M6 c-1 n-1,-1 b-1", "="},
        {empty.project, Scores, 4, 0, Both, no, "t 1 M2 c1 n3,-1 b-1"},
        {world.project, Loadings, 4, 0, Both, "p 2 M1 c1 n-1,-1 b-1", "p 2 M1 c-1 n3,-1 b-1"},
        {world.project, Loadings, 4, 6, Obs, "XObs 2 M6 c-1 n2,-1 b-1", "="},
        {world.project, Loadings, 4, 1, Pred, "ObsPS 2 PS c-1 n5,-1 b-1", "p 2 M1 c-1 n3,-1 b-1"},
        {empty.project, Loadings, 4, 0, Both, no, "ObsDS 2 DS1 c0 n3,-1 b-1"},
        // Data sets.
        {world.project, Scores, 1, 1, Both, "VarDS 1 DS2 c0 n2,-1 b-1", "="},
        {world.project, Loadings, 1, 1, Both, "ObsDS 2 DS2 c0 n2,-1 b-1", "="},
        {world.project, Scores, 2, 0, Both, "VarPS 1 PS c0 n5,-1 b-1", "VarPS 1 PS c-1 n5,-1 b-1"},
        {world.project, Loadings, 2, 0, Both, "ObsPS 2 PS c0 n5,-1 b-1", "ObsPS 2 PS c-1 n5,-1 b-1"},
        {world.project, Loadings, 3, 0, Both, "ObsDS 2 DS2 c0 n2,-1 b-1", "="},
        {none, Scores, 4, 0, Both, "VarDS 1 DS3 c0 n9,-1 b-1", "t 1 M2 c1 n3,-1 b-1"},
        {none, Loadings, 4, 0, Both, "ObsDS 2 DS3 c0 n7,-1 b-1", "ObsDS 2 DS1 c0 n3,-1 b-1"},
        {none, Loadings, 2, 0, Both, "ObsPS 2 PS c0 n5,-1 b-1", "ObsPS 2 PS c-1 n5,-1 b-1"},
        {bare, Scores, 4, 0, Both, no, "t 1 M2 c1 n3,-1 b-1"},
        {bare, Loadings, 2, 0, Both, no, nullptr}};
    for (auto const &row : cases) {
        SCOPED_TRACE(&row - cases);
        for (bool const used : {false, true}) {
            if (used && row.project == bare && row.data == 2)
                continue; // an error of the project
            ProjectVectorData data = used ? world.Data(catalogue.XVar(), "M2", Number(3)) : ProjectVectorData();
            std::string const before = Text(data);
            bool const found = ProjectVectorData::SetProjectVectorDataDefault(
                row.project, row.type, data, static_cast<V::DataTypeEnum>(row.data),
                row.project->GetModelInfo(row.model).get(),
                row.project == none   ? 3
                : row.project == bare ? 0
                                      : 2,
                static_cast<V::ObsOrPredType>(row.obsPred));
            char const *expected = !used || (row.ofUsed && *row.ofUsed == '=') ? row.ofEmpty : row.ofUsed;
            EXPECT_EQ(found, expected != nullptr);
            EXPECT_EQ(Text(data), expected ? expected : before);
            bool const outOfControl =
                found && data.GetProjectVector() && data.GetProjectVector()->GetName() == std::string("TAlignedOOCSum");
            EXPECT_EQ(std::pair(data.multiplier1, data.multiplier2),
                      outOfControl ? std::pair(3.0, -3.0) : std::pair(-99.0, -99.0));
        }
    }
    // The active model comes first, where it fits.
    ProjectVectorData data;
    project.activeModel = 3;
    ProjectVectorData::SetProjectVectorDataDefault(world.project, Scores, data, OfModel, nullptr, 1, V::ObsAndPred);
    EXPECT_EQ(data.GetDataSourceName(), "M3");
    ProjectVectorData::SetProjectVectorDataDefault(world.project, Aligned, data, OfModel, nullptr, 1, V::ObsAndPred);
    EXPECT_EQ(data.GetDataSourceName(), "M4");
    // A lagged model behind the record itself.
    data = world.Data(catalogue.XVar(), "M7");
    project.AddModel(ModelTypeE::PCA, 1);
    project.Info(8).hasLaggedVariables = true;
    project.activeModel = 8;
    ProjectVectorData::SetProjectVectorDataDefault(world.project, Lag, data, OfModel, nullptr, 1, V::ObsAndPred);
    EXPECT_EQ(data.GetDataSourceName(), "M7");
    // A given one goes before, for a new record and for this one.
    project.activeModel = 7;
    for (ProjectVectorData given : {ProjectVectorData(), data}) {
        ModelInfo const *const model = project.GetModelInfo(8).get();
        ProjectVectorData::SetProjectVectorDataDefault(world.project, Lag, given, OfModel, model, 1, V::ObsAndPred);
        EXPECT_EQ(given.GetDataSourceName(), "M8");
    }
}

TEST(VectorDefaults, FillNumbersByTheirKind) {
    World const world;
    ProjectUtilities::DefaultSelection defaults(world.project);
    ColumnTerm const x(3), y(5);
    defaults.SetDefaultXTerm(&x);
    defaults.SetDefaultYTerm(&y);
    defaults.SetDefaultSelectedBatches({"B", "C"}, false);
    defaults.SetDefaultSelectedBatches({"C"}, true);
    // Vector; source; number, second number and batch, which are 77 before
    struct {
        VectorTraits vector;
        char const *source, *expected;
    } const cases[] = {{{}, "M1", "0 77 77"},
                       {{.number = Y}, "M1", "-1 77 77"},
                       {{.number = X}, "M1", "-1 77 77"},
                       {{.number = XY}, "M1", "-1 2 77"},
                       {{.number = Range}, "M1", "1 2 77"},
                       {{.number = Batch}, "M4", "1 77 2"},
                       {{.number = Batch, .obsPred = Predicted}, "M4", "1 77 3"},
                       {{.number = Batch}, "M1", "1 77 1"},
                       {{.number = Batch, .data = OfSet}, "DS1", "1 77 1"},
                       {{.number = BatchX}, "M4", "3 77 2"},
                       {{"probe", Lag, BatchX}, "M4", "1 77 2"},
                       {{.number = BatchY}, "M1", "2 77 1"},
                       {{.number = YPhase}, "M1", "2 1 1"},
                       {{.number = BatchRange}, "M4", "1 2 2"},
                       {{.number = BatchOnly}, "M4", "77 77 77"},
                       {{"probe", Loadings, Identifier, 0, OfSet}, "DS1", "3 77 77"},
                       {{"probe", Loadings, Identifier, 0, OfSet}, "DS2", "-1 77 77"},
                       {{.number = Phase}, "M4", "1 1 1"},
                       {{.number = ObsOrVar}, "M1", "1 77 77"},
                       {{.number = ObsOrVar}, "", "5 77 77"},
                       // What reads from any source is about data sets.
                       {{.number = ObsOrVar, .data = V::DataTypeAny}, "DS2", "2 77 77"},
                       {{"probe", Loadings, ObsOrVar, 0, V::DataTypeAny}, "DS2", "2 77 77"},
                       {{.number = Batch, .data = V::DataTypeAny}, "M4", "1 77 1"},
                       {{.number = ObsOrVar, .data = OfPredSet}, "", "5 77 77"},
                       {{.number = ObsOrVar, .data = OfSet}, "DS2", "2 77 77"},
                       {{"probe", Loadings, ObsOrVar}, "M4", "1 77 77"},
                       {{"probe", Loadings, ObsOrVar, 0, OfModel, Predicted}, "M4", "3 77 77"},
                       {{"probe", Loadings, ObsOrVar, 0, OfPredSet}, "", "5 77 77"},
                       {{"probe", Loadings, ObsOrVar, 0, OfSet}, "DS2", "2 77 77"}};
    for (auto const &row : cases) {
        VectorProbe const vector(row.vector);
        ProjectVectorData data = world.Data(vector, row.source, Number(77, 77, 77));
        // A variable or observation is that of the vector's own data, not one that was asked for before.
        defaults.clear();
        data.SetDefaultNumberID(defaults);
        EXPECT_EQ(std::to_string(static_cast<int>(data.GetNumberID())) + " " +
                      std::to_string(static_cast<int>(data.GetNumberID2(nullptr, false))) + " " +
                      std::to_string(data.batchIx),
                  row.expected)
            << &row - cases;
    }
}
