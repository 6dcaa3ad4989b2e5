#include "catalogue/ProjectVectorHandler.h"
#include "specification/ReadVectorException.h"
#include "tests/specification/World.h"
#include "tests/support/Archives.h"
#include "tests/support/GroupingLocale.h"
#include "utilities/KestaProjectHandlerBase.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

// "key=value key=value" into a section, on top of what is there; "-key" takes one away, and "_" is a blank in a value.
void Put(std::string const &text, ConfigurationSection &section) {
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        if (word.front() == '-') {
            section.DeleteKey(word.substr(1));
            continue;
        }
        std::size_t const at = word.find('=');
        std::string value = word.substr(at + 1);
        std::replace(value.begin(), value.end(), '_', ' ');
        section.WriteKey(word.substr(0, at), value);
    }
}

constexpr char const *always = "NumberID=-1 NumberID2=-1 BatchIx=-1 Unscaled=1 BackTransformed=0 SelCV=2 "
                               "WeightType=Normalized ContRef= ContGroup= ";

// What a section with these keys reads as: "false", the text of the error, with "!" in front where the vector cannot be
// shown, or the given keys of the record that came out.
std::string Outcome(World const &world, std::string const &keys, std::string const &asked, bool activeModel = false) {
    XercesXMLSection section, written;
    Put(always + keys, section);
    ProjectVectorData data;
    try {
        if (!data.ReadSection(world.project, &section, activeModel))
            return "false";
    } catch (ReadVectorException const &error) {
        return '!' + std::string(error.what());
    } catch (NCError const &error) {
        return error.what();
    }
    data.WriteSection(&written);
    std::istringstream wanted(asked);
    std::string text;
    for (std::string key; wanted >> key;) {
        std::string value = "-";
        written.ReadKey(key.substr(0, key.find('=')), value);
        text += (text.empty() ? "" : " ") + key.substr(0, key.find('=')) + '=' + value;
    }
    return text;
}

std::string const t = "ProjectVector=t ProjectVectorType=Variables_and_Scores DataType=4 Model=1 PredictiveComp=2 ";
std::string const score = "ProjectVector=ContSc ProjectVectorType=Observations_and_Loadings DataType=4 Model=1 ";
std::string const varDS = "ProjectVector=VarDS ProjectVectorType=Variables_and_Scores DataType=1 Dataset=1 ";

} // namespace

TEST(VectorPersistence, ReadsWhatTheProjectHasNow) {
    World world;
    world.project->activeModel = 1;
    world.project->Info(1).sizeObservations = 6;
    world.project->AddModel(ModelTypeE::PLS, 0, 0, 0, 3, 1); // model 5
    world.project->Info(world.project->AddModel(ModelTypeE::PLS, 2, 0, 0, 3, 1)).fitted = false;
    std::string const y =
        "ProjectVector=YPred ProjectVectorType=Variables_and_Scores DataType=4 PredictiveComp=9 NumberID=";
    std::string const coefficients =
        "ProjectVector=CoeffCS ProjectVectorType=Observations_and_Loadings DataType=4 PredictiveComp=9 NumberID=1 ";
    struct Case {
        std::string keys, outcome;
        bool activeModel = false;
    } const cases[] = {
        // As written, lowered to what the model has, older keys, defaults.
        {t, "Model=1 PredictiveComp=2 BatchIx=-1 Unscaled=1 BackTransformed=0 SelCV=2 Scaling=1 Multiplier1=-99"},
        {t + "-BatchIx -Scaling Scaling=2.5 Offset=-1.25 Multiplier2=3",
         "BatchIx=1 Scaling=2.5 Offset=-1.25 Multiplier2=3"},
        {t + "PredictiveComp=9", "PredictiveComp=3"},
        {t + "-PredictiveComp Component=2", "PredictiveComp=2"},
        {t + "DataType=12", "DataType=4 Model=1"},
        {t + "Unscaled=2 BackTransformed=-1", "Unscaled=0 BackTransformed=0"},
        {t + "Model=77", "Model=1", true},
        {y + "2 Model=1", "PredictiveComp=3 NumberID=2"},
        {y + "2 Model=1 -PredictiveComp", "PredictiveComp=-1"}, // follows the model
        {coefficients + "Model=1 ResolveHier=2", "ResolveHier=2"},
        {coefficients + "Model=1", "ResolveHier=0"},
        {"ProjectVector=to ProjectVectorType=Variables_and_Scores DataType=4 Model=2 XSideOrthoComp=7",
         "XSideOrthoComp=2"},
        {"ProjectVector=Num ProjectVectorType=F(Component)", "ProjectVectorType=F(Component) Model=-1 Dataset=1"},
        {varDS + "NumberID=2", "Dataset=1 NumberID=2"},
        {"ProjectVector=VarPS ProjectVectorType=Variables_and_Scores DataType=2 NumberID=5", "NumberID=5 Model=-"},
        // Points of batches: the last colon ends the name, six digits, what is none is left out.
        {t + "ContRef=B:1:2.5;A:;:3;x ContGroup=A:1234567", "ContRef=B:1:2.5;:3 ContGroup=A:1.23457e+06"},
        {t + "Maturity1=1.5 Batch1=A Batch2=B", "ContRef=A:1.5 ContGroup=B:0"},
        {t + "Maturity1=1.5 Batch1=A Maturity2=3 Batch2=B ContRef=C:9", "ContRef=A:1.5 ContGroup=B:3"},
        // Contributions.
        {score + "Obs1=1;6 Obs2=2 CompList=9;9 WeightVec=9;1", "Obs1=1;6 Obs2=2 CompList=0;3 WeightVec=9;1"},
        {score + "CompList=9;2 WeightVec=9", "CompList=3;2"},
        {score + "WeightType=CoeffCS YVar=2", "YVar=2"},
        {score + "YVar=7", "YVar=0"},
        {score + "WeightType=CoeffCS YVar=3", "Selected contribution Y variable is outside the legal range."},
        {score + "Obs1=7", "!One of the first selected observations are outside observation range."},
        {score + "Obs2=1;7", "!One of the second selected observations are outside observation range."},
        {score + "-WeightType", "false"},
        // Keys that are missing.
        {t + "-ProjectVector", "false"},
        {t + "-ProjectVectorType", "false"},
        {t + "-Model", "false"},
        {t + "-PredictiveComp", "false"},
        {t + "-NumberID", "false"},
        {t + "-NumberID2", "false"},
        {t + "-Unscaled", "false"},
        {t + "-SelCV", "false"},
        {varDS + "-Dataset", "false"},
        // What cannot be shown.
        {t + "-DataType", "!Unknown vector: t"},
        {varDS + "ProjectVector=nonsense", "!Unknown vector: nonsense"},
        {varDS + "Dataset=9", "Dataset 9 could not be found for vector VarDS."},
        {varDS + "NumberID=9", "The selected numbers are not available."},
        {t + "Model=77", "Model could not be found for vector t."},
        {t + "Model=6", "!Cannot display vector t with an unfitted model."},
        {t + "Model=5", "!Cannot display vector t with a zero component model."},
        {t + "ProjectVector=nonsense", "!Vector is not available for this model: nonsense"},
        {t + "ProjectVectorType=F(Lag)", "!Vector is not available for this model: t"},
        {y + "2 Model=2", "The selected numbers are not available."},
    };
    for (Case const &test : cases)
        EXPECT_EQ(Outcome(world, test.keys, test.outcome, test.activeModel), test.outcome) << test.keys;
}

