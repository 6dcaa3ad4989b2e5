// Every statistic of the registry on a fitted model of each kind.

#include "tests/engine/SmallProject.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <map>
#include <set>

namespace {

using namespace small;

// Identifiers are numbers, so that they are values too.
char const *const rows = "id,10,20,30,40,50\n1.5,1,2,1,1.2,2.0\n2,2,1,4,1.9,5.1\n3,3,5,2,3.4,1.4\n4,4,3,6,3.8,4.4\n"
                         "5,5,7,3,5.6,0.9\n6,6,4,8,5.9,6.2\n";
char const *const predicted = "id,10,20,30,40,50\n7,3.5,2,5,3,2\n8,9,1,7,6.5,5\n";

// Statistics, with their axis, that give no numbers on any of these models yet: what needs dates or local centring.
std::set<std::string> const withoutNumbers = {"Date/Time Variables and scores", "Date/Time-PS Variables and scores",
                                              "LocalCentering Variables and scores",
                                              "LocalCenteringPS Variables and scores", "ProjectLocalCentering None"};

// Statistics over all components with cells that are missing by definition: components of the other side.
std::set<std::string> const ofOneSide = {"SDt F(Component)", "SDu F(Component)"};

// Whether the model has components of each kind that the vector is indexed by.
bool HasComponents(ProjectVector const &vector, ModelInfo const &info) {
    for (int const kind : {vector.HasOneComponent() ? vector.GetComponentType() : 0,
                           int{vector.GetDoubleCompComponentType(1)}, int{vector.GetDoubleCompComponentType(2)}})
        if (kind != 0 && ProjectVector::SelectMaxComponents(ProjectVector::ComponentType(kind), info) == 0)
            return false;
    return true;
}

// The first of each thing that the vector takes; pairs and ranges end at the last predictive component. New
// observations come behind the six.
std::string ArgumentsOf(ProjectVector const &vector, ModelInfo const *info) {
    bool const newObservation = vector.GetNumberType() == ProjectVector::NumberObsOrVar &&
                                vector.GetType() == Loadings && vector.GetObsPredType() == ProjectVector::Predicted;
    bool const allKinds =
        vector.GetComponentType() == (ProjectVector::ComponentPredictive | ProjectVector::ComponentXSideOrthogonal |
                                      ProjectVector::ComponentYSideOrthogonal);
    std::string text = info ? "M" + std::to_string(info->number)
                       : (vector.GetDataType() & ProjectVector::DataTypeDataSet) != 0 ? "DS1"
                                                                                      : "PS";
    text += std::string(allKinds ? ",1,1,1," : ",1,") + (newObservation ? "7" : "1") + ",1";
    if (vector.UseUnscalingTransform())
        text += ",1,1";
    return vector.UseNumberID2() ? text + "," + std::to_string(info ? info->predictiveComponents : 1) : text;
}

bool IsNumber(float value) {
    return std::isfinite(value) && !IsMissing(value);
}

class Registry : public testing::Test {
protected:
    Registry() : m_project(Project::Create(m_folder / "walk.dsp")) {
        m_project->AddDataSet(Read(rows));
        AddModel(*m_project, {ModelTypeE::PCA, {}, {"40", "50"}, 2}, predicted);
        AddModel(*m_project, {ModelTypeE::PLS, {"40"}, {"50"}, 2}, predicted);
        AddModel(*m_project, {ModelTypeE::OPLS, {"40"}, {"50"}, 1}, predicted);
        AddModel(*m_project, {ModelTypeE::O2PLS, {"40", "50"}, {}, 1}, predicted);
    }

    // Whether there is a table, with numbers and the columns that the vector announces.
    bool Delivers(ProjectVector const &vector, std::string const &name, std::string const &args) const {
        TablePtr const table = vector.CreateVectorRaw(m_project, args.c_str());
        if (!table)
            return false;
        EXPECT_TRUE(table->GetColumnIDs() == vector.CreateColumnIDsRaw(m_project, args.c_str())) << name << ' ' << args;
        auto const values = table->GetMatrix().Values();
        return ofOneSide.contains(name) ? std::any_of(values.begin(), values.end(), IsNumber)
                                        : std::all_of(values.begin(), values.end(), IsNumber);
    }

    TemporaryFolder m_folder;
    boost::shared_ptr<Project> m_project;
};

TEST_F(Registry, GivesNumbersWhereItsVectorsAreValid) {
    std::map<std::string, int> delivered;
    for (ProjectVector const *vector : *ProjectVectorHandler::Instance()) {
        std::string const name =
            std::string(vector->GetName()) + ' ' + ProjectVector::FromVectorTypeEnumGui(vector->GetType());
        int &count = delivered[name];
        if (!vector->IsValidProject(m_project))
            continue;
        auto const ask = [&](ModelInfo const *info) {
            std::string const args = ArgumentsOf(*vector, info);
            bool const delivers = Delivers(*vector, name, args);
            count += delivers ? 1 : 0;
            EXPECT_TRUE(delivers || withoutNumbers.contains(name)) << name << ' ' << args;
        };
        if (!vector->UseModel())
            ask(nullptr);
        for (int model = 1; vector->UseModel() && model <= 4; ++model)
            if (auto const info = m_project->GetModelInfo(model);
                (vector->GetModelType() & info->type) != 0 && vector->IsValidModel(*m_project, *info)) {
                if (HasComponents(*vector, *info))
                    ask(info.get());
                else
                    EXPECT_FALSE(Delivers(*vector, name, ArgumentsOf(*vector, info.get()))) << name << ' ' << model;
            }
    }
    std::set<std::string> silent;
    for (auto const &[name, count] : delivered)
        if (count == 0) {
            silent.insert(name);
            std::cout << "no numbers yet: " << name << '\n';
        }
    EXPECT_EQ(silent, withoutNumbers);
}

} // namespace
