#pragma once

#include <string>
#include <string_view>
#include <vector>

// What a cell shows, which is told by colour where there are colours.
enum class Ink : unsigned char {
    Plain,
    Faint,
    Heading,
    Chosen,
    Marked,
    Cursor,
    Problem,
    FirstSeries, // and those of the series behind it
    Count = FirstSeries + 6
};
Ink InkOfSeries(std::size_t series);

// A picture of character cells, from 0 at the top left. What is outside is left out without a word. Lines and points
// are made of braille characters, each of which holds 2 x 4 dots.
class TextCanvas {
public:
    struct Cell {
        char32_t glyph = U' '; // 0 behind a character of two cells
        Ink ink = Ink::Plain;
    };

    static constexpr int dotsAcross = 2, dotsDown = 4;
    static constexpr int partsOfCell = 8;

    TextCanvas(int width, int height);

    int Width() const { return m_width; }
    int Height() const { return m_height; }
    Cell const &At(int x, int y) const { return m_cells[Index(x, y)]; }
    // Nothing is written in these cells, all of which are inside.
    bool IsFree(int x, int y, int width) const;

    // As much of the text as so many cells hold, with an ellipsis for the rest; answers how many it took. Control
    // characters are shown as blanks, bytes that are no UTF-8 are left out.
    int Write(int x, int y, std::string_view text, Ink ink, int width);
    // Ending in the cell before x.
    void WriteBefore(int x, int y, std::string_view text, Ink ink, int width);
    void Put(int x, int y, char32_t glyph, Ink ink);
    void Fill(int x, int y, int width, char32_t glyph, Ink ink);
    // The same characters in another ink.
    void Colour(int x, int y, int width, Ink ink);

    // Takes the place of a character that is no dot.
    void Dot(int x, int y, Ink ink);
    void Line(int fromX, int fromY, int toX, int toY, Ink ink);
    // A bar that stands on the cells at `base`, or hangs below where `parts` (eighths of a cell) are negative.
    void Bar(int x, int base, int parts, int width, Ink ink);

    // UTF-8, without blanks at the end.
    std::string Row(int y) const;

private:
    bool IsInside(int x, int y) const { return x >= 0 && x < m_width && y >= 0 && y < m_height; }
    std::size_t Index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) + static_cast<std::size_t>(x);
    }

    int m_width, m_height;
    std::vector<Cell> m_cells;
};

// How many cells a text takes.
int CellsOf(std::string_view text);
// The text in lines of at most so many cells, broken between words.
std::vector<std::string> Wrapped(std::string_view text, int width);
