#include "engine/TableReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

namespace engine {
namespace {

ImportedTable Read(std::string const &text, TableOptions const &options = {}) {
    std::istringstream stream(text);
    return ReadTable(stream, "f", options);
}

void Show(std::ostream &stream, PackedTexts const &texts) {
    for (std::size_t index = 0; index < texts.size(); ++index)
        stream << (index == 0 ? "" : " ") << texts[index];
}

// Each column as "name=cell cell", identifiers before variables; "-" for a missing number.
std::string Shown(ImportedTable const &table) {
    std::ostringstream stream;
    for (TextColumn const &column : table.observations) {
        stream << column.name << "=";
        Show(stream, column.texts);
        stream << "; ";
    }
    for (std::size_t variable = 0; variable < table.columns.size(); ++variable) {
        stream << (variable == 0 ? "" : "; ") << table.variables.front().texts[variable] << "=";
        for (std::size_t row = 0; row < table.columns[variable].size(); ++row) {
            float const value = table.columns[variable][row];
            stream << (row == 0 ? "" : " ") << (value == -99.0f ? "-" : (std::ostringstream() << value).str());
        }
    }
    return stream.str();
}

struct Layout {
    char const *text;
    char const *table;
};

TEST(ReadTable, FindsTheLayout) {
    Layout const cases[] = {
        {"id,x,y\na,1.5,2\nb,2,3\n", "id=a b; x=1.5 2; y=2 3"},
        {"id;x;y\r\na;1,5;2\r\nb;2;3", "id=a b; x=1.5 2; y=2 3"},
        {"id\tx\ty\na\t1,5\t2\n", "id=a; x=1.5; y=2"},
        {"1,5;2,5\n3,5;4,5\n", "ObsID=1 2; Var1=1.5 3.5; Var2=2.5 4.5"},
        {"\"1,5\",\"2\"\n\"3,5\",\"4\"\n", "ObsID=1 2; Var1=1.5 3.5; Var2=2 4"},
        {"x\n1,5\n2,5\n", "ObsID=1 2; x=1.5 2.5"},
        {"x\n1.5\n\n  \n2.5\n", "ObsID=1 2; x=1.5 2.5"},
        {"\xEF\xBB\xBFx,y\n1,2\n3,4\n", "ObsID=1 2; x=1 3; y=2 4"},
        // row labels, headings that are numbers, an empty corner, a missing first value
        {"1,5,6\n2,7,8\n3,9,1\n", "ObsID=1 2 3; Var1=5 7 9; Var2=6 8 1"},
        {"Time,y\n1,5\n2,6\n3,7\n", "ObsID=1 2 3; Time=1 2 3; y=5 6 7"},
        {"Sample ID,400,402\n17,1,2\n19,3,4\n", "Sample ID=17 19; 400=1 3; 402=2 4"},
        {",400,402\n1,1,2\n2,3,4\n", "ObsID=1 2; 400=1 3; 402=2 4"},
        {",2,3\n4,5,6\n7,8,9\n", "ObsID=1 2 3; Var1=- 4 7; Var2=2 5 8; Var3=3 6 9"},
        {"a,1,2\nb,3,4\n", "ObsID=a b; Var1=1 3; Var2=2 4"},
        // text columns further on, columns without any value
        {"x,day,none\n1,Monday,\n2,,NA\n", "ObsID=1 2; day=Monday ; x=1 2; none=- -"},
        {"id,\"a, \"\"b\"\"\nc\",y\n\"o\n1\",1,2\n", "id=o\n1; a, \"b\"\nc=1; y=2"},
    };
    for (auto const &[text, table] : cases)
        EXPECT_EQ(Shown(Read(text)), table) << text;
}

TEST(ReadTable, ReadsCells) {
    struct {
        char const *cell;
        float value;
    } const cases[] = {{"1.5", 1.5f},
                       {"+2", 2.0f},
                       {"-3e-2", -0.03f},
                       {" 4 ", 4.0f},
                       {"\" 5 \"", 5.0f},
                       {".5", 0.5f},
                       {"", -99.0f},
                       {"NA", -99.0f},
                       {"na", -99.0f},
                       {"nAn", -99.0f},
                       {"-nan", -99.0f},
                       {"?", -99.0f},
                       {"-1", -99.0f},
                       {"1e-60", 0.0f},
                       {"-1e-400", -0.0f},
                       {"1e-40", 1e-40f},
                       {"-99", -99.0f},
                       {"1E5", 1e5f},
                       {"16777217", 16777216.0f},
                       {"3.4028235e38", 3.4028235e38f},
                       {"0.1", 0.1f}};
    TableOptions options;
    options.missingMarks = {"?", "-1"};
    for (auto const &[cell, value] : cases)
        EXPECT_EQ(Read("x,y\n7," + std::string(cell) + "\n8,1\n", options).columns[1][0], value) << cell;
    ImportedTable const marked =
        Read("x,y\n-99,1\n-99.0,text\n3,-99\n", {.identifierColumns = 0, .missingMarks = {"text"}});
    EXPECT_EQ(marked.literalMissingValues, 3u);
    EXPECT_THAT(marked.notes, testing::ElementsAre("Cells that hold -99, which stands for missing: 3."));
}

TEST(ReadTable, DoesAsToldByOptions) {
    struct {
        char const *text;
        TableOptions options;
        char const *table;
    } const cases[] = {
        {"a;1\nb;2\n", {.separator = ';', .header = true, .identifierColumns = 1}, "a=b; 1=2"},
        {"1,2\n3,4\n", {.separator = ';'}, "ObsID=1 2; Var1=1.2 3.4"},
        {"1,2\n3,4\n", {.separator = ',', .header = true}, "ObsID=1; 1=3; 2=4"},
        {"1;2\n3;4\n", {.decimalMark = ',', .identifierColumns = 1}, "ObsID=1 3; Var1=2 4"},
        {"id,no,x\n1,2,3\n", {.identifierColumns = 2}, "id=1; no=2; x=3"},
        {"id,x\n1,3\n", {.identifierColumns = 0}, "ObsID=1; id=1; x=3"},
    };
    for (auto const &[text, options, table] : cases)
        EXPECT_EQ(Shown(Read(text, options)), table) << text;
}

TEST(ReadTable, TellsWhatIsWrong) {
    struct {
        std::string text;
        char const *message;
    } const cases[] = {
        {"", "f is empty."},
        {"\xEF\xBB\xBF", "f is empty."},
        {"\n\n", "f holds no observations."},
        {"a,b\n", "f holds no observations, only a row of headings."},
        {"a,b\nc,d\n", "f holds no column of numbers."},
        {"x,y\n1,2\n3\n", "f, line 3: found 1 cells, expected 2 as in the first row."},
        {"x,y\n1,2\n\n\"\n3\",4,5\n", "f, line 4: found 3 cells, expected 2 as in the first row."},
        {"x,y\n1,2\n3,ab\n4,5\n5,6\n",
         "f, line 3, column 2 (y): expected a number with decimal point or a missing value in "
         "a column that has numbers, found \"ab\"."},
        {"id,x,y\r\n\"a\r\nb\",1,1\r\nc,2,3\r\nd,1e39,4\r\ne,5,inf\r\nf,oh,7\r\n",
         "f, line 5, column 2 (x): expected a number with decimal point or a missing value in a column that has "
         "numbers, found \"1e39\". Further wrong cells: 2."},
        {"x;y\n1,5;2\n2,5;1.5\n", "f, line 3, column 2 (y): expected a number with decimal comma or a missing value in "
                                  "a column that has numbers, found \"1.5\"."},
        {"x,y,x\n1,2,3\n", "f, line 1: columns 1 and 3 have the same heading \"x\"."},
        {"\nx,,y\n1,2,3\n", "f, line 2: column 2 has no heading."},
        {"x,y\n1,\"2\n", "f, line 3: the file ends inside a field in quotation marks."},
        {"x,y\n1,2\"\n", "f, line 2: found a quotation mark in the middle of a cell, expected marks around the whole "
                         "cell and doubled inside of it."},
        {"id,x\na\xFF,1\n", "f, line 2, column 1 (id): the text is not valid UTF-8."},
        {"id,x\n\xE2\x82,1\n", "f, line 2, column 1 (id): the text is not valid UTF-8."},
        {"i\xC0\xAF,x\na,1\n", "f, line 1, column 1: the text is not valid UTF-8."},
        {std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR", 16), "f, line 3: found a zero byte, expected a file of text."},
        {std::string("\xFF\xFEx\0", 4), "f is UTF-16 text, expected UTF-8."},
    };
    for (auto const &[text, message] : cases)
        EXPECT_THAT([&] { Read(text); }, testing::ThrowsMessage<NCError>(message)) << text;
    EXPECT_THAT([] { Read("x,y\n1,2\n", {.identifierColumns = 3}); },
                testing::ThrowsMessage<NCError>(testing::HasSubstr("at least the 3 columns")));
    EXPECT_THAT([] { ReadTable("/no/such.csv"); }, testing::ThrowsMessage<NCError>(testing::HasSubstr("/no/such.csv")));
    EXPECT_THAT([] { ReadTable("/"); }, testing::ThrowsMessage<NCError>("/ is a folder, expected a table."));
}

// More than one block, with a number after many blanks, and cells on both sides of each boundary.
TEST(ReadTable, ReadsLongFilesAndCanBeCancelled) {
    std::string text = "x,late,name\n";
    std::size_t const rows = 600'000;
    for (std::size_t row = 0; row + 1 < rows; ++row)
        text += std::to_string(row) + ",,n" + std::to_string(row) + "\n";
    text += "1,2.5,end\n";
    ImportedTable const table = Read(text);
    ASSERT_EQ(table.ObservationCount(), rows);
    EXPECT_EQ(table.columns[0][rows - 2], static_cast<float>(rows - 2));
    EXPECT_EQ(std::ranges::count(table.columns[1], -99.0f), rows - 1);
    EXPECT_EQ(table.observations[1].texts[rows - 2], "n" + std::to_string(rows - 2));

    // Blocks that end in the middle of a row, and of a number.
    std::istringstream start(text.substr(0, 300) + "\n");
    ImportedTable const small = ReadTable(start, "f", {}, {}, 0, 32);
    EXPECT_EQ(small.columns[0].size(), small.ObservationCount());
    EXPECT_EQ(small.columns[0][20], 20);

    double last = 0.0;
    std::istringstream stream(text);
    Progress const progress([&](double done) { return (last = done) < 0.5; });
    EXPECT_THROW(ReadTable(stream, "f", {}, progress, text.size()), Cancelled);
    EXPECT_NEAR(last, 0.5, 0.05);
}

} // namespace
TEST(ReadTable, DatesBecomeDays) {
    struct {
        char const *cell;
        double days; // since 1970-01-01; below 0 for a text that is no date
    } const cases[] = {{"1970-01-02", 1},
                       {"2024-03-05", 19787},
                       {"2024-03-05 12:00", 19787.5},
                       {" 2024-02-29T06:00:00 ", 19782.25},
                       {"2024-02-29T00:00:30.5", 19782 + 30.5 / 86400},
                       {"2023-02-29", -1},
                       {"2024-13-01", -1},
                       {"2024-03-05 24:00", -1},
                       {"2024-03-05x", -1},
                       {"2024-03-05 12:00:", -1},
                       {"05/03/2024", -1}};
    for (auto const &row : cases) {
        std::istringstream stream(std::string("id,v,when\na,1,") + row.cell + "\nb,2,\n");
        ImportedTable const table = ReadTable(stream, "dates.csv");
        ASSERT_EQ(table.dates.size(), row.days < 0 ? 0u : 1u) << row.cell;
        if (row.days < 0)
            continue;
        EXPECT_NEAR(table.dates[0].days[0], row.days, 1e-9) << row.cell;
        EXPECT_NEAR(table.columns[1][0], row.days - std::floor(row.days), 1e-6) << "since that midnight";
        EXPECT_EQ(table.columns[1][1], -99.0f);
    }
}

TEST(ReadTable, BatchColumnsAreIdentifiersWhateverTheyHold) {
    std::istringstream stream("lot,stage,v\n7,1,1.5\n7,2,2.5\n");
    ImportedTable const table = ReadTable(stream, "lots.csv", {.batchColumn = "lot", .phaseColumn = "stage"});
    ASSERT_EQ(table.observations.size(), 3u);
    EXPECT_EQ(table.observations[0].name, "ObsID");
    EXPECT_EQ(table.observations[1].texts[1], "7");
    EXPECT_EQ(table.columns.size(), 1u);
}

} // namespace engine
