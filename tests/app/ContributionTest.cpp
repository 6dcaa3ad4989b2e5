#include "tests/app/Fermentation.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

class SmallContribution : public Program {
protected:
    std::vector<std::vector<std::string>> Bars(std::string const &arguments) const {
        return Fields(Done("contribution a.project --format csv " + arguments));
    }
};

TEST_F(SmallContribution, SortsBarsAndTellsMeansInOwnUnits) {
    MakeProject();
    // arguments; the strongest variable, the mean of the group and of what it is held against, and the name of that
    struct {
        char const *arguments, *variable, *group, *against, *name;
    } const cases[] = {
        {"--model 1 --score --group x4 --reference x1,x5 --weight raw --components 1", "\"c", "7", "2.25", "reference"},
        {"--model 1 --score --group x8 --weight normalized", "b", "7", "3.17142868", "average"},
        {"--model 1 --score --group '\"l,2\",x8' --reference x4 --weight raw", "b", "4.5999999", "1", "reference"},
        {"--model 2 --dmody --group x7", "y", "9", "5.34", "predicted"},
        {"--model 2 --dmodx --group x8", "b", "7", "", "predicted"},
        {"--model 2 --dmodx --group x8 --components 0", "b", "7", "3.17142868", "average"}};
    for (auto const &row : cases) {
        auto const lines = Bars(row.arguments);
        // From the end: the name "c,d" stands in two fields.
        auto const cell = [&](std::size_t line, std::size_t back) { return lines[line][lines[line].size() - back]; };
        EXPECT_EQ(lines[1][0], row.variable) << row.arguments;
        EXPECT_EQ(cell(1, 3), row.group) << row.arguments;
        EXPECT_EQ(cell(0, 2), row.name) << row.arguments;
        EXPECT_THAT(cell(1, 2), StartsWith(row.against)) << row.arguments;
        EXPECT_NEAR(std::stod(cell(1, 1)), std::stod(cell(1, 3)) - std::stod(cell(1, 2)), 1e-5) << row.arguments;
        for (std::size_t line = 2; line < lines.size(); ++line)
            EXPECT_LE(std::abs(std::stod(cell(line, 4))), std::abs(std::stod(cell(line - 1, 4)))) << row.arguments;
    }
    // The bars of a response add up to the difference of its prediction.
    Done("fit a.project --type pls --y y --components 1 --cv-groups 0 --scaling ctr --exclude '\"c,d\"'");
    double sum = 0;
    for (auto const &line : Bars("--model 3 --ypred y --group x6 --reference x1"))
        sum += line[0] == "variable" ? 0 : std::stod(line[1]);
    auto const predicted = Fields(Done("build a.project --series YPred:y@M3 --only x1,x6 --format csv"));
    EXPECT_NEAR(sum, std::stod(predicted[2][1]) - std::stod(predicted[1][1]), 1e-4);
}

TEST_F(SmallContribution, CutsLongLists) {
    std::string header = "id", rows;
    for (int k = 1; k <= 20; ++k)
        header += ",v" + std::to_string(k);
    for (int row = 1; row <= 6; ++row) {
        rows += "\nr" + std::to_string(row);
        for (int k = 1; k <= 20; ++k)
            rows += "," + std::to_string(k == 20 ? 1 : (row * (k + 3)) % 7 + (row == 6 ? k : 0));
    }
    Write("wide.csv", (header + rows + "\n").c_str());
    Done("import a.project wide.csv");
    Done("fit a.project --type pca --components 1 --cv-groups 0");
    std::string const question = "contribution a.project --model 1 --score --group r6 --weight RX";
    std::string const cut = Done(question);
    EXPECT_EQ(std::ranges::count(cut, '\n'), 1 + 1 + 15 + 2);
    EXPECT_THAT(cut, HasSubstr("and 4 more, each below "));
    EXPECT_THAT(cut, HasSubstr("and 1 without a value\n"));
    // What is told of the rest is true, and not of the last one shown.
    auto const all = Bars("--model 1 --score --group r6 --weight RX");
    ASSERT_EQ(all.size(), 20u);
    double const bound = std::stod(cut.substr(cut.find("below ") + 6));
    EXPECT_LT(std::abs(std::stod(all[16][1])), bound);
    EXPECT_LT(bound, 1.11 * std::abs(std::stod(all[16][1])));
    EXPECT_THAT(Done(question + " --all"), Not(HasSubstr("more, each")));
}

