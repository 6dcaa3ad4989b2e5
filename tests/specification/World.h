#pragma once

#include "platform/project/NCProject.h"
#include "specification/ProjectVectorData.h"
#include "tests/support/ProbeVector.h"
#include "tests/support/RecordingProject.h"
#include "utilities/DefaultSelection.h"

#include <array>
#include <functional>
#include <random>
#include <string>
#include <vector>

using namespace probes;
using Change = std::function<void(ProjectVectorData &)>;

constexpr int open = -1;

// Observations o1 to o6 (second alias s1 to s6) in batches A A B B C C, variables v1 to v5 (w1 to w5, and a numeral
// alias), model 1 PLS with 3 components, X v1 v2 v3 and Y v4 v5, model 2 OPLS with 1 + 2 components, model 3 O2PLS with
// 2 + 2 + 1, model 4 of batches A B C with 2 components and phases. Data set 1 has all, data set 2 o2 and v2, the
// prediction set o5, o6 and v5; predicted on model 1 are o5 and o6, on model 4 o3, o4 and o5.
struct World {
    boost::shared_ptr<RecordingProject> project = MakeRecordingProject();
    ProjectUtilities::DefaultSelection defaults{project};

    World() {
        RecordingProject &made = *project;
        made.observations.AddAlias({"id", "", VarObs::Role::Plain, {"o1", "o2", "o3", "o4", "o5", "o6"}});
        made.observations.AddAlias({"second", "other", VarObs::Role::Plain, {"s1", "s2", "s3", "s4", "s5", "s6"}});
        made.observations.AddAlias({"batch", "", VarObs::Role::Batch, {"A", "A", "B", "B", "C", "C"}});
        made.variables.AddAlias({"name", "", VarObs::Role::Plain, {"v1", "v2", "v3", "v4", "v5"}});
        made.variables.AddAlias({"second", "other", VarObs::Role::Plain, {"w1", "w2", "w3", "w4", "w5"}});
        made.variables.AddAlias({"number", "", VarObs::Role::Plain, {"1", "2", "3", "4", "5"}});
        made.AddModel(ModelTypeE::PLS, 3, 0, 0, 3, 2);
        made.AddModel(ModelTypeE::OPLS, 1, 2, 0, 3, 1);
        made.AddModel(ModelTypeE::O2PLS, 2, 2, 1, 3, 1);
        made.AddBatchModel(2, {"A", "B", "C"});
        made.Info(4).classOrPhaseNames = {"start", "end"};
        made.AddWorkset(1, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5});
        made.AddWorkset(4, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4});
        made.AddPredictions(1, {5, 6});
        made.AddPredictions(4, {3, 4, 5});
        made.AddData(1, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5}).variableAliases = {1, 2, 3};
        made.AddData(2, {2}, {2});
        made.AddData(0, {5, 6}, {5});
    }

    // A record of "M1", "DS1", "PS" or nothing.
    ProjectVectorData Data(ProjectVector const &vector, std::string const &source, Change const &change = {}) const {
        ProjectVectorData data;
        data.SetProjectVector(&vector);
        if (source.starts_with("M"))
            data.SetModelInfoPtr(project->GetModelInfo(std::stoi(source.substr(1))));
        if (source.starts_with("DS"))
            data.SetDataSet(std::stoi(source.substr(2)));
        if (change)
            change(data);
        return data;
    }
};

inline Change Number(int number, int number2 = open, int batch = open) {
    return [=](ProjectVectorData &data) {
        data.SetNumber(static_cast<std::uint32_t>(number));
        data.SetNumberID2(static_cast<std::uint32_t>(number2));
        data.batchIx = batch;
    };
}

// Numbers that are the same in each run.
class Dice {
public:
    explicit Dice(unsigned seed) : m_generator(seed) {}
    int operator()(int low, int high) {
        return low + static_cast<int>(m_generator() % static_cast<unsigned>(high - low + 1));
    }
    template <typename Value>
    Value operator()(std::initializer_list<Value> values) {
        return values.begin()[(*this)(0, static_cast<int>(values.size()) - 1)];
    }

private:
    std::mt19937 m_generator;
};

