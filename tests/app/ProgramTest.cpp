#include "tests/app/Program.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST_F(Program, GoesTheWholeRoad) {
    MakeProject();
    EXPECT_EQ(Fields(Done("models a.project --format csv"))[2],
              (std::vector<std::string>{"2", "M2", "PLS", "1", "8", "3", "1", "1", "yes"}));
    EXPECT_EQ(Done("datasets a.project --format json"),
              "[\n {\"data_set\": 1, \"name\": \"a\", \"kind\": \"data\", \"observations\": 8, "
              "\"variables\": 4, \"current\": null}\n]\n");

    std::string const csv = Done("table a.project 't M1,1,0,0' 't M1,2,0,0' 'Num M1,0,0,0' --format csv");
    EXPECT_THAT(csv, StartsWith("id,M1.t[1],M1.t[2],Num\nx1,"));
    EXPECT_THAT(csv, HasSubstr("\n\"l,2\","));
    EXPECT_THAT(csv, HasSubstr("\nx3,,,3\n")) << "missing values are empty";
    EXPECT_THAT(Done("table a.project 't M1,1,0,0' --format json"),
                HasSubstr("\"x8\"],\n \"series\": [\n  {\"name\": "));
    EXPECT_THAT(Done("table a.project 't M1,1,0,0' --format json"), HasSubstr(", null, "));
    EXPECT_THAT(Done("table a.project 'p M1,1,0,0'"), HasSubstr("\nc,d  "));
    // Y = T C' in the units of the workset: the columns of both models join on the observations.
    EXPECT_EQ(Fields(Done("table a.project 't M1,1,0,0' 't M2,1,0,0' --format csv")).size(), 9u);
    // Only the variables that both have stay.
    EXPECT_EQ(
        Done("table a.project 'Num M1,0,0,0' 'p M1,1,0,0' 'w*c M2,1,0,0' --format csv --type variables").substr(0, 30),
        "VarID,Num,M1.p[1],M2.w*c[1]\na,");

    // The model's own observations as new ones have their own scores.
    EXPECT_THAT(Done("predict a.project a.csv --missing '?'"), HasSubstr("prediction set 2 \"a\"\n"));
    auto const old = Fields(Done("table a.project 't M1,1,0,0' --format csv"));
    auto const predicted = Fields(Done("table a.project 'tPS M1,1,0,0' --format csv"));
    ASSERT_EQ(predicted.size(), old.size());
    for (std::size_t i : {1, 4, 5, 8})
        EXPECT_NEAR(std::stod(predicted[i][1]), std::stod(old[i][1]), 1e-4) << i;

    std::string const vectors = Done("vectors a.project");
    EXPECT_THAT(vectors, HasSubstr("  \"tPS M1,1,0,0\"\n      tPS: "));
    EXPECT_THAT(vectors, ::testing::Not(HasSubstr("cvSE"))) << "model 1 is not cross-validated";
    EXPECT_THAT(vectors, ::testing::Not(HasSubstr("w*")));
    EXPECT_THAT(Done("vectors a.project --model 1 --all"),
                HasSubstr("  tcvSE: not here. The model is not cross-valid"));
    // Every text that is listed gives data.
    std::string const listed = Done("vectors a.project --model 2");
    EXPECT_THAT(listed, HasSubstr("\"wcv M2,1,0,1\""));
    std::istringstream lines(listed);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("  \""))
            Done("table a.project '" + line.substr(3, line.size() - 4) + "'");
}

// Every model predicts the current set, and says how its variables are matched.
TEST_F(Program, PredictsOneSetAtATime) {
    MakeProject();
    Write("few.csv", "id,b,k\np,2,1\nq,4,2\n");
    Write("y.csv", "id,y\nr,2\n");
    EXPECT_THAT(Done("predict a.project a.csv --missing '?' --model 1"), EndsWith("model 1: 3 of 3 X variables found\n"
                                                                                  "    of no use to the model: y\n"));
    EXPECT_THAT(
        Done("predict a.project few.csv"),
        EndsWith("set 3 \"few\"\n  observations   2\n  variables      2\n  identifiers    1 (id)\n"
                 "  missing cells  0\n  model 1: 1 of 3 X variables found\n    lacking, taken as missing: a, c,d\n"
                 "    of no use to the model: k\n  model 2: 1 of 3 X variables found\n    lacking, taken as "
                 "missing: a, c,d\n    of no use to the model: k\n"));
    EXPECT_THAT(Done("table a.project 'tPS M1,1,0,0' 'tPS M2,1,0,0' 'VarDS DS3,0,2,0' --format csv"),
                HasSubstr("\nq,"));
    EXPECT_THAT(Done("predict a.project --use a"), StartsWith("a.project: prediction set 2 \"a\"\n  model 1: 3 of 3"));
    EXPECT_EQ(Fields(Done("table a.project 'tPS M1,1,0,0' 'YPredPS M2,1,1,0,1,1' --format csv")).size(), 9u);
    EXPECT_THAT(Done("predict a.project few.csv --replace"), HasSubstr("prediction set 4 \"few\"\n"));
    EXPECT_EQ(Done("datasets a.project --format csv"),
              "data_set,name,kind,observations,variables,current\n1,a,data,8,4,\n2,a,prediction,8,4,no\n"
              "4,few,prediction,2,2,yes\n");
    // A model that has none of its variables there.
    Done("fit a.project --type pca --components 1 --cv-groups 0 --exclude 'b,\"c,d\",y'");
    char const *const none =
        "None of the 1 X variables of model 3 is among the 2 variables of prediction set 4 (\"few\").";
    EXPECT_THAT(Done("vectors a.project --model 3"), ::testing::Not(HasSubstr("tPS")));
    struct {
        char const *line;
        int status;
        char const *error;
    } const wrong[] = {
        {"predict a.project few.csv", 1, "Prediction set 4 has the name \"few\" already: give another one with --name"},
        {"predict a.project y.csv --model 1", 1, "y.csv has none of the 3 X variables of model 1."},
        {"predict a.project y.csv", 1, "y.csv has none of the 3 X variables of model 1, nor of another model."},
        {"predict a.project --use 1", 1, "There is no prediction set \"1\" in a.project."},
        {"predict a.project", 2, "FILE is required, or --use N."},
        {"predict a.project few.csv --use 2", 2, "excludes"},
        {"table a.project 'tPS M3,1,0,0'", 1, none},
        {"build a.project --series tPS@M3", 1, none}};
    for (auto const &row : wrong) {
        Outcome const outcome = Run(row.line);
        EXPECT_EQ(outcome.status, row.status) << row.line;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.line;
    }
}

