#include "tests/app/Fermentation.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <optional>
#include <sstream>

namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// Three batches of two phases, of which only the first varies in a.
class SmallChart : public Program {
protected:
    SmallChart() {
        Write("good.csv", "row,batch,phase,time,a,b\n"
                          "1,B1,up,0,1,2\n2,B1,up,1,2,3\n3,B1,up,2,3,4\n4,B1,down,3,5,3\n5,B1,down,4,5,2\n"
                          "6,B2,up,0,2,1\n7,B2,up,1,4,3\n8,B2,up,2,6,5\n9,B2,down,3,5,4\n10,B2,down,4,5,2\n"
                          "11,B3,up,0,3,2\n12,B3,up,1,3,2\n13,B3,up,2,9,4\n14,B3,down,3,5,3\n15,B3,down,4,5,1\n");
        Write("new.csv", "row,batch,phase,time,a,b\n21,N1,up,0,0,2\n22,N1,up,1,3,3\n23,N1,up,2,6,4\n24,N1,down,3,5,3\n"
                         "25,N1,down,4,6,2\n");
        Done("import b.project good.csv --batch batch --phase phase");
        Done("fit b.project --type batch --maturity time --phase-models --components 1 --cv-groups 0");
        Done("fit b.project --type pca --components 1 --cv-groups 0");
        Done("fit b.project --type batch-opls --maturity time --components 1,1 --cv-groups 0");
    }
};

TEST_F(SmallChart, HoldsBatchesAgainstTheirLimits) {
    Done("predict b.project new.csv");
    // arguments; what is written
    struct {
        char const *arguments, *text;
    } const cases[] = {
        {"--vector XVar:a --format csv",
         "phase,point,maturity,average,lower,upper,B1,B2,B3\nup,1,0,2,1.5,2.5,1,2,3\nup,2,1,3,2.5,3.5,2,4,3\n"
         "up,3,2,6,4.5,7.5,3,6,9\ndown,1,3,5,5,5,5,5,5\ndown,2,4,5,5,5,5,5,5\n"},
        {"--vector XVar:a --outside --format csv",
         "batch,phase,points,outside,first,last,longest_run,run_from\nB1,up,3,3,0,2,3,0\nB2,up,3,1,1,1,1,1\n"
         "B3,up,3,2,0,2,1,0\n"},
        {"--vector XVar:a --batches B2 --outside --format csv",
         "batch,phase,points,outside,first,last,longest_run,run_from\nB2,up,3,1,1,1,1,1\n"},
        {"--vector XVar:a --predicted --outside --format csv",
         "batch,phase,points,outside,first,last,longest_run,run_from\nN1,up,3,1,0,0,1,0\nN1,down,2,1,4,4,1,4\n"},
        {"--vector XVar:a --sums --format csv", "batch,sum,up,down\nB1,2.5,2.5,0\nB3,2,2,0\nB2,0.5,0.5,0\n"},
        {"--vector XVar:a --predicted --sums --format csv", "batch,sum,up,down\nN1,2.5,1.5,1\n"},
        {"--vector XVar:a --predicted --batches N1 --format json", "\"upper\": 2.5, \"N1\": 0},"}};
    for (auto const &row : cases)
        EXPECT_THAT(Done(std::string("chart b.project --model 2 --multiplier 0.5 ") + row.arguments),
                    HasSubstr(row.text))
            << row.arguments;
    // A distance has no lower limit, and the figures are those of the catalogue.
    auto const distances = Fields(Done("chart b.project --model 1 --vector DModX --format csv"));
    auto const average = Fields(Done("table b.project 'DModX M1,1,0,0,-1' --format csv"));
    auto const limit = Fields(Done("table b.project 'DModXstddev M1,1,0,0,3,-3' --format csv"));
    for (std::size_t point = 1; point <= 3; ++point) {
        EXPECT_EQ(distances[point][4], "");
        EXPECT_EQ(distances[point][3], average[point][1]);
        EXPECT_NEAR(std::stod(distances[point][5]), std::stod(limit[point][1]), 1e-5);
    }
    // The sums of a T2 of OPLS are those of the components of its chart.
    EXPECT_EQ(Fields(Done("chart b.project --model 4 --vector T2Range --sums --format csv"))[1][1],
              Fields(Done("table b.project 'T2RangeAlignedOOCSum M4,0,1,0,2,3,-3' --format csv"))[1][1]);
}

