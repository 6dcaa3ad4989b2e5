#include "catalogue/ProjectVectorHandler.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using Selection = SelectDataSeriesData;

// Vectors by a letter: a, b scores of models 1 and 2, c another vector of model 1, q predicted of model 1, d and e of
// data sets 1 and 2, p of the prediction set, n the counting row, i an identifier of data set 1, T a time, o an
// observation of data set 1, s and D that start contributions, m missing values, 0 no vector.
class Queries : public testing::Test {
protected:
    Queries() {
        m_data['0'] = ProjectVectorData();
        ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
        m_data['n'] = m_world.Data(*handler.GetNumVector(Scores), "");
        m_data['m'] = m_world.Data(*handler.GetMissingVector(Scores), "");
    }

    // X and Y axis, - where there is none, and the series: "--ab".
    Selection Make(std::string const &letters) const {
        int const mode = (letters[0] != '-' ? 1 : 0) + (letters[1] != '-' ? 2 : 0);
        Selection selection(m_world.project, static_cast<Selection::Mode>(mode), V::VectorTypeNone, -1, V::ObsAndPred);
        selection.SetXAxis(m_data.at(letters[0] == '-' ? 'p' : letters[0])); // not in use, and of no effect
        selection.SetYAxis(m_data.at(letters[1] == '-' ? 'p' : letters[1]));
        for (char const letter : letters.substr(2))
            selection.AddSeries(m_data.at(letter), false);
        return selection;
    }

    World m_world;
    VectorProbe m_t{{"t"}}, m_u{{"u"}}, m_tPS{{.name = "tPS", .obsPred = Predicted}};
    VectorProbe m_var{{"VarDS", Scores, ObsOrVar, 0, OfSet}};
    VectorProbe m_varPS{{"VarPS", Scores, ObsOrVar, 0, OfPredSet, Predicted}};
    VectorProbe m_id{{.name = "ObsID", .data = OfSet, .flags = "n"}};
    VectorProbe m_time{{.name = "Time/Maturity", .obsPred = V::ObsAndPred}};
    VectorProbe m_obs{{"ObsDS", Loadings, ObsOrVar, 0, OfSet}};
    VectorProbe m_score{{.name = "s", .contributionSource = 1}}, m_distance{{.name = "D", .contributionSource = 3}};
    std::map<char, ProjectVectorData> m_data{
        {'a', m_world.Data(m_t, "M1")},     {'b', m_world.Data(m_t, "M2")},     {'c', m_world.Data(m_u, "M1")},
        {'q', m_world.Data(m_tPS, "M1")},   {'d', m_world.Data(m_var, "DS1")},  {'e', m_world.Data(m_var, "DS2")},
        {'p', m_world.Data(m_varPS, "M1")}, {'i', m_world.Data(m_id, "DS1")},   {'T', m_world.Data(m_time, "M1")},
        {'o', m_world.Data(m_obs, "DS1")},  {'s', m_world.Data(m_score, "M1")}, {'D', m_world.Data(m_distance, "M1")}};
};

} // namespace