TEST_F(Program, DrawsWhatGnuplotMakesOfIt) {
    if (std::system("command -v gnuplot > /dev/null") != 0)
        GTEST_SKIP() << "gnuplot is not here";
    MakeProject();
    Write("evil.csv",
          "id,'`touch boom`',\"a\nEOD\nb\",50%s\n\"x'; system 'touch boom'\",1,2,3\n\"\"\"$y\\\",3,9,1\nz,5,1,4\n");
    Done("import evil.project evil.csv");
    Done("fit evil.project --type pca --components 1 --cv-groups 0");
    // arguments; what is in the picture; how often it is there
    struct {
        char const *arguments, *text;
        std::size_t count;
    } const cases[] = {{"a.project 't M1,1,0,0' 't M1,2,0,0' --xy --title 'a <b> \"c\"'", "a &lt;b> \"c\"<", 1},
                       {"a.project 't M1,1,0,0' 't M1,2,0,0' --xy", ">l,2<", 1},
                       {"a.project 't M1,1,0,0' --size 640x480", "viewBox=\"0 0 640 480\"", 1},
                       {"a.project 'p M1,1,0,0' 'p M1,2,0,0'", ">M1.p[2]<", 1},
                       {"a.project 'p M1,1,0,0'", ">c,d<", 1},
                       {"a.project 'T2Range M1,0,1,0,2'", ">T2-Crit 13.5<", 1},
                       {"a.project 'T2Range M1,0,-1,0,2'", ">T2-Crit 6.29<", 1},
                       {"a.project 'DModX M1,1,0,0'", ">D-Crit ", 1},
                       {"a.project 'DModX M1,1,0,0' 'T2Range M1,0,1,0,2'", "-Crit ", 1},
                       {"evil.project 'p M1,1,0,0' --title \"it's @x\"", ">'`touch boom`'<", 1},
                       {"evil.project 'p M1,1,0,0'", ">50%s<", 1},
                       {"evil.project 't M1,1,0,0' 'Num M1,0' --xy", "system", 1}};
    for (auto const &row : cases) {
        Done(std::string("plot -o x.svg ") + row.arguments);
        std::string const picture = Contents(folder / "x.svg");
        std::size_t count = 0;
        for (std::size_t at = 0; (at = picture.find(row.text, at)) != std::string::npos; ++at)
            ++count;
        EXPECT_EQ(count, row.count) << row.arguments;
        EXPECT_THAT(picture, EndsWith("</svg>\n\n"));
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "boom"));
    // Many variables are curves, each in the band of its jack-knife interval.
    ASSERT_EQ(Shell("awk 'BEGIN { srand(1); for (i = 0; i < 9; ++i) { for (k = 0; k <= 120; ++k) printf \"%s%s\", "
                    "i ? rand() : \"v\" k, k < 120 ? \",\" : \"\\n\" } }' > wide.csv")
                  .status,
              0);
    Done("import wide.project wide.csv --id-columns 0");
    Done("fit wide.project --type pls --y v0 --components 2 --cv-groups 4");
    Done("build wide.project --series w:1 --series w:2 --plot x.svg");
    std::string const bands = Contents(folder / "x.svg");
    EXPECT_NE(bands.find("fill-opacity = '0.25"), bands.rfind("fill-opacity = '0.25"));
    Done("plot a.project 't M1,1,0,0' -o x.png");
    EXPECT_THAT(Contents(folder / "x.png"), StartsWith("\x89PNG"));
    EXPECT_THAT(Shell("mkdir bin; printf '#!/bin/sh\\necho first >&2; echo \"out of ink\" >&2; exit 3' > bin/gnuplot; "
                      "chmod +x bin/gnuplot; PATH=./bin:$PATH " PROGRAM " plot a.project 't M1,1,0,0' -o x.png")
                    .error,
                "dataseries: gnuplot fails: out of ink.\n");
    EXPECT_THAT(Contents(folder / "x.png"), StartsWith("\x89PNG")) << "the old picture stays";
}

// Of many items those are drawn that make a difference: a single peak does, and a gap.
TEST_F(Program, DrawsManyItems) {
    ASSERT_EQ(Shell("seq 100000 | awk 'BEGIN { print \"id,a,b\" } { print \"r\" $1 \",\" ($1 == 50001 ? 1000 : $1 % 7) "
                    "\",\" ($1 > 20000 && $1 < 30000 ? \"\" : $1 % 5) }' > m.csv")
                  .status,
              0);
    Done("import m.project m.csv");
    for (auto const &[arguments, mark] :
         {std::pair("'VarDS DS1,0,1,0'", " 1000<"), std::pair("'VarDS DS1,0,2,0'", " 4<"),
          std::pair("'VarDS DS1,0,1,0' 'VarDS DS1,0,2,0' --xy", " 1000<")}) {
        Done(std::string("plot m.project -o m.svg ") + arguments);
        std::string const picture = Contents(folder / "m.svg");
        EXPECT_LT(picture.size(), 300000u) << arguments;
        EXPECT_NE(picture.find(mark), picture.npos) << arguments;
    }
}

