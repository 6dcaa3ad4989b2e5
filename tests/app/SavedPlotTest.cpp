#include "tests/app/Fermentation.h"
#include "tests/app/Program.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <regex>
#include <set>

namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// With gnuplot, the picture is compared too.
class SavedPlots : public Program {
protected:
    void ExpectShownAsBuilt(std::string const &project, std::string const &options) const {
        std::string const outputs = canDraw ? " -o out.csv --plot out.svg" : " -o out.csv";
        auto const made = [&](std::string const &line) {
            Done(line + outputs);
            return Contents(folder / "out.csv") + Contents(folder / "out.svg");
        };
        std::string const built = made("build " + project + " " + options);
        Done("save " + project + " plot --replace " + options);
        EXPECT_EQ(made("show " + project + " plot"), built) << options;
    }

    bool const canDraw = std::system("command -v gnuplot > /dev/null") == 0;
};

TEST_F(SavedPlots, AreShownAsTheyWereBuilt) {
    Shell("cp " SOURCE_DIR "/examples/wine.csv .");
    Done("import w.project wine.csv");
    Done("fit w.project --type pca");
    for (char const *options :
         {"",
          "--x t:1 --y t:2 --title \"a'b <&>\" --size 500x400",
          "--x Num --y t:3 --without o1,o5",
          "--x t:1 --y t:2 --color alcohol",
          "--x t:1 --y t:2 --color DModX:2@M1",
          "--series p:1 --series p:2 --only alcohol,proline",
          "--series XVar:alcohol --series XVar:hue --scale 0-1",
          "--series XVarRes:hue:2",
          "--series XObs:o7 --without proline",
          "--series T2Range:1-3",
          "--series ObsDS:o5@DS1",
          "--series R2Xcum --series Q2cum",
          "--series t:1 --chart ewma --subgroup 4",
          "--series t:1 --chart shewhart --subgroup 4 --statistic range",
          "--series t:1 --chart cusum --k 0.4 --h 4",
          "--series DModX --transform histogram",
          "--series DModX --transform dot-plot",
          "--series t:1 --transform auto-correlation --lags 40",
          "--series t:1 --transform cross-correlation:t:2",
          "--series t:1 --transform subtract-divide:t:2,t:3",
          "--series t:1 --transform ewma --lambda 0.3",
          "--series t:1 --transform power-spectrum --segment 32 --window welch --overlap --linear",
          "--series t:1 --transform wavelet-structure --scales 1,3 --order 5 --function symmlet",
          "--series p:1 --transform normalize"})
        ExpectShownAsBuilt("w.project", options);
}

TEST_F(Fermentation, SavedPlotsKeepTheirBatches) {
    for (char const *options : {"--series t:1@M1 --batches G01,G03", "--series tstddev:1@M1 --multiplier 2",
                                "--type aligned --series t:1@M1 --batches Average,Std.Dev.,G03"}) {
        Done(std::string("save tank.project plot --replace ") + options);
        EXPECT_EQ(Done("show tank.project plot"), Done(std::string("build tank.project ") + options)) << options;
    }
}

