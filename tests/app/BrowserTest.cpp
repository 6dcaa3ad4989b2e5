#include "app/browse/BrowserScreen.h"
#include "tests/app/Fermentation.h"

#include <boost/locale/encoding_utf.hpp>
#include <gmock/gmock.h>

#include <bit>
#include <regex>

namespace {

using ::testing::HasSubstr;

// A table of series by hand, over as many items.
ProjectData TableOf(std::vector<std::vector<float>> const &rows) {
    int const items = static_cast<int>(rows.front().size());
    NCDataMatrix<float> matrix(static_cast<int>(rows.size()), items);
    NCStringVector names, labels;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        names.push_back("s" + std::to_string(row + 1));
        matrix.SetRow(static_cast<int>(row) + 1, rows[row]);
    }
    for (int item = 1; item <= items; ++item)
        labels.push_back(std::string(1, static_cast<char>('a' + item - 1)));
    return {RowIDs(names, nullptr), ColumnIDs(labels, "name", nullptr, ColumnIDs::Strings, 0), matrix};
}

// A cell in ASCII: the number of its dots, A to H for the eighths of a bar, lines and signs as they look.
char Plain(char32_t glyph) {
    if (glyph >= 0x2800 && glyph <= 0x28FF)
        return static_cast<char>('0' + std::popcount(static_cast<unsigned>(glyph - 0x2800)));
    if (glyph >= 0x2581 && glyph <= 0x2588)
        return static_cast<char>('A' + glyph - 0x2581);
    switch (glyph) {
    case 0x2500:
        return '-';
    case 0x2502:
        return '|';
    case 0x2580:
        return '"';
    case 0x25A0:
        return '#';
    case 0x25C6:
        return '*';
    default:
        return glyph < 0x80 ? static_cast<char>(glyph) : '+';
    }
}

std::string TextOf(TextCanvas const &canvas) {
    std::string text;
    for (int y = 0; y < canvas.Height(); ++y) {
        for (int x = 0; x < canvas.Width(); ++x)
            text += Plain(canvas.At(x, y).glyph);
        text.erase(text.find_last_not_of(' ') + 1);
        text += "\n";
    }
    return text;
}

TEST(TextCanvas, CutsAndWrapsTextsOfAnyBytes) {
    struct {
        char const *text;
        int width;
        std::u32string row;
    } const cases[] = {
        {"plain", 8, U"plain"},
        {"exactly", 7, U"exactly"},
        {"too long", 5, U"too \u2026"},
        {"tab\tand\nline", 20, U"tab and line"},
        {"\xC3\xB8re \xE2\x88\x9E", 8, U"\u00F8re \u221E"},
        {"cut off\xFF\xC3", 20, U"cut off"},
        {"none", 0, U""},
    };
    for (auto const &row : cases) {
        TextCanvas canvas(20, 1);
        EXPECT_EQ(canvas.Write(0, 0, row.text, Ink::Plain, row.width), static_cast<int>(row.row.size())) << row.text;
        EXPECT_EQ(boost::locale::conv::utf_to_utf<char32_t>(canvas.Row(0)), row.row) << row.text;
    }
    EXPECT_THAT(Wrapped("one two three\nfour", 8), ::testing::ElementsAre("one two", "three", "four"));
}

// Of many items the least and the greatest values of each column of dots are shown, of whatever is in between.
TEST(PlotPicture, ShowsTheExtremesOfManyItems) {
    std::vector<float> values(10000);
    values[3] = values[9996] = 1;
    values[5000] = -1;
    ProjectData const table = TableOf({values});
    TextCanvas canvas(34, 13);
    PlotPicture(Frame{0, 0, 34, 13}, PlotPoints(table, false, PlotPoints::Curves)).Draw({.labels = 0}, canvas);
    auto const isDrawn = [&](int x, int y) {
        return canvas.At(x, y).glyph >= 0x2800 && canvas.At(x, y).glyph < 0x2900;
    };
    EXPECT_TRUE(isDrawn(10, 2) && isDrawn(32, 2) && isDrawn(21, 9)) << TextOf(canvas);
    EXPECT_FALSE(isDrawn(15, 2) || isDrawn(15, 9)) << TextOf(canvas);
}