TEST_F(Program, TellsInOneLineWhatIsWrong) {
    MakeProject();
    Write("ragged.csv", "id,a,b\nx,1,2\ny,1\n");
    Write("other.csv", "id,k\nx,1\ny,2\n");
    Write("heading.csv", "id,a,b\n");
    Write("bom.csv", "\xEF\xBB\xBF");
    std::string const before = Contents(folder / "a.project");
    ASSERT_EQ(Shell("mkdir d; ln -s ../a.project d/soft.csv; ln a.project hard.svg; cp a.csv n.project-wal").status, 0);
    // command line; exit status; what standard error holds
    struct {
        char const *line;
        int status;
        char const *error;
    } const cases[] = {
        {"", 2, "A command is missing. See \"dataseries --help\"."},
        {"foo", 2, "There is no command \"foo\"."},
        {"import '' a.csv", 1, "A project needs the name of a file."},
        {"import a.project", 2, "FILE is required. See \"dataseries import --help\"."},
        {"import a.project a.csv --bogus", 2, "not expected: --bogus. See \"dataseries import --help\"."},
        {"import a.project a.csv --separator q", 2, "\"q\" is no separator: give \",\", \";\" or \"tab\"."},
        {"import a.project nope.csv", 1, "nope.csv can't be opened: No such file or directory."},
        {"import new.project ragged.csv", 1, "ragged.csv"},
        {"import a.csv a.csv", 1, "a.csv is not a project."},
        {"import d a.csv", 1, "d is a folder, expected a project."},
        {"datasets d", 1, "d is a folder, expected a project."},
        {"import a.project d", 1, "d is a folder, expected a table."},
        {"import new.project ''", 1, "A table needs the name of a file."},
        {"import new.project heading.csv", 1, "heading.csv holds no observations, only a row of headings."},
        {"import new.project bom.csv", 1, "bom.csv is empty."},
        {"import new.project 'no\"pe'\"'.csv\"", 1, "no\"pe'.csv can't be opened: No such file or directory."},
        {"predict a.project d", 1, "d is a folder, expected a table."},
        {"predict a.project bom.csv", 1, "bom.csv is empty."},
        {"predict a.project heading.csv --name 'q\"'", 1, "heading.csv holds no observations"},
        {"predict d a.csv", 1, "d is a folder, expected a project."},
        {"centre a.project --by obs --values d", 1, "d is a folder, expected a table."},
        {"centre a.project --by obs --values bom.csv", 1, "bom.csv is empty."},
        {"centre a.project --by obs --values heading.csv", 1, "heading.csv holds no observations"},
        {"centre a.project --by 'o\"b'", 1, "have no identifier \"o\"b\"."},
        {"import nowhere/x.project a.csv --missing '?'", 1, "nowhere/x.project can't be opened for writing"},
        {"fit a.project --type qda", 2, "--type: qda not in"},
        {"fit a.project --type pls", 2, "(PLS) needs its Y variables: --y NAME,..."},
        {"fit a.project --type pca --y y", 2, "A PCA model has no Y variables"},
        {"fit a.project --type pca --components 0", 2, "\"0\" is no number of components"},
        {"fit a.project --type pls --y 'y,\"c,d\",k'", 1, "There is no variable \"k\" in data set 1 (a)."},
        {"fit a.project --type pca --scaling z", 2, "\"z\" is no scaling such as uv"},
        {"fit a.project --type pca --scaling z=uv", 1, "There is no variable \"z\" of the model"},
        {"fit a.project --type pca --weight a", 2, "\"a\" is no weight of a variable such as ash=0.5"},
        {"fit a.project --type pca --weight a=0", 1, "The weight of variable \"a\" is 0"},
        {"fit a.project --type pca --block a,b", 2, "\"a,b\" is no block of variables"},
        {"fit a.project --type pca --block x=a,b --block y=a", 1, "Variable \"a\" is in block \"x\" and again"},
        {"fit a.project --type pls --y 'y,\"c'", 2, "A quote in \"y,\"c\" is not closed."},
        {"fit a.project --type pls --y y,,a", 2, "\"y,,a\" holds an empty name."},
        {"fit a.project --type pca --data 7", 1, "There is no data set 7."},
        {"predict a.project --model 9 a.csv --name z", 1, "There is no model 9 in a.project."},
        {"models nope.project", 1, "nope.project doesn't exist."},
        {"models a.project --format xml", 2, "--format: xml not in"},
        {"vectors a.project --model 9", 1, "There is no model 9."},
        {"vectors a.project --model 1 --data 1", 2, "--model excludes --data."},
        {"vectors a.project --predictions", 1, "There is no prediction set"},
        {"table a.project", 2, "STRING is required."},
        {"table a.project t", 2, "\"t\" is no vector with its arguments"},
        {"table a.project 't X1,1'", 2, "\"X1\" in \"t X1,1\" is no source"},
        {"table a.project 't M9,1,0,0'", 1, "There is no model 9, which \"t M9,1,0,0\" asks for."},
        {"table a.project 't DS9,1,0,0'", 1, "There is no data set 9, which \"t DS9,1,0,0\" asks for."},
        {"table a.project 'x M1,1,0,0'", 1,
         "There is no vector \"x\" in model 1. \"dataseries vectors PROJECT --model 1\""},
        {"table a.project 'w M1,1,0,0'", 1, "There is no vector \"w\" in model 1. It is there for PLS, PLS-DA,"},
        {"table a.project 't M1,1,0,0' 'p M1,1,0,0'", 1,
         "There is no vector \"p\" with one value for each observation in model 1. It has one value for each "
         "variable."},
        {"table a.project 't M1,3,0,0'", 1, "gives no data. There is no component \"3\": model 1 has 2 of that kind."},
        {"table a.project 'ContSc M1,0,0,0,100000000,2,0,0,1,1,0,1'", 1,
         "ContSc is asked with 100000000 weights, but its arguments hold no more than 7"},
        {"table a.project 'ContSc M1,0,0,0,1,8,0,0,100000000,1,0,1'", 1, "with 100000000 members of the second group"},
        {"table a.project 'AlContSc M2,0,0,0,1,8,0,100000000,A$,5,0,1'", 1, "with 100000000 members of the first"},
        {"table a.project 'ContSc M1,0,0,0,1,8'", 1, "The arguments of ContSc end before the response"},
        {"table a.project 'AlContSc M2,0,0,0,1,8,0,0,0,1'", 1, "gives no data. Model 2 is no model of batches."},
        {"table a.project 'tcvSE M1,1,0,0'", 1, "gives no data. The model is not cross-validated."},
        {"table a.project 'tcv M2,1,0,0' 't M2,0,0,0'", 1, "\"t M2,0,0,0\" gives no data. There is no component \"0\""},
        {"table a.project 'tPS M1,1,0,0'", 1, "gives no data. There is no prediction set"},
        {"table a.project 'Num M1,0,0,0'", 1, "\"Num M1,0,0,0\" has no items to run over"},
        {"table a.project 'w M2,1,0,0' 'c M2,1,0,0'", 1, "\"c M2,1,0,0\" has no variable in common"},
        {"table a.project 't M1,1,0,0' -o nowhere/x", 1, "nowhere/x can't be written: No such file or directory."},
        {"table a.project 't M1,1,0,0' -o .", 1, ". can't be written: Is a directory."},
        {"table a.project 't M1,1,0,0' > /dev/full", 1, "The output can't be written: No space left on device."},
        {"table a.project 't M1,1,0,0' -o d/../a.project", 2, "a.project, a file of the project"},
        {"table a.project 't M1,1,0,0' -o d/soft.csv", 2, "d/soft.csv is "},
        {"table d/soft.csv 't M1,1,0,0' -o a.project-shm", 2, "a.project-shm, a file of the project"},
        {"plot a.project 't M1,1,0,0' -o hard.svg", 2, "hard.svg is "},
        {"build a.project --plot x.png -o d/soft.csv", 2, "d/soft.csv is "},
        {"build a.project --plot hard.svg -o x.png", 2, "hard.svg is "},
        {"summary a.project --model 1 --plot hard.svg", 2, "hard.svg is "},
        {"import n.project n.project-wal", 2, "n.project-wal is "},
        {"plot a.project 't M1,1,0,0' -o x.gif", 2, "The picture x.gif is neither .svg nor .png."},
        {"plot a.project 't M1,1,0,0' -o x.png --size 9x9", 2, "\"9x9\" is no size"},
        {"plot a.project 't M1,1,0,0' -o x.png --xy", 1,
         "--xy draws the second of two series against the first; here"}};
    for (auto const &row : cases) {
        Outcome const outcome = Run(row.line);
        EXPECT_EQ(outcome.status, row.status) << row.line;
        EXPECT_THAT(outcome.error, StartsWith("dataseries: ")) << row.line;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.line;
        EXPECT_EQ(outcome.error.find('\n'), outcome.error.size() - 1) << row.line;
        EXPECT_EQ(outcome.out, "") << row.line;
    }
    EXPECT_EQ(Contents(folder / "a.project"), before);
    for (char const *const left : {"new.project", "nowhere", "x.gif", "x.png"})
        EXPECT_FALSE(std::filesystem::exists(folder / left)) << left;
}