TEST_F(SmallContribution, FollowsScoresToTheModelBelow) {
    MakeProject();
    Done("fit a.project --type pca --on M1.t,b --components 1 --cv-groups 0");
    // The bars of the lower model are those of its own score.
    for (char const *const kind : {"--score --reference x1", "--score", "--dmodx"}) {
        std::string const reference = std::string(kind).find("reference") == std::string::npos ? "" : "--reference x1";
        EXPECT_EQ(Bars(std::string("--model 3 --group x8 --down --via 'M1.t[2]' ") + kind),
                  Bars("--model 1 --group x8 --score --components 2 " + reference))
            << kind;
    }
    // Unless told, the strongest one that is a score, whatever comes first.
    int variablesFirst = 0;
    for (char const *const row : {"x1", "x4", "x5", "x8"}) {
        std::string const arguments = std::string("--model 3 --score --group ") + row;
        variablesFirst += Bars(arguments)[1][0] == "b";
        EXPECT_THAT(Done("contribution a.project --down " + arguments), HasSubstr("; down from M3 by M1.t[")) << row;
    }
    EXPECT_GT(variablesFirst, 0);
}

TEST_F(SmallContribution, TellsWhatItCantExplain) {
    MakeProject();
    // arguments; status; a part of the one line that tells why
    struct {
        char const *arguments;
        int status;
        char const *error;
    } const cases[] = {
        {"--model 9 --score --group x1", 1, "There is no model 9."},
        {"--model 1 --group x1", 2, "Give one of --score, --dmodx, --dmody and --ypred"},
        {"--model 1 --score --dmodx --group x1", 2, "Give one of --score"},
        {"--model 1 --score", 2, "Give --group, or --batch"},
        {"--model 1 --score --group ''", 2, "\"\" holds an empty name"},
        {"--model 1 --score --group x1,x9", 1, "no observation \"x9\" in model 1, which has x1, l,2, x3, x4, x5 and 3"},
        {"--model 1 --score --group x3", 1, "M1 has no contributions: no X variable of the group"},
        {"--model 1 --score --group x1 --weight 'w*'", 1,
         "Model 1 is PCA and has no weight w*, which needs Y; give p."},
        {"--model 1 --score --group x1 --weight q", 2, "There is no weight \"q\": give p, w*, po,"},
        {"--model 1 --score --group x1 --weight p,raw", 2, "The weight \"raw\" stands alone"},
        {"--model 1 --score --group x1 --weight p,p --components 1", 2, "2 weights for 1 components"},
        {"--model 1 --score --group x1 --weight po", 1, "There is no orthogonal component 1 in model 1, which has 0"},
        {"--model 1 --score --group x1 --components 3", 1, "There is no component 3 in model 1, which has 2"},
        {"--model 2 --dmodx --group x1 --components 1,1", 2, "--components takes one number here"},
        {"--model 2 --dmody --group x1 --components 1", 2, "--components is not for --dmody"},
        {"--model 2 --dmodx --group x1 --weight p", 2, "--weight is for --score"},
        {"--model 2 --dmodx --group x1 --reference x2", 2, "--reference is for --score and --ypred"},
        {"--model 1 --dmody --group x1", 1, "Model 1 is PCA and has no Y to explain"},
        {"--model 1 --ypred y --group x1", 1, "Model 1 is PCA and has no Y to explain"},
        {"--model 2 --ypred z --group x1", 1, "There is no Y variable \"z\" in model 2, which has y."},
        {"--model 1 --score --predictions --group x1", 1, "There is no prediction set; \"dataseries predict\""},
        {"--model 1 --score --batch x1", 1, "Model 1 is no model of the evolution of batches."},
        {"--model 1 --score --group x1 --ooc t", 2, "--ooc requires --batch"},
        {"--model 1 --score --group x1 --down", 1, "is no score of a model below, and can't be followed down."},
        {"--model 1 --score --group x1 --down --via e", 1, "There is no contribution of \"e\" to follow down"},
        {"--model 1 --score --group x1 --plot x.gif", 2, "The picture x.gif is neither .svg nor .png"},
        {"--model 1 --score --group x1 -o a.project", 2, "a file of the project"}};
    for (auto const &row : cases) {
        Outcome const outcome = Run(std::string("contribution a.project ") + row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.arguments;
        EXPECT_EQ(outcome.error.find('\n'), outcome.error.size() - 1) << row.arguments;
        EXPECT_EQ(outcome.out, "") << row.arguments;
    }
}

TEST_F(Fermentation, FindsTheVariableBehindEachFault) {
    Done("fit tank.project --type batch-level --from 1 --components 2");
    Done("fit tank.project --type batch-level --from 1 --of variables --components 2");
    // arguments; what is disturbed, and whether it is too high
    struct {
        char const *arguments, *variable;
        bool isHigh;
    } const cases[] = {{"--model 3 --dmodx --batch late-feed --ooc DModX", "feed", false},
                       {"--model 3 --score --batch late-feed@0", "feed", false},
                       {"--model 2 --dmodx --batch temperature --ooc DModX", "temperature", true},
                       {"--model 2 --score --batch temperature --reference N1,N2", "temperature", true},
                       {"--model 3 --dmodx --batch drift --ooc DModX", "oxygen", false},
                       {"--model 3 --dmodx --batch drift@50", "oxygen", false},
                       {"--model 1 --ypred time --batch low-inoculum --ooc YPred", "biomass", false},
                       {"--model 1 --score --batch low-inoculum", "biomass", false},
                       {"--model 3 --dmodx --batch short --ooc DModX", "substrate", true},
                       {"--model 3 --score --batch short --ooc T2Range", "substrate", true},
                       {"--model 2 --dmodx --batch contaminated --ooc DModX", "ph", false},
                       {"--model 2 --score --batch contaminated --ooc t:1", "ph", false},
                       {"--model 4 --dmodx --group drift --down", "oxygen", false},
                       {"--model 4 --score --group late-feed --down", "feed", false},
                       {"--model 4 --score --group low-inoculum --down", "biomass", false},
                       {"--model 4 --dmodx --group short --down", "substrate", true},
                       {"--model 4 --dmodx --group contaminated --down", "ph", false},
                       {"--model 5 --dmodx --group temperature", "growth temperature 14", true}};
    for (auto const &row : cases) {
        auto const bars =
            Fields(Done(std::string("contribution tank.project --predictions --format csv ") + row.arguments));
        ASSERT_GT(bars.size(), 1u) << row.arguments;
        EXPECT_EQ(bars[1][0], row.variable) << row.arguments;
        EXPECT_EQ(std::stod(bars[1][4]) > 0, row.isHigh) << row.arguments;
    }
    // The means are those of the charts at the same points.
    auto const chart =
        Fields(Done("chart tank.project --model 3 --vector XVar:oxygen --predicted --batches drift --format csv"));
    auto const point =
        std::ranges::find_if(chart, [](auto const &line) { return line[0] == "production" && line[2] == "50"; });
    auto const bars =
        Fields(Done("contribution tank.project --model 3 --score --predictions --batch drift@50.2 --format csv"));
    EXPECT_THAT(bars[1], ElementsAre("oxygen", bars[1][1], (*point)[6], (*point)[3], bars[1][4]));
    // A good batch is nowhere out, which is no failure.
    std::string const none = "contribution tank.project --predictions --model 3 --dmodx --batch N1 --ooc DModX";
    EXPECT_EQ(Done(none), "DModX of model 3: nowhere out of its limits in batch N1\n");
    EXPECT_EQ(Fields(Done(none + " --format csv")).size(), 1u);
    EXPECT_GT(Fields(Done(none + " --multiplier 1 --format csv")).size(), 1u);

    struct {
        char const *arguments, *error;
    } const refused[] = {
        {"--model 3 --dmodx --batch G99", "There is no batch \"G99\" in model 3, which has G01, G02"},
        {"--model 3 --dmodx --predictions --batch G01",
         "There is no batch \"G01\" in the prediction set, which has late"},
        {"--model 3 --dmodx --batch G01@70", "There is no maturity \"70\" in model 3: its points are from 0 to 52."},
        {"--model 3 --dmodx --batch G01@x", "There is no maturity \"x\""},
        {"--model 3 --dmodx --batch G01 --ooc XVar:salt", "There is no X variable \"salt\" in model 3"},
        {"--model 4 --score --batch G01", "its observations are batches, which --group names."},
        {"--model 4 --score --group G01 --down --via 'growth t[1] 14,production t[1] 2'",
         "Variables from different phases are selected."},
        {"--model 5 --score --group G01 --down", "None of the selected variables are scores."}};
    for (auto const &row : refused) {
        Outcome const outcome = Run(std::string("contribution tank.project ") + row.arguments);
        EXPECT_EQ(outcome.status, 1) << row.arguments;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.arguments;
        EXPECT_THAT(outcome.error, Not(HasSubstr("should not have happened"))) << row.arguments;
    }
}

TEST_F(Fermentation, DrawsBarsBesideTheVariableItself) {
    if (std::system("command -v gnuplot > /dev/null") != 0)
        GTEST_SKIP() << "gnuplot is not here";
    // arguments; a text that is in the picture, and one that is not
    struct {
        char const *arguments, *has, *lacks;
    } const cases[] = {{"--model 3 --dmodx --predictions --batch drift", ">drift<", ">reference<"},
                       {"--model 3 --dmodx --predictions --batch drift", ">limits of 3 SD<", ">predicted<"},
                       {"--model 3 --score --batch G01 --reference G02@5", ">reference<", ">row of the model<"},
                       {"--model 3 --dmodx --group G01-030", ">predicted<", ">average<"},
                       {"--model 3 --score --group G01-030 --title 'a \"b\"'", ">a \"b\"<", ">limits of 3 SD<"}};
    for (auto const &row : cases) {
        Done(std::string("contribution tank.project --plot x.svg ") + row.arguments);
        EXPECT_THAT(Contents(folder / "x.svg"), HasSubstr(row.has)) << row.arguments;
        EXPECT_THAT(Contents(folder / "x.svg"), Not(HasSubstr(row.lacks))) << row.arguments;
        EXPECT_THAT(Contents(folder / "x.svg"), HasSubstr(">contribution<")) << row.arguments;
    }
}

} // namespace
