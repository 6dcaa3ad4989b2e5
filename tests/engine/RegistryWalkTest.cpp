// Every statistic of the registry on a fitted model of each kind.

#include "tests/engine/RegistryWalk.h"
#include "building/ProjectDataBuilder.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/engine/SmallProject.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <set>

namespace {

using namespace small;

// Observations in groups, with dates and two responses; the same with missing cells. Identifiers are numbers, so that
// they are values too.
struct WalkData {
    char const *name, *rows, *predicted;
    bool isComplete;

    friend void PrintTo(WalkData const &data, std::ostream *out) { *out << data.name; }
};

WalkData const data[] = {{"complete",
                          "id,site,60,10,20,30,40,50\n1.5,n,2024-01-01,1,2,1,1.2,2.0\n2,n,2024-01-02,2,1,4,1.9,5.1\n"
                          "3,n,2024-01-03,3,5,2,3.4,1.4\n4,s,2024-01-04,4,3,6,3.8,4.4\n5,s,2024-01-05,5,7,3,5.6,0.9\n"
                          "6,s,2024-01-06,6,4,8,5.9,6.2\n",
                          "id,site,60,10,20,30,40,50\n7,n,2024-01-07,3.5,2,5,3,2\n8,s,2024-01-08,9,1,7,6.5,5\n", true},
                         {"incomplete",
                          "id,site,60,10,20,30,40,50\n1.5,n,2024-01-01,1,2,1,1.2,2.0\n2,n,,2,1,4,1.9,5.1\n"
                          "3,n,2024-01-03,3,,2,3.4,\n4,s,2024-01-04,4,3,6,3.8,4.4\n5,s,2024-01-05,5,7,3,,0.9\n"
                          "6,s,2024-01-06,,4,8,5.9,6.2\n8,s,2024-01-09,5,6,9,6.3,4.1\n",
                          "id,site,60,10,20,30,40,50\n7,n,2024-01-07,3.5,,5,,2\n9,west,,9,1,7,6.5,5\n", false}};

// Statistics with cells that are missing by definition: components of the other side, and cuts that leave nothing
// above.
std::set<std::string> const withGaps = {"SDt F(Component)",
                                        "SDu F(Component)",
                                        "PLSTreeCutFunction Variables and scores",
                                        "PLSTreeNCutFunction Variables and scores",
                                        "PLSTreeTCutFunction Variables and scores",
                                        "PLSTreeYCutFunction Variables and scores"};

// Of the first observation, whose response is missing where the data is not complete.
std::set<std::string> const ofObservedY = {"YObsResPS", "ContDModYPS"};

class Registry : public testing::TestWithParam<WalkData> {
protected:
    Registry() : m_project(Project::Create(m_folder / "walk.dsp")) {
        m_project->AddDataSet(Read(GetParam().rows));
        m_project->AddCorrection({.responses = {"40"}});
        m_project->SetLocalCentring(m_project->MeansOfGroups({1, "site", {"20"}}));
        AddModel(*m_project, {ModelTypeE::PCA, {}, {"40", "50"}, 2}, GetParam().predicted);
        AddModel(*m_project, {ModelTypeE::PLS, {"40"}, {"50"}, 2}, GetParam().predicted);
        AddModel(*m_project, {ModelTypeE::OPLS, {"40"}, {"50"}, 1}, GetParam().predicted);
        AddModel(*m_project, {ModelTypeE::O2PLS, {"40", "50"}, {}, 1}, GetParam().predicted);
        AddModel(*m_project, {ModelTypeE::PLS, {"40"}, {"20"}, 2, {{"10", 1, 1}}}, GetParam().predicted);
        AddModel(*m_project, {ModelTypeE::OPLS, {"40"}, {"20"}, 1, {{"10", 1, 1}}}, GetParam().predicted);
    }

    std::string ArgumentsOf(ProjectVector const &vector, ModelInfo const *info) const {
        return walk::ArgumentsOf(vector, info, static_cast<int>(m_project->GetObservations().Size()));
    }

    // Whether there is a table, with the columns that the vector announces and numbers: in every cell where the data
    // is complete, in some where it is not, as in the first rows of lagged terms.
    bool Delivers(ProjectVector const &vector, std::string const &name, std::string const &args,
                  ModelInfo const *info) const {
        TablePtr const table = vector.CreateVectorRaw(m_project, args.c_str());
        if (!table)
            return false;
        EXPECT_TRUE(table->GetColumnIDs() == vector.CreateColumnIDsRaw(m_project, args.c_str())) << name << ' ' << args;
        auto const values = table->GetMatrix().Values();
        auto const isNumber = [](float value) { return !IsMissing(value); };
        EXPECT_TRUE(std::ranges::all_of(values, [](float value) { return std::isfinite(value); }))
            << name << ' ' << args;
        bool const isComplete = GetParam().isComplete && !(info && info->hasLaggedVariables);
        return isComplete && !withGaps.contains(name) ? std::ranges::all_of(values, isNumber)
                                                      : std::ranges::any_of(values, isNumber);
    }

