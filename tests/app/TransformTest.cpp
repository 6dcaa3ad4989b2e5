#include "tests/app/Program.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// Ten observations of one variable in file order, and its deviations in a model.
class Charts : public Program {
protected:
    Charts() {
        Write("a.csv", "id,v,w\na,10,1\nb,12,5\nc,11,3\nd,13,4\ne,9,2\nf,14,1\ng,15,5\nh,13,2\ni,16,4\nj,12,3\n");
        Done("import a.project a.csv");
        Done("fit a.project --type pca --components 1 --cv-groups 0");
    }
};

} // namespace

TEST_F(Charts, ListChartsAndTransforms) {
    // What is built of v unless another series is named; the table as comma separated values
    struct {
        char const *arguments, *text;
    } const cases[] = {
        {"--chart shewhart --subgroup 5 --spread range",
         "Subgroups,Shewhart (Sample size 5) Mean,Shewhart (Sample size 5) Range\nSubgroup 1,11,4\nSubgroup 2,14,4\n"},
        {"--chart ewma --lambda 0.5 --target 12 --subgroup 5", ",EWMA\nSubgroup 1,11.5\nSubgroup 2,12.75\n"},
        {"--chart ewma --lambda 0.5 --target 12 --subgroup 5 --forecast", ",EWMA\nSubgroup 1,12\nSubgroup 2,11.5\n"},
        {"--chart cusum --target 12 --sd 2 --k 0.25 --subgroup 4", "Subgroup 1,0.25,-0.5,0\nSubgroup 2,0,0.75,0.5\n"},
        {"--chart shewhart-ewma --lambda 1", "\na,10,10\nb,12,12\n"},
        {"--transform ewma --lambda 0.5 --target 12 --subgroup 5", "\nSubgroup 1,11.5\nSubgroup 2,12.75\n"},
        {"--transform histogram", "\n9.7,2\n11.1,1\n12.5,4\n13.9,1\n15.3,2\n"},
        {"--transform dot-plot", "\na,9.5,2\nb,11.5,2\nc,11.5,1\n"},
        {"--transform subtract:VarDS:w@DS1", "\na,9\nb,7\nc,8\n"},
        {"--transform auto-correlation --lags 1 --detrend linear", "\n0,1\n1,-0.483347"},
        {"--transform cross-correlation:VarDS:v@DS1 --lags 1", "\n-1,-0.0176470596\n0,1\n1,-0.0176470596\n"},
        {"--transform wavelet-coefficients --order 1 --detrend none --no-padding", "\nWC_1,15.5563488\n"},
        {"--transform wavelet-structure --order 1 --detrend none --scales 1", "\na,7.8125\n"},
        {"--transform subtract-divide:VarDS:w@DS1,VarDS:w@DS1 --series VarDS:w@DS1", "\na,9,0\nb,1.39999998,0\n"}};
    for (auto const &row : cases)
        EXPECT_THAT(Done(std::string("build a.project --format csv --series VarDS:v@DS1 ") + row.arguments),
                    HasSubstr(row.text))
            << row.arguments;
    double sum = 0;
    auto const loadings = Fields(Done("build a.project --series p --transform normalize --format csv"));
    for (std::size_t variable = 1; variable < loadings.size(); ++variable)
        sum += std::pow(std::stod(loadings[variable][1]), 2);
    EXPECT_NEAR(sum, 1, 1e-6);
}