TEST_F(SmallChart, DrawsPhasesSideBySide) {
    if (std::system("command -v gnuplot > /dev/null") != 0)
        GTEST_SKIP() << "gnuplot is not here";
    // arguments; a text that is in the picture, and one that is not
    struct {
        char const *arguments, *has, *lacks;
    } const cases[] = {{"--model 2 --vector XVar:a", ">down<", ">other batches<"},
                       {"--model 2 --vector XVar:a", ">0<", ">-0<"},
                       {"--model 2 --vector XVar:a --batches B1,B3", ">other batches<", ">B2<"},
                       {"--model 2 --vector XVar:a --multiplier 0.5", ">outside<", ">limits of 3 SD<"},
                       {"--model 2 --vector XVar:a --title 'a \"b\"'", ">a \"b\"<", ">outside<"},
                       {"--model 4 --vector to:1", ">to:1<", ">down<"},
                       {"--model 2 --vector XVar:a --color row", ">11<", ">batches<"},
                       {"--model 2 --vector XVar:a --sums --multiplier 1", ">XVar:a outside its limits<", ">average<"},
                       {"--model 2 --vector XVar:a --sums --multiplier 9", ">B3<", ">average<"}};
    for (auto const &row : cases) {
        Done(std::string("chart b.project -o x.svg ") + row.arguments);
        EXPECT_THAT(Contents(folder / "x.svg"), HasSubstr(row.has)) << row.arguments;
        EXPECT_THAT(Contents(folder / "x.svg"), Not(HasSubstr(row.lacks))) << row.arguments;
    }
}

