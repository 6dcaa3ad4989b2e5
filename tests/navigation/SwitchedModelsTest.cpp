// Plots of real models that are switched to others: they build, and show the items that they showed.

#include "building/ProjectDataBuilder.h"
#include "navigation/DataSeriesSwitcher.h"
#include "navigation/ModelSwitcher.h"
#include "platform/storage/XercesXMLSection.h"
#include "platform/text/Exception.h"
#include "selection/SavedSelection.h"
#include "selection/SelectDataSeriesData.h"
#include "tests/engine/BatchProcess.h"
#include "tests/support/Dice.h"
#include "utilities/DefaultSelection.h"
#include "utilities/MarkedColumnIDsManager.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace small {
namespace {

using Selection = SelectDataSeriesData;
using engine::EvolutionRequest;
using Weight = ContributionWeightEnum;
using DataSeriesUtilities::ModelSwitcher;

struct Drawn {
    std::string label; // without the model
    std::vector<float> values;
};

// Models of all kinds of nine batches, of which some models lack one, or a variable; and three more batches.
class SwitchedModels : public testing::Test {
protected:
    SwitchedModels() {
        m_project->AddDataSet(TableOf(ManyBatches(1, 9)));
        Add({.type = ModelTypeE::PLS, .responses = {"time"}, .components = 3});
        Add({.type = ModelTypeE::PCA, .excluded = {"time"}, .components = 2});
        Add({.type = ModelTypeE::PLS, .responses = {"time"}, .excluded = {"x1"}, .components = 1});
        Add({.type = ModelTypeE::OPLS, .responses = {"time"}, .components = 1, .xOrthogonal = 2});
        Add({.type = ModelTypeE::O2PLS, .responses = {"time", "x3"}, .components = 1, .xOrthogonal = 1});
        AddEvolution(ModelTypeE::PLS, {}, {.points = 10});
        AddEvolution(ModelTypeE::OPLS, {"B1"}, {.phase = "run", .points = 7});
        AddEvolution(ModelTypeE::PLS, {"B1"}, {.points = 10});
        m_project->AddPredictions(TableOf(ManyBatches(10, 3)), true);
    }

    void Add(engine::ModelRequest request) {
        request.crossValidationGroups = 3;
        m_project->AddModel(request);
    }

    void AddEvolution(ModelTypeE::Model type, std::vector<std::string> excluded, EvolutionRequest const &evolution) {
        Add({.type = type,
             .responses = {"time"},
             .excluded = std::move(excluded),
             .components = 1,
             .xOrthogonal = 1,
             .evolution = evolution});
    }