TEST_F(Charts, AreDrawn) {
    if (std::system("command -v gnuplot > /dev/null") != 0)
        GTEST_SKIP() << "gnuplot is not here";
    // arguments; a text that is in the picture, and one that is not
    struct {
        char const *arguments, *has, *lacks;
    } const cases[] = {{"--chart shewhart", ">UCL 19.59<", "beyond 3 SD"},
                       {"--chart shewhart --sd 1", ">1: beyond 3 SD<", ">outside<"},
                       {"--chart shewhart --target 11.4 --sd 1.55", ">2: two of three beyond 2 SD<", "1: beyond"},
                       {"--chart shewhart --target 8 --sd 8", ">4: eight on one side<", "1: beyond"},
                       {"--chart shewhart --subgroup 2 --statistic range", ">LCL 0<", ">-2 SD"},
                       {"--chart shewhart --subgroup 5 --statistic sd", ">+2 SD 2.729<", ">outside<"},
                       {"--chart ewma --lambda 0.3 --sd 1", ">outside<", "beyond"},
                       {"--chart cusum --h 1", ">H 2.363<", ">H 11.82<"},
                       {"--chart cusum --h 1", ">outside<", "beyond"},
                       {"--chart shewhart-ewma --lambda 0.3", ">EWMA UCL 15.48<", ">+2 SD"},
                       {"--transform histogram", ">normal curve, mean 12.5, SD 2.173<", ">Num<"},
                       {"--transform dot-plot", ">Count<", ">Num<"},
                       {"--probability", ">normal, mean 12.5, SD 2.173<", ">Num<"},
                       {"--probability", ">e<", ">d<"},
                       {"--transform auto-correlation", ">95 % of noise<", ">Num<"},
                       {"--transform wavelet-coefficients", ">Wavelet Coefficient<", "noise"},
                       {"--transform wavelet-structure --scales 2,5", ">Scale 5: ", "Scale 1:"},
                       {"--transform ewma", "EWMA(Filtered)", "UCL"}};
    for (auto const &row : cases) {
        Done(std::string("build a.project --series VarDS:v@DS1 --plot x.svg ") + row.arguments);
        EXPECT_THAT(Contents(folder / "x.svg"), HasSubstr(row.has)) << row.arguments;
        EXPECT_THAT(Contents(folder / "x.svg"), Not(HasSubstr(row.lacks))) << row.arguments;
    }
}

TEST_F(Charts, TellWhatTheyCantShow) {
    struct {
        char const *arguments;
        int status;
        char const *error;
    } const cases[] = {
        {"--chart pie", 2, "--chart"},
        {"--chart ewma --transform ewma", 2, "excludes"},
        {"--chart ewma --x t", 2, "--chart shows one series, without --x and --y"},
        {"--transform histogram --series t", 2, "--transform histogram shows one series"},
        {"--chart ewma --k 1", 2, "--k and --h only with --chart cusum"},
        {"--chart ewma --statistic range", 2, "--statistic only with --chart shewhart"},
        {"--chart cusum --spread range", 2, "--spread only with"},
        {"--chart shewhart --lambda 0.5", 2, "--lambda only with an EWMA"},
        {"--chart shewhart --statistic sd --target 3", 2, "--target and --sd only with a chart of means"},
        {"--transform r2x --subgroup 2", 2, "--subgroup only with"},
        {"--transform ewma --forecast", 2, "--forecast only with"},
        {"--chart ewma --lambda 1.5", 2, "--lambda is no number above 0, and 1 at most"},
        {"--chart ewma --sd nan", 2, "--sd is no number above 0"},
        {"--chart ewma --subgroup 0", 2, "--subgroup is no number of 1 or more"},
        {"--chart ewma --subgroup 11", 1, "The series does not fill one subgroup of 11 values."},
        {"--transform ewma --subgroup 6", 1, "The subgroup size must be smaller than half the number of observations."},
        {"--transform ewma --detrend mean", 2, "--detrend only with a correlation, a spectrum or wavelets"},
        {"--transform power-spectrum --lags 3", 2, "--lags only with a correlation"},
        {"--transform auto-correlation --order 3", 2, "--order and --no-padding only with wavelets"},
        {"--transform auto-correlation --x t", 2, "--transform auto-correlation shows series without --x and --y"},
        {"--transform cross-correlation", 2, "names 0 vectors in place of 1"},
        {"--transform power-spectrum", 1, "The series has fewer than 16 observations, which a spectrum needs."},
        {"--transform wavelet-structure --scales 9", 1, "none of the scales that are asked for"},
        {"--probability --format csv", 2, "--probability shows one series, without --x and --y, in a picture"},
        {"--transform round", 2, "\"round\" is no transformation"},
        {"--transform subtract", 2, "\"subtract\" names 0 vectors in place of 1"},
        {"--transform subtract:t,t", 2, "names 2 vectors in place of 1"},
        {"--transform subtract:q", 1, "There is no vector \"q\""}};
    for (auto const &row : cases) {
        Outcome const outcome = Run(std::string("build a.project --series VarDS:v@DS1 ") + row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.arguments;
        EXPECT_EQ(outcome.out, "") << row.arguments;
    }
}
