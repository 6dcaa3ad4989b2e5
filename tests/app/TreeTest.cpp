// Trees of PLS models: fitted, listed and drawn.

#include "tests/app/Program.h"

#include <gmock/gmock.h>

namespace {

using testing::HasSubstr;

// Two groups of eight, of which one has its response falling with b.
TEST_F(Program, FitsListsAndDrawsTrees) {
    std::ostringstream text;
    text << "id,a,b,y\n";
    for (int i = 0; i < 16; ++i)
        text << 'o' << i << ',' << i % 2 * 20 + i % 3 << ',' << i * i % 7 << ','
             << i % 2 * 20 + (i % 2 == 0 ? -1 : 1) * (i * i % 7) << '\n';
    Write("a.csv", text.str().c_str());
    Done("import a.project a.csv");
    Done("fit a.project --type pca --components 1");
    EXPECT_THAT(Done("fit a.project --type plstree --y y --components 1 --depth 2 --smallest 4"),
                HasSubstr("tree of 7 PLS models\nmodel  side"));
    std::string const indented = Done("tree a.project --model 4");
    for (char const *const line :
         {"\n2      ", "\n  3    below  ", "\n    4  below  ", "\n    5  above  ", "\n  6    above  "})
        EXPECT_THAT(indented, HasSubstr(line));
    auto const lines = Fields(Done("tree a.project --model 4 --format csv"));
    ASSERT_EQ(lines.size(), 8u);
    // model above, depth, side, observations, below the cut
    char const *const expected[][6] = {{"2", "", "0", "", "16", "8"},
                                       {"3", "2", "1", "below", "8", "4"},
                                       {"4", "3", "2", "below", "4", ""},
                                       {"5", "3", "2", "above", "4", ""},
                                       {"6", "2", "1", "above", "8", "4"}};
    for (std::size_t line = 0; line < std::size(expected); ++line)
        for (std::size_t field = 0; field < 6; ++field)
            EXPECT_EQ(lines[line + 1][field], expected[line][field]) << line << ' ' << field;
    Done("tree a.project --model 2 --plot tree.svg");
    for (char const *const label : {">M2<", ">M8<", ">16 obs.<", ">4 obs.<", ">cut at t1 = "})
        EXPECT_THAT(Contents(folder / "tree.svg"), HasSubstr(label));

    struct {
        char const *arguments;
        int status;
        char const *error;
    } const cases[] = {{"tree a.project --model 1", 1, "Model 1 is in no tree; \"dataseries fit --type plstree\""},
                       {"tree a.project --model 9", 1, "There is no model 9."},
                       {"tree a.project --model 2 --plot tree.svg --format csv", 2, "excludes"},
                       {"fit a.project --type pls --y y --depth 2", 2, "--depth and --smallest are for --type plstree"},
                       {"fit a.project --type plstree --y y --smallest 1", 2, "--smallest"},
                       {"fit a.project --type plstree", 2, "needs its Y variables"},
                       {"fit a.project --type plstree --y y --data 7", 1, "There is no data set 7."}};
    for (auto const &row : cases) {
        Outcome const outcome = Run(row.arguments);
        EXPECT_EQ(outcome.status, row.status) << row.arguments;
        EXPECT_THAT(outcome.error, HasSubstr(row.error)) << row.arguments;
    }
}

} // namespace
