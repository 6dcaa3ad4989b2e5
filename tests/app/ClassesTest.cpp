#include "tests/app/Program.h"

#include <gmock/gmock.h>

namespace {

using ::testing::HasSubstr;

class Classes : public Program {
protected:
    // With one X variable and as many of both classes, what is above the mean, 3.5, is taken for the first one.
    Classes() {
        Write("a.csv", "id,kind,a\no1,old:1,5\no2,old:1,6\no3,old:1,7\no4,old:1,2\nn1,50% `new`,1\nn2,50% `new`,3\n"
                       "n3,50% `new`,0\nn4,50% `new`,4\nx,,3.5\n");
        Done("import a.project a.csv");
        fitted = Done("fit a.project --type pls-da --classes kind --components 1 --cv-groups 4");
    }

    std::string fitted;
};

TEST_F(Classes, AreToldApart) {
    EXPECT_THAT(fitted, HasSubstr("(PLS-DA)"));
    EXPECT_THAT(fitted, HasSubstr("\n  classes       old:1, 50% `new`\n"));
    EXPECT_EQ(Done("classes a.project --model 1 --by fit --format csv"),
              "by,class,observations,as old:1,as 50% `new`,sensitivity,specificity,roc_area\n"
              "fit,old:1,4,3,1,0.7500,0.7500,0.8750\nfit,50% `new`,4,1,3,0.7500,0.7500,0.8750\n");
    EXPECT_THAT(Done("classes a.project --model 1"), HasSubstr("\nMisclassified by fit: 2 of 8 observations.\n"));
    EXPECT_EQ(Fields(Done("classes a.project --model 1 --by fit --roc --format csv"))[4],
              (std::vector<std::string>{"fit", "old:1", "0.0000", "0.7500"}));
    EXPECT_THAT(Done("classes a.project --model 1 --by cv --format json"), HasSubstr("{\"by\": \"cv\", \"class\": "));
    Write("new.csv", "id,kind,a\no1,old:1,9\no2,other,8\no3,old:1,\n");
    EXPECT_THAT(Done("predict a.project new.csv"), HasSubstr("as missing: kind(other)\n"));
    EXPECT_EQ(Fields(Done("classes a.project --model 1 --by predictions --format csv"))[1],
              (std::vector<std::string>{"predictions", "old:1", "1", "1", "0", "1.0000", "", ""}));
}

TEST_F(Classes, HaveTheVectorsOfTheirKind) {
    Done("fit a.project --type pls --y kind --components 1 --cv-groups 4");
    Done("fit a.project --type pls --y a --qualitative kind --components 1 --cv-groups 4");
    auto const listed = [&](int model) {
        std::vector<std::string> texts;
        std::istringstream lines(Done("vectors a.project --model " + std::to_string(model)));
        for (std::string line; std::getline(lines, line);)
            if (line.starts_with("  \"") && !line.starts_with("  \"PLSTree")) // which are of PLS alone
                texts.push_back(line.substr(3, line.find(" M") - 3));
        return texts;
    };
    EXPECT_EQ(listed(1), listed(2));
    // By the names of their terms.
    for (char const *const text : {"YPred:kind(old:1)@M1", "YVar:kind(50% `new`)@M1", "CoeffCS:kind(old:1)@M2",
                                   "XVar:kind(old:1)@M3", "XVarRes:kind(50% `new`)@M3"})
        EXPECT_THAT(Done(std::string("build a.project --format csv --series '") + text + "'"), HasSubstr("(kind("));
    EXPECT_EQ(Done("table a.project 'YPred M1,1,2' --format csv"),
              Done("table a.project 'YPred M1,1,2,0,1,1' --format csv"))
        << "units that are left out are those of the data";
    EXPECT_THAT(Done("build a.project --series VIP@M3 --format csv"), HasSubstr("\nkind(old:1),"));
}

TEST_F(Classes, AreDrawn) {
    if (std::system("command -v gnuplot > /dev/null") != 0)
        GTEST_SKIP() << "gnuplot is not here";
    for (auto const &[arguments, text] : {std::pair("", ">75 %<"),
                                          {"", ">50% `new`<"},
                                          {"--roc", ">old:1, area 0.875<"},
                                          {"--roc --size 640x480", "viewBox=\"0 0 640 480\""}}) {
        Done("classes a.project --model 1 --by fit --plot a.svg " + std::string(arguments));
        EXPECT_THAT(Contents(folder / "a.svg"), HasSubstr(text));
    }
}

TEST_F(Classes, TellWhatIsWrong) {
    Done("fit a.project --type pca --components 1 --cv-groups 0");
    Done("fit a.project --type opls-da --classes kind --components 1 --cv-groups 0");
    struct {
        char const *line;
        int status;
        char const *error;
    } const cases[] = {
        {"classes a.project --model 2", 1, "Model 2 tells no classes apart"},
        {"classes a.project --model 3 --by cv", 1, "Model 3 is not cross-validated."},
        {"classes a.project --model 1 --by predictions", 1, "The prediction set has no observation of a class"},
        {"classes a.project --model 1 --plot a.pdf", 2, "neither .svg nor .png"},
        {"fit a.project --type pls-da", 2, "takes its classes as responses: --classes COLUMN"},
        {"fit a.project --type pls --y a --classes kind", 2, "--classes is for --type pls-da and opls-da"},
        {"fit a.project --type opls-da --classes a", 1, "\"a\" is a variable of data set 1"},
    };
    for (auto const &[line, status, error] : cases) {
        Outcome const outcome = Run(line);
        EXPECT_EQ(outcome.status, status) << line;
        EXPECT_THAT(outcome.error, HasSubstr(error)) << line;
    }
}

} // namespace