TEST_F(Queries, TellWhatVectorsHaveInCommon) {
    // Model of the series, of all; data set, original one; observed or predicted of all, of the series; any predicted;
    // only counting rows; one kind of contribution; one source by name ("-" when not); the title of a window
    struct {
        char const *vectors;
        int seriesModel, model, dataSet, original, obsPred, seriesObsPred;
        bool predicted, onlyNum, contributes;
        char const *source, *title;
    } const cases[] = {{"--", -1, -1, -1, -2, 3, 3, false, true, false, "", "W"},
                       {"--a", 1, 1, 0, 1, 1, 1, false, false, false, "M1", "W [model1]"},
                       {"--ac", 1, 1, 0, 1, 1, 1, false, false, false, "M1", "W [model1]"},
                       {"--ab", -1, -1, 0, 1, 1, 1, false, false, false, "-", "W"},
                       {"n-a", 1, 1, 0, 1, 1, 1, false, false, false, "M1", "W [model1]"},
                       {"b-a", 1, -1, 0, 1, 1, 1, false, false, false, "-", "W"},
                       {"-ba", 1, -1, 0, 1, 1, 1, false, false, false, "-", "W"},
                       {"0-a", 1, 1, 0, 1, 1, 1, false, false, false, "M1", "W [model1]"},
                       {"--n", -1, -1, 0, -2, 3, 3, false, true, false, "", "W"},
                       {"n-", -1, -1, -1, -2, 3, 3, false, true, false, "", "W"},
                       {"--na", 1, 1, 0, 1, 1, 1, false, false, false, "M1", "W"},
                       {"--m", -1, -1, 0, -2, 3, 3, false, false, false, "", "W"},
                       {"--d", -1, -1, 1, 1, 1, 1, false, false, false, "DS1", "W [DS1]"},
                       {"--de", -1, -1, -1, 0, 1, 1, false, false, false, "-", "W"},
                       {"--ded", -1, -1, -1, 0, 1, 1, false, false, false, "-", "W"},
                       {"--da", -1, -1, -1, 1, 1, 1, false, false, false, "-", "W"},
                       {"--ad", -1, -1, -1, 1, 1, 1, false, false, false, "-", "W"},
                       {"d-n", -1, -1, -1, 1, 1, 3, false, false, false, "DS1", "W"},
                       {"--nd", -1, -1, -1, 1, 1, 1, false, false, false, "DS1", "W"},
                       {"--p", -1, -1, -1, -1, 2, 2, true, false, false, "PS", "W"},
                       {"--pp", -1, -1, -1, -1, 2, 2, true, false, false, "PS", "W"},
                       {"p-", -1, -1, 0, -1, 2, 3, true, false, false, "PS", "W"},
                       {"--ap", -1, -1, -1, 0, 3, 3, true, false, false, "-", "W"},
                       {"--q", 1, 1, 0, -1, 2, 2, true, false, false, "M1", "W [model1]"},
                       {"--qa", 1, 1, 0, 0, 3, 3, true, false, false, "M1", "W [model1]"},
                       {"i-q", 1, -1, -1, 0, 2, 2, true, false, false, "-", "W"},
                       {"i-a", 1, -1, -1, 1, 1, 1, false, false, false, "-", "W"},
                       {"--T", 1, 1, 0, 1, 3, 3, false, false, false, "M1", "W [model1]"},
                       {"--Ta", 1, 1, 0, 1, 3, 1, false, false, false, "M1", "W [model1]"},
                       {"--sa", 1, 1, 0, 1, 1, 1, false, false, true, "M1", "W [model1]"},
                       {"--ss", 1, 1, 0, 1, 1, 1, false, false, true, "M1", "W [model1]"},
                       {"D-s", 1, 1, 0, 1, 1, 1, false, false, false, "M1", "W [model1]"}};
    for (auto const &row : cases) {
        SCOPED_TRACE(row.vectors);
        Selection const selection = Make(row.vectors);
        std::vector<int> const found{
            selection.GetSeriesModel(),      selection.GetCurrentModel(),   selection.GetCurrentDataSet(),
            selection.GetOriginalDataset(),  selection.GetObsPredType(),    selection.GetSeriesObsPredType(),
            selection.HasPredictedVectors(), selection.HasOnlyNumVectors(), selection.HasOneTypeOfContribTypes()};
        EXPECT_EQ(found, std::vector<int>({row.seriesModel, row.model, row.dataSet, row.original, row.obsPred,
                                           row.seriesObsPred, row.predicted, row.onlyNum, row.contributes}));
        std::string source, title = "W";
        EXPECT_EQ(selection.HasEqualDataSource(source), *row.source != '-');
        EXPECT_EQ(source, *row.source != '-' ? row.source : "");
        selection.AddToWindowTitle(title);
        EXPECT_EQ(title, row.title);
    }
}

TEST_F(Queries, TellWhetherSeriesAreAlike) {
    for (auto const &[vectors, alike] : std::initializer_list<std::pair<char const *, bool>>{
             {"--a", true}, {"--aa", true}, {"--ab", false}, {"--ac", false}, {"--de", true}, {"--dp", false}})
        EXPECT_EQ(Make(vectors).HasEqualVectors(), alike) << vectors;
}

TEST_F(Queries, MoveToAnotherModel) {
    Selection selection = Make("nacdbi");
    selection.SetModel(2);
    std::string sources = selection.GetXAxis().GetDataSourceName() + selection.GetYAxis().GetDataSourceName();
    for (int position = 1; position <= selection.NumberOfSeries(); ++position)
        sources += selection.GetSeries(position).GetDataSourceName();
    EXPECT_EQ(sources, "M2M2M2DS1M2DS1");
}

TEST_F(Queries, ChooseTheIdentifierOfTitles) {
    m_world.project->preferredObservationAlias = 2;
    m_world.project->AddData(1, {1}, {1}).observationAliases = {1, 2};
    for (auto const &[vectors, preferred, raw, expected] :
         std::initializer_list<std::tuple<char const *, int, bool, int>>{{"--o", -1, true, 2},
                                                                         {"--o", -1, false, 2},
                                                                         {"--d", -1, true, 1},
                                                                         {"--a", -1, true, -1},
                                                                         {"--a", -1, false, 1},
                                                                         {"--", -1, false, 1},
                                                                         {"--o", 7, false, 7},
                                                                         {"--", 7, true, 7}}) {
        Selection selection = Make(vectors);
        selection.SetPreferredTitleID(preferred);
        EXPECT_EQ(selection.GetPreferredTitleID(raw), expected) << vectors;
    }
    m_world.project->AddData(1, {1}, {1}).observationAliases = {1};
    EXPECT_EQ(Make("--o").GetPreferredTitleID(false), 1);
    Selection orphan = Make("--");
    orphan.SetPreferredTitleID(7);
    orphan.SetProject(nullptr, false);
    EXPECT_EQ(orphan.GetPreferredTitleID(true), 1);
}
