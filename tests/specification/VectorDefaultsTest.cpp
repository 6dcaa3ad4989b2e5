#include "catalogue/ProjectVectorHandler.h"
#include "platform/text/Exception.h"
#include "tests/specification/World.h"

#include <gtest/gtest.h>

namespace {

using ProjectUtilities::DefaultSelection;

// What an axis shows when nobody chose: the first rule that fits, as when, vector, how ("." for nothing). When: u the
// record shows something already, M no model is found, c the model has components, o observed values are wanted, d it
// is about data, t about the prediction set, 4 about models exactly, A no data are there, P no prediction set. How: c
// at component 1, n numbers by default, 1 number 1, f the first item, i the current one, D the given data set, k data
// set 1, b batch 1, 3 multipliers.
std::map<V::VectorTypeEnum, char const *> const rules = {
    {PerComponent, "u R2Xcum .  . R2Xcum 1"},
    {Lag, "M . .  . pLag 1c"},
    {Aligned, "co t bc  c tPS bc  o XVar bn  . XVarPS bn"},
    {PerBatch, "c TAlignedOOCSum 3c  . Num ."},
    {Scores, "udt VarPS i  ud VarDS iD  dA . .  dt VarPS f  d VarDS fD  M . .  co t c  c tPS c  o XVar n  . XVarPS n"},
    {Loadings, "udt ObsPS i  ud ObsDS iD  u4mc p .  u4m XObs n  u ObsDS k  dA . .  dt ObsPS f  d ObsDS fD  M . .  "
               "oc p c  o XObs n  P . .  . ObsPS n"}};

struct Choice {
    boost::shared_ptr<RecordingProject> project;
    V::VectorTypeEnum axis;
    int dataType, given, dataSet, obsPred; // given: a model, 0 for none
    ProjectVectorData data;

    // The given model, that of the record, the active one, the first one that fits the axis.
    int Model() const {
        bool const used = data.GetProjectVector() != nullptr;
        int const own = data.GetModelInfo() ? data.GetModelInfo()->number : 0;
        auto const isLagged = [&](int model) { return project->Info(model).hasLaggedVariables; };
        auto const isBatch = [&](int model) { return project->Info(model).isBatchModel; };
        if (given != 0 && (axis == Lag ? isLagged(given) : axis != Aligned || used || isBatch(given)))
            return given;
        if (given == 0 && own != 0 && (axis == PerComponent || axis == Scores || (axis == Lag && isLagged(own))))
            return own;
        std::vector<int> models{project->activeModel};
        for (int model = 1; model <= project->GetNumberOfModels(); ++model)
            models.push_back(model);
        auto const found = std::find_if(models.begin(), models.end(), [&](int model) {
            return model > 0 && (axis == Lag ? isLagged(model) && project->Info(model).SizeComponents() > 0
                                             : project->Info(model).fitted &&
                                                   (isBatch(model) || (axis != Aligned && axis != PerBatch)));
        });
        return found == models.end() ? 0 : *found;
    }

    bool Make() {
        bool const used = data.GetProjectVector() != nullptr;
        int const model = Model();
        bool const ofItems = axis == Scores || axis == Loadings;
        bool const ofData = !ofItems ? false
                            : used   ? (dataType & 3) != 0
                                     : (dataType & 4) == 0 || project->GetNumberOfModels() == 0;
        bool const predicted = used ? (dataType & 1) == 0 : dataType == 2;
        auto const source = project->GetDataSet(predicted ? 0 : dataSet);
        std::string facts = dataType == 4 ? ".4" : "."; // a capital is the contrary
        auto const know = [&facts](char what, bool holds) {
            facts += holds ? what : static_cast<char>(what - 'a' + 'A');
        };
        know('u', used), know('m', model != 0), know('d', ofData), know('o', obsPred != 2), know('t', predicted);
        know('c', model != 0 && project->Info(model).SizeComponents() > 0), know('a', source != nullptr);
        know('p', project->GetDataSet(0) != nullptr);
        std::istringstream all(rules.at(axis));
        std::string when, vector, how;
        while (all >> when >> vector >> how && when.find_first_not_of(facts) != std::string::npos)
            continue;
        if (vector != ".")
            Show(vector, how, ofData ? 0 : model, source);
        return vector != ".";
    }

