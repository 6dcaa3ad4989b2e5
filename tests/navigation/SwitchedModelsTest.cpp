// Plots of real models that are switched to others: they build, and show the items that they showed.

#include "building/ProjectDataBuilder.h"
#include "navigation/ModelSwitcher.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/engine/BatchProcess.h"
#include "utilities/DefaultSelection.h"

#include <set>

namespace small {
namespace {

using Selection = SelectDataSeriesData;
using engine::EvolutionRequest;
using Weight = ContributionWeightEnum;
using DataSeriesUtilities::ModelSwitcher;

// Models of all kinds of nine batches; models 3, 7 and 8 lack what others have.
class SwitchedModels : public testing::Test {
protected:
    SwitchedModels() {
        m_project->AddDataSet(TableOf(ManyBatches(1, 9)));
        Add({.type = ModelTypeE::PLS, .responses = {"time"}, .components = 3});
        Add({.type = ModelTypeE::PCA, .excluded = {"time"}, .components = 2});
        Add({.type = ModelTypeE::PLS, .responses = {"time"}, .excluded = {"x1"}, .components = 1});
        Add({.type = ModelTypeE::OPLS, .responses = {"time"}, .components = 1, .xOrthogonal = 2});
        Add({.type = ModelTypeE::O2PLS, .responses = {"time", "x3"}, .components = 1, .xOrthogonal = 1});
        Add({.type = ModelTypeE::PLS, .responses = {"time"}, .components = 2, .evolution = EvolutionRequest{}});
        Add({.type = ModelTypeE::OPLS,
             .responses = {"time"},
             .components = 1,
             .xOrthogonal = 1,
             .evolution = EvolutionRequest{.phase = "run"}});
        Add({.type = ModelTypeE::PLS, .responses = {"time"}, .components = 0});
        m_project->AddPredictions(TableOf(ManyBatches(10, 3)), true);
    }

    void Add(engine::ModelRequest request) {
        request.crossValidationGroups = 3;
        m_project->AddModel(request);
    }

    ProjectVectorData Data(ProjectVector const &vector, int model, bool ofLast) const {
        ProjectVectorData data;
        data.SetProjectVector(&vector);
        data.SetModelInfoPtr(m_project->GetModelInfo(model));
        for (auto const kind : {1, 2, 4})
            data.SetComponent(static_cast<ProjectVector::ComponentType>(kind), ofLast ? -1 : 1);
        data.SetDefaultNumberID(m_defaults);
        if (ofLast && vector.UseBatchIx())
            data.batchIx = 3;
        data.obs2 = {2, 5};
        data.contGroup = {{"B2", 10.0f}};
        data.SetWeightType(ofLast ? Weight::Normalized : Weight::P);
        data.SetWeightComp({1});
        return data;
    }

    std::unique_ptr<Selection> Make(ProjectVectorData const &data) const {
        auto selection = std::make_unique<Selection>(m_project, Selection::AxisX, data.GetProjectVector()->GetType(),
                                                     -1, ProjectVector::ObsAndPred);
        ProjectVectorData axis = data;
        axis.SetProjectVector(ProjectVectorHandler::Instance()->GetNumVector(selection->GetVectorType()));
        selection->SetXAxis(axis);
        selection->AddSeries(data, true);
        return selection;
    }

    static bool Builds(Selection const &selection) {
        ProjectDataUtilities::ProjectDataBuilder builder(&selection);
        TablePtr const table(builder.Build());
        return table && table->Rows() == static_cast<int>(selection.VectorsInUse().size());
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project = Project::Create(m_folder / "models.dsp");
    ProjectUtilities::DefaultSelection m_defaults{m_project};
};

TEST_F(SwitchedModels, Build) {
    int switches = 0;
    for (ProjectVector const *const vector : *ProjectVectorHandler::Instance())
        for (int model = 1; model <= m_project->GetNumberOfModels(); ++model) {
            auto const info = m_project->GetModelInfo(model);
            if (!vector->UseModel() || (vector->GetModelType() & info->type) == 0 || vector->IsNumVector())
                continue;
            for (bool const ofLast : {false, true}) {
                auto const selection = Make(Data(*vector, model, ofLast));
                if (!Builds(*selection))
                    continue;
                for (int target = 1; target <= m_project->GetNumberOfModels(); ++target) {
                    ModelSwitcher switcher(selection.get());
                    if (!switcher.CanSwitchModel(target))
                        continue;
                    std::unique_ptr<Selection> const switched(switcher.SwitchModel(target, false));
                    if (!switched) {
                        std::printf("null %s %d %d->%d\n", vector->GetName(), vector->GetType(), model, target);
                        continue;
                    }
                    ++switches;
                    EXPECT_TRUE(Builds(*switched))
                        << vector->GetName() << ' ' << vector->GetType() << ": " << model << " to " << target << ' '
                        << ofLast << ' ' << switched->GetSeries(1).ToStdString(&m_defaults) << " from "
                        << selection->GetSeries(1).ToStdString(&m_defaults);
                }
            }
        }
    EXPECT_GT(switches, 3000);
    std::printf("switches %d\n", switches);
}

} // namespace
} // namespace small
