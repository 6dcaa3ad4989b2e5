#include "catalogue/ProjectVectorHandler.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "selection/SelectLabelArgument.h"
#include "tests/support/Archives.h"
#include "tests/support/Dice.h"
#include "tests/support/RecordingProject.h"
#include "utilities/DefaultSelection.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

namespace {

using Selection = SelectDataSeriesData;
using Vector = ProjectVector;

constexpr auto Scores = Vector::VectorTypeVariablesScores;

// Models 1 and 2 of PLS with 3 components and 2 responses, over the same five observations, model 3 without components;
// model 2 is the active one.
class SelectionPersistence : public testing::Test {
protected:
    SelectionPersistence() {
        m_project->observations.AddAlias({"id", "", VarObs::Role::Plain, {"o1", "o2", "o3", "o4", "o5"}});
        m_project->observations.AddAlias({"batch", "", VarObs::Role::Batch, {"A", "A", "B", "B", "C"}});
        m_project->observations.AddAlias({"phase", "", VarObs::Role::Phase, {"1", "2", "1", "2", "1"}});
        for (int const components : {3, 3, 0})
            m_project->AddModel(ModelTypeE::PLS, components, 0, 0, 3, 2);
        m_project->activeModel = 2;
        m_project->AddData(1, {1, 2, 3, 4, 5}, {1, 2, 3});
        for (char const *const operation : {"GetTColumnIDs", "GetYPredColumnIDs", "GetDModXColumnIDs"})
            m_project->source.columnsOf[operation] = [](Call const &) {
                return ColumnIDs(ColumnIDs::Observations, {1, 2, 3, 4, 5}, {}, 0);
            };
    }

    Selection New(Selection::Mode mode = Selection::Normal) const {
        return {m_project, mode, Scores, -1, Vector::ObsAndPred};
    }

    ProjectVectorData Data(char const *name, int model, int component) const {
        ProjectVectorData data;
        data.SetProjectVector(ProjectVectorHandler::Instance()->FindVector(name, Scores, Vector::DataTypeModel,
                                                                           m_project->GetModelInfo(model).get()));
        data.SetModelInfoPtr(m_project->GetModelInfo(model));
        data.SetComponent(component);
        data.SetNumber(2);
        return data;
    }

    // One with everything in it that a selection can say.
    Selection Full() const {
        Selection selection = New(Selection::AxisXY);
        selection.SetXAxis(Data("t", 1, 1));
        ProjectVectorData count = selection.GetYAxis();
        count.SetModelInfoPtr(m_project->GetModelInfo(1));
        selection.SetYAxis(count);
        selection.AddSeries(Data("t", 1, 2), true);
        selection.AddSeries(Data("YPred", 1, 3), true);
        selection.SetGlobalType(Selection::GlobalTypeIndependentAfterDefaults);
        selection.SetScoreLoadingType(Vector::Score);
        selection.SetScaleType(Selection::ScaleMinusOneToOne);
        selection.SetObsPredType(Vector::Observed);
        selection.SetRawHeader("a <header> & \"more\"", true);
        selection.SetDisplayDataInverted(true);
        selection.AddSorting({Selection::SortDescending, 2, 1, 3, 5});
        selection.AddSorting({Selection::SortAscending, 0, 2, 0, -1});
        std::free(*selection.GetNumberFormatW());
        *selection.GetNumberFormatW() = ::strdup("%.3f");
        selection.UseConfidenceInterval() = true;
        selection.SetAxisAspectRatio(static_cast<Selection::AspectRatioType>(2), 1.5, 0.1, -99.0);
        selection.SetUseDefaultSelectObjects(false);
        selection.SetLimits(false);
        selection.SetSDLimitsVec({{1.5f, true}, {-0.1f, false}});
        TransformationData transformation;
        transformation.SetTransformationType(TransformationData::SubtractVector);
        transformation.SetCrossVector(Data("DModX", 1, 2));
        transformation.SetNumLags(1);
        transformation.SetLambda(0.1);
        selection.SetTransformationData(transformation);
        ControlChartData chart;
        chart.SetControlChartType(ControlChartData::ShewhartAndEWMA);
        chart.SetSubgroupSize(3);
        chart.SetLambda(0.3);
        selection.SetControlChartData(chart);
        selection.SetSelectedBatchAndPhase("B", "2");
        return selection;
    }

    static std::string Text(Selection const &selection, bool activeModel = false) {
        XercesXMLSection section;
        selection.WriteSection(&section, activeModel);
        std::string text;
        section.Flush(text, false, true);
        return text;
    }