    void Show(std::string const &vector, std::string const &hows, int model,
              boost::shared_ptr<NCDataSet const> const &source) {
        auto const does = [&hows](char how) { return hows.find(how) != std::string::npos; };
        DefaultSelection const defaults(project);
        ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
        bool const predicted = vector == "VarPS" || vector == "ObsPS", ofSet = vector.ends_with("DS");
        if (does('i'))
            data.SetNumber(axis == Scores ? defaults.GetDefaultSelectedDatasetVariable(dataSet, predicted)
                                          : defaults.GetDefaultSelectedObservation(0, dataSet, predicted));
        if (does('f'))
            data.SetNumber(axis == Scores ? source->GetVariables().front()
                                          : source->GetObservations().front().GetUniqueID());
        if (does('D') || does('k'))
            data.SetDataSet(does('D') ? dataSet : 1);
        else if (!does('i') && !does('f'))
            data.SetModelInfoPtr(project->GetModelInfo(model));
        V::DataTypeEnum const type = predicted ? OfPredSet : ofSet ? OfSet : OfModel;
        ModelInfo const *const info = type == OfModel ? data.GetModelInfoPtr().get() : nullptr;
        auto const found = handler.Find(vector.c_str(), axis, type, info);
        data.SetProjectVector(vector == "Num" ? handler.GetNumVector(axis) : found == handler.end() ? nullptr : *found);
        if (does('b'))
            data.batchIx = 1;
        if (does('3'))
            data.multiplier1 = 3, data.multiplier2 = -3;
        if (does('1'))
            data.SetNumber(1);
        if (data.GetProjectVector() && does('c'))
            data.SetComponent(1);
        if (data.GetProjectVector() && does('n'))
            data.SetDefaultNumberID(defaults);
    }
};

// All that is chosen, or "error", and whether there is something to show.
std::string Outcome(ProjectVectorData const &data, std::function<bool()> const &choose) {
    try {
        std::ostringstream text;
        text << (choose() ? "shows " : "nothing ");
        text << data.ToStdString(nullptr) << " of " << data.GetDataSourceName() << " axis "
             << (data.GetProjectVector() ? data.GetProjectVector()->GetType() : 0) << " number "
             << static_cast<int>(data.GetNumberID()) << ',' << static_cast<int>(data.GetNumberID2(nullptr, false))
             << " batch " << data.batchIx << " multipliers " << data.multiplier1 << ',' << data.multiplier2;
        return text.str();
    } catch (NCError const &) {
        return "error";
    }
}

} // namespace

