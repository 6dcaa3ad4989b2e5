#include "catalogue/ProjectVectorHandler.h"
#include "navigation/ProjectVectorFilter.h"
#include "navigation/VectorForms.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

namespace {

using namespace DataSeriesUtilities;

// Of a model, a data set or the prediction set ("M1", "DS1", "PS"), for all kinds unless the change says otherwise.
struct Wanted {
    char const *source;
    V::ObsOrPredType obsPred = V::ObsAndPred;
    V::ScoreLoadingType kinds = V::AllScoreLoading;
    CorrCheckType corr = NoCorrCheck;
    int dataset = 0;
};

DefaultProjectFilter FilterOf(World const &world, Wanted const &wanted) {
    std::string const source = wanted.source;
    bool const ofModel = source[0] == 'M';
    auto const data = ofModel ? OfModel : source == "PS" ? OfPredSet : OfSet;
    return DefaultProjectFilter(*world.project, ofModel ? source[1] - '0' : -1,
                                data == OfSet ? source[2] - '0' : wanted.dataset, data, wanted.obsPred,
                                wanted.kinds != V::AllScoreLoading, wanted.kinds, wanted.corr);
}

TEST(ProjectVectorFilter, OffersWhatHasSomethingToShow) {
    World world;
    world.project->AddModel(ModelTypeE::PLS, 0, 0, 0, 3, 1); // 5
    world.project->Info(2).crossValidated = true;
    world.project->Info(3).dataSets = {17};
    world.project->dataSets[17].kind = NCDataSetInfo::WaveletCompressed;
    world.project->AddData(17, {1}, {1});
    world.project->dataSets[1].oscComponents = 1;
    struct {
        Wanted wanted;
        char const *name;
        V::VectorTypeEnum type;
        bool expected;
    } const cases[] = {
        {{"M1"}, "t", Scores, true},
        {{"M1"}, "tcvSE", Scores, false},
        {{"M2"}, "tcvSE", Scores, true},
        {{"M5"}, "t", Scores, false},
        {{"M5"}, "DModX", Scores, true}, // from component 0 on
        {{"M5"}, "XVar", Scores, true},
        {{"M1"}, "to", Scores, false},
        {{"M2"}, "to", Scores, true},
        {{"M2"}, "uo", Scores, false},
        {{"M3"}, "uo", Scores, true},
        {{"M3"}, "CoeffCS", Loadings, false}, // of wavelet coefficients
        {{"M2"}, "CoeffCS", Loadings, true},
        {{"M1", V::Observed}, "tPS", Scores, false},
        {{"M1", Predicted}, "tPS", Scores, true},
        {{"M1", V::Observed, V::AllScoreLoading, NoCorrCheck, -1}, "tPS", Scores, true},
        {{"M1", V::ObsAndPred, V::Loading}, "t", Scores, false},
        {{"M1", V::ObsAndPred, V::Loading}, "p", Loadings, true},
        {{"M1", V::ObsAndPred, V::AllScoreLoading, RejectCorrScaled}, "p", Loadings, true},
        {{"M1", V::ObsAndPred, V::AllScoreLoading, RejectCorrScaled}, "p(corr)", Loadings, false},
        {{"M1", V::ObsAndPred, V::AllScoreLoading, OnlyCorrScaled}, "p", Loadings, false},
        {{"M1", V::ObsAndPred, V::AllScoreLoading, OnlyCorrScaled}, "p(corr)", Loadings, true},
        {{"DS1"}, "DModX", Scores, true}, // not tested for models
        {{"DS1"}, "OSC-t", Scores, true},
        {{"DS2"}, "OSC-t", Scores, false},
        {{"M1"}, "LocalCentering", Scores, false},
        {{"PS"}, "VarPS", Scores, true},
        {{"M9"}, "tcvSE", Scores, true}, // a model that is not there
    };
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    for (auto const &row : cases) {
        ProjectVector const *const vector = handler.FindVector(row.name, row.type, V::DataTypeNone, nullptr);
        EXPECT_EQ(FilterOf(world, row.wanted)(vector), row.expected) << row.wanted.source << ' ' << row.name;
    }
    EXPECT_FALSE(FilterOf(world, {"M1"})(nullptr));
}

TEST(ProjectVectorFilter, KnowsItsSource) {
    World world;
    VariableInfo date(2), point(5);
    date.dateTime = true;
    point.maturity = 0.5f;
    world.project->variables.SetInfo(date);
    world.project->variables.SetInfo(point);
    world.project->Info(1).hasDateTime = true;
    struct {
        char const *source;
        bool batch, dates, several, noX, noY;
    } const cases[] = {
        {"M1", false, true, true, true, true},    {"M3", true, false, true, false, false},
        {"DS1", true, true, false, false, false}, {"DS2", false, true, false, false, false},
        {"PS", true, false, false, false, false}, {"DS9", false, false, false, false, false},
    };
    for (auto const &row : cases) {
        DefaultProjectFilter const filter = FilterOf(world, {row.source});
        EXPECT_EQ((std::vector<bool>{filter.IsBatchSource, filter.IsDateTimeSource, filter.HasSeveralComponents,
                                     filter.NoXSideOrthogonalComponents, filter.NoYSideOrthogonalComponents}),
                  (std::vector<bool>{row.batch, row.dates, row.several, row.noX, row.noY}))
            << row.source;
    }
}

} // namespace
