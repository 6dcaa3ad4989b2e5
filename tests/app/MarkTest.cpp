// What is marked in a project, and how its pictures show it.

#include "engine/Project.h"
#include "platform/storage/ConfigurationSection.h"
#include "tests/app/Fermentation.h"
#include "tests/app/Program.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;
using testing::Not;

class Marks : public Program {
protected:
    // The names that are listed, each with a blank behind it.
    std::string Marked(std::string const &arguments = {}) const {
        std::string names;
        for (auto const &row : Fields(Done("mark a.project --format csv " + arguments)))
            names += row[1] + ' ';
        return names.substr(names.find(' ') + 1); // without the heading
    }
};

TEST_F(Marks, AreOfOneKind) {
    MakeProject();
    struct {
        char const *arguments;
        int status;
        char const *text; // of the list, or the error
    } const cases[] = {
        {"", 0, "kind,name\n"},
        {"--observations x1,'\"l,2\"'", 0, "kind,name\nobservation,x1\nobservation,\"l,2\"\n"},
        {"--observations x3,x1 --add", 0, "observation,x1\nobservation,\"l,2\"\nobservation,x3\n"},
        {"--observations x5,x9 --add", 1, "There is no observation \"x9\" in the project."},
        {"--variables a --add", 1, "to what is marked, observation \"x1\" for instance, no variable can be added."},
        {"--observations x4,x1 --remove", 0, "kind,name\nobservation,\"l,2\"\nobservation,x3\n"},
        {"", 0, "kind,name\nobservation,\"l,2\"\nobservation,x3\n"},
        {"--observations x4", 0, "kind,name\nobservation,x4\n"},
        {"--variables '\"c,d\"' --variables y", 0, "kind,name\nvariable,\"c,d\"\nvariable,y\n"},
        {"--variables z", 1, "There is no variable \"z\" in the project."},
        {"--batches x1", 1, "There is no batch \"x1\" in the project."},
        {"--variables a --observations x1", 2, "at most 1"},
        {"--variables a --clear", 2, "at most 1"},
        {"--add", 2, "--add and --remove go with"},
        {"--observations x1 --add --remove", 2, "excludes"},
        {"--variables y --remove", 0, "kind,name\nvariable,\"c,d\"\n"},
        {"--clear", 0, "kind,name\n"},
        {"--clear", 0, "kind,name\n"},
    };
    for (auto const &row : cases) {
        Outcome const outcome = Run(std::string("mark a.project --format csv ") + row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_THAT(row.status == 0 ? outcome.out : outcome.error, HasSubstr(row.text)) << row.arguments;
    }
}

// Numbers of items change when a prediction set is replaced by a smaller one. In batches one name is that of several.
TEST_F(Marks, StayWithTheirItems) {
    Write("a.csv", "id,lot,a,b,c\nx1,A,1,2,3\nx2,A,2,2,1\nx1,B,5,1,2\nx2,B,3,7,7\n");
    Write("n.csv", "id,lot,a,b,c,d\nn1,A,1,2,3,4\nn2,B,2,2,1,3\n");
    Write("m.csv", "id,lot,a,b,c,e\nm1,A,1,2,3,4\nm2,B,2,2,1,3\n");
    Write("n2.csv", "id,lot,a,b,c\nn2,B,2,2,1\n");
    Done("import a.project a.csv --batch lot");
    for (char const *command : {"fit a.project --type pca --components 1 --cv-groups 0", "predict a.project n.csv",
                                "predict a.project m.csv"})
        Done(command);
    Shell("cp a.project b.project");
    EXPECT_EQ(Marked("--observations x2,n1,m1,n2"), "x2 n1 m1 n2 ");
    for (char const *command : {"fit a.project --type pls --y c --components 1", "import a.project m.csv --name more",
                                "predict a.project m.csv --name other"}) {
        Done(command);
        EXPECT_EQ(Marked(), "x2 n1 m1 n2 ") << command;
    }
    Shell("cp b.project a.project");
    Marked("--observations x2,n1,m1,n2");
    Done("predict a.project n2.csv --name n --replace");
    EXPECT_EQ(Marked(), "x2 m1 n2 ");
    EXPECT_THAT(Script("plot a.project 'VarPS PS,0,1,0' -o x.svg"), HasSubstr("$m << EOD\n1 2\nEOD\n"));
    Done("predict a.project n.csv --name n --replace");
    EXPECT_EQ(Marked(), "x2 n1 m1 n2 ") << "all are there again";
    Shell("cp b.project a.project");
    Marked("--variables d,e,a");
    Done("predict a.project n2.csv --name n --replace");
    EXPECT_EQ(Marked(), "e a ");
}

TEST_F(Marks, AreSeenInPictures) {
    MakeProject();
    Done("fit a.project --type pls --y y --squares --crosses --lags a:1 --components 1 --cv-groups 0 --exclude "
         "'\"c,d\"'");
    Done("save a.project kept --x XVar:a@M1 --y XVar:b@M1");
    std::string const xy = "plot a.project 'VarDS DS1,0,1,0' 'VarDS DS1,0,2,0' --xy -o x.svg";
    std::string const ring = "$m using 1:2 with points pt 6 ";
    std::string const name = " textcolor rgb '#e6007e'";
    struct {
        char const *marks;
        std::string arguments, has, lacks;
    } const cases[] = {
        {"--observations x1,x7", xy, "$m << EOD\n1 2\n2 3\nEOD\n", name + "\nset label \"x4"},
        {"", xy, ", " + ring, "$m using 1:2 with points pt 7"},
        {"", xy, "set label \"x1\" at 1,2 left offset 1.1,0 front font ',9'" + name, "boxes"},
        {"", xy + " --color id", "title \"x8\", " + ring, "boxes"},
        {"", xy + " --color y", "$m << EOD\n1 2\n2 3\nEOD\n", "boxes"},
        {"", "show a.project kept --plot x.svg", "$m << EOD\n1 2\n2 3\nEOD\n", "boxes"},
        {"", "build a.project --series XVar:a@M1 --plot x.svg", "$m << EOD\n1 1\n7 2\nEOD\n", "boxes"},
        {"", "build a.project --series XVar:a@M1 --plot x.svg", "set label \"x7\" at 7,2 center", "\"x4\" at 4"},
        {"", "build a.project --series XVar:a@M1 --series XVar:b@M1 --without '\"l,2\"' --plot x.svg",
         "$m << EOD\n1 1\n1 2\n6 2\n6 3\nEOD\n", "boxes"},
        {"", "build a.project --series XVar:a@M1 --chart shewhart --plot x.svg", "1 1\n7 2\nEOD\n", "boxes"},
        {"", "build a.project --series XVar:a@M1 --chart shewhart --subgroup 2 --plot x.svg", "plot", "marked"},
        {"", "build a.project --series p:1@M1 --plot x.svg", "boxes", "marked"},
        {"--variables b", "plot a.project 'ObsDS DS1,0,1,0' -o x.svg", "$m0 << EOD\n2 2\nEOD\nset boxwidth",
         "fs empty"},
        {"", "plot a.project 'ObsDS DS1,0,1,0' 'ObsDS DS1,0,4,0' -o x.svg",
         "fs empty border title \"marked\", $m1 using 1:2 with boxes lc rgb '#e6007e' lw 2.2 fs empty border notitle",
         "fs solid border"},
        {"", "plot a.project 'VIP M3,1,0,0' -o x.svg", "lc rgb '#e6007e' title \"marked\"", "$m1"},
        {"", xy, "points", "marked"}};
    for (auto const &row : cases) {
        if (*row.marks)
            Done(std::string("mark a.project ") + row.marks);
        std::string const script = Script(row.arguments);
        EXPECT_THAT(script, HasSubstr(row.has)) << row.arguments;
        EXPECT_THAT(script, Not(HasSubstr(row.lacks))) << row.arguments;
    }
    // b, its square, and what it is a factor of.
    auto const terms = Fields(Done("table a.project 'VIP M3,1,0,0' --format csv"));
    Done("mark a.project --variables b");
    std::string const script = Script("plot a.project 'VIP M3,1,0,0' -o x.svg");
    std::string const marked =
        script.substr(script.find("$m0 << EOD"), script.find("set boxwidth") - script.find("$m0"));
    for (std::size_t term = 1; term < terms.size(); ++term)
        EXPECT_EQ(marked.find('\n' + std::to_string(term) + ' ') != std::string::npos,
                  terms[term][0].find('b') != std::string::npos)
            << terms[term][0];
}

TEST_F(Marks, AreNoneWhereTheyAreDamaged) {
    MakeProject();
    Marked("--observations x1");
    auto const section = [this] {
        return engine::Project::OpenToWrite(folder / "a.project")->GetSettingsSection("Marks");
    };
    std::string whole;
    section()->ReadKey("Stream", whole);
    std::string const renamed = "1600" + whole.substr(4, 8) + "58" + whole.substr(14);
    for (std::string const &stream :
         {whole.substr(0, whole.size() / 2), whole + 'x', whole.substr(1), renamed, std::string("00"), std::string()}) {
        section()->WriteKey("Stream", stream);
        for (char const *const command : {"mark a.project", "plot a.project 't M1,1,0,0' -o x.svg"}) {
            Outcome const outcome = Run(command);
            EXPECT_EQ(outcome.status, 0) << command;
            EXPECT_EQ(outcome.error, "dataseries: The marks of the project are damaged: nothing is marked.\n")
                << stream;
            EXPECT_THAT(outcome.out + Contents(folder / "x.svg"), Not(HasSubstr("marked"))) << stream;
        }
    }
    EXPECT_EQ(Run("mark a.project --observations x3 --format csv").out, "kind,name\nobservation,x3\n");
    EXPECT_EQ(Marked(), "x3 ");
}

TEST_F(Fermentation, ShowsMarkedBatches) {
    Done("fit tank.project --type batch-level --from 1 --components 1");
    Done("mark tank.project --batches short,temperature,G03");
    std::string const chart = "chart tank.project --model 1 --vector DModX --predicted -o x.svg ";
    std::string const strong = "with lines lw 2.6 lc rgb '#e6007e' title \"marked\"";
    struct {
        std::string arguments, has, lacks;
    } const cases[] = {
        {chart, strong, "\"G03\""},
        {chart, "set label \"temperature\" at ", "set label \"late-feed\" at"},
        {chart + "--batches late-feed", "lw 5 lc rgb '#e6007e' title \"marked\"", strong},
        {chart + "--color batch", "lw 5 lc rgb '#e6007e' title \"marked\"", strong},
        {chart + "--sums", "with boxes fs empty border lw 2.2 lc rgb '#e6007e' title \"marked\"", "lines"},
        {"plot tank.project 't M4,1,0,0' -o x.svg", "\"G03\" at 3,", "\"G04\" at 4,"},
        {"plot tank.project 'DModXAlignedOOCSum M1,2,0,0,3' -o x.svg", "$m0 << EOD\n3 ", "$m1"},
        {"plot tank.project 'p M4,1,0,0' -o x.svg", "plot", "marked"}};
    for (auto const &row : cases) {
        std::string const script = Script(row.arguments);
        EXPECT_THAT(script, HasSubstr(row.has)) << row.arguments;
        EXPECT_THAT(script, Not(HasSubstr(row.lacks))) << row.arguments;
    }
    EXPECT_EQ(Run("mark tank.project --batches G03,G99 --remove").error,
              "dataseries: There is no batch \"G99\" in the project.\n");
}

} // namespace
