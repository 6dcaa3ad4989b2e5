#include "utilities/DefaultSelection.h"
#include "engine/Project.h"
#include "engine/TableReader.h"
#include "platform/text/Exception.h"
#include "tests/support/GroupingLocale.h"
#include "tests/support/RecordingProject.h"
#include "tests/support/TemporaryFolder.h"
#include "utilities/KestaProjectHandlerBase.h"

#include <boost/archive/polymorphic_text_iarchive.hpp>
#include <boost/archive/polymorphic_text_oarchive.hpp>
#include <gtest/gtest.h>

#include <sstream>

namespace {

using engine::ModelRequest;
using engine::Project;
using ProjectUtilities::DefaultSelection;
using Names = std::vector<std::string>;

engine::ImportedTable Read(char const *text) {
    std::istringstream stream(text);
    return engine::ReadTable(stream, "table");
}

// Observations 1 to 6 and variables 1 to 4 (y): model 1 PLS with 3 X terms and a Y term, model 2 PCA without x1 and y.
// Data set 2 has observation 7 with variable 5. Model 1 has the prediction set of observations 8 and 9.
class StoredDefaults : public testing::Test {
protected:
    void SetUp() override {
        auto project = Project::Create(File());
        project->AddDataSet(
            Read("id,x1,x2,x3,y\na,1,2,1,1.2\nb,2,1,4,1.9\nc,3,5,2,3.4\nd,4,3,6,3.8\ne,5,7,3,5.6\nf,6,4,8,5.9\n"));
        project->AddDataSet(Read("id,z\nm,1\n"));
        ModelRequest request;
        request.components = 1;
        request.type = ModelTypeE::PLS;
        request.responses = {"y"};
        project->AddModel(request);
        request.type = ModelTypeE::PCA;
        request.responses = {};
        request.excluded = {"x1", "y"};
        project->AddModel(request);
        project->AddPredictions(Read("id,x1,x2,x3\np,1,2,3\nq,4,5,6\n"));
        project.reset();
        Open();
    }
    // The project of the file anew, with nothing in memory.
    void Open() {
        m_project.reset();
        m_project = Project::OpenToWrite(File());
    }
    DefaultSelection New() const { return DefaultSelection(m_project); }
    std::filesystem::path File() const { return m_folder / "defaults.dsp"; }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

} // namespace

TEST_F(StoredDefaults, TermsGoByPositionAndFallBackOnTheFirst) {
    DefaultSelection defaults = New();
    EXPECT_EQ(defaults.GetDefaultXVarIndex(1), 1);
    defaults.SetDefaultXVarIndex(1, 3);
    defaults.SetDefaultXVarIndex(9, 2);
    defaults.SetDefaultYVarIndex(1, 1);
    defaults.SetDefaultYVarIndex(2, 1);
    EXPECT_EQ(defaults.GetDefaultXVarIndex(1), 3);
    Open();
    DefaultSelection reopened = New();
    EXPECT_EQ(reopened.GetDefaultXVarIndex(2), 2); // x3 behind x2
    EXPECT_EQ(reopened.GetDefaultXVarIndex(1), 3);
    EXPECT_EQ(reopened.GetDefaultYVarIndex(2), 1); // a model without Y keeps the term
    EXPECT_EQ(reopened.GetDefaultYVarIndex(1), 1);
    reopened.SetDefaultXVarIndex(1, 1);
    EXPECT_EQ(reopened.GetDefaultXVarIndex(2), 1); // x1 is not there: x2 takes its place in the cache,
    EXPECT_EQ(reopened.GetDefaultXVarIndex(1), 2);
    EXPECT_EQ(New().GetDefaultXVarIndex(1), 1); // and not in the file
    reopened.clear();
    EXPECT_EQ(reopened.GetDefaultXVarIndex(1), 1);
}

TEST_F(StoredDefaults, ObservationsAndVariablesAreCheckedWhenTheyAreRead) {
    // Observation and variable stored; asked for model, data set, prediction; expected
    struct {
        unsigned observation, variable;
        int model, dataSet;
        bool predicted;
        unsigned expectedObservation, expectedVariable;
    } const cases[] = {{0, 0, 1, 0, false, 1, 1}, {4, 3, 1, 0, false, 4, 3}, {4, 3, 0, 1, false, 4, 1},
                       {7, 5, 1, 0, false, 1, 1}, {7, 5, 0, 2, false, 7, 5}, {4, 3, 0, 2, false, 7, 5},
                       {4, 1, 2, 0, false, 4, 2}, {9, 2, 1, 0, true, 9, 2},  {9, 2, 0, 0, true, 9, 1},
                       {4, 2, 0, 0, true, 8, 1},  {0, 0, 0, 0, true, 8, 1}};
    for (auto const &row : cases) {
        SCOPED_TRACE(testing::Message() << row.observation << " of M" << row.model << " DS" << row.dataSet);
        if (row.observation != 0)
            New().SetDefaultSelectedObservation(row.observation, row.predicted);
        if (row.variable != 0)
            New().SetDefaultSelectedVariable(row.variable);
        Open();
        DefaultSelection const defaults = New();
        EXPECT_EQ(defaults.GetDefaultSelectedObservation(row.model, row.dataSet, row.predicted),
                  row.expectedObservation);
        EXPECT_EQ(defaults.GetDefaultSelectedVariable(row.model, row.dataSet, row.predicted), row.expectedVariable);
    }
    DefaultSelection defaults = New();
    defaults.SetDefaultSelectedVariable(3);
    EXPECT_EQ(defaults.GetDefaultSelectedVariable(0, 1, false), 3u); // told to this very object
    EXPECT_EQ(defaults.GetDefaultSelectedVariable(0, 2, false), 5u);
    defaults.SetDefaultSelectedObservation(77, false);
    EXPECT_EQ(defaults.GetDefaultSelectedObservation(1, 0, false), 77u); // not checked while cached
    EXPECT_EQ(defaults.GetDefaultSelectedObservation(0, 99, false), 77u);
    defaults.SetDefaultSelectedVariable(3);
    defaults.clear();
    EXPECT_EQ(defaults.GetDefaultSelectedObservation(1, 0, false), 1u);
    EXPECT_EQ(defaults.GetDefaultSelectedVariable(0, 1, false), 1u);    // as if nothing had been told
    EXPECT_EQ(defaults.GetDefaultSelectedObservation(0, 2, false), 1u); // what was found stays
    for (auto const &ask : {+[](DefaultSelection const &asked) { asked.GetDefaultSelectedObservation(0, 99, false); },
                            +[](DefaultSelection const &asked) { asked.GetDefaultSelectedVariable(0, 99, false); }})
        try {
            ask(New());
            FAIL();
        } catch (NCError const &error) {
            EXPECT_STREQ(error.what(), "The dataset could not be loaded.");
            EXPECT_EQ(error.GetLevel(), NCError::Error);
        }
}

TEST_F(StoredDefaults, BatchesMoveToTheFront) {
    for (bool const predicted : {false, true}) {
        Names names;
        New().SetDefaultSelectedBatches({"b1", "b2", "b3"}, predicted);
        Open();
        DefaultSelection defaults = New();
        EXPECT_EQ(defaults.GetDefaultSelectedBatch(predicted), "b1");
        EXPECT_EQ(defaults.GetDefaultSelectedBatches(names, predicted), 1); // the cache has this one name
        EXPECT_EQ(names, Names({"b1"}));
        defaults.SetDefaultSelectedBatch("b2", predicted);
        EXPECT_EQ(defaults.GetDefaultSelectedBatches(names, predicted), 3);
        EXPECT_EQ(names, Names({"b2", "b1", "b3"}));
        defaults.SetDefaultSelectedBatch("new", predicted);
        EXPECT_EQ(New().GetDefaultSelectedBatches(names, predicted), 4);
        EXPECT_EQ(names, Names({"new", "b2", "b1", "b3"}));
        EXPECT_EQ(New().GetDefaultSelectedBatch(predicted), "new");
        EXPECT_EQ(New().GetDefaultSelectedBatch(!predicted), predicted ? "new" : "");
    }
}

TEST_F(StoredDefaults, RoundTripThroughAnArchive) {
    DefaultSelection defaults = New();
    defaults.SetDefaultXVarIndex(1, 2);
    defaults.SetDefaultYVarIndex(1, 1);
    defaults.SetDefaultSelectedObservation(5, false);
    defaults.SetDefaultSelectedObservation(9, true);
    defaults.SetDefaultSelectedVariable(3);
    defaults.SetDefaultSelectedBatches({"b 1", "b2"}, false);
    defaults.SetDefaultSelectedBatches({"c"}, true);
    std::stringstream stream;
    {
        boost::archive::polymorphic_text_oarchive archive(stream);
        static_cast<DefaultSelection const &>(defaults).save(
            static_cast<boost::archive::polymorphic_oarchive &>(archive), 0);
    }
    // A project whose section is empty: what comes back is the archive's.
    auto const other = MakeRecordingProject();
    other->AddModel(ModelTypeE::PLS, 1, 0, 0, 3, 1);
    DefaultSelection loaded(other);
    boost::archive::polymorphic_text_iarchive archive(stream);
    loaded.load(static_cast<boost::archive::polymorphic_iarchive &>(archive), 7);
    EXPECT_EQ(loaded.GetProject(), other);
    EXPECT_EQ(loaded.GetDefaultXVarIndex(1), 2);
    EXPECT_EQ(loaded.GetDefaultYVarIndex(1), 1);
    EXPECT_EQ(loaded.GetDefaultSelectedObservation(1, 0, false), 5u);
    EXPECT_EQ(loaded.GetDefaultSelectedObservation(1, 0, true), 9u);
    EXPECT_EQ(loaded.GetDefaultSelectedModelVariable(1), 3u);
    Names names;
    EXPECT_EQ(loaded.GetDefaultSelectedBatches(names, false), 2);
    EXPECT_EQ(names, Names({"b 1", "b2"}));
    EXPECT_EQ(loaded.GetDefaultSelectedBatch(true), "c");
}

TEST(DefaultSelection, WritesTermsWithGapsAndReadsLagsAsMothers) {
    GroupingLocale const grouping;
    auto const project = MakeRecordingProject();
    project->AddModel(ModelTypeE::PCA, 1, 0, 0, 0);
    ColumnTerm const terms[] = {ColumnTerm(5),       {{7}, {}, {}},  {{7, 8}, {}, {}},
                                {{1, 2}, {}, {}},    {{7}, {}, {2}}, {{7, 1234, 1234}, {}, {}},
                                {{1, 0}, {}, {2, 0}}};
    for (ColumnTerm const &term : terms)
        project->Model(1).x.AppendTerm(term);
    auto const section = project->GetSettingsSection("DefaultSelection")->CreateSubSection("XTerm");
    // term; its three lists as stored ("-" for none); the position that is read
    struct {
        ColumnTerm term;
        std::string mothers, lags, settings;
        int position;
    } const written[] = {{terms[1], "7", "-", "-", 2},
                         {{{7, 1234, 9}, {}, {}}, "7;1234;1234", "-", "-", 6},
                         {{{7, 8}, {1, 2}, {}}, "7;8", "1;2", "-", 4},
                         {{{7, 8}, {1, 0}, {2, 0}}, "7;8", "1;0", "2;0", 7},
                         {terms[4], "7", "-", "2", 5},
                         {{{7, 8, 9}, {0, 0, 3}, {}}, "7;8;8", "0;0;3", "-", 1}};
    for (auto const &row : written) {
        DefaultSelection(project).SetDefaultXTerm(&row.term);
        for (auto const &[key, expected] :
             {std::pair("MotherVariables", row.mothers), {"Lags", row.lags}, {"QualSetting", row.settings}}) {
            std::string text = "-";
            section->ReadKey(key, text);
            EXPECT_EQ(text, expected) << key;
        }
        EXPECT_EQ(DefaultSelection(project).GetDefaultXVarIndex(1), row.position) << row.mothers;
    }
    // Stored texts, null for none, and the position that is read.
    struct {
        char const *mothers, *lags, *settings;
        int position;
    } const read[] = {{"7;8", nullptr, nullptr, 3}, {"7;8", "", nullptr, 3},    {"7;8;", nullptr, nullptr, 3},
                      {"5;8", "7", nullptr, 2},     {"", "7", nullptr, 2},      {"", nullptr, nullptr, 1},
                      {nullptr, "7", nullptr, 1},   {"5", "7;8x9", nullptr, 3}, {"7", nullptr, "2,3", 5}};
    for (auto const &row : read) {
        section->Clear();
        for (auto const &[key, text] :
             {std::pair("MotherVariables", row.mothers), {"Lags", row.lags}, {"QualSetting", row.settings}})
            if (text)
                section->WriteKey(key, text);
        EXPECT_EQ(DefaultSelection(project).GetDefaultXVarIndex(1), row.position) << (row.lags ? row.lags : "-");
    }
}

TEST(DefaultSelection, NeedsItsProject) {
    auto project = MakeRecordingProject();
    DefaultSelection defaults(project);
    project.reset();
    Names names;
    for (std::function<void()> const &operation : std::initializer_list<std::function<void()>>{
             [&] { defaults.GetProject(); }, [&] { defaults.GetDefaultXVarIndex(1); },
             [&] { defaults.SetDefaultYVarIndex(1, 1); }, [&] { defaults.GetDefaultSelectedObservation(1, 0, false); },
             [&] { defaults.SetDefaultSelectedObservation(1, false); },
             [&] { defaults.GetDefaultSelectedVariable(1, 0, false); },
             [&] { defaults.GetDefaultSelectedVariable(0, 1, false); }, [&] { defaults.SetDefaultSelectedVariable(1); },
             [&] { defaults.GetDefaultSelectedBatches(names, false); },
             [&] { defaults.SetDefaultSelectedBatches(names, false); }, [&] { defaults.GetDefaultSelectedBatch(true); },
             [&] { defaults.SetDefaultSelectedBatch("b", true); }})
        EXPECT_THROW(operation(), boost::bad_weak_ptr);
}

TEST(DefaultSelection, BindsToTheActiveProjectOfTheApplication) {
    try {
        DefaultSelection const none;
        FAIL();
    } catch (Exception const &error) {
        EXPECT_STREQ(error.what(), "KestaProjectHandler not initialized");
    }
    class Handler final : public KestaProjectHandlerBase {
    public:
        boost::shared_ptr<NCProject> project = MakeRecordingProject();
        boost::shared_ptr<NCProject> GetActiveProject() const override { return project; }
        boost::shared_ptr<NCProject> NCGetProject(int) const override { return project; }
    };
    static Handler handler;
    EXPECT_EQ(&KestaProjectHandlerBase::Instance(), &handler);
    EXPECT_EQ(DefaultSelection().GetProject(), handler.project);
}