// What a record is made of, in plain view.
struct Plain {
    VectorTraits vector;
    int model = 0, dataSet = 0; // 0: none
    std::array<int, 4> components{};
    int number = open, number2 = open, batch = open, round = 1, yVar = 0, status = 0;
    bool unscaled = true, backTransformed = true;
    double multiplier = -99;
    std::vector<int> from, to, weights, weightComponents;
    BatchPoints points;

    bool IsOfModel() const { return vector.data != OfSet && vector.data != OfPredSet && dataSet == 0 && model != 0; }
    bool UsesBatch() const { return vector.number >= Batch && vector.number <= BatchOnly && vector.number != YPhase; }
    // Components of a model of the world by kind: predictive, on the X side, on the Y side.
    static int Count(int ofModel, int kind) {
        static constexpr int counts[][3] = {{0, 0, 0}, {3, 0, 0}, {1, 2, 0}, {2, 2, 1}, {2, 0, 0}};
        return counts[ofModel][kind == 4 ? 2 : kind - 1];
    }

    static Plain Random(Dice &dice) {
        Plain plain;
        plain.vector = {dice({"t", "T2Range", "T2RangePS", "BatchVIP"}),
                        static_cast<V::VectorTypeEnum>(dice(0, 6)),
                        static_cast<V::NumberType>(dice(0, 14)),
                        dice({0, 1, 2, 4, 8, 3, 7, 15}),
                        static_cast<V::DataTypeEnum>(dice({1, 2, 4, 4, 7})),
                        static_cast<V::ObsOrPredType>(dice(1, 3)),
                        dice({0, 0, 1, 3, 4, 5, 6, 7}),
                        dice({"", "u", "r", "l", "m", "c", "urlmc"}),
                        0,
                        dice({1, 2, 4})};
        plain.model = dice(0, 4);
        plain.dataSet = dice({0, 0, 0, 1, 2});
        for (int &component : plain.components)
            component = dice(-2, 4);
        plain.number = dice(-2, 5);
        plain.number2 = dice(-2, 5);
        plain.batch = dice(-2, 4);
        plain.round = dice(1, 3);
        plain.yVar = dice(0, 2);
        plain.status = dice(0, 2);
        plain.unscaled = dice(0, 1) == 1;
        plain.backTransformed = dice(0, 1) == 1;
        plain.multiplier = dice({-99.0, 3.0, -2.123456789, 1234567.0});
        for (auto const list : {&plain.from, &plain.to, &plain.weights, &plain.weightComponents})
            for (int size = dice(0, 3); size > 0; --size)
                list->push_back(dice(0, 9));
        for (int size = dice(0, 2); size > 0; --size)
            plain.points.emplace_back(dice({"A", "B b", ""}), dice({1.5f, 2.0f, 0.123456789f, -1234567.0f}));
        return plain;
    }

    ProjectVectorData Record(World const &world, ProjectVector const *probe) const {
        ProjectVectorData data;
        data.SetProjectVector(probe);
        data.SetModelInfoPtr(world.project->GetModelInfo(model));
        data.SetDataSet(dataSet);
        data.SetPredComponent(components[0]);
        data.SetXSideOrthoComponent(components[1]);
        data.SetYSideOrthoComponent(components[2]);
        data.oscComponent = components[3];
        Number(number, number2, batch)(data);
        data.selCV = round;
        data.SetYVar(yVar);
        data.SetCoefficientStatus(static_cast<ProjectData::CoefficientStatus>(status));
        data.unscaled = unscaled;
        data.backTransformed = backTransformed;
        data.multiplier1 = data.multiplier2 = multiplier;
        data.obs1 = from;
        data.obs2 = to;
        data.contRef = data.contGroup = points;
        WeightTypes types;
        for (int const weight : weights)
            types.push_back(static_cast<WeightTypeE::WeightType>(weight));
        data.SetContributionWeight(types, weightComponents);
        return data;
    }
};