    boost::shared_ptr<RecordingProject> m_project = MakeRecordingProject();
};

std::filesystem::path const samples = DATASERIES_TEST_SAMPLES;

std::string Sample(std::string const &name) {
    std::ifstream file(samples / name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

TEST_F(SelectionPersistence, KeepsEverythingInSectionsAndArchives) {
    Selection const selection = Full();
    std::string const text = Text(selection);
    EXPECT_EQ(text + "\n", Sample("selection.xml")) << "what is written has changed";
    auto const section = XercesXMLSection::CreateXMLSectionFromString(text);
    // Older contents of a section and of a selection are no part of what is written and read.
    Selection other = New(Selection::AxisX);
    for (int series = 1; series <= 3; ++series)
        other.AddSeries(Data("t", 2, series), true);
    ASSERT_TRUE(other.ReadSection(section.get()));
    EXPECT_EQ(Text(other), text);
    New().WriteSection(section.get(), false);
    std::string emptied;
    section->Flush(emptied, false, true);
    EXPECT_EQ(emptied, Text(New()));
    std::string batch, phase;
    EXPECT_TRUE(other.HasSingleBatchAndPhase(batch, phase));
    EXPECT_EQ(batch + phase, "B2");

    Dice dice(3);
    for (archives::Form const form : archives::forms) {
        Selection changed = Full();
        BoolVector objects(5, true);
        for (int item = 1; item <= 5; ++item)
            objects(item) = form == archives::Text || dice(0, 1) == 1;
        changed.SetSelectObjects(objects);
        changed.GetDefaultSelection()->SetDefaultSelectedVariable(3);
        Selection loaded = New();
        archives::Load(archives::Saved(changed, form), form, loaded);
        EXPECT_EQ(Text(loaded), Text(changed)) << form;
        EXPECT_EQ(loaded.GetSelectObjects(), objects) << form;
        EXPECT_EQ(loaded.GetDefaultSelection()->GetDefaultSelectedVariable(1, 0, false), 3u) << form;
    }
}

// Files of today and of earlier days open for ever.
TEST_F(SelectionPersistence, OpensStoredSamples) {
    for (auto const &[file, form] : {std::pair("selection.text", archives::Text),
                                     {"selection.binary", archives::Binary},
                                     {"selection.archive.xml", archives::Xml}}) {
        Selection loaded = New();
        archives::Load(Sample(file), form, loaded);
        EXPECT_EQ(Text(loaded), Text(Full())) << file;
        EXPECT_EQ(loaded.NumSelectObjects(), 1) << file;
    }
    // Single components, a data type of older numbering, a single sort key, no kind, no label settings, no limits.
    Selection older = New();
    auto const section = XercesXMLSection::CreateXMLSectionFromString(Sample("selection.older.xml"));
    ASSERT_NE(section, nullptr);
    ASSERT_TRUE(older.ReadSection(section.get()));
    EXPECT_EQ(older.GetSeries(1).ToStdString(nullptr), Data("t", 1, 2).ToStdString(nullptr));
    EXPECT_EQ(older.GetSeries(2).contRef, (BatchPoints{{"A", 1.5f}}));
    EXPECT_EQ(older.GetSeries(2).contGroup, (BatchPoints{{"B", 0.0f}}));
    EXPECT_EQ(older.GetGlobalType(), Selection::GlobalTypeUndecided);
    ASSERT_EQ(older.NumberOfSortings(), 1);
    Selection::SortInfo sorting;
    older.GetSorting(0, sorting);
    EXPECT_EQ(sorting, (Selection::SortInfo{Selection::SortDescending, 0, 2, 0, -1}));
    EXPECT_EQ(older.GetSDLimitsVec().size(), 5u);
}

TEST_F(SelectionPersistence, LeavesOutWhatCannotBeShownAndRefusesWhatIsBroken) {
    using Change = std::function<void(ConfigurationSection &)>;
    auto const without = [](char const *key) { return [key](ConfigurationSection &s) { s.DeleteKey(key); }; };
    auto const in = [](char const *name, char const *key, char const *value, int index = 1) {
        return [=](ConfigurationSection &s) { s.OpenSubSection(name, index)->WriteKey(key, value); };
    };
    struct Case {
        char const *name;
        Change change;
        std::string outcome; // models and components of axis and series, "false", or the text of the error
    } const cases[] = {
        {"as it was", [](ConfigurationSection &) {}, "M1t1 M1t2 M1YPred3"},
        {"no kind", without("GlobalType"), "M1t1 M1t2 M1YPred3"},
        {"active model", [](ConfigurationSection &s) { s.WriteKey("ActiveModel", 1); }, "M2t1 M2t2 M2YPred3"},
        {"a series of no model", in("SeriesInfo", "Model", "9"), "M1t1 M1YPred3"},
        {"a series of a model without components", in("SeriesInfo", "Model", "3"), "M1t1 M1YPred3"},
        {"its mean alone", in("SeriesInfo", "Model", "3", 2), "M1t1 M1t2 M3YPred0"},
        {"an unknown series", in("SeriesInfo", "ProjectVector", "nonsense"), "M1t1 M1YPred3"},
        {"a series that lacks a key",
         [](ConfigurationSection &s) { s.OpenSubSection("SeriesInfo")->DeleteKey("NumberID"); }, "M1t1 M1YPred3"},
        {"a component too many", in("SeriesInfo", "PredictiveComp", "9"), "M1t1 M1t3 M1YPred3"},
        {"room for one", [](ConfigurationSection &s) { s.WriteKey("MaxNumSeries", 1); }, "M1t1 M1t2"},
        {"no series that can be shown",
         [&](ConfigurationSection &s) {
             in("SeriesInfo", "Model", "9")(s);
             in("SeriesInfo", "Model", "9", 2)(s);
         },
         "false"},
        {"no series at all",
         [](ConfigurationSection &s) {
             while (s.DeleteSubSection("SeriesInfo")) {
             }
         },
         "M1t1"},
        {"an axis of no model", in("AxisXInfo", "Model", "9"), "Model could not be found for vector t."},
        {"no axis", [](ConfigurationSection &s) { s.DeleteSubSection("AxisXInfo"); }, "false"},
        {"no mode", without("Mode"), "false"},
        {"no vector type", without("VectorType"), "false"},
        {"no limit", without("MaxNumSeries"), "false"},
        {"no side", without("ScoreLoadingType"), "false"},
        {"no scale", without("ScaleZeroOne"), "false"},
        {"no preference", without("ObsPredType"), "false"},
        {"half a transformation",
         [](ConfigurationSection &s) { s.OpenSubSection("Transformation")->DeleteKey("SegmentSize"); }, "false"},
        {"no transformation", [](ConfigurationSection &s) { s.DeleteSubSection("Transformation"); },
         "M1t1 M1t2 M1YPred3"},
        {"an operand of no model",
         [](ConfigurationSection &s) {
             s.OpenSubSection("Transformation")->OpenSubSection("DataVector")->WriteKey("Model", 9);
         },
         "Model could not be found for vector DModX."},
        {"no chart", [](ConfigurationSection &s) { s.DeleteSubSection("ControlChart"); }, "false"},
        {"a chart of no kind", in("ControlChart", "ChartType", "7"), "false"},
    };
    auto const outcomeOf = [](Selection &selection, ConfigurationSection &section) -> std::string {
        try {
            if (!selection.ReadSection(&section))
                return selection.NumberOfSeries() == 0 ? "false" : "not cleared";
        } catch (NCError const &error) {
            return selection.NumberOfSeries() == 0 ? error.what() : "not cleared";
        }
        std::string text;
        for (ProjectVectorData const *const data : selection.VectorsInUse())
            if (!data->GetProjectVector()->IsNumVector())
                text += (text.empty() ? "" : " ") + data->GetDataSourceName() + data->GetProjectVector()->GetName() +
                        std::to_string(data->GetPredComponent(false));
        return text;
    };
    for (Case const &test : cases) {
        XercesXMLSection section;
        Full().WriteSection(&section, false);
        test.change(section);
        Selection selection = Full();
        EXPECT_EQ(outcomeOf(selection, section), test.outcome) << test.name;
    }
}

// No text of a file gets to printf that is none for one number.
TEST_F(SelectionPersistence, TakesNoFormatThatIsNoneForANumber) {
    for (auto const &[format, expected] : {std::pair("%.3f", "%.3f"),
                                           {"%-12.5G units, 100%%", "%-12.5G units, 100%%"},
                                           {"%s", "%g"},
                                           {"%g%g", "%g"},
                                           {"%n", "%g"},
                                           {"%*g", "%g"},
                                           {"%999999999g", "%g"},
                                           {"none", "%g"},
                                           {"", "%g"}}) {
        XercesXMLSection section;
        Selection selection = New();
        selection.WriteSection(&section, false);
        section.WriteKey("Format", format);
        ASSERT_TRUE(selection.ReadSection(&section));
        EXPECT_STREQ(selection.GetNumberFormat(), expected) << format;
    }
}

// A model that has gone leaves an empty selection, and what follows in the archive is read.
TEST_F(SelectionPersistence, LoadsAnArchiveWhoseModelHasGone) {
    Selection const selection = Full();
    selection.GetDefaultSelection()->SetDefaultSelectedBatches({"C"}, false);
    auto const later = MakeRecordingProject();
    for (archives::Form const form : archives::forms) {
        Selection loaded(later, Selection::Normal, Scores, -1, Vector::ObsAndPred);
        archives::Load(archives::Saved(selection, form), form, loaded);
        EXPECT_EQ(loaded.NumberOfSeries(), 0) << form;
        EXPECT_EQ(loaded.GetDefaultSelection()->GetDefaultSelectedBatch(false), "C") << form;
    }
}

TEST(TransformationPersistence, ReadsInItsOwnWay) {
    auto const project = MakeRecordingProject();
    struct Case {
        char const *changes; // keys of the section; behind "w." those of the wavelets
        std::string outcome;
    } const cases[] = {
        {"",
         "true type 3 detrend 2 lags 7/0 segment 32 scaling 0 window 0 overlap 1 target 5 size 4 wavelet 1 order 6"},
        {"TransformationType=No_Transformation",
         "true type 0 detrend 1 lags 0/0 segment 16 scaling 0 window 1 overlap 0 target 5 size 4 wavelet 1 order 6"},
        {"TransformationType=nonsense -DetrendMode -Target -w.WaveletOrder",
         "true type 0 detrend 1 lags 0/0 segment 16 scaling 0 window 1 overlap 0 target -99 size 4 wavelet 1 order 4"},
        {"ScalingMode=? WindowType=? DetrendMode=? Overlap=2 -SampleSize",
         "true type 3 detrend 0 lags 7/0 segment 32 scaling 1 window 2 overlap 0 target 5 size 1 wavelet 1 order 6"},
        {"-SegmentSize",
         "false type 3 detrend 2 lags 7/0 segment 16 scaling 0 window 1 overlap 0 target -99 size 1 wavelet 2 order 4"},
        {"-w.WaveletOrder",
         "false type 3 detrend 2 lags 7/0 segment 32 scaling 0 window 0 overlap 1 target -99 size 1 wavelet 1 order 4"},
        {"TransformationType=Subtract_Vector -w.DSCalc",
         "false type 6 detrend 2 lags 7/0 segment 32 scaling 0 window 0 overlap 1 target -99 size 1 wavelet 2 order 4"},
        {"-TransformationType", "false type 0 detrend 1 lags 0/0 segment 16 scaling 0 window 1 overlap 0 target -99 "
                                "size 1 wavelet 2 order 4"},
    };
    TransformationData settings;
    settings.SetTransformationType(TransformationData::PowerSpectrum);
    settings.SetDetrendMode(FFT::Linear);
    settings.SetNumLags(7);
    settings.SetMaxLags(7);
    settings.SetSegmentSize(32);
    settings.SetWindowType(FFT::Bartlett);
    settings.SetOverlap(true);
    settings.SetTarget(5);
    settings.SetSampleSize(4);
    WaveletOptions wavelets;
    wavelets.SetDSCalc(WaveletOptions::Observations);
    wavelets.SetWaveletOrder(6);
    wavelets.SetWaveletFunction(Wavelet::Symmlet);
    settings.SetWaveletOptions(wavelets);
    settings.SetWCEnergySelection(BoolVector(3, true));
    for (Case const &test : cases) {
        XercesXMLSection section;
        settings.WriteSection(&section);
        std::istringstream words(test.changes);
        for (std::string word; words >> word;) {
            bool const removes = word.front() == '-';
            std::string key = removes ? word.substr(1) : word.substr(0, word.find('='));
            auto const options = section.OpenSubSection("WaveletOptions");
            bool const isOfWavelets = key.starts_with("w.");
            ConfigurationSection &target = isOfWavelets ? *options : static_cast<ConfigurationSection &>(section);
            key = isOfWavelets ? key.substr(2) : key;
            std::string value = word.substr(word.find('=') + 1);
            std::replace(value.begin(), value.end(), '_', ' ');
            if (removes)
                target.DeleteKey(key);
            else
                target.WriteKey(key, value);
        }
        TransformationData read;
        bool const isRead = read.ReadSection(project, &section, false);
        std::ostringstream text;
        text << (isRead ? "true" : "false") << " type " << read.GetTransformationType() << " detrend "
             << read.GetDetrendMode() << " lags " << read.GetNumLags() << '/' << read.GetMaxLags() << " segment "
             << read.GetSegmentSize() << " scaling " << read.GetScalingMode() << " window " << read.GetWindowType()
             << " overlap " << read.IsOverlap() << " target " << read.GetTarget() << " size " << read.GetSampleSize()
             << " wavelet " << (read.GetWaveletOptions().GetDSCalc() == 0 ? 1 : read.GetWaveletOptions().GetDSCalc())
             << " order " << read.GetWaveletOptions().GetWaveletOrder();
        EXPECT_EQ(text.str(), test.outcome) << test.changes;
    }
}

TEST(SelectLabelArgument, FollowsTypesAndOptionsAndIsKept) {
    NCProjectOptions options;
    options.observations = {3, 2, 5};
    options.variables = {4, 1, -1};
    struct Case {
        Vector::VectorTypeEnum type;
        int typed[3], fromOptions[3]; // identifier, start, length
    } const cases[] = {{Scores, {-1, 1, 10}, {3, 2, 5}},
                       {Vector::VectorTypeObservationsLoadings, {-1, 1, 10}, {4, 1, -1}},
                       {Vector::VectorTypeComponent, {1, 1, 20}, {1, 1, 20}},
                       {Vector::VectorTypeLag, {1, 1, 20}, {-1, 1, 10}},
                       {Vector::VectorTypeAligned, {-1, 1, 20}, {-1, 1, 20}},
                       {Vector::VectorTypeBatch, {-1, 1, 10}, {1, 2, 5}}};
    auto const expect = [](SelectLabelArgument const &label, int const(&values)[3], int type) {
        EXPECT_EQ(label.GetSelID(), values[0]) << type;
        EXPECT_EQ(label.GetStartPos(), values[1]) << type;
        EXPECT_EQ(label.GetLength(), values[2]) << type;
    };
    for (Case const &test : cases) {
        SelectLabelArgument typed, followed;
        typed.SetFromOptions(true);
        typed.SetType(test.type);
        expect(typed, test.typed, test.type);
        EXPECT_FALSE(typed.FromOptions());
        followed.SetFromOptions(test.type, &options);
        expect(followed, test.fromOptions, test.type);
        bool const isFollowed = test.type != Vector::VectorTypeLag;
        EXPECT_EQ(followed.FromOptions(), isFollowed);
        EXPECT_EQ(followed.GetType(), isFollowed ? test.type : Scores);
        typed.SetDisplayAllAvailable(false);
        for (SelectLabelArgument const &label : {typed, followed}) {
            XercesXMLSection section;
            label.WriteSection(&section);
            SelectLabelArgument read;
            ASSERT_TRUE(read.ReadSection(&section));
            EXPECT_EQ(read.GetType(), label.GetType());
            EXPECT_EQ(read.GetLength(), label.FromOptions() ? 10 : label.GetLength());
            EXPECT_EQ(read.IsDisplayAllAvailable(), label.IsDisplayAllAvailable());
            section.DeleteKey("Rotation");
            EXPECT_EQ(read.ReadSection(&section), label.FromOptions());
            section.DeleteKey("Type");
            EXPECT_FALSE(read.ReadSection(&section));
            std::stringstream stream;
            {
                boost::archive::polymorphic_xml_oarchive archive(stream);
                SelectLabelArgument(label).serialize(static_cast<boost::archive::polymorphic_oarchive &>(archive), 0);
            }
            SelectLabelArgument loaded;
            boost::archive::polymorphic_xml_iarchive archive(stream);
            loaded.serialize(static_cast<boost::archive::polymorphic_iarchive &>(archive), 7);
            EXPECT_EQ(loaded, label);
        }
    }
    SelectLabelArgument label;
    for (auto const &[start, length, expected] : {std::tuple(3, 2, "e\u0301d"),
                                                  {1, 20, "abe\u0301de\u0301f"},
                                                  {1, -1, "abe\u0301de\u0301f"},
                                                  {5, -1, "e\u0301f"},
                                                  {9, 2, ""}}) {
        label.SetStartPos(start);
        label.SetLength(length);
        EXPECT_EQ(label.GetColumnName("abe\u0301de\u0301f"), expected) << start << ' ' << length;
    }
}
