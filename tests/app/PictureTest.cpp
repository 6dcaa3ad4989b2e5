// What pictures show, by the scripts that gnuplot is given.

#include "tests/app/Program.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using testing::HasSubstr;
using testing::Not;

class Picture : public Program {
protected:
    // 16 observations: of two kinds but for the third, each of its own lot; b is missing in the fourth.
    Picture() {
        std::ostringstream text;
        text << "id,kind,lot,a,b,c\n";
        for (int i = 1; i <= 16; ++i) {
            int const a = i * i % 11;
            std::string const kind = i % 3 == 0 ? "round" : "flat";
            text << 'o' << i << ',' << (i == 3 ? "" : kind) << ",l" << i << ',' << a << ','
                 << (i == 4 ? "?" : std::to_string(2 * a + i % 4)) << ',' << i * 7 % 5 << '\n';
        }
        Write("p.csv", text.str().c_str());
        Done("import p.project p.csv --missing '?'");
    }

    std::vector<std::vector<std::string>> Table(std::string const &text) const {
        return Fields(Done("table p.project '" + text + "' --format csv"));
    }
};

TEST_F(Picture, ColoursObservations) {
    Done("fit p.project --type pls-da --classes kind --components 1 --cv-groups 0");
    Write("new.csv", "id,kind,lot,a,b,c\nn1,round,k1,3,4,1\nn2,flat,k1,8,14,3\nn3,flat,,1,2,0\n");
    Done("predict p.project new.csv");
    std::string const points = "plot p.project 'VarDS DS1,0,1,0' 'VarDS DS1,0,2,0' --xy -o x.svg --color ";
    std::string const shape = " with points ps 0.8 pt ";
    struct {
        std::string arguments, has, lacks;
    } const cases[] = {
        {points + "kind", "$c0 << EOD\n9 21\nEOD\n$c1 << EOD\n1 3\n4 10\n", "other"},
        {points + "kind", "$c2 << EOD\n3 8\n4 9\n1 2\n5 13\nEOD\n", "palette"},
        {points + "kind", shape + "9 lc rgb '#d55e00' title \"round\", keyentry" + shape + "7", "title \"missing\", "},
        {points + "lot", "title \"l11\", $c12 using 1:2", "title \"l12\""},
        {points + "lot", "title \"other (5)\"", "missing"},
        {points + "a", "set cblabel \"a\"", "set key outside"},
        {points + "a", "$c1 << EOD\n1 3 1\n4 10 4\n9 21 9\n", "keyentry"},
        {points + "'VarDS DS1,0,2,0'", "3 8 8\n", "keyentry"},
        {points + "t:1@M1", "set cblabel \"M1.t[1]\"", "keyentry"},
        {"plot p.project 'VarDS DS1,0,1,0' -o x.svg --color b", "$c0 << EOD\n4 5\nEOD\n", "linespoints"},
        {"plot p.project 'VarDS DS1,0,1,0' -o x.svg", "linespoints", "$c0"},
        {"plot p.project 't M1,1,0,0' -o x.svg", "title \"kind\" left", "linespoints"},
        {"plot p.project 't M1,1,0,0' -o x.svg --color none", "linespoints", "$c0"},
        {"plot p.project 'p M1,1,0,0' -o x.svg", "boxes", "$c0"},
        {"plot p.project 'tPS M1,1,0,0' -o x.svg --color lot", "title \"k1\", keyentry", "l1"},
        {"plot p.project 'tPS M1,1,0,0' -o x.svg --color a", " 3\n2 ", "keyentry"},
        {"build p.project --x t:1@M1 --y XVar:a@M1 --plot x.svg", "title \"flat\"", "lc rgb '#1f5fa8'"},
        {"build p.project --x t:1@M1 --y u:1@M1 --plot x.svg --color DModX:1@M1", "set cblabel \"M1.DModX[1]\"",
         "$c0"}};
    for (auto const &row : cases) {
        std::string const script = Script(row.arguments);
        EXPECT_THAT(script, HasSubstr(row.has)) << row.arguments;
        EXPECT_THAT(script, Not(HasSubstr(row.lacks))) << row.arguments;
    }
    struct {
        char const *arguments;
        int status;
        char const *error;
    } const wrong[] = {
        {"plot p.project 't M1,1,0,0' -o x.svg --color size", 1,
         "There is no identifier column, variable or statistic \"size\" to colour observations by. Identifier columns: "
         "id, kind, lot; variables: a, b, c"},
        {"plot p.project 't M1,1,0,0' -o x.svg --color 'p M1,1,0,0'", 1, "It has one value for each variable."},
        {"plot p.project 't M1,1,0,0' -o x.svg --color 'tPS M1,1,0,0'", 1,
         "No observation of the picture has a value of \"M1.tPS[1]\""},
        {"plot p.project 'p M1,1,0,0' -o x.svg --color kind", 1, "this picture has one value for each variable."},
        {"build p.project --x t:1@M1 --color kind", 2, "--color requires --plot"}};
    for (auto const &row : wrong) {
        Outcome const outcome = Run(row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.arguments;
    }
}

TEST_F(Picture, HasTheFormOfWhatItShows) {
    Done("fit p.project --type pls --y b --lags a:1-2 --components 1 --cv-groups 4");
    Done("fit p.project --type plstree --y b --components 1 --depth 1 --smallest 3");
    Done("osc p.project --y b --components 1");
    struct {
        char const *series, *has, *lacks;
    } const cases[] = {{"wLag M1,1,1,0", " with boxes ", "vectors heads"},
                       {"CoeffCSLag M1,1,1,0,1", "(2*$3) with vectors heads", "linespoints"},
                       {"StepResp M1,1,1,0,0-0", " with steps ", "linespoints"},
                       {"StepResp M1,1,1,0,0-0", "set xlabel \"Observations since the change\"", "boxes"},
                       {"StepResp M1,1,1,0,0-3", "(\"0\" 1,\"1\" 2,\"2\" 3,\"3\" 4,\"4\" 5,\"5\" 6)", "boxes"},
                       {"OSC-t DS2,1,0,0' 'OSC-t DS2,1,0,0' --xy '--title=x", "*cos(t)", "boxes"},
                       {"t M2,1,0,0' 'PLSTreeCutFunction M2,0,0,0' --xy '--title=x", "with points", "least at"}};
    for (auto const &row : cases) {
        std::string const script = Script(std::string("plot p.project -o x.svg '") + row.series + "'");
        EXPECT_THAT(script, HasSubstr(row.has)) << row.series;
        EXPECT_THAT(script, Not(HasSubstr(row.lacks))) << row.series;
    }
    // The function of a cut runs from the least score, and its own least value is marked.
    auto const at = [](auto const &one, auto const &other) { return std::stod(one[1]) < std::stod(other[1]); };
    auto scores = Table("t M2,1,0,0");
    auto cuts = Table("PLSTreeCutFunction M2,0,0,0");
    std::string const first = (*std::min_element(scores.begin() + 1, scores.end(), at))[0];
    std::erase_if(cuts, [](auto const &row) { return row[1].empty(); });
    std::string const least = (*std::min_element(cuts.begin() + 1, cuts.end(), at))[0];
    for (char const *const command : {"plot p.project 'PLSTreeCutFunction M2,0,0,0' -o x.svg",
                                      "build p.project --series PLSTreeCutFunction@M2 --plot x.svg"}) {
        EXPECT_THAT(Script(command), HasSubstr("set xtics (\"" + first + "\" 1,")) << command;
        EXPECT_THAT(Script(command), HasSubstr("set label \"least at " + least + "\"")) << command;
    }
}

} // namespace
