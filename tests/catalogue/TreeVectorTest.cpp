#include "tests/catalogue/DelegateCases.h"

namespace {

using namespace delegates;

// t_1 and a response of three observations, of which the third has the smallest score.
TEST(TreeVectors, TellWeightsOfCuts) {
    auto const project = FourModels();
    auto const answer = [&](std::vector<float> const &values) {
        return [values](Call const &call) {
            ProjectPtr const asked = call.project.shared_from_this();
            return std::make_unique<ProjectData>(RowIDs("row", asked), ColumnIDs({1, 2, 3}, asked, 2),
                                                 NCDataMatrix<float>(NCDataVector<float>(std::span(values))));
        };
    };
    project->source.tableOf["GetT"] = answer({3, 4, 1});
    project->source.tableOf["GetYVar"] = answer({2, 2, 5});
    // T: (0 + 0.5, 2 + 0)/(14/3); Y: (0, 4.5)/6; N: 1/9 both; the smallest part has one.
    struct {
        char const *name, *label;
        std::vector<float> values;
    } const cases[] = {{"PLSTreeCutFunction", "M2.PLS-Tree cut function", {0.469742f, -99, 0.067956f}},
                       {"PLSTreeNCutFunction", "M2.PLS-Tree N-cut function", {0.111111f, -99, 0.111111f}},
                       {"PLSTreeTCutFunction", "M2.PLS-Tree T-cut function", {0.428571f, -99, 0.107143f}},
                       {"PLSTreeYCutFunction", "M2.PLS-Tree Y-cut function", {0.75f, -99, 0}}};
    for (auto const &c : cases) {
        for (char const *const other : {"M1", "M3", "M4"})
            EXPECT_EQ(FindFor(*project, c.name, Scores, other), nullptr) << c.name;
        ProjectVector const *const vector = FindFor(*project, c.name, Scores, "M2");
        ASSERT_NE(vector, nullptr) << c.name;
        project->source.Take();
        TablePtr const table = vector->CreateVectorRaw(project, "M2,0,0,0");
        ASSERT_TRUE(table && table->Rows() == 1) << c.name;
        EXPECT_EQ(project->source.calls, (std::vector<std::string>{"GetTColumnIDs(2, -1)", "GetT(2, [1], -1)",
                                                                   "GetYVar(2, false, false, null, -1)"}));
        EXPECT_EQ(table->GetRowName(1), c.label);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(table->GetMatrix().Row(1)[i], c.values[i], 1e-6) << c.name << i;
        EXPECT_EQ(vector->CreateColumnIDsRaw(project, "M2,0,0,0").Size(), 3);
        EXPECT_EQ(project->source.Take(), "GetTColumnIDs(2, -1)");
        EXPECT_EQ(vector->GetHelpString().find(std::string(c.name) + ": "), 0u);
    }
}

} // namespace