TEST_F(SmallChart, TellsWhatItCantShow) {
    struct {
        char const *arguments;
        int status;
        char const *error;
    } const cases[] = {
        {"--model 9 --vector t", 1, "There is no model 9."},
        {"--model 3 --vector t", 1, "Model 3 is no model of the evolution of batches; \"dataseries fit --type batch\""},
        {"--model 2 --vector p:1", 2, "\"p\" has no control chart: give t:1, to:1, DModX"},
        {"--model 2 --vector t:2", 1, "There is no component \"2\", which \"t:2\" asks for: model 2 has 1"},
        {"--model 2 --vector to:1", 1, "There is no vector \"to\""},
        {"--model 2 --vector XVar:c", 1, "There is no X variable \"c\" in model 2"},
        {"--model 2 --vector t@M1", 2, "\"t@M1\" asks for another model than --model 2"},
        {"--model 2 --vector T2Range:2-3", 1, "There is no component \"2\""},
        {"--model 2 --vector t --batches B1,B9", 1, "There is no batch \"B9\" in model 2."},
        {"--model 2 --vector t --predicted", 1, "There is no prediction set; \"dataseries predict\" makes one."},
        {"--model 2 --vector t --color c -o x.svg", 1,
         "There is no identifier column \"c\" to colour by. There are: row"},
        {"--model 2 --vector t --color row --sums", 2, "excludes"},
        {"--model 2 --vector t --multiplier many", 2, "--multiplier"},
        {"--model 2 --vector t --multiplier 0", 2, "--multiplier is no number above 0"},
        {"--model 2 --vector t --multiplier nan", 2, "--multiplier is no number above 0"},
        {"--model 2 --vector t --sums --batches B1", 2, "excludes"},
        {"--model 2 --vector t --outside -o x.png", 2, "--outside is for a list, with --format"},
        {"--model 2 --vector t -o x.gif", 2, "The picture x.gif is neither .svg nor .png"},
        {"--model 2 --vector t -o b.project --format csv", 2, "a file of the project"}};
    for (auto const &row : cases) {
        Outcome const outcome = Run(std::string("chart b.project ") + row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.arguments;
        EXPECT_EQ(outcome.error.find('\n'), outcome.error.size() - 1) << row.arguments;
        EXPECT_EQ(outcome.out, "") << row.arguments;
    }
    EXPECT_THAT(Run("summary b.project --model 4 --phases").error, HasSubstr("Model 4 is of no phase"));
}

TEST_F(SmallChart, TellsOfBatchesAndPhases) {
    EXPECT_THAT(Done("summary b.project --model 1"), HasSubstr("The model is of phase up; --phases compares"));
    EXPECT_THAT(Done("summary b.project --model 1 --phases --format csv"),
                StartsWith("phase,model,batches,points,components,R2X(cum),R2Y(cum),Q2(cum)\nup,1,3,3,1,"));
    struct {
        char const *text, *part;
    } const cases[] = {
        {"t M1,1,0,0,2", "batch,2,\"batch 2, \"\"B2\"\"\""},
        {"t M1,1,0,0,4' --type 'aligned", "batch,4,there is no batch 4"},
        {"t M1,1,0,0,-1", "batch,-1,the average over all batches"},
        {"t M1,1,0,0,0", "batch,0,the standard deviation over all batches"},
        {"t M1,1,0,0,-2,3,1", "batches,\"3,1\",\"batch 3, \"\"B3\"\"; batch 1, \"\"B1\"\"\""},
        {"tBatch M1,1,0,0,3", "batch,3,\"batch 3, \"\"B3\"\"\""},
        {"T2Range M1,0,1,0,1,2", "second number,1,last component: 1\nbatch,2,"},
        {"tstddev M1,1,0,0,-2.5,3", "lower limit, the average less 2.5 standard deviations; the second is not used"},
        {"TAlignedOOCSum M1,1,0,0,3,-3", "the average and 3 standard deviations; lower limit, the average less 3 st"},
        {"TAlignedOOCSum M1,1,0,0,3,-99", "the average and 3 standard deviations; no limit"},
        {"DModXAlignedOOCSum M1,1,0,0,3,-3", "the average and 3 standard deviations; the second is not used"},
        {"T2RangeAlignedOOCSum M1,0,1,0,1,3,-3", "not used: the limit is the critical value of T2"}};
    for (auto const &row : cases)
        EXPECT_THAT(Done(std::string("explain b.project '") + row.text + "' --format csv"), HasSubstr(row.part))
            << row.text;
}

// One phase of a chart: for each batch, which points are outside of the limits that the chart tells.
struct Panel {
    std::vector<double> maturity;
    std::map<std::string, std::vector<bool>> outside;

    Panel(std::vector<std::vector<std::string>> const &lines, std::string const &phase) {
        for (auto const &line : lines) {
            if (line[0] != phase)
                continue;
            maturity.push_back(std::stod(line[2]));
            for (std::size_t batch = 6; batch < line.size(); ++batch)
                outside[lines[0][batch]].push_back(IsOutside(line[batch], line[4], line[5]));
        }
    }

    static bool IsOutside(std::string const &value, std::string const &lower, std::string const &upper) {
        return !value.empty() &&
               (std::stod(value) > std::stod(upper) || (!lower.empty() && std::stod(value) < std::stod(lower)));
    }

    // The maturity at which a batch leaves the limits for three points or more; a point by itself is chance.
    std::optional<double> Departure(std::string const &batch) const {
        std::vector<bool> const &points = outside.at(batch);
        for (std::size_t point = 0; point + 2 < points.size(); ++point)
            if (points[point] && points[point + 1] && points[point + 2])
                return maturity[point];
        return {};
    }
};

class FermentationChart : public Fermentation {
protected:
    std::vector<std::vector<std::string>> Figures(std::string const &vector) const {
        return Fields(Done("chart tank.project --model 1 --predicted --format csv --vector " + vector));
    }
};

TEST_F(FermentationChart, ShowsEachFaultWhenItWasPutIn) {
    std::map<std::string, std::pair<std::string, double>> faults; // phase and hour
    std::istringstream lines(table.substr(table.find('\n') + 1));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string batch, phase;
        double hour = 0;
        words >> batch >> phase >> hour;
        faults[batch] = {phase, hour};
    }
    ASSERT_EQ(faults.size(), 6u);
    // What shows a fault, and after how many hours at most.
    struct {
        char const *batch, *vector;
        double delay;
    } const cases[] = {
        {"late-feed", "XVar:feed", 0}, {"late-feed", "DModX", 0},      {"temperature", "XVar:temperature", 0},
        {"temperature", "DModX", 0},   {"drift", "XVar:oxygen", 2},    {"low-inoculum", "XVar:biomass", 1},
        {"low-inoculum", "YPred", 2},  {"short", "XVar:substrate", 0}, {"short", "DModX", 0},
        {"short", "t:1", 0},           {"contaminated", "XVar:ph", 3}};
    for (auto const &row : cases) {
        auto const &[phase, hour] = faults.at(row.batch);
        std::optional<double> const departure = Panel(Figures(row.vector), phase).Departure(row.batch);
        ASSERT_TRUE(departure) << row.batch << " " << row.vector;
        EXPECT_GE(*departure, hour) << row.batch << " " << row.vector;
        EXPECT_LE(*departure, hour + row.delay) << row.batch << " " << row.vector;
    }
    // What a fault upsets lasts: the contaminated batch is another process from then on.
    EXPECT_EQ(Panel(Figures("DModX"), "production").Departure("contaminated"), 0);
}

TEST_F(FermentationChart, KeepsGoodBatchesWithinTheLimits) {
    for (char const *const vector : {"t:1", "t:2", "DModX", "T2Range", "YPred", "XVar:biomass", "XVar:substrate",
                                     "XVar:product", "XVar:oxygen", "XVar:temperature", "XVar:feed", "XVar:ph"}) {
        auto const figures = Figures(vector);
        for (char const *const phase : {"inoculation", "growth", "production"}) {
            Panel const panel(figures, phase);
            for (char const *const batch : {"N1", "N2"}) {
                std::vector<bool> const &points = panel.outside.at(batch);
                EXPECT_LE(std::count(points.begin(), points.end(), true), 2) << vector << phase << batch;
            }
        }
    }
    // The sums put the faulty batches first.
    auto const sums = Fields(Done("chart tank.project --model 1 --vector DModX --predicted --sums --format csv"));
    EXPECT_EQ(sums[1][0], "contaminated");
    for (std::size_t last : {sums.size() - 1, sums.size() - 2})
        EXPECT_LT(std::stod(sums[last][1]), 0.1) << sums[last][0];
}

} // namespace