// Any record comes back with all that it says, but for components that the model does not have.
TEST(VectorPersistence, KeepsEverySetting) {
    GroupingLocale const grouping;
    World const world;
    for (int model = 1; model <= 4; ++model)
        world.project->Info(model).sizeObservations = 7;
    Dice dice(7);
    int kept = 0;
    for (int trial = 0; trial < 6000; ++trial) {
        Plain plain = Plain::Random(dice);
        std::string const flags = std::string(plain.vector.flags) + 'R';
        plain.vector.flags = flags.c_str();
        plain.vector.name = "a probe";
        if (plain.vector.data == OfPredSet)
            plain.vector.obsPred = Predicted;
        else if (plain.vector.data != OfSet)
            plain.vector.data = OfModel;
        VectorProbe const probe(plain.vector);
        XercesXMLSection saved, again;
        ProjectVectorData const data = plain.Record(world, &probe);
        data.WriteSection(&saved);
        ProjectVectorData read;
        try {
            if (!read.ReadSection(world.project, &saved, false))
                continue;
        } catch (NCError const &) {
            continue;
        }
        ++kept;
        read.WriteSection(&again);
        int component = 0;
        std::size_t kind = 0;
        for (char const *const key : {"PredictiveComp", "XSideOrthoComp", "YSideOrthoComp", "OSCCOMP"}) {
            if (saved.ReadKey(key, component))
                saved.WriteKey(key, std::min(component, plain.Last(kind)));
            ++kind;
        }
        // Components come with a model, groups and weights with a contribution; the latter's components are lowered.
        for (XercesXMLSection *const section : {&saved, &again}) {
            Put(plain.vector.data == OfModel ? "-OSCCOMP" : "-PredictiveComp -XSideOrthoComp -YSideOrthoComp",
                *section);
            if (plain.vector.data == OfPredSet)
                section->DeleteKey("OSCCOMP");
            Put(plain.vector.contribution == 0 ? "-CompList -Obs1 -Obs2 -WeightType -WeightVec -YVar" : "-CompList",
                *section);
            if (!data.IsYVarContribution())
                section->DeleteKey("YVar");
        }
        std::string before, after;
        saved.Flush(before);
        again.Flush(after);
        ASSERT_EQ(after, before);
    }
    EXPECT_GT(kept, 300);
}

TEST(VectorPersistence, GoesThroughArchives) {
    World const world;
    archives::Application const application(world.project);
    auto const vector = ProjectVectorHandler::Instance()->FindVector("t", Scores, OfModel, nullptr);
    ProjectVectorData const data = world.Data(*vector, "M1", [](ProjectVectorData &t2) { t2.SetComponent(2); });
    ProjectVectorData const gone = world.Data(*vector, "M1", [](ProjectVectorData &all) {
        auto const missing = boost::make_shared<ModelInfo>();
        missing->number = 77;
        all.SetModelInfoPtr(missing);
    });
    for (archives::Form const form : archives::forms) {
        ProjectVectorData loaded;
        archives::Load(archives::Saved(data, form), form, loaded);
        EXPECT_EQ(loaded.ToStdString(nullptr), data.ToStdString(nullptr)) << form;
        archives::Load(archives::Saved(ProjectVectorData(), form), form, loaded);
        EXPECT_EQ(loaded.GetProjectVector(), nullptr) << form;
        EXPECT_THROW(archives::Load(archives::Saved(gone, form), form, loaded), NCError) << form;
    }
}