TEST_F(Program, BuildsSelections) {
    Write("b.csv",
          "obs,batch,phase,a@25C,b,y\n1,B1,up,1,2,1\n2,B1,down,2,1,3\n3,\"B,2\",up,3,4,2\n4,\"B,2\",down,4,2,6\n"
          "5,B3,up,5,6,3\n6,B3,down,1,7,4\n");
    EXPECT_THAT(Done("import b.project b.csv --batch batch --phase phase"), HasSubstr("3 (obs, batch, phase)"));
    Done("fit b.project --type pca --components 2 --cv-groups 0");
    Done("fit b.project --type pls --y y --components 1 --cv-groups 3");
    struct {
        char const *arguments, *begins;
        std::size_t lines;
    } const cases[] = {{"", "obs,M2.t[Comp. 1]\n1,", 7},
                       {"--series t --series u@M2 --x t:2@M1", "obs,M1.t[Comp. 2],M2.t[Comp. 1],M2.u[Comp. 1]\n", 7},
                       {"--x Num --series t", "obs,Num,M2.t[Comp. 1]\n1,1,", 7},
                       {"--series ObsID:obs@DS1 --series t", "obs,DS1.obs,M2.t[Comp. 1]\n1,1,", 7},
                       {"--series T2Range", "obs,M2.T2Range[Comp. 1 - Last comp.]\n1,", 7},
                       {"--series w*c", "VarID,M2.w*c[Comp. 1]\na@25C,", 4},
                       {"--type variables", "VarID,M2.p[Comp. 1]\na@25C,", 3},
                       {"--series t --only 2,5", "obs,M2.t[Comp. 1]\n2,", 3},
                       {"--series t --without 1", "obs,M2.t[Comp. 1]\n2,", 6},
                       {"--series XVar:a@25C", "obs,M2.XVar(a@25C)\n1,", 7},
                       {"--series XVar:a@25C@M1 --without 1", "obs,M1.XVar(a@25C)\n2,", 6},
                       {"--series t --batches '\"B,2\",B3'", "obs,M2.t[Comp. 1]\n3,", 5},
                       {"--series t --batches '\"B,2\",B3' --without 3,6", "obs,M2.t[Comp. 1]\n4,", 3},
                       {"--series t --batches B1 --only 2,3", "obs,M2.t[Comp. 1]\n2,", 2}};
    for (auto const &row : cases) {
        std::string const csv = Done(std::string("build b.project --format csv ") + row.arguments);
        EXPECT_THAT(csv, StartsWith(row.begins)) << row.arguments;
        EXPECT_EQ(Fields(csv).size(), row.lines) << row.arguments;
    }
    // The same numbers by the other road, and stretched ones.
    auto const plain = Fields(Done("build b.project --series t --format csv"));
    auto const direct = Fields(Done("table b.project 't M2,1,0,0' --format csv"));
    auto const stretched = Fields(Done("build b.project --series t --scale=-1-1 --format csv"));
    double low = 0;
    double high = 0;
    for (std::size_t i = 1; i < plain.size(); ++i) {
        EXPECT_EQ(plain[i], direct[i]);
        low = std::min(low, std::stod(stretched[i][1]));
        high = std::max(high, std::stod(stretched[i][1]));
    }
    EXPECT_NEAR(low, -1, 1e-6);
    EXPECT_NEAR(high, 1, 1e-6);

    Done("build b.project --x t:1@M1 --y t:2@M1 --plot scores.svg --size 640x480");
    EXPECT_THAT(Contents(folder / "scores.svg"), HasSubstr("viewBox=\"0 0 640 480\""));
    EXPECT_THAT(Contents(folder / "scores.svg"), HasSubstr("M1.t[Comp. 2]"));

    // What a second run finds.
    EXPECT_THAT(Done("defaults b.project"), HasSubstr("x-term       a@25C"));
    Done("defaults b.project --x-term b --observation 3");
    std::string const kept = Done("defaults b.project");
    EXPECT_THAT(kept, HasSubstr("x-term       b"));
    EXPECT_THAT(kept, HasSubstr("observation  3"));

    struct {
        char const *line;
        int status;
        char const *error;
    } const wrong[] = {
        {"build b.project --series nothing", 1, "There is no vector \"nothing\" in model 2."},
        {"build b.project --series t@M9", 1, "There is no model 9, which \"t@M9\" asks for."},
        {"build b.project --series t@X", 2, "\"X\" in \"t@X\" is no source"},
        {"build b.project --series t@M1:2", 2, "\"M1:2\" in \"t@M1:2\" is no source"},
        {"build b.project --series t@", 2, "\"t@\" has nothing behind \"@\""},
        {"build b.project --series t:", 2, "\"t:\" has nothing behind \":\""},
        {"build b.project --series t:@", 1, "There is no component \"@\""},
        {"build b.project --x Num", 1, "\"Num\" counts the items of another vector"},
        {"build b.project --series VarID", 1, "The identifier \"VarID\" of the variables of model 2 is no number."},
        {"table b.project 'XVar M2,0,9,0,1,1'", 1, "There is no X variable number 9: model 2 has 2."},
        {"table b.project 'ObsDS DS1,0,9,0'", 1, "There is no observation number 9 in the project."},
        {"build b.project --series t:2", 1, "There is no component \"2\", which \"t:2\" asks for: model 2 has 1"},
        {"build b.project --series q", 1, "There is no vector \"q\" in model 2. It is there for OPLS, O2PLS."},
        {"build b.project --series w --series c", 1, "No common elements to create the data."},
        {"build b.project --series tPS", 1, "\"tPS\" gives no data. There is no prediction set"},
        {"build b.project --series t --type variables", 1, "no vector \"t\" with one value for each variable"},
        {"build b.project --only 9", 1, "There is no observation \"9\" among the items of the series."},
        {"build b.project --batches B1,B9", 1, "There is no batch \"B9\" among the items of the series."},
        {"build b.project --only 1 --without 2", 2, "excludes"},
        {"build b.project --scale 2", 2, "--scale"},
        {"defaults b.project --y-term z", 1, "There is no variable \"z\" in the project."},
        {"import c.project b.csv --batch lot", 1, "b.csv has no column \"lot\"."}};
    for (auto const &row : wrong) {
        Outcome const outcome = Run(row.line);
        EXPECT_EQ(outcome.status, row.status) << row.line;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.line;
        EXPECT_EQ(outcome.error.find('\n'), outcome.error.size() - 1) << row.line;
    }
}