TEST(VectorDefaults, ChooseTheFirstVector) {
    World const world;
    auto const noModels = MakeRecordingProject(), noData = MakeRecordingProject();
    for (int model = 1; model <= 4; ++model)
        noData->AddModel(ModelTypeE::PLS, 1);
    for (auto const &project : {world.project, noData}) {
        project->AddBatchModel(0, {"A"});      // 5: of batches, without components
        project->AddModel(ModelTypeE::PCA, 0); // 6: without components
        project->AddModel(ModelTypeE::PCA, 2);
    }
    noModels->AddData(1, {7, 3}, {9, 10});
    noModels->AddData(0, {5}, {6});
    for (auto const &project : {world.project, noModels})
        DefaultSelection(project).SetDefaultSelectedObservation(3, false);
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    ProjectVector const *const varDS = *handler.Find("VarDS", Scores, OfSet, nullptr);
    ProjectVector const *const xVar = *handler.Find("XVar", Scores, OfModel, world.project->GetModelInfo(1).get());
    // Names that the catalogue has for other axes.
    VectorProbe const t({"t", Aligned, NoNumber, 1, OfModel, V::Observed, 0, "R"});
    VectorProbe const tPS({"tPS", Aligned, NoNumber, 1, OfModel, Predicted, 0, "R"});
    VectorProbe const x({"XVar", Aligned, BatchX, 0, OfModel, V::Observed, 0, "R"});
    VectorProbe const pLag({"pLag", Lag, NoNumber, 1, OfModel, V::Observed, 0, "R"});
    VectorProbe const xPS({"XVarPS", Aligned, BatchX, 0, OfModel, Predicted, 0, "R"});
    Dice dice(9);
    for (int i = 0; i < 20000; ++i) {
        auto const project = dice({world.project, world.project, world.project, noModels, noData});
        int const models = project->GetNumberOfModels(), own = dice(0, 7), given = dice({0, 0, 1, 2, 3, 4, 5, 6, 7});
        bool const fitted = dice(0, 3) != 0;
        for (int model = 1; model <= models; ++model) {
            project->Info(model).fitted = fitted && dice(0, 3) != 0;
            project->Info(model).hasLaggedVariables = dice(0, 7) == 0;
        }
        project->activeModel = dice(-1, models);
        ProjectVectorData data;
        if (dice(0, 1) == 1) {
            data.SetProjectVector(own == 0 ? varDS : xVar);
            data.SetModelInfoPtr(project->GetModelInfo(own));
            data.SetDataSet(own == 0 ? 2 : 0);
            data.SetNumber(3);
        }
        Choice choice{project,
                      dice({Scores, Loadings, PerComponent, Lag, Aligned, PerBatch}),
                      dice({1, 2, 3, 4, 4, 4, 7, 8}),
                      given <= models ? given : 0,
                      dice({1, 2, 9}),
                      dice(1, 3),
                      data};
        SCOPED_TRACE(testing::Message() << "axis " << choice.axis << ", data type " << choice.dataType << ", model "
                                        << choice.given << ", " << choice.obsPred << ", " << data.ToStdString(nullptr));
        std::string const found = Outcome(data, [&] {
            return ProjectVectorData::SetProjectVectorDataDefault(
                project, choice.axis, data, static_cast<V::DataTypeEnum>(choice.dataType),
                project->GetModelInfo(choice.given).get(), choice.dataSet,
                static_cast<V::ObsOrPredType>(choice.obsPred));
        });
        EXPECT_EQ(found, Outcome(choice.data, [&] { return choice.Make(); }));
    }
}

TEST(VectorDefaults, FillNumbersByTheirKind) {
    World world;
    world.SetDefaults();
    // For each number type the number, the second one, and the batch: . stays, - is open, i the item, x and y the
    // current term, a the numeral alias, b the current batch.
    static char const *const fills[] = {"0..", "i..", "-..", "-..", "-y.", "12.", "1.b", "x.b",
                                        "y.b", "y1b", "12b", "...", "a..", "...", "11b"};
    Dice dice(10);
    for (int i = 0; i < 5000; ++i) {
        Plain const plain = Plain::Random(dice);
        VectorProbe const vector(plain.vector);
        ProjectVectorData data = plain.Record(world, &vector);
        // What reads from any source is about data sets.
        bool const exactly = plain.vector.data == OfModel, ofSet = plain.vector.data != OfPredSet && plain.dataSet != 0;
        std::string const source = exactly && plain.IsOfModel() ? plain.Source()
                                   : exactly || !ofSet          ? "PS"
                                                                : "DS" + std::to_string(plain.dataSet);
        bool const ofBatches = plain.UsesBatch() && exactly && plain.IsOfModel() && plain.model == 4;
        auto const filled = [&](char fill, int before) {
            std::map<char, int> const meanings = {{'.', before},
                                                  {'-', open},
                                                  {'i', plain.FirstItem(source)},
                                                  {'x', plain.XTerm()},
                                                  {'y', plain.YTerm()},
                                                  {'a', plain.HasNumeralAlias() ? 3 : open},
                                                  {'b', !ofBatches            ? 1
                                                        : plain.IsPredicted() ? 3
                                                                              : 2}};
            return meanings.contains(fill) ? meanings.at(fill) : fill - '0';
        };
        world.defaults.clear(); // the item is that of the vector's own data, not one that was asked for before
        data.SetDefaultNumberID(world.defaults);
        char const *const fill = fills[plain.vector.number];
        std::vector<int> const found{static_cast<int>(data.GetNumberID()),
                                     static_cast<int>(data.GetNumberID2(nullptr, false)), data.batchIx};
        EXPECT_EQ(found, std::vector<int>({filled(fill[0], plain.number), filled(fill[1], plain.number2),
                                           filled(fill[2], plain.rest.batchIx)}));
    }
}