    // What is asked by name of a model that has no such statistic has no numbers, or is an error that tells why.
    void ExpectNothing(ProjectVector const &vector, std::string const &name, ModelInfo const &info) const {
        std::string const text = std::string(vector.GetName()) + ' ' + ArgumentsOf(vector, &info);
        try {
            TablePtr const table =
                ProjectDataUtilities::CreateProjectData(*m_project).GetProjectData(text, vector.GetType());
            EXPECT_TRUE(!table || std::ranges::all_of(table->GetMatrix().Values(), ::IsMissing)) << name << ' ' << text;
        } catch (NCError const &error) {
            EXPECT_STRNE(error.what(), "") << name << ' ' << text;
        }
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

TEST_P(Registry, GivesNumbersWhereItsVectorsAreValid) {
    std::map<std::string, int> delivered;
    std::set<std::string> withoutNumbers;
    for (ProjectVector const *vector : *ProjectVectorHandler::Instance()) {
        std::string const name =
            std::string(vector->GetName()) + ' ' + ProjectVector::FromVectorTypeEnumGui(vector->GetType());
        int &count = delivered[name];
        if (walk::IsOfBatches(*vector)) // of which there are none here
            withoutNumbers.insert(name);
        walk::ForModels(*vector, m_project, [&](ModelInfo const *info) {
            if (info && (walk::IsOfBatches(*vector) || !walk::HasComponents(*vector, *info)))
                return ExpectNothing(*vector, name, *info);
            std::string const args = ArgumentsOf(*vector, info);
            bool const delivers = Delivers(*vector, name, args, info);
            count += delivers ? 1 : 0;
            EXPECT_TRUE(delivers) << name << ' ' << args;
        });
        // Some have a form for each kind of model.
        for (int model = 1; vector->UseModel() && model <= m_project->GetNumberOfModels(); ++model)
            if (auto const info = m_project->GetModelInfo(model); !ProjectVectorHandler::Instance()->FindVector(
                    vector->GetName(), vector->GetType(), ProjectVector::DataTypeModel, info.get()))
                ExpectNothing(*vector, name, *info);
    }
    std::set<std::string> silent;
    for (auto const &[name, count] : delivered)
        if (count == 0) {
            silent.insert(name);
            std::cout << "no numbers yet: " << name << '\n';
        }
    EXPECT_EQ(silent, withoutNumbers);
}

// Every record of predicted rows that is offered can be shown, whichever prediction set is current.
TEST_P(Registry, ShowsTheCurrentPredictionSet) {
    auto const expectShown = [&](ProjectVectorData const &data, std::string const &stage) {
        std::string const what = stage + ' ' + data.ToStdString(nullptr);
        EXPECT_TRUE(data.CheckNumberIDs(m_project)) << what;
        SelectDataSeriesData selection(m_project, SelectDataSeriesData::Normal, data.GetProjectVector()->GetType(), -1,
                                       ProjectVector::Predicted);
        selection.AddSeries(data, true);
        std::unique_ptr<ProjectData> const table(ProjectDataUtilities::ProjectDataBuilder(&selection).Build());
        ASSERT_TRUE(table && table->GetMatrix().Rows() > 0) << what;
        auto const values = table->GetMatrix().Values();
        // What an observation lacks has no residual.
        EXPECT_TRUE(std::ranges::any_of(values, [](float value) { return !IsMissing(value); }) ||
                    (!GetParam().isComplete && ofObservedY.contains(data.GetProjectVector()->GetName())))
            << what;
        // Centre values are those of the rows of the model, whichever are predicted.
        std::string_view const name = data.GetProjectVector()->GetName();
        if (data.GetProjectVector()->GetType() == Scores && name != "LocalCenteringPS") {
            EXPECT_EQ(table->GetColumnIDs().Size(), 2) << what;
        }
    };
    auto const expectAllShown = [&](std::string const &stage) {
        auto const current = m_project->GetPredSet(-1);
        for (ProjectVector const *vector : *ProjectVectorHandler::Instance()) {
            if (vector->GetObsPredType() != ProjectVector::Predicted)
                continue;
            walk::ForModels(*vector, m_project, [&](ModelInfo const *info) {
                if (walk::IsOfBatches(*vector) || (info && !walk::HasComponents(*vector, *info)))
                    return;
                ProjectVectorData data;
                data.SetProjectVector(vector);
                if (info)
                    data.SetModelInfoPtr(m_project->GetModelInfo(info->number));
                data.SetDefaultNumberID(ProjectUtilities::DefaultSelection(m_project));
                data.SetComponent(1);
                expectShown(data, stage);
            });
        }
        for (int model = 0; model <= m_project->GetNumberOfModels(); ++model) {
            if (model > 0) {
                EXPECT_EQ(m_project->GetModelPredSet(model), current);
                EXPECT_EQ(m_project->GetPredictions(model, true)->GetObservations(), current->GetObservations());
            }
            for (auto const type : {Scores, Loadings})
                for (auto const source : {ProjectVector::DataTypeModel, ProjectVector::DataTypePredictionSet})
                    for (bool const isUsed : {false, true}) {
                        ProjectVectorData data;
                        if (isUsed)
                            data.SetProjectVector(ProjectVectorHandler::Instance()->GetNumVector(type));
                        if (!ProjectVectorData::SetProjectVectorDataDefault(m_project, type, data, source,
                                                                            m_project->GetModelInfo(model).get(), 0,
                                                                            ProjectVector::Predicted))
                            ADD_FAILURE() << stage << " no default of model " << model;
                        else if (data.GetProjectVector()->GetObsPredType() == ProjectVector::Predicted)
                            expectShown(data, stage + " default");
                    }
        }
    };
    expectAllShown("one set");
    engine::ImportedTable other =
        Read("id,site,50,40,60,30,10,20\n17,n,2,5,2024-02-07,3,1,2\n7,s,3,1,2024-02-08,2,2,4\n");
    other.name = "other";
    m_project->AddPredictions(other);
    expectAllShown("two sets");
    m_project->UsePredictions(m_project->FindPredictionSet("table"));
    expectAllShown("the first again");
    m_project->AddDataSet(Read("name,a,20,b\n99,x,1,2\n7,y,2,3\n"));
    expectAllShown("more data");
}

INSTANTIATE_TEST_SUITE_P(Data, Registry, testing::ValuesIn(data), testing::PrintToStringParamName());

} // namespace