TEST_F(Program, FitsOrthogonalModelsAndSummarises) {
    Write("o.csv", "id,a,b,c,y,z\n1,1,2,1,1.2,3\n2,2,1,4,1.9,1\n3,3,5,2,3.4,4\n4,4,3,6,3.8,2\n5,5,7,3,5.6,6\n"
                   "6,6,4,8,5.9,3\n7,2,2,5,2.5,2\n8,5,1,1,4.0,7\n");
    Done("import o.project o.csv");
    Done("fit o.project --type opls --y y --exclude z --components 1,1 --cv-groups 4");
    Done("fit o.project --type o2pls --y y,z --components 1,1,1 --cv-groups 4");
    Done("fit o.project --type pls --y y --components 2 --cv-groups 4 --exclude z --transform y=log");
    Done("fit o.project --type pls --y y,z --components 1 --cv-groups 0 --scaling 'X:par,Y:none,z=ctr,c=uv'"
         " --transform a=log,b=power:1:0:2");
    auto const weights = Fields(Done("table o.project 'Xws M4' --format csv"));
    auto const deviation = [](std::vector<double> const &values) {
        double sum = 0, squares = 0;
        for (double const value : values) {
            sum += value;
            squares += value * value;
        }
        return std::sqrt((squares - sum * sum / 8) / 7);
    };
    EXPECT_NEAR(std::stod(weights[2][1]), 1 / std::sqrt(deviation({4, 1, 25, 9, 49, 16, 4, 1})), 1e-6) << "Pareto";
    EXPECT_NEAR(std::stod(weights[3][1]), 1 / deviation({1, 4, 2, 6, 3, 8, 5, 1}), 1e-6) << "unit variance";
    EXPECT_EQ(Done("table o.project 'Yavg M4' --format csv"), "VarID,M4.Yavg\ny,0\nz,3.5\n");
    auto const summary = Fields(Done("summary o.project --model 1 --format csv --plot s.svg"));
    ASSERT_EQ(summary.size(), 3u);
    EXPECT_EQ(summary[0][4], "R2Y");
    EXPECT_EQ(summary[2][0], "XSide Comp[1]");
    EXPECT_NEAR(std::stod(summary[2][5]), std::stod(summary[1][5]), 1e-4) << "orthogonal components explain no Y";
    EXPECT_TRUE(std::filesystem::exists(folder / "s.svg"));
    EXPECT_EQ(Fields(Done("build o.project --series YPred:y@M3 --series YVar:y@M3 --format csv")).size(), 9u);
    EXPECT_EQ(Fields(Done("build o.project --series uo@M2 --series to@M2 --format csv")).size(), 9u);
    struct {
        char const *line, *error;
    } const wrong[] = {{"fit o.project --type pls --y y --components 1,1", "A PLS model has no orthogonal components"},
                       {"fit o.project --type opls --y y --components 1,1,1", "no Y-side orthogonal components"},
                       {"fit o.project --type opls --y y --components 1,", "is no number of components"},
                       {"fit o.project --type opls --components 1", "(OPLS) needs its Y variables"},
                       {"fit o.project --type pls --y y --transform y=root", "\"y=root\" is no transformation"}};
    for (auto const &row : wrong) {
        Outcome const outcome = Run(row.line);
        EXPECT_EQ(outcome.status, 2) << row.line;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.line;
    }
    EXPECT_THAT(Run("summary o.project --model 9").error, HasSubstr("There is no model 9."));
    EXPECT_THAT(Run("fit o.project --type opls --y y --q2 deflated").error, HasSubstr("defined for PCA and PLS"));
    // What is to be known of a fit stands beside it, and nothing when there is nothing.
    Write("k.csv", "id,a,k,b\n1,1,7,2\n2,2,7,1\n3,3,7,5\n4,4,7,3\n");
    Done("import k.project k.csv");
    std::string const fitted = Done("fit k.project --type pca --components 1 --cv-groups 2 --q2 deflated");
    Outcome const listed = Run("summary k.project --model 1 --format csv");
    for (std::string const &text : {fitted, Done("summary k.project --model 1"), listed.error})
        EXPECT_THAT(
            text,
            HasSubstr("Constant, so that there is nothing of them to explain: k.\nQ2 is that on deflated matrices."));
    EXPECT_EQ(Fields(listed.out).size(), 2u);
    EXPECT_THAT(Done("fit k.project --type pca --components 1 --exclude k"), testing::Not(HasSubstr("Constant")));
    for (char const *const components : {"", " --components 1"})
        EXPECT_THAT(Done("fit k.project --type pca --exclude a,b --cv-groups 2" + std::string(components)),
                    HasSubstr("components    0"));
}

TEST_F(Program, CentresByGroupsAndMultipliesVariables) {
    Write("s.csv", "id,site,x,w,y\na,n,1,4,1\nb,n,3,1,2\nc,s,11,3,4\nd,s,13,2,3\n");
    Write("centres.csv", "site,x\nn,2\ns,12\n");
    Write("new.csv", "id,site,x,w\np,west,1,2\n");
    Done("import s.project s.csv");
    EXPECT_THAT(Done("centre s.project"), HasSubstr("no centre values"));
    EXPECT_THAT(Done("centre s.project --by site --variables x,w --transform w=log"),
                HasSubstr("2 variables in 2 groups of \"site\""));
    Done("centre s.project --by site --values centres.csv");
    EXPECT_THAT(Done("fit s.project --type pls --y y --components 1 --cv-groups 2 --product x*x --crosses"),
                HasSubstr("centred       1 variables by site"));
    EXPECT_EQ(Fields(Done("table s.project 'XVar M1,0,1,0,0,0' 'LocalCentering M1' --format csv"))[2],
              (std::vector<std::string>{"b", "0.866025388", "2"}));
    std::string names;
    for (auto const &line : Fields(Done("table s.project 'Xavg M1' --format csv")))
        names += line[0] + ' ';
    EXPECT_EQ(names, "VarID x w x*x x*w ");
    EXPECT_THAT(Done("predict s.project new.csv"),
                HasSubstr("groups without centre values, whose locally centred variables are taken as missing: west"));
    EXPECT_THAT(Done("centre s.project"), HasSubstr("\ns                            12\n"));
    EXPECT_THAT(Done("centre s.project --none"), HasSubstr("no centre values"));
    Done("fit s.project --type pls --y y --components 1 --cv-by site --exclude a");
    EXPECT_EQ(Fields(Done("table s.project 'CVGroups M2' --format csv")), Fields("id,M2.CVGroups\nb,1\nc,2\nd,2\n"));
    Done("fit s.project --type pls --y y --components 1 --cv-groups 0 --lags x:1,y:1-2");
    EXPECT_EQ(Done("build s.project --series XVar:y.L2@M3 --format csv"), "id,M3.XVar(y.L2)\na,\nb,\nc,1\nd,2\n");
    struct {
        char const *line, *error;
        int status;
    } const wrong[] = {{"centre s.project --by where", "have no identifier \"where\"", 1},
                       {"centre s.project --by site --variables u", "There is no variable \"u\"", 1},
                       {"centre s.project --by site --variables x --transform w=log", "\"w\" to be transformed", 1},
                       {"centre s.project --by site --values new.csv", "one of the 1 groups as its \"site\"", 1},
                       {"fit s.project --type pca --cv-by where", "have no identifier \"where\"", 1},
                       {"fit s.project --type pca --cv-by site --exclude a,b", "two groups at least", 1},
                       {"centre s.project --variables x", "--by COLUMN", 2},
                       {"fit s.project --type pca --product x*", "\"x*\" is no product", 2},
                       {"fit s.project --type pca --lags x:0", "\"x:0\" is no variable with its lags", 2},
                       {"fit s.project --type pca --lags x:3-1", "\"x:3-1\" is no variable with its lags", 2},
                       {"fit s.project --type pca --lags x:1-", "\"x:1-\" is no variable with its lags", 2},
                       {"fit s.project --type pca --lags x", "\"x\" is no variable with its lags", 2},
                       {"fit s.project --type pca --lags all:9", "There are no lags 9 to 9", 1},
                       {"fit s.project --type pca --lags u:1", "There is no variable \"u\" of the model", 1},
                       {"fit s.project --type pca --product x*u", "\"u\", a factor of a square", 1}};
    for (auto const &row : wrong) {
        Outcome const outcome = Run(row.line);
        EXPECT_EQ(outcome.status, row.status) << row.line;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.line;
    }
}

