#pragma once

#include "platform/project/NCProject.h"
#include "specification/ProjectVectorData.h"
#include "tests/support/Dice.h"
#include "tests/support/ProbeVector.h"
#include "tests/support/RecordingProject.h"
#include "utilities/DefaultSelection.h"

#include <array>
#include <functional>
#include <map>
#include <string>
#include <vector>

using namespace probes;
using Change = std::function<void(ProjectVectorData &)>;

using Weight = ContributionWeightEnum;

constexpr int open = -1;

// Which items a source has: model, predictions on it, data set, prediction set.
struct Items {
    std::vector<std::uint32_t> observations, variables;
};
inline std::map<std::string, Items> const itemsOf = {{"M1", {{1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5}}},
                                                     {"P1", {{5, 6}, {}}},
                                                     {"M2", {{2, 3, 4}, {1, 2, 3, 4}}},
                                                     {"P2", {{6}, {}}},
                                                     {"M3", {{3, 4, 5}, {1, 2, 3, 4}}},
                                                     {"P3", {{4, 6}, {}}},
                                                     {"M4", {{1, 2, 3, 4, 5, 6}, {1, 2, 3, 4}}},
                                                     {"P4", {{3, 4, 5}, {}}},
                                                     {"DS2", {{2}, {2}}},
                                                     {"DS1", {{1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5}}},
                                                     {"PS", {{5, 6}, {5}}}};