    // The first of everything, or other ones.
    ProjectVectorData Data(ProjectVector const &vector, int model, bool isFirst) const {
        ProjectVectorData data;
        data.SetProjectVector(&vector);
        data.SetModelInfoPtr(m_project->GetModelInfo(model));
        for (int const kind : {1, 2, 4})
            data.SetComponent(static_cast<ProjectVector::ComponentType>(kind), isFirst ? 1 : -1);
        data.SetDefaultNumberID(m_defaults);
        if (!isFirst && vector.IsXVector())
            data.SetNumber(2);
        if (!isFirst && vector.UseBatchIx())
            data.batchIx = 3;
        data.obs2 = {2, 5};
        data.contGroup = {{"B2", 10.0f}};
        data.SetWeightType(isFirst ? Weight::P : Weight::Normalized);
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

    // The series; nothing when the selection does not build.
    static std::optional<Drawn> Draw(Selection const &selection) {
        try {
            ProjectDataUtilities::ProjectDataBuilder builder(&selection);
            TablePtr const table(builder.Build());
            if (!table || table->Rows() != 2)
                return {};
            std::string const label =
                selection.GetSeries(1).GetFormattedName(selection.GetDefaultSelection().get(), 1, false);
            auto const row = table->GetMatrix().Row(2);
            return Drawn{label.substr(label.find('.') + 1), {row.begin(), row.end()}};
        } catch (NCError const &) {
            return {};
        }
    }

    // True when it was switched.
    static bool ExpectItStays(Selection &selection, Drawn const &before, int target) {
        ModelSwitcher switcher(&selection);
        if (!switcher.CanSwitchModel(target))
            return false;
        std::unique_ptr<Selection> const switched(switcher.SwitchModel(target, false));
        if (!switched)
            return false;
        ProjectVectorData const &series = switched->GetSeries(1);
        std::string const what = selection.GetSeries(1).ToStdString(nullptr) + ", " + series.ToStdString(nullptr);
        auto const after = Draw(*switched);
        EXPECT_TRUE(after) << what;
        // The values of a variable are those of any model with the same rows or points.
        std::string const name = series.GetProjectVector()->GetName();
        if (after && (name == "XVar" || name == "XVarPS")) {
            EXPECT_EQ(after->label, before.label) << what;
            if (after->values.size() == before.values.size()) {
                EXPECT_EQ(after->values, before.values) << what;
            }
        }
        return true;
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project = Project::Create(m_folder / "models.dsp");
    ProjectUtilities::DefaultSelection m_defaults{m_project};
};

TEST_F(SwitchedModels, ShowTheSameItems) {
    int const models = m_project->GetNumberOfModels();
    int switches = 0;
    for (ProjectVector const *const vector : *ProjectVectorHandler::Instance())
        for (int model = 1; model <= models; ++model) {
            auto const info = m_project->GetModelInfo(model);
            if (!vector->UseModel() || (vector->GetModelType() & info->type) == 0 || vector->IsNumVector())
                continue;
            for (bool const isFirst : {true, false}) {
                auto const selection = Make(Data(*vector, model, isFirst));
                auto const before = Draw(*selection);
                for (int target = 1; before && target <= models; ++target)
                    switches += ExpectItStays(*selection, *before, target);
            }
        }
    EXPECT_GT(switches, 10000);
}

TEST_F(SwitchedModels, ShowContributionsOfAllWeights) {
    for (int model = 1; model <= 7; ++model)
        for (int weight = Weight::Normalized; weight <= Weight::Raw; ++weight)
            for (auto const &components : std::vector<std::vector<int>>{{1}, {2}, {3}, {1, 2}, {3, 1}}) {
                ProjectVectorData data = Data(*ProjectVectorHandler::Instance()->FindVector(
                                                  "ContSc", Loadings, ProjectVector::DataTypeModel, nullptr),
                                              model, true);
                data.SetWeightComp(components);
                data.SetWeightType(static_cast<Weight::WeightType>(weight));
                data.SetYVar(1);
                auto const selection = Make(data);
                auto const before = Draw(*selection);
                for (int target = 1; before && target <= 8; ++target)
                    ExpectItStays(*selection, *before, target);
            }
}

TEST_F(SwitchedModels, KeepWhatIsSelected) {
    auto const selection = Make(Data(
        *ProjectVectorHandler::Instance()->FindVector("t", Scores, ProjectVector::DataTypeModel, nullptr), 1, true));
    auto const switched = [&] {
        std::unique_ptr<Selection> const result(ModelSwitcher(selection.get()).SwitchModel(8, false));
        std::string rows;
        for (int item = 1; result && item <= result->GetSelectObjects().Size(); ++item)
            if (result->GetSelectObjects()[item])
                rows += ' ' + std::to_string(result->GetColumnIDs()->GetColumnID(item));
        return rows;
    };
    // Whole batches, of which one is not there, and then none is; and rows of no whole batch.
    selection->SelectBatches({"B1", "B2"});
    EXPECT_EQ(switched(), " 10 11 12 13 14 15 16 17 18 19");
    selection->SelectBatches({"B1"});
    EXPECT_EQ(switched(), "");
    BoolVector rows(selection->GetSelectObjects().Size(), false);
    for (int const row : {4, 11, 17})
        rows(row) = true;
    selection->SetSelectObjects(rows);
    EXPECT_EQ(switched(), " 11 17");
    EXPECT_EQ(selection->NumSelectObjects(), 3);
}

// Next and previous, other models, saving and loading, marks and batches, in any order: the plot can always be built.
TEST_F(SwitchedModels, BuildAfterEachStepOfARandomWalk) {
    using namespace DataSeriesUtilities;
    Dice dice(11);
    std::vector<ProjectVector const *> vectors;
    std::ranges::copy_if(*ProjectVectorHandler::Instance(), std::back_inserter(vectors),
                         [](ProjectVector const *vector) {
                             // No identifier of these data is a number, and none is kept.
                             return vector->UseModel() && !vector->IsNumVector() &&
                                    vector->GetNumberType() != ProjectVector::NumberIdentifier;
                         });
    MarkedColumnIDsManager &marks = *MarkedColumnIDsManager::Instance();
    std::unique_ptr<Selection> selection;
    std::string way;
    int refused = 0;
    auto const start = [&] {
        do {
            auto const vector = vectors[static_cast<std::size_t>(dice(0, static_cast<int>(vectors.size()) - 1))];
            int const model = dice(1, m_project->GetNumberOfModels());
            auto const info = m_project->GetModelInfo(model);
            bool const isOfBatches = vector->GetType() >= ProjectVector::VectorTypeAligned || vector->UseBatchIx();
            bool const isThere = (vector->GetModelType() & info->type) != 0 && (info->isBatchModel || !isOfBatches);
            selection = isThere ? Make(Data(*vector, model, dice(0, 1) == 1)) : nullptr;
        } while (!selection || !Draw(*selection));
        way = selection->GetSeries(1).ToStdString(nullptr);
    };
    auto const step = [&](int kind) {
        if (kind < 6) {
            DataSeriesSwitcher(selection.get(), static_cast<SwitchingType>(1 << kind), dice(0, 1) == 1);
        } else if (kind == 6) {
            XercesXMLSection section;
            std::vector<std::string> losses;
            SavedSelection::Write(*selection, section, false);
            EXPECT_TRUE(SavedSelection::Read(section, {}, *selection, losses)) << way;
        } else if (kind == 7) {
            std::list<int> const one{dice(1, 3)};
            marks.UpdateSelected(m_project, selection->GetColumnIDs(), &one, MarkedColumnIDsManager::MarkToggle, {});
        } else if (kind == 8) {
            marks.ClearMarkedIDs(dice(0, 1) == 1);
        } else if (selection->SelectBatches({"B" + std::to_string(dice(1, 3)), "B1" + std::to_string(dice(0, 2))}) ==
                   Selection::NothingSelected) {
            selection->SetSelectObjects(BoolVector(selection->GetSelectObjects().Size(), true));
        }
    };
    start();
    for (int steps = 0; steps < 10000; ++steps) {
        if (dice(0, 19) == 0)
            start();
        int const kind = dice(0, 9);
        try {
            step(kind);
        } catch (NCError const &error) {
            ++refused;
            EXPECT_STRNE(error.what(), "");
        }
        way += " > " + std::to_string(kind);
        // Distances of no components have no spread over batches.
        std::string const text = selection->GetSeries(1).ToStdString(nullptr);
        if (!Draw(*selection) && !(text.starts_with("DModXstddev") && text.find(",0,0,0") != text.npos)) {
            ADD_FAILURE() << way << " gives nothing: " << text;
            start();
        }
    }
    EXPECT_LT(refused, 1500);
    marks.ClearMarkedIDs(true);
}

} // namespace
} // namespace small