// Pairs of rows a minute apart over ten years, and a prediction set of other years.
// From the history of batches to models of their phases and of whole batches, and to batches that are new or running.
TEST_F(Program, FollowsBatches) {
    std::string history = "batch,phase,x1,x2,time\n", conditions = "batch,charge,yield\n", next;
    for (int batch = 1; batch <= 9; ++batch) {
        std::string rows;
        for (int i = 0; i < 6 + batch % 3; ++i)
            rows += "B" + std::to_string(batch) + (i < 3 ? ",warm," : ",run,") + std::to_string(i * i + batch * 7 % 4) +
                    "," + std::to_string(20 - 2 * i + (batch * i) % 3) + "," + std::to_string(i) + "\n";
        (batch < 9 ? history : next) += rows;
        conditions +=
            "B" + std::to_string(batch) + "," + std::to_string(batch % 4) + "," + std::to_string(batch * 5 % 7) + "\n";
    }
    Write("history.csv", history.c_str());
    Write("conditions.csv", conditions.c_str());
    Write("next.csv", ("batch,phase,x1,x2,time\n" + next.substr(0, next.find("B9,run,16"))).c_str());
    Done("import b.project history.csv --batch batch --phase phase");
    Done("import b.project conditions.csv");
    EXPECT_THAT(Done("fit b.project --type batch --maturity time --phase-models --components 1"),
                HasSubstr("  batches       of phase run, 8 batches on 4 points\n"));
    Done("fit b.project --type batch-opls --maturity time --align maturity --treatment smoothed --components 1,1");
    EXPECT_THAT(Done("fit b.project --type batch-level --from 1 --with 2 --y yield --components 1"),
                HasSubstr("model 4 (PLS) of data set 3\n  observations  8\n  X variables   8\n"));
    EXPECT_THAT(Done("datasets b.project"), HasSubstr("       3  Batches of M1 M2  batch level             8"));
    EXPECT_THAT(Done("predict b.project next.csv --batch batch --phase phase --running B9"),
                HasSubstr("  model 4: 8 of 8 X variables found\n"));
    auto const terms = Fields(Done("table b.project 'w* M4,1,0,0' --format csv"));
    auto const ofNew = [&](std::size_t term) {
        return Fields(Done("build b.project --series 'XVarPS:" + terms.at(term)[0] + "@M4' --format csv")).at(1);
    };
    EXPECT_EQ(terms.size(), 9u);
    EXPECT_EQ(ofNew(1).size(), 2u) << "its past is known";
    EXPECT_EQ(ofNew(7), (std::vector<std::string>{"B9", ""})) << "its future is not";
    EXPECT_EQ(ofNew(8), (std::vector<std::string>{"B9", "1"})) << "nor is it needed for its charge";

    EXPECT_THAT(Done("build b.project --type aligned --series t:1@M2 --batches B3,Average --format csv"),
                StartsWith("time,\"M2.t[Comp. 1], Batch: B3\",\"M2.t[Comp. 1], Batch: Average\"\n"));
    auto const sums =
        Fields(Done("build b.project --type batches --series TAlignedOOCSum:1@M2 --multiplier 0.5 --format csv"));
    ASSERT_EQ(sums.size(), 9u);
    EXPECT_GT(std::stod(sums[1][1]) + std::stod(sums[2][1]), 0);
    EXPECT_EQ(Fields(Done("build b.project --series tBatch:1@M2 --batches B3 --format csv")).size(), 4u);

    std::pair<char const *, char const *> const wrong[] = {
        {"fit b.project --type batch", "--maturity NAME, and no --y"},
        {"fit b.project --type batch --y x1", "--maturity NAME"},
        {"fit b.project --type pls --maturity time --y x1", "are for --type batch"},
        {"fit b.project --type batch --maturity time --phase cool",
         "There is no phase \"cool\" in data set 1 (history)"},
        {"fit b.project --type batch-level", "--from N"},
        {"fit b.project --type batch-level --from 4", "Model 4 is no model of the evolution of batches"},
        {"fit b.project --type batch-level --from 1 --with 9", "There is no data set 9"},
        {"fit b.project --type batch-level --from 1 --of variables --y colour", "There is no variable \"colour\""},
        {"fit b.project --type pca --from 1", "are for --type batch-level"},
        {"predict b.project next.csv --batch batch --name later --running B1", "There is no batch \"B1\""},
        {"build b.project --type aligned --series t:1@M2 --batches B30", "There is no batch \"B30\" in model 2"}};
    for (auto const &[command, message] : wrong) {
        Outcome const outcome = Run(command);
        EXPECT_NE(outcome.status, 0) << command;
        EXPECT_THAT(outcome.error, HasSubstr(message)) << command;
    }
    EXPECT_EQ(Fields(Done("datasets b.project --format csv")).size(), 6u) << "what fails leaves nothing";
}