// Observations o1 to o6 (second alias s1 to s6) in batches A A B B C C, variables v1 to v5 (w1 to w5, and a numeral
// alias), model 1 PLS with 3 components, X v1 v2 v3 and Y v4 v5, model 2 OPLS with 1 + 2 components and Y v4, model 3
// O2PLS with 2 + 2 + 1 and Y v4, model 4 of batches A B C with 2 components, phases and Y v4. Models
// 2 and 3 are of batches of data sets 8 and 7, with one phase and two.
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
        for (int model = 1; model <= 4; ++model) {
            Items const &own = itemsOf.at("M" + std::to_string(model));
            made.AddWorkset(model, own.observations, own.variables);
            made.AddPredictions(model, itemsOf.at("P" + std::to_string(model)).observations);
        }
        for (auto const &[dataSet, name] : {std::pair(0, "PS"), {1, "DS1"}, {2, "DS2"}})
            made.AddData(dataSet, itemsOf.at(name).observations, itemsOf.at(name).variables);
        made.AddData(1, itemsOf.at("DS1").observations, itemsOf.at("DS1").variables).variableAliases = {1, 2, 3};
        for (auto const &[model, dataSet] : {std::pair(3, 7), {2, 8}}) {
            made.Info(model).isBatchLevel = true;
            made.Info(model).dataSets = {dataSet + 10};
            made.dataSets[dataSet + 10].sourceDataSet = dataSet;
        }
        made.dataSets[7].phases = {"early", "late"};
        made.dataSets[8].phases = {"only"};
    }

    // Current items that are not the first ones: the third X term of all models, the second Y term of model 1 (others
    // do not have it), batch B, and C of the predictions.
    void SetDefaults() {
        ColumnTerm const x(3), y(5);
        defaults.SetDefaultXTerm(&x);
        defaults.SetDefaultYTerm(&y);
        defaults.SetDefaultSelectedBatches({"B", "C"}, false);
        defaults.SetDefaultSelectedBatches({"C"}, true);
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

// What a record of the world is made of, in plain view.
struct Plain {
    VectorTraits vector;
    int model = 0, dataSet = 0; // 0: none
    std::array<int, 4> components{};
    int number = open, number2 = open, yVar = 0;
    ProjectVectorData rest; // units, weights, groups and the like

    static Plain Random(Dice &dice) {
        Plain plain;
        plain.vector = {
            dice({"t", "T2Range", "T2RangePS", "DModX", "DModXPS+", "DModY", "YVar", "YVarPS", "Date/Time"}),
            static_cast<V::VectorTypeEnum>(dice(0, 6)),
            static_cast<V::NumberType>(dice(0, 14)),
            dice({0, 1, 2, 4, 8, 3, 7, 15}),
            static_cast<V::DataTypeEnum>(dice({1, 2, 3, 4, 4, 7})),
            static_cast<V::ObsOrPredType>(dice(1, 3)),
            dice({0, 0, 1, 2, 3, 4, 5, 6, 7}),
            dice({"", "u", "r", "l", "m", "c", "urlmc"}),
            0,
            dice({1, 2, 4})};
        plain.model = dice(0, 4);
        plain.dataSet = dice({0, 0, 0, 1, 2});
        for (int &component : plain.components)
            component = dice(-2, 4);
        plain.number = dice({-2, -1, -1, 0, 1, 2, 3, 4, 5});
        plain.number2 = dice({-2, -1, -1, 0, 1, 2, 3, 4, 5});
        plain.yVar = dice(-1, 2);
        ProjectVectorData &rest = plain.rest;
        rest.batchIx = dice(-2, 4);
        rest.selCV = dice(1, 3);
        rest.startLag = dice(1, 3);
        rest.endLag = dice(4, 1234);
        rest.unscaled = dice(0, 1) == 1;
        rest.backTransformed = dice(0, 1) == 1;
        rest.multiplier1 = dice({-99.0, 3.0, -2.123456789});
        rest.multiplier2 = dice({-99.0, -3.0, 1234567.0});
        rest.alignedMaturity1 = dice(0, 1) == 1;
        rest.alignedMaturity2 = dice(0, 1) == 1;
        rest.SetCoefficientStatus(static_cast<ProjectData::CoefficientStatus>(dice(0, 2)));
        for (auto const list : {&rest.obs1, &rest.obs2})
            for (int size = dice(0, 5); size > 0; --size)
                list->push_back(dice(0, 7));
        for (auto const points : {&rest.contRef, &rest.contGroup})
            for (int size = dice(0, 2); size > 0; --size)
                points->emplace_back(dice({"A", "B b", ""}), dice({1.5f, 2.0f, 0.123456789f, -1234567.0f}));
        WeightTypes types;
        std::vector<int> ofComponents;
        for (int size = dice(0, 3); size > 0; --size, ofComponents.push_back(dice(1, 9)))
            types.push_back(static_cast<WeightTypeE::WeightType>(dice(0, 9)));
        rest.SetContributionWeight(types, ofComponents);
        if (dice(0, 1) == 1)
            rest.SetWeightType(static_cast<ContributionWeightEnum::WeightType>(dice(0, 15)));
        return plain;
    }

    // This one with a part or two of the other, and what takes no part in comparisons.
    Plain With(Plain const &other, Dice &dice) const {
        Plain mixed = *this;
        auto const mix = [&](auto &part, auto const &changed) {
            if (dice(0, 5) == 0)
                part = changed;
        };
        mix(mixed.model, other.model), mix(mixed.dataSet, other.dataSet), mix(mixed.components, other.components);
        mix(mixed.number, other.number), mix(mixed.number2, other.number2), mix(mixed.yVar, other.yVar);
        mix(mixed.rest.batchIx, other.rest.batchIx), mix(mixed.rest.unscaled, other.rest.unscaled);
        mix(mixed.rest.backTransformed, other.rest.backTransformed), mix(mixed.rest, other.rest);
        return mixed;
    }

    ProjectVectorData Record(World const &world, ProjectVector const *probe) const {
        ProjectVectorData data = rest;
        data.SetProjectVector(probe);
        data.SetModelInfoPtr(world.project->GetModelInfo(model));
        data.SetDataSet(dataSet);
        data.SetPredComponent(components[0]);
        data.SetXSideOrthoComponent(components[1]);
        data.SetYSideOrthoComponent(components[2]);
        data.oscComponent = components[3];
        Number(number, number2, rest.batchIx)(data);
        data.SetYVar(yVar);
        return data;
    }

    bool IsOfModel() const { return vector.data != OfSet && vector.data != OfPredSet && dataSet == 0 && model != 0; }
    bool IsPredicted() const { return vector.obsPred == Predicted; }
    bool UsesBatch() const { return vector.number >= Batch && vector.number <= BatchOnly && vector.number != YPhase; }
    bool IsRange() const { return vector.number == Range || vector.number == BatchRange; }
    // Components of a model of the world by kind: predictive, on the X side, on the Y side.
    static int Count(int ofModel, int kind) {
        static constexpr int counts[][3] = {{0, 0, 0}, {3, 0, 0}, {1, 2, 0}, {2, 2, 1}, {2, 0, 0}};
        return counts[ofModel][kind == 4 ? 2 : kind - 1];
    }
    static int CountAll(int ofModel) { return Count(ofModel, 1) + Count(ofModel, 2) + Count(ofModel, 4); }
    int Last(std::size_t kind) const {
        return kind == 0 ? CountAll(model) : kind == 3 ? 0 : Count(model, kind == 1 ? 2 : 4);
    }

    // Where items are looked up.
    std::string Source() const {
        return IsOfModel()                     ? (IsPredicted() ? "P" : "M") + std::to_string(model)
               : IsPredicted() || dataSet == 0 ? "PS"
                                               : "DS" + std::to_string(dataSet);
    }

    // What open numbers become, by SetDefaults: terms, the item, the numeral alias.
    int XTerm() const { return IsOfModel() && vector.type != Lag ? 3 : 1; }
    int YTerms() const { return !IsOfModel() ? 0 : model == 1 ? 2 : 1; }
    int YTerm() const { return IsOfModel() && model == 1 ? 2 : 1; }
    int FirstItem(std::string const &source) const {
        bool const ofModel = source != "PS" && !source.starts_with("DS");
        if (vector.type == Scores)
            return ofModel ? 1 : static_cast<int>(itemsOf.at(source).variables.front());
        return static_cast<int>(itemsOf.at(source).observations.front());
    }
    bool HasNumeralAlias() const { return vector.type == Loadings && dataSet == 1 && vector.data != OfPredSet; }

    // The first and the second number as they are meant. For each number type: 0, the number itself, or where it is
    // open i item, x and y term, a alias, f first and l last component of a pair.
    int First(bool withDefaults) const {
        char const kind = "0iyxxf0xyyfnann"[vector.number];
        if (kind == '0' || number != open || kind == 'n' || (!withDefaults && kind != 'f'))
            return kind == '0' ? 0 : number;
        return kind == 'i'                        ? FirstItem(Source())
               : kind == 'x'                      ? XTerm()
               : kind == 'y'                      ? YTerm()
               : kind == 'a' && HasNumeralAlias() ? 3
                                                  : 1;
    }
    int Second(bool withDefaults) const {
        char const kind = "0000yl000nl000n"[vector.number];
        int const last = Count(model, vector.pairLimit);
        if (kind == 'l')
            return number2 < 0 ? last : std::min(last, number2);
        return kind == '0' ? 0 : kind == 'n' || number2 != open ? number2 : withDefaults ? YTerm() : 1;
    }
};