TEST(PlotPicture, DrawsCurvesBarsAndPoints) {
    constexpr float missing = -99;
    struct {
        ProjectData table;
        bool hasAxis;
        PlotPoints::Form form;
        PlotLook look;
        char const *picture;
    } const cases[] = {
        {TableOf({{0, 1, 2, missing, 4, 0}}), false, PlotPoints::Curves, {.title = "line"}, R"(
          line

       4 +                 3
         |                 4
         |                  4
         |                  4
       2 +       122         4
         |     121           4
         |   121              4
       0 +--21----------------3--
         +--+--+---+---+---+--+--
            a  b   c   d   e  f
                             name
)"},
        {TableOf({{1, -1, 2}, {0.5f, missing, -2}}), false, PlotPoints::Bars, {.title = "bars", .cursor = 2}, R"(
          bars
          # s1  # s2
       2 +               FFF
         |               HHH
         |GGG            HHH
         |HHHHHHAAAAAAAAAHHHAAAAA
       0 +       HHH        HHH
         |       """        HHH
         |                  HHH
      -2 +                  """
         ++------+-------+-------
          a      b       c
                             name
)"},
        {TableOf({{1, 3, 2}, {1, 2, missing}, {2, -1, 1}}),
         true,
         PlotPoints::Curves,
         {.title = "points", .marks = {false, true, false}, .cursor = 1, .area = Area{1, 2, 0, 1.5}},
         R"(
          points
          # s2  # s3
       2 +4                    b*
         |+----------+
         ||a         |c
         ||          |
         ||          |
       0 ++----------+-----------
         |
         |                      *
         +-----------+-----------
                     2
                               s1
)"},
    };
    for (auto const &row : cases) {
        TextCanvas canvas(34, 13);
        PlotPoints const points(row.table, row.hasAxis, row.form);
        PlotPicture(Frame{0, 0, 34, 13}, points).Draw(row.look, canvas);
        EXPECT_EQ("\n" + TextOf(canvas), row.picture);
    }
}

struct Session : Browser {
    using Browser::Browser;
    BrowserScreen screen{*this};

    std::string Type(std::u32string const &keys) {
        for (Key const key : keys)
            Press(key);
        return TextOf(screen.Draw(120, 32));
    }
};

using Browsing = Program;