TEST_F(Program, KeepsTimesAsTheyAre) {
    ASSERT_EQ(
        Shell("TZ=UTC awk 'BEGIN { print \"id,when,v,u\"; for (i = 0; i < 4000; ++i) printf \"r%d,%s,%d,%d\\n\", i, "
              "strftime(\"%Y-%m-%dT%H:%M\", 1394323200 + int(i / 2) * 157800 + i % 2 * 60), i % 7, i % 5 }' > t.csv")
            .status,
        0);
    Write("n.csv", "id,when,v,u\np,2031-05-06 07:08:09.5,1,2\nq,2031-05-06,2,3\n");
    Done("import t.project t.csv");
    Done("fit t.project --type pca --components 1 --cv-groups 0");
    Done("predict t.project n.csv");
    auto const written = Fields(Contents(folder / "t.csv"));
    auto const read = Fields(Done("table t.project 'VarDS DS1,0,1,0' 'Date/Time M1' --format csv"));
    EXPECT_EQ(read[0], Fields("id,DS1.Var(when),M1.Date/Time")[0]);
    ASSERT_EQ(read.size(), written.size());
    for (std::size_t row = 1; row < read.size(); ++row) {
        ASSERT_EQ(read[row][1], written[row][1]);
        ASSERT_EQ(read[row][2], written[row][1]);
    }
    EXPECT_THAT(Done("table t.project 'Date/Time-PS M1' --format json"),
                HasSubstr("[\"2031-05-06T07:08:09.500\", \"2031-05-06T00:00:00.000\"]"));
    EXPECT_THAT(Done("table t.project 'ObsDS DS1,0,2,0'"), HasSubstr("\nwhen   2014-03-09T00:01\nv "));
    EXPECT_THAT(Done("build t.project --series VarDS:when@DS1 --only r1"), EndsWith("\nr1    2014-03-09T00:01\n"));
    Done("build t.project --x VarDS:when@DS1 --y VarDS:v@DS1 --plot t.svg");
    EXPECT_THAT(Contents(folder / "t.svg"), HasSubstr(">2016-01-01<"));
    // What is shown as numbers tells from where they count: of the data themselves, and as a variable of a model.
    Done("fit t.project --type pca --transform when=log --components 1 --cv-groups 0");
    for (auto const &[text, label] : {std::pair("'ObsPS PS,0,4001,0'", "(days since 2031-05-06)"),
                                      {"'ObsDS DS1,0,2,0'", "(days since 2014-03-09)"},
                                      {"'XVar M2,0,1,0,1,1'", "(days since 2014-03-09)"},
                                      {"'XVarPS M2,0,1,0,1,1'", "(days since 2014-03-09)"}}) {
        Done(std::string("plot t.project -o t.svg ") + text);
        EXPECT_THAT(Contents(folder / "t.svg"), HasSubstr(label)) << text;
    }
    EXPECT_THAT(Done("table t.project 'XVar M2,0,1,0,1,0'"), Not(HasSubstr("days since")));
}

