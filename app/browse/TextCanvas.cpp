#include "app/browse/TextCanvas.h"

#include <boost/locale/encoding_utf.hpp>

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <sstream>

namespace {

constexpr char32_t firstBraille = 0x2800, lastBraille = 0x28FF;
constexpr char32_t ellipsis = 0x2026, fullBlock = 0x2588, upperHalf = 0x2580, lowestBlock = 0x2581;

std::u32string LettersOf(std::string_view text) {
    return boost::locale::conv::utf_to_utf<char32_t>(text.data(), text.data() + text.size());
}

char32_t Shown(char32_t letter) {
    return letter < 0x20 || (letter >= 0x7F && letter < 0xA0) ? U' ' : letter;
}

// What the locale knows nothing about takes one.
int CellsOf(char32_t letter) {
    int const cells = wcwidth(static_cast<wchar_t>(letter));
    return cells < 0 ? 1 : cells;
}

int CellsOf(std::u32string const &letters) {
    int cells = 0;
    for (char32_t const letter : letters)
        cells += CellsOf(Shown(letter));
    return cells;
}

bool IsBraille(char32_t glyph) {
    return glyph >= firstBraille && glyph <= lastBraille;
}

} // namespace

Ink InkOfSeries(std::size_t series) {
    auto const first = static_cast<std::size_t>(Ink::FirstSeries);
    return static_cast<Ink>(first + series % (static_cast<std::size_t>(Ink::Count) - first));
}

int CellsOf(std::string_view text) {
    return CellsOf(LettersOf(text));
}

std::vector<std::string> Wrapped(std::string_view text, int width) {
    std::vector<std::string> lines;
    std::istringstream paragraphs{std::string(text)};
    for (std::string paragraph; std::getline(paragraphs, paragraph);) {
        lines.emplace_back();
        std::istringstream words(paragraph);
        for (std::string word; words >> word;) {
            if (!lines.back().empty() && CellsOf(lines.back()) + 1 + CellsOf(word) > width)
                lines.emplace_back();
            lines.back() += (lines.back().empty() ? "" : " ") + word;
        }
    }
    return lines;
}

TextCanvas::TextCanvas(int width, int height)
    : m_width(std::max(width, 0)), m_height(std::max(height, 0)),
      m_cells(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height)) {}

bool TextCanvas::IsFree(int x, int y, int width) const {
    if (!IsInside(x, y) || !IsInside(x + width - 1, y))
        return false;
    auto const first = m_cells.begin() + static_cast<std::ptrdiff_t>(Index(x, y));
    return std::all_of(first, first + width, [](Cell const &cell) { return cell.glyph == U' '; });
}

int TextCanvas::Write(int x, int y, std::string_view text, Ink ink, int width) {
    std::u32string const letters = LettersOf(text);
    int const whole = CellsOf(letters);
    int const room = whole > width ? width - 1 : width;
    int taken = 0;
    for (char32_t const letter : letters) {
        int const cells = CellsOf(Shown(letter));
        if (cells == 0)
            continue;
        if (taken + cells > room)
            break;
        Put(x + taken, y, Shown(letter), ink);
        if (cells == 2)
            Put(x + taken + 1, y, 0, ink);
        taken += cells;
    }
    if (whole > width && width > 0)
        Put(x + taken++, y, ellipsis, ink);
    return taken;
}

void TextCanvas::WriteBefore(int x, int y, std::string_view text, Ink ink, int width) {
    Write(x - std::min(CellsOf(text), width), y, text, ink, width);
}

void TextCanvas::Put(int x, int y, char32_t glyph, Ink ink) {
    if (IsInside(x, y))
        m_cells[Index(x, y)] = {glyph, ink};
}

void TextCanvas::Fill(int x, int y, int width, char32_t glyph, Ink ink) {
    for (int i = 0; i < width; ++i)
        Put(x + i, y, glyph, ink);
}

void TextCanvas::Colour(int x, int y, int width, Ink ink) {
    for (int i = x; i < x + width; ++i)
        if (IsInside(i, y))
            m_cells[Index(i, y)].ink = ink;
}

void TextCanvas::Dot(int x, int y, Ink ink) {
    if (x < 0 || y < 0 || !IsInside(x / dotsAcross, y / dotsDown))
        return;
    // The dots of a cell are numbered down its columns; those of the lowest row came later.
    constexpr unsigned bits[dotsDown][dotsAcross] = {{0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}};
    Cell &cell = m_cells[Index(x / dotsAcross, y / dotsDown)];
    if (!IsBraille(cell.glyph))
        cell.glyph = firstBraille;
    cell.glyph |= bits[y % dotsDown][x % dotsAcross];
    cell.ink = ink;
}

void TextCanvas::Line(int fromX, int fromY, int toX, int toY, Ink ink) {
    int const steps = std::max({std::abs(toX - fromX), std::abs(toY - fromY), 1});
    auto const between = [steps](int from, int to, int step) {
        int const twice = 2 * (to - from) * step + (to < from ? -steps : steps);
        return from + twice / (2 * steps);
    };
    for (int step = 0; step <= steps; ++step)
        Dot(between(fromX, toX, step), between(fromY, toY, step), ink);
}

void TextCanvas::Bar(int x, int base, int parts, int width, Ink ink) {
    if (parts >= 0) {
        for (int i = 0; i < parts / partsOfCell; ++i)
            Fill(x, base - i, width, fullBlock, ink);
        if (int const rest = parts % partsOfCell; rest > 0)
            Fill(x, base - parts / partsOfCell, width, lowestBlock + static_cast<char32_t>(rest - 1), ink);
        return;
    }
    for (int i = 0; i < -parts / partsOfCell; ++i)
        Fill(x, base + 1 + i, width, fullBlock, ink);
    // There are no eighths that hang from the top of a cell.
    if (-parts % partsOfCell >= partsOfCell / 2)
        Fill(x, base + 1 - parts / partsOfCell, width, upperHalf, ink);
}

std::string TextCanvas::Row(int y) const {
    std::u32string letters;
    for (int x = 0; x < m_width; ++x)
        if (char32_t const glyph = At(x, y).glyph; glyph != 0)
            letters += glyph;
    letters.erase(letters.find_last_not_of(U' ') + 1);
    return boost::locale::conv::utf_to_utf<char>(letters);
}
