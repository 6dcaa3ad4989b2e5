#include "tests/app/Program.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

// Data sets made of others and of models: how they are asked for, listed, predicted and explained.
class DerivedData : public Program {};

TEST_F(DerivedData, IsMadeByCommands) {
    std::string rows = "id,kind,a,b,c,d,y\n";
    for (int row = 0; row < 12; ++row) {
        rows += "o" + std::to_string(row) + (row % 3 == 0 ? ",x" : ",z");
        for (int const factor : {1, 5, 7, 11, 2})
            rows += "," + std::to_string(row * factor % 13);
        rows += "\n";
    }
    Write("s.csv", rows.c_str());
    Write("new.csv", "id,a,b,c,e\np,3,2,1,0\nq,4,,2,1\n");
    Done("import s.project s.csv");
    Done("fit s.project --type pca --components 2 --exclude y,d");
    Done("fit s.project --type pls --y y --components 1 --exclude a,b");
    EXPECT_THAT(Done("fit s.project --type pls --y y --components 2 --on M1.t,M2.YPred,M1.T2,d"),
                HasSubstr("model 3 (PLS) of data set 2"));
    EXPECT_THAT(Done("fit s.project --type pls-da --classes kind --components 1 --on M1.t,M2.DModX"),
                HasSubstr("model 4"));
    EXPECT_THAT(Done("osc s.project --y y --exclude d --components 9 --scaling ctr"),
                HasSubstr("components    2: no more of X has nothing to do with Y"));
    EXPECT_THAT(Done("compress s.project --exclude y --function coiflet --order 1 --keep 2"),
                HasSubstr("variables     3\n  compressed    4 variables"));
    EXPECT_THAT(Done("compress s.project --exclude y --keep 90% --denoise"), HasSubstr("\"s denoised\""));
    Done("fit s.project --data 5 --type pls --y y --components 1");
    EXPECT_THAT(Done("predict s.project new.csv"), HasSubstr("model 3: 5 of 5 X variables found"));
    std::string kinds;
    for (auto const &line : Fields(Done("datasets s.project --format csv")))
        kinds += line[2] + ';';
    EXPECT_EQ(kinds, "kind;data;derived;derived;corrected;compressed;derived;prediction;derived of prediction;"
                     "derived of prediction;corrected of prediction;compressed of prediction;derived of prediction;");
    EXPECT_EQ(Fields(Done("table s.project 'p M5,1,0,0' --format csv")).size(), 5u) << "of the variables";
    EXPECT_EQ(Fields(Done("table s.project 'CoeffCS M3,2,1,0,2' --format csv")).size(), 8u)
        << "a constant, a to d, and what is no score";
    EXPECT_THAT(Done("explain s.project 'OSC-t DS4,2'"), HasSubstr("component 2 of 2 components of the correction"));
    EXPECT_EQ(Fields(Done("table s.project 'YPredPS M3,2,1' --format csv")).size(), 3u);
    struct {
        char const *line, *error;
        int status;
    } const wrong[] = {{"fit s.project --type pls --y y --on M1.t[3]", "Model 1 has no such result", 1},
                       {"fit s.project --type pls --y y --on M1.q", "\"M1.q\" is no result of a model", 2},
                       {"fit s.project --type pls --y y --on a,b", "--on names results of models", 2},
                       {"fit s.project --type pls --y u --on M1.t", "has a variable \"u\"", 1},
                       {"fit s.project --type pls --y y --on M1.t,M8.t", "There is no model 8", 1},
                       {"osc s.project --y u", "\"u\"", 1},
                       {"osc s.project --y y --data 99", "There is no data set 99", 1},
                       {"osc s.project --y y --data 7", "Data set 7 (new) is a prediction set", 1},
                       {"compress s.project --exclude u", "has no variable \"u\"", 1},
                       {"compress s.project --exclude y,a,b,c", "A row of 1 variables has no wavelet transform", 1},
                       {"compress s.project --keep 0", "\"0\" is no number of coefficients", 2},
                       {"compress s.project --keep 101%", "\"101%\" is no number of coefficients", 2},
                       {"compress s.project --data 7", "Data set 7 (new) is a prediction set", 1}};
    for (auto const &row : wrong) {
        Outcome const outcome = Run(row.line);
        EXPECT_EQ(outcome.status, row.status) << row.line;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.line;
    }
}

} // namespace
