#include "catalogue/ProjectVectorHandler.h"
#include "platform/text/Exception.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <set>

namespace {

using Vector = ProjectVector;

// A vector of its own, in the registry as long as it lives.
class ProbeVector final : public ProjectVector {
public:
    ProbeVector(char const *name, DataTypeEnum data, ModelTypeE::Model models, VectorTypeEnum type) {
        Init(name, type, data, models, ComponentNone, NumberNone, NoScoreLoading, Observed, false);
    }
    using ProjectVector::GetYColumnTerm;
};

ModelInfo OfType(ModelTypeE::Model type) {
    ModelInfo info;
    info.type = type;
    return info;
}

TEST(Registry, HoldsTheCatalogueSortedAndWithoutOverlap) {
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    EXPECT_EQ(handler.size(), 352u);
    for (auto one = handler.begin(); one != handler.end(); ++one) {
        EXPECT_TRUE(one + 1 == handler.end() || std::strcmp((*one)->GetName(), (*(one + 1))->GetName()) <= 0);
        for (auto other = one + 1; other != handler.end() && std::strcmp((*one)->GetName(), (*other)->GetName()) == 0;
             ++other)
            EXPECT_TRUE((*one)->GetType() != (*other)->GetType() ||
                        ((*one)->GetDataType() & (*other)->GetDataType()) == 0 ||
                        ((*one)->GetModelType() & (*other)->GetModelType()) == 0)
                << (*one)->GetName();
    }
}

// The forms of OPLS and O2PLS have statistics of their own: of the whole model, or by other formulas.
TEST(Registry, HelpTellsFormsOfModelsApart) {
    std::map<std::pair<std::string, Vector::VectorTypeEnum>, Vector const *> plain;
    std::vector<Vector const *> orthogonal;
    for (Vector const *const vector : *ProjectVectorHandler::Instance())
        if (vector->GetModelType() == ModelTypeE::AnyOPLS)
            orthogonal.push_back(vector);
        else if (vector->UseModel())
            plain[{vector->GetName(), vector->GetType()}] = vector;
    std::size_t pairs = 0;
    for (Vector const *const vector : orthogonal) {
        auto const other = plain.find({vector->GetName(), vector->GetType()});
        pairs += other == plain.end() ? 0 : 1;
        EXPECT_TRUE(other == plain.end() || other->second->GetHelpString() != vector->GetHelpString())
            << vector->GetName();
    }
    EXPECT_EQ(pairs, 61u);
}

TEST(Registry, LookupsDifferAsTheyShould) {
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    ModelInfo const pca = OfType(ModelTypeE::PCA);
    ModelInfo const pls = OfType(ModelTypeE::PLS);
    // name, axis, source, model; found by Find, by FindVector
    struct {
        char const *name;
        int type, data;
        ModelInfo const *model;
        bool find, findVector;
    } const cases[] = {
        {"t", 1, 4, &pca, true, true},    {"t", 1, 4, nullptr, false, true}, {"t", 0, 0, nullptr, false, true},
        {"t", 2, 4, &pca, false, false},  {"t", 1, 1, &pca, false, false},   {"w", 2, 4, &pca, false, false},
        {"w", 2, 0, &pca, false, false},  {"w", 2, 4, &pls, true, true},     {"T", 1, 4, &pca, false, false},
        {"zz", 1, 4, &pca, false, false}, {"Num", 1, 4, &pca, false, false}, {"Missing", 1, 4, &pca, false, false},
        {"", 1, 4, &pca, false, false}};
    for (auto const &row : cases) {
        auto const type = static_cast<Vector::VectorTypeEnum>(row.type);
        auto const data = static_cast<Vector::DataTypeEnum>(row.data);
        EXPECT_EQ(handler.Find(row.name, type, data, row.model) != handler.end(), row.find)
            << row.name << row.type << row.data;
        EXPECT_EQ(handler.FindVector(row.name, type, data, row.model) != nullptr, row.findVector)
            << row.name << row.type << row.data;
    }
    EXPECT_NE(*handler.Find("tcv", Vector::VectorTypeVariablesScores, Vector::DataTypeModel, &pca),
              *handler.Find("tcv", Vector::VectorTypeVariablesScores, Vector::DataTypeModel, &pls));
}

TEST(Registry, SourceRulesOfDataVectors) {
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    ProbeVector const dataSet("probe", Vector::DataTypeDataSet, ModelTypeE::None, Vector::VectorTypeVariablesScores);
    ProbeVector const lag("probe", Vector::DataTypeModel, ModelTypeE::PLS, Vector::VectorTypeLag);
    ProbeVector const none("probe", Vector::DataTypeNone, ModelTypeE::None, Vector::VectorTypeNone);
    ModelInfo const pls = OfType(ModelTypeE::PLS);
    auto const find = [&](int type, int data, ModelInfo const *model) {
        auto const found = handler.Find("probe", static_cast<Vector::VectorTypeEnum>(type),
                                        static_cast<Vector::DataTypeEnum>(data), model);
        return found == handler.end() ? nullptr : *found;
    };
    EXPECT_EQ(find(1, 1, nullptr), &dataSet);
    // On axis 1 a data type of the same number passes the first test, but not the one of the source.
    EXPECT_EQ(find(1, 2, nullptr), nullptr);
    // On axis 4 a model vector passes whatever source was asked for.
    EXPECT_EQ(find(4, 1, &pls), &lag);
    EXPECT_EQ(find(0, 0, nullptr), &none);
    EXPECT_EQ(handler.FindVector("probe", Vector::VectorTypeNone, Vector::DataTypeNone, &pls), &lag);
}

TEST(Registry, EqualNamesStandInOppositeOrders) {
    ProjectVectorHandler &handler = *ProjectVectorHandler::Instance();
    std::uint64_t const size = handler.size();
    {
        ProbeVector const first("same", Vector::DataTypeModel, ModelTypeE::Any, Vector::VectorTypeVariablesScores);
        ProbeVector const second("same", Vector::DataTypeModel, ModelTypeE::Any, Vector::VectorTypeVariablesScores);
        ModelInfo const pca = OfType(ModelTypeE::PCA);
        EXPECT_EQ(*handler.Find("same", Vector::VectorTypeVariablesScores, Vector::DataTypeModel, &pca), &second);
        EXPECT_EQ(handler.FindVector("same", Vector::VectorTypeVariablesScores, Vector::DataTypeModel, &pca), &first);
        ProbeVector const copy(first);
        handler.Remove(&copy);
        EXPECT_EQ(handler.size(), size + 2);
    }
    EXPECT_EQ(handler.size(), size);
}

TEST(Registry, PlaceholdersAreReachedByAxis) {
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    std::set<ProjectVector const *> different;
    for (int type = 1; type <= 6; ++type) {
        auto const axis = static_cast<Vector::VectorTypeEnum>(type);
        EXPECT_EQ(handler.GetNumVector(axis)->GetType(), axis);
        different.insert({handler.GetNumVector(axis), handler.GetMissingVector(axis)});
    }
    EXPECT_EQ(different.size(), 12u);
    for (int const type : {0, 99, -1}) {
        auto const axis = static_cast<Vector::VectorTypeEnum>(type);
        EXPECT_EQ(handler.GetNumVector(axis), handler.GetNumVector(Vector::VectorTypeVariablesScores));
        EXPECT_EQ(handler.GetMissingVector(axis), handler.GetMissingVector(Vector::VectorTypeVariablesScores));
    }
    EXPECT_TRUE(handler.IsNumVector("Num"));
    EXPECT_FALSE(handler.IsNumVector("Missing"));
    ProjectVector const *const num = handler.GetNumVector(Vector::VectorTypeComponent);
    EXPECT_EQ(num->GetHelpString(), "Num: Index number: 1, 2, 3 etc.");
    EXPECT_EQ(num->GetLongName(), "");
    EXPECT_EQ(num->CreateVectorRaw({}, "M1,1,0,0"), nullptr);
    EXPECT_THROW(num->CreateColumnIDsRaw({}, "M1,1,0,0"), NCInternalError);
}

TEST(VectorMetadata, TextsOfEnumerations) {
    EXPECT_STREQ(Vector::FromVectorTypeEnum(Vector::VectorTypeAligned), "Aligned Vectors");
    EXPECT_EQ(Vector::FromVectorTypeEnumGui(Vector::VectorTypeAligned), "Aligned vectors");
    for (int type = 0; type <= 6; ++type) {
        auto const axis = static_cast<Vector::VectorTypeEnum>(type);
        EXPECT_EQ(Vector::ToVectorTypeEnum(Vector::FromVectorTypeEnum(axis)), axis);
        EXPECT_EQ(Vector::ToVectorTypeEnumGui(Vector::FromVectorTypeEnumGui(axis).c_str()), axis);
    }
    EXPECT_STREQ(Vector::FromVectorTypeEnum(static_cast<Vector::VectorTypeEnum>(7)), "");
    EXPECT_EQ(Vector::FromVectorTypeEnumGui(static_cast<Vector::VectorTypeEnum>(7)), "");
    EXPECT_EQ(Vector::ToVectorTypeEnum(""), 1);
    EXPECT_EQ(Vector::ToVectorTypeEnumGui("Aligned Vectors"), 1);
    for (int const value : {1, 2, 4, 7})
        EXPECT_EQ(
            Vector::ToScoreLoadingType(Vector::FromScoreLoadingType(static_cast<Vector::ScoreLoadingType>(value))),
            value);
    EXPECT_STREQ(Vector::FromScoreLoadingType(static_cast<Vector::ScoreLoadingType>(3)), "");
    EXPECT_EQ(Vector::ToScoreLoadingType("score"), Vector::NoScoreLoading);
    EXPECT_EQ(Vector::ToObsOrPredType("ObsAndPred"), Vector::ObsAndPred);
    EXPECT_EQ(Vector::ToObsOrPredType("?"), Vector::Observed);
}

TEST(VectorMetadata, TestsByNumberType) {
    std::set<int> x, y, second, batch;
    for (int number = 0; number <= 15; ++number) {
        Vector const vector(Vector::VectorTypeNone, "probe", Vector::DataTypeNone, 0,
                            static_cast<Vector::NumberType>(number));
        if (vector.IsXVector())
            x.insert(number);
        if (vector.IsYVector())
            y.insert(number);
        if (vector.UseNumberID2())
            second.insert(number);
        if (vector.UseBatchIx())
            batch.insert(number);
    }
    EXPECT_EQ(x, (std::set<int>{3, 4, 7}));
    EXPECT_EQ(y, (std::set<int>{2, 4, 8, 9}));
    EXPECT_EQ(second, (std::set<int>{4, 5, 9, 10, 14}));
    EXPECT_EQ(batch, (std::set<int>{6, 7, 8, 10, 11}));
}

TEST(VectorRegistry, ForgetsAVectorThatWasAddedTwice) {
    ProjectVectorHandler &handler = *ProjectVectorHandler::Instance();
    auto const before = handler.size();
    {
        Vector const twice(Vector::VectorTypeVariablesScores, "twice", Vector::DataTypeModel, 0, Vector::NumberNone);
        handler.Add(&twice);
        handler.Add(&twice);
    }
    EXPECT_EQ(handler.size(), before);
}

TEST(VectorMetadata, SourcesAndComponents) {
    struct {
        char const *source;
        int model, dataSet;
    } const cases[] = {
        {"M12", 12, -1}, {"M", -1, -1},    {"Mx", -1, -1},          {"DS1", -1, 1},           {"DS", -1, 0},
        {"D", -1, 0},    {"DS-1", -1, -1}, {"M1", 1, -1},           {"PS", -1, -1},           {"", -1, -1},
        {"M 7", 7, -1},  {"Dx3", -1, 3},   {"M4294967297", -1, -1}, {"DS4294967297", -1, -1}, {"M-4294967295", -1, -1}};
    for (auto const &row : cases) {
        EXPECT_EQ(Vector::GetModelNumber({}, row.source), row.model) << row.source;
        EXPECT_EQ(Vector::GetDataSetNumber({}, row.source), row.dataSet) << row.source;
    }
    EXPECT_EQ(Vector::SelectComponent(Vector::ComponentYSideOrthogonal, 1, 2, 3), 3);
    EXPECT_EQ(Vector::SelectComponent(static_cast<Vector::ComponentType>(7), 1, 2, 3), 0);
    EXPECT_EQ(Vector::SelectComponent(Vector::ComponentOSC, 1, 2, 3), 0);
}

TEST(VectorMetadata, YTermsAreCheckedAgainstTheModel) {
    auto const project = MakeRecordingProject();
    project->AddModel(ModelTypeE::PCA, 2);
    project->AddModel(ModelTypeE::PLS, 2, 0, 0, 3, 2);
    EXPECT_EQ(ProbeVector::GetYColumnTerm(*project, 2, 2)[1].GetMotherVariable(1), 5u);
    struct {
        int model;
        unsigned index;
        char const *message;
    } const cases[] = {{1, 1, "Model 1 is not a predictive model."},
                       {9, 1, "Model 9 is not a predictive model."},
                       {2, 0, "0 is not a valid response index in model 2."},
                       {2, 3, "3 is not a valid response index in model 2."}};
    for (auto const &row : cases)
        try {
            ProbeVector::GetYColumnTerm(*project, row.model, row.index);
            ADD_FAILURE() << row.message;
        } catch (NCError const &error) {
            EXPECT_STREQ(error.what(), row.message);
            EXPECT_EQ(error.GetLevel(), NCError::Error);
        }
}

} // namespace