TEST_F(SavedPlots, AreFoundAgainByNameAndTellWhatIsLost) {
    MakeProject();
    Done("save a.project scores --x t:1@M1 --y t:2@M1 --without x8");
    Done("save a.project some --series VarDS:b@DS1 --only x1,'\"l,2\"'");
    Done("save a.project both --series XVar:b@M1 --series XVar:'c,d'@M1 --color 'c,d'");
    Done("save a.project fit --series YPred:y@M2");
    std::string const some = Done("show a.project some");
    std::string const both = Done("show a.project both");
    // More variables and rows, in another order; other models.
    Write("more.csv", "id,z,b,a,\"c,d\",y\nnew,1,2,3,4,5\nx1,2,1,4,5,6\nx4,3,5,1,2,7\nx5,1,1,4,2,2\n");
    Done("import a.project more.csv");
    Done("fit a.project --data 2 --type pca --components 1 --cv-groups 0");
    EXPECT_EQ(Done("show a.project some"), some);
    EXPECT_EQ(Done("show a.project both"), both);
    // Another project, with half of the variables, in another order.
    Write("half.csv", "id,y,b\nl2,1,3\nx1,2,1\nx7,4,3\nx8,1,1\n");
    Done("import half.project half.csv");
    Done("fit half.project --type pca --components 1 --cv-groups 0");
    for (std::string const name : {"scores", "some", "both", "fit"}) {
        Done("export-plot a.project " + name + " -o " + name + ".xml");
        Run("import-plot half.project " + name + ".xml");
    }
    EXPECT_THAT(Contents(folder / "both.xml"), StartsWith("<?xml"));
    struct {
        char const *arguments;
        int status;
        char const *out, *error;
    } const cases[] = {
        {"a.project scores --model 3", 0, "\nx4 ", "component 2 any more"},
        {"a.project scores --active-model", 0, "\nnew ", "There is no observation \"x8\" among the items"},
        {"a.project both --model 3", 0, "\nnew ", ""},
        {"a.project fit --model 1", 1, "", "Nothing of the plot can be shown."},
        {"a.project fit --model 9", 1, "", "There is no model 9."},
        {"half.project scores", 0, "\nx1 ", "component 2 any more"},
        {"half.project some", 0, "\nx1 ", "There is no observation \"l,2\" among the items"},
        {"half.project both", 0, "M1.XVar(b)", "c,d"},
        {"half.project fit --active-model", 1, "", "Nothing of the plot can be shown."},
        {"half.project none", 1, "", "has no plot \"none\"."},
        {"half.project both --active-model --model 1", 2, "", "excludes"},
    };
    for (auto const &row : cases) {
        Outcome const outcome = Run(std::string("show ") + row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_THAT(outcome.out, HasSubstr(row.out)) << row.arguments;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.arguments;
    }
    EXPECT_EQ(
        Done("plots half.project --format csv"),
        "name,axis,vectors\nscores,observation,\"M1.t[Comp. 1], M1.t[Comp. 1]\"\nsome,observation,DS1.Variable(b)\n"
        "both,observation,M1.XVar(b)\nfit,,\n");
    if (!canDraw)
        return;
    EXPECT_THAT(Run("show half.project both --plot x.svg").error, HasSubstr("\"c,d\" to colour observations by"));
    Done("report half.project -o half.html");
    EXPECT_THAT(Contents(folder / "half.html"), HasSubstr("<p class=\"lost\">Nothing of the plot can be shown."));
}

TEST_F(SavedPlots, HaveAnyNameAndRefuseWhatIsWrong) {
    MakeProject();
    std::string const odd = "it'\"'\"'s <\"&> \xC3\xB8\nand";
    Done("save a.project '" + odd + "' --series t:1 --title '</title><script>&'");
    Done("save a.project b --series t:1");
    Done("export-plot a.project '" + odd + "' -o x.xml");
    Shell("head -c 900 x.xml > cut.xml; sed 's/section/Section/' x.xml > other.xml; : > empty.xml");
    std::string const plots = Done("plots a.project --format json");
    EXPECT_THAT(plots, HasSubstr("\"it's <\\\"&> \xC3\xB8\\nand\""));
    struct {
        std::string line;
        int status;
        char const *error;
    } const cases[] = {
        {"save a.project b --series t:2", 1, "There is a plot \"b\" already: give another name, or --replace."},
        {"save a.project c --series none", 1, "none"},
        {"save a.project b --replace --x t:1@M1 --y t:2@M1 --color none-such", 1, "none-such"},
        {"save a.project c --series t:1@M1 --series t:2@M1 --probability", 2, "--probability shows one series"},
        {"save a.project '' --series t:1", 1, "The name of a plot is a text of UTF-8 that is not empty."},
        {"save a.project \"$(printf '\\377')\" --series t:1", 1, "is a text of UTF-8"},
        {"import-plot a.project x.xml --name b", 1, "There is a plot \"b\" already"},
        {"import-plot a.project cut.xml", 1, "cut.xml is no plot, or is damaged"},
        {"import-plot a.project other.xml", 1, "other.xml is no plot, or is damaged"},
        {"import-plot a.project empty.xml", 1, "empty.xml is no plot, or is damaged"},
        {"import-plot a.project a.project", 1, "a.project is no plot, or is damaged"},
        {"import-plot a.project none.xml", 1, "none.xml can't be opened: No such file"},
        {"export-plot a.project b -o a.project", 2, "a file of the project"},
        {"export-plot a.project c -o c.xml", 1, "has no plot \"c\"."},
        {"rename a.project --plot b '" + odd + "'", 1, "already."},
        {"rename a.project --plot c d", 1, "has no plot \"c\"."},
        {"rename a.project --plot b ''", 1, "is a text of UTF-8"},
        {"remove a.project --plot c", 1, "has no plot \"c\"."},
        {"report a.project", 2, "--output is required"},
        {"report a.project -o a.project", 2, "a file of the project"},
    };
    for (auto const &row : cases) {
        Outcome const outcome = Run(row.line);
        EXPECT_EQ(outcome.status, row.status) << row.line;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.line;
        EXPECT_EQ(std::ranges::count(outcome.error, '\n'), 1) << outcome.error;
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "c.xml"));
    EXPECT_EQ(Done("plots a.project --format json"), plots);
    std::string const shown = Done("show a.project '" + odd + "'");
    Done("import-plot a.project x.xml --name b --replace");
    Done("rename a.project --plot b again");
    Done("remove a.project --plot '" + odd + "'");
    EXPECT_EQ(Done("show a.project again"), shown);
    EXPECT_EQ(Fields(Done("plots a.project --format csv")).size(), 2u);
}