// Each line goes on from the one before.
TEST_F(Browsing, AnswersKeys) {
    MakeProject();
    Session session(folder / "a.project");
    std::u32string const right{Keys::Right}, up{Keys::Up}, down{Keys::Down}, shiftRight{Keys::ShiftRight},
        shiftLeft{Keys::ShiftLeft};
    struct {
        std::u32string keys;
        char const *shown, *status;
    } const lines[] = {
        {U"", "| M2.t[Comp. 1]\n", ""},
        {U"[/SCORES T,", "Vectors of model 1 /SCORES T,", ""},
        {U"\n", "t: Scores t, one vector", ""},
        {U"\n", "| M1.t[Comp. 1]\n", ""},
        {U"x", "M1.t[Comp. 1] against M1.t[Comp. 1]", "against"},
        {U"\t" + right, "M1.t[Comp. 2] against M1.t[Comp. 1]", ""},
        {shiftRight, "M1.t[Comp. 2] against M1.t[Comp. 2]", ""},
        {shiftLeft + right, "M1.t[Last comp.] against M1.t[Comp. 1]", ""},
        {right, "against", "There is nothing behind that."},
        {down, "M2.t[Comp. 1] against M2.t[Comp. 1]", ""},
        {down, "Vectors of model 2", "There is no other model that way."},
        {U"<", "against", "There is"},
        {U"..", "l,2", "2 l,2: M2.t[Comp. 1] "},
        {U"m", "*", "1 marked, 1 of them here"},
        {U"c", "| M2.Score Contrib(Obs l,2 - Average), Weight=w*", "held against the average"},
        {U"t..", "b ", "2 b: M2.Score"},
        {U"qq....M", "*x4", "1 marked, 1 of them here"},
        {U"c", "Score Contrib(Obs x4 - Obs l,2)", "held against what was marked before"},
        {U"qu", "*l,2", "1 marked"},
        {U"r", "*x4", "1 marked"},
        {U"r", "against", "There is nothing more."},
        {U"l", "against", "No labels"},
        {U"s'odd <\u00F8>'\n", "against", "The plot is saved as \"'odd <\u00F8>'\"."},
        {U"s'odd <\u00F8>'\n", "Replace it (y/n)?", ""},
        {U"n\n", "against", "The plot is not saved."},
        {U"X", "| M2.t[Comp. 1]\n", ""},
        {U"d", "| M2.t[Comp. 1]\n", "The last series stays."},
        {U"\t/no such\n+", "nothing found", "There is no vector in the list"},
        {U"q[/loadings p,\n+", "Vectors of model 1", "p has one value for each variable, the plot one for each obs"},
        {U"\n+", "# M1.p[Comp. 1]  # M1.p[Comp. 1]", ""},
        {U"e", "| M1.p[Comp. 1]\n", "2 plots"},
        {U"n", "M1.p[Comp. 1] against Num", ""},
        {U"o", "Saved plots: Enter opens", ""},
        {U"\n", "M2.t[Comp. 1] against M2.t[Comp. 1]", "odd"},
        {U"px.pdf\n", "against", "neither .svg nor .png"},
        {U"?", "Space", ""},
        {U"qz", "against", "? lists the keys."},
    };
    for (auto const &line : lines) {
        std::string const screen = session.Type(line.keys);
        std::string const unspaced = std::regex_replace(screen, std::regex(R"(\| +)"), "| ");
        EXPECT_THAT(unspaced, HasSubstr(line.shown)) << session.Status();
        EXPECT_THAT(session.Status(), HasSubstr(line.status)) << screen;
    }
    EXPECT_THAT(Done("plots a.project"), HasSubstr("'odd <\u00F8>'"));
    for (int i = 0; i < 20 && session.IsRunning(); ++i)
        session.Press(Keys::Escape);
    EXPECT_FALSE(session.IsRunning());
}

TEST_F(Browsing, MarksWhatTheMouseEncloses) {
    MakeProject();
    Session session(folder / "a.project");
    session.Type(U"[/scores t,\n\nx\t" + std::u32string{Keys::Right});
    struct {
        int fromX, fromY, toX, toY;
        char const *status;
    } const drags[] = {
        {0, 0, 119, 30, "There is nothing to mark"}, // begins in the list
        {41, 1, 119, 30, "7 marked"},
        {119, 30, 41, 1, "0 marked"}, // the same the other way round
        {60, 30, 119, 1, "marked"},
    };
    for (auto const &drag : drags) {
        session.screen.PressMouse(drag.fromX, drag.fromY);
        session.screen.ReleaseMouse(drag.toX, drag.toY);
        session.Type(U"m");
        EXPECT_THAT(session.Status(), HasSubstr(drag.status));
    }
    session.screen.PressMouse(3, 2);
    EXPECT_TRUE(session.IsInList());
}

TEST_F(Fermentation, IsBrowsedBatchByBatch) {
    Session session(folder / "tank.project");
    session.Type(U"[[/scores t,\n\n.b>>");
    std::string const table = session.Type(U"tsone\n");
    std::string const shown = Done("show tank.project one --format csv");
    EXPECT_EQ(std::ranges::count(shown, '\n'), session.Plot()->Table().Columns() + 1) << session.Status();
    EXPECT_LT(session.Plot()->Table().Columns(), 60) << table;
    session.Type(U"q.m");
    EXPECT_THAT(session.Type(U"c"), HasSubstr("M1.Score Contrib")) << session.Status();
}

TEST_F(Browsing, RefusesWhatTheProjectRefuses) {
    MakeProject();
    Session session(folder / "a.project");
    std::filesystem::remove(folder / "a.project");
    session.Type(U"sname\n");
    EXPECT_TRUE(session.IsProblem());
    EXPECT_THAT(session.Status(), HasSubstr("a.project"));
    EXPECT_THROW(Browser(folder / "a.project"), NCError);
    BrowserScreen screen(session);
    EXPECT_THAT(TextOf(screen.Draw(10, 3)), HasSubstr("Too small"));
}

} // namespace