TEST_F(Program, EndsCleanly) {
    std::string const many =
        "seq 300000 | awk 'BEGIN { print \"id,a,b\" } { print \"r\" $1 \",\" $1 % 7 \",\" $1 % 5 }' > a.csv; ";
    ASSERT_EQ(Shell(many + PROGRAM " import a.project a.csv && " PROGRAM
                                   " fit a.project --type pca --components 1 --cv-groups 0")
                  .status,
              0);
    // A reader that goes early is no failure.
    Outcome const early = Shell("{ " PROGRAM " table a.project 't M1,1,0,0'; echo $? >&2; } | head -n 1");
    EXPECT_EQ(early.error, "0\n");
    EXPECT_THAT(early.out, StartsWith("id"));
    EXPECT_EQ(Shell("{ " PROGRAM " --help; echo $? >&2; } | true").error, "0\n");
    // A request to end takes back what was begun.
    Outcome const cancelled = Shell("(echo id,a; yes x,1) | " PROGRAM " import b.project /dev/stdin & "
                                    "sleep 0.5; kill -INT $!; wait $!");
    EXPECT_EQ(cancelled.status, 1);
    EXPECT_EQ(cancelled.error, "dataseries: The work was cancelled.\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "b.project"));
    // So does a disk without room, and what a killed import left is in nobody's way.
    Outcome const full = Shell("ulimit -f 200; " PROGRAM " import b.project a.csv; echo $?; ls -d b.project*");
    EXPECT_THAT(full.out, "1\n") << "and no file";
    EXPECT_THAT(full.error, HasSubstr("b.project.new can't be read or written"));
    for (char const *const left : {"b.project.new", "b.project.new-journal", "b.project.lock", "b.project-wal"})
        Write(left, "rubbish");
    EXPECT_THAT(Shell(PROGRAM " import b.project a.csv; ls -d b.project*").out, EndsWith("\nb.project\n"));
#ifndef __SANITIZE_ADDRESS__ // which needs more memory than there is
    // And so does a lack of memory, from the least by which the program starts at all.
    Outcome const scarce =
        Shell("v=20000; until (ulimit -v $v; " PROGRAM " --version) > log 2>&1; do v=$((v + 1000)); done 2> log; "
              "(ulimit -v $((v + 4000)); " PROGRAM " import m.project a.csv); echo $?; ls -A . | grep m.project");
    EXPECT_EQ(scarce.out, "1\n") << "and no file";
    EXPECT_EQ(scarce.error, "dataseries: There is not enough memory.\n");
#endif
    // What is no regular file is written in place, and the file of a link takes the place of the old one.
    EXPECT_THAT(Done("table a.project 't M1,1,0,0' --format csv -o /dev/stdout"), StartsWith("id,M1.t[1]\nr1,"));
    Write("real.csv", "old");
    std::filesystem::create_symlink("real.csv", folder / "link.csv");
    Done("table a.project 't M1,1,0,0' --format csv -o link.csv");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.csv"));
    EXPECT_THAT(Contents(folder / "real.csv"), StartsWith("id,M1.t[1]\nr1,"));
}

TEST_F(Program, ExplainsWhatATextAsksFor) {
    MakeProject();
    Done("fit a.project --type opls --y y --components 1,1 --cv-groups 0");
    Done("predict a.project a.csv --missing '?'");
    // a text; what is told of it
    struct {
        char const *text;
        std::vector<std::string> parts;
    } const cases[] = {
        {"DModX M2,1,0,0",
         {"M2,\"model 2, PLS 1 of data set 1 \"\"a\"\"\"", "component,1,component 1 of 1 components",
          "number,0,not used", "result,,\"1 row, M2.DModX[1], of 8 observations\"",
          "missing,,1 of 8: 1 without any observed X variable",
          "freedom,,\"2 and 12: columns, and columns times 6 rows"}},
        {"ContSc M2,0,0,0,1,2,0,0,2,1,2,0,1",
         {"weights,\"1,2\",weight w*", "reference,0,none: the average of the workset",
          "compared,\"2,1,2\",\"observation 1, ", "components,1,component 1"}},
        {"ContDModX M2,0,0,0,1,5,1,0,1,3,1,1",
         {"weights,\"1,5\",\"coefficient CoeffCS", "response,1,\"Y variable 1", "group,0,\"none: observation 1",
          "second group,\"1,3\",not used", "components,1,residuals after component 1"}},
        {"DModX@M3", {"whole model, 1+1 components", "freedom,,\"1 and 5:", "it is of the whole model"}},
        {"DModX M2,0,0,0", {"no component, of 1", "freedom,,\"3 and 21:"}},
        {"DModY M2,-1,0,0", {"nothing. There is no component \"\"-1\"\": model 2 has 1"}},
        {"DModY M2,1,0,0", {"component 1 of 1 components", "freedom,,\"1 and 6:"}},
        {"XVar M1,0,2,0,1,1", {"\"X variable 2, \"\"b\"\"\"", "values,,from 1 to 7", "missing,,1 of 8: 1 without any"}},
        {"XVar:c,d@M1", {"1 without any observed X variable 1 where the variable is missing", "in the units of the d"}},
        {"XVarPS:c,d@M1", {"on prediction set 2", "1 without any observed X variable 1 where the variable is missing"}},
        {"XVarRes M3,5,-1,0,1,0,0,0",
         {"1 of 1 predictive", "1 of 1 X-side", "0 of 0 Y-side", "scaled as in the workset"}},
        {"XObs M1,0,2,0,1,0",
         {"\"observation 2 of the project, \"\"l,2\"\"\"", "1 of 3: 1 that the observation lacks"}},
        {"wcv M2,1,0,2", {"\"round 2 of 3, without 3 of 8 observations\""}},
        {"wcvSE:1@M2", {"freedom,,\"2: cross-validation rounds"}},
        {"T2Range M1,0,-1,0,2", {"first component: the last one", "last component: 2", "freedom,,\"1 and 7:"}},
        {"S2X M1,0,0,0", {"freedom,,\"6, 5 of the rows; 2, 1 of the columns\""}},
        {"S2VY M2,0,0,0", {"freedom,,7 of the rows"}},
        {"VarDS:a@DS1", {"source,DS1,\"data set 1 \"\"a\"\"\"", "missing,,1 of 8: 1 missing there"}},
        {"ObsID M1,0,1,0", {"identifier column 1 of the observations", "8 whose identifier is no number"}},
        {"t M1,9,0,0",
         {"there is no component 9 among 2", "nothing. There is no component \"\"9\"\": model 1 has 2 of that kind."}},
        {"tcv M1,1,0,1", {"nothing. The model is not cross-validated."}}};
    for (auto const &row : cases) {
        std::string const told = Done(std::string("explain a.project '") + row.text + "' --format csv");
        for (std::string const &part : row.parts)
            EXPECT_THAT(told, HasSubstr(part)) << row.text;
    }
    EXPECT_THAT(Done("explain a.project t:2@M1"), HasSubstr("\nresult           1 row, M1.t[2], of 8 observations\n"));
    EXPECT_THAT(Run("explain a.project t@M9").error, HasSubstr("There is no model 9"));
    EXPECT_EQ(Run("explain a.project 'wcv M1,1,0,1'").status, 1) << "PCA has no weights";
    EXPECT_EQ(Run("explain a.project 'Num M1,0,0,0'").status, 1);
}

TEST_F(Program, ListsTheCatalogue) {
    auto const lines = Fields(Done("catalogue --format csv"));
    std::multimap<std::string, std::vector<std::string>> rows;
    for (auto const &fields : lines)
        rows.emplace(fields[0], fields);
    EXPECT_EQ(lines[0],
              Fields("name,class,type,data,model,component,number,score_loading,obs_pred,first,contribution_source,"
                     "contribution_kind,flags,long_name")[0]);
    char const *const expected[] = {"abs(p(corr)),ProjectABSPCorrVector,2,4,31,1,0,4,1,1,0,0,H,abs(p(corr))",
                                    "ccv,ProjectCcvVector,2,4,30,1,0,1,1,1,0,0,RC,ccv",
                                    "co,ProjectCoVector,2,4,24,4,0,4,1,1,0,0,-,co",
                                    "poso,ProjectPoSVector,2,4,24,2,0,4,1,1,0,0,-,poso",
                                    "t,ProjectTVector,1,4,31,1,0,2,1,1,1,0,-,t",
                                    "t(corr)2,ProjectTCorr2Vector,1,4,31,0,5,1,1,1,1,0,H,t(corr)2",
                                    "tcv,ProjectTcvVector,1,4,1,1,0,1,1,1,0,0,RC,tcv",
                                    "tcv,ProjectTcvExcludedVector,1,4,30,1,0,1,1,1,0,0,-,tcv",
                                    "tPScvSE,ProjectTcvSEPSVector,1,4,31,1,0,1,2,1,0,0,C,tPScvSE",
                                    "ucv,ProjectUcvExcludedVector,1,4,24,1,0,1,1,1,1,0,-,ucv",
                                    "w*ccvSE,ProjectWStarCcvSEVector,2,4,30,1,0,1,1,1,0,0,C,w*ccvSE"};
    for (char const *const line : expected) {
        auto const row = Fields(line)[0];
        auto const [first, last] = rows.equal_range(row[0]);
        EXPECT_TRUE(std::any_of(first, last, [&](auto const &entry) { return entry.second == row; })) << line;
    }
}

// The README lists every statistic in the middle column of a table, docs/methods.md defines it in the first one.
TEST_F(Program, HasTheStatisticsThatItsDocumentsList) {
    std::set<std::string> known;
    for (auto const &row : Fields(Done("catalogue --format csv")))
        known.insert(row.front());
    known.erase("name");
    struct {
        char const *file, *lineStart, *column;
    } const documents[] = {{"/README.md", "| **", " | "}, {"/docs/methods.md", "| `", "| "}};
    for (auto const &document : documents) {
        std::set<std::string> listed;
        std::istringstream text(Contents(std::string(SOURCE_DIR) + document.file));
        for (std::string line; std::getline(text, line);) {
            if (!line.starts_with(document.lineStart))
                continue;
            std::size_t const first = line.find(document.column) + std::strlen(document.column);
            std::istringstream names(line.substr(first, line.find(" | ", first) - first));
            for (std::string name; names >> name;)
                EXPECT_TRUE(listed.insert(name.substr(1, name.size() - 2)).second) << name << " stands twice";
        }
        EXPECT_EQ(listed, known) << document.file;
    }
}

TEST(Readme, QuotesTheExampleThatIsBuilt) {
    std::string const code = Contents(SOURCE_DIR "/examples/table.cpp");
    std::string const body = code.substr(code.find("    auto const project"));
    EXPECT_THAT(Contents(SOURCE_DIR "/README.md"), HasSubstr(body.substr(0, body.find("    std::filesystem::remove"))));
}

} // namespace