TEST_F(SavedPlots, MakeAReportOfOneFile) {
    if (!canDraw)
        GTEST_SKIP() << "gnuplot is not here";
    MakeProject();
    std::string rows = "id,v\n";
    for (int row = 1; row <= 501; ++row)
        rows += "r" + std::to_string(row) + "," + std::to_string(row) + ".123456\n";
    Write("long.csv", rows.c_str());
    Done("import a.project long.csv");
    Done("report a.project -o empty.html");
    EXPECT_THAT(Contents(folder / "empty.html"), HasSubstr("There are none yet."));
    Done("save a.project '<b>&' --x t:1@M1 --y t:2@M1");
    Done("save a.project two --series p:1@M1 --title '</figure><script>'");
    Done("save a.project long --series VarDS:v@DS2");
    Done("report a.project -o a.html");
    std::string const page = Contents(folder / "a.html");
    for (char const *text :
         {"<h1>a</h1>", ">&lt;b&gt;&amp;</h3>", "&lt;/figure&gt;&lt;script&gt; <small>two</small>", "<td>PLS</td>",
          ">Q2(cum)</th>", "The first 500 of 501 rows.", "<th>r500</th>", "<td class=\"number\">1.123</td>"})
        EXPECT_THAT(page, HasSubstr(text));
    for (char const *text : {"<script", "src=", "<link", "@import", "<b>", "<th>r501</th>"})
        EXPECT_THAT(page, Not(HasSubstr(text)));
    auto const all = [&](char const *pattern) {
        std::regex const expression(pattern);
        std::vector<std::string> found;
        for (std::sregex_iterator at(page.begin(), page.end(), expression), end; at != end; ++at)
            found.push_back((*at)[1]);
        return found;
    };
    std::vector<std::string> const names = all(" id=['\"]([^'\"]*)");
    std::set<std::string> const ids(names.begin(), names.end());
    EXPECT_EQ(ids.size(), names.size());
    for (std::string const &reference : all("(?:href=['\"]|url\\()#?([^'\")]*)"))
        EXPECT_TRUE(ids.contains(reference)) << reference;
}

} // namespace
