#include "app/ScriptText.h"

#include "app/Output.h"
#include "app/VectorSearch.h"
#include "platform/containers/Missing.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>

namespace {

constexpr std::array<char const *, 8> colours = {"#1f5fa8", "#d9642b", "#2e8b57", "#8e4ba8",
                                                 "#b8860b", "#c0394b", "#2aa0a0", "#5f6b73"};
constexpr std::array<char const *, 12> classColours = {"#0072b2", "#d55e00", "#009e73", "#cc79a7",
                                                       "#e69f00", "#56b4e9", "#332288", "#882255",
                                                       "#999933", "#000000", "#661100", "#44aa99"};
// Disk, triangle, square, diamond, triangle on its tip, pentagon; then the same hollow.
constexpr std::array<int, 12> shapes = {7, 9, 5, 13, 11, 15, 6, 8, 4, 12, 10, 14};
constexpr std::size_t longestLabel = 20;
// About the width of a letter of an axis label, in pixels.
constexpr double letterWidth = 7.5;

} // namespace

char const *const markColour = "'#e6007e'";

std::string Quoted(std::string const &text) {
    std::string quoted = "\"";
    for (char const letter : text)
        if (letter == '"' || letter == '\\' || letter == '`')
            quoted += letter == '"' ? "\\042" : letter == '`' ? "\\140" : "\\134";
        else
            quoted += std::iscntrl(static_cast<unsigned char>(letter)) ? ' ' : letter;
    return quoted + '"';
}

std::string QuotedFormat(std::string const &text) {
    std::string format;
    for (char const letter : text)
        format.append(letter == '%' ? 2 : 1, letter);
    return Quoted(format);
}

std::string Shortened(std::string const &text) {
    if (TextWidth(text) <= longestLabel)
        return text;
    std::size_t end = 0;
    for (std::size_t letters = 0; letters < longestLabel; ++end)
        letters += (text[end] & 0xC0) != 0x80;
    return text.substr(0, end - 1) + "..";
}

std::string Number(double value) {
    char buffer[32];
    return std::string(NumberText(static_cast<float>(value), 7, buffer));
}

double RoundStep(double least) {
    double const power = std::pow(10, std::floor(std::log10(least)));
    for (double const factor : {1, 2, 5})
        if (factor * power >= least)
            return factor * power;
    return 10 * power;
}

bool IsShown(float value) {
    return !IsMissing(value) && std::isfinite(value);
}

std::string SeriesColour(std::size_t position) {
    return std::string("'") + colours[position % colours.size()] + "'";
}

std::string ClassColour(std::size_t position) {
    return std::string("'") + classColours[position % classColours.size()] + "'";
}

std::string ClassMark(std::size_t position) {
    return "pt " + std::to_string(shapes[position % shapes.size()]) + " lc rgb " + ClassColour(position);
}

std::string MarkRing() {
    return std::string("points pt 6 ps 1.5 lw 2 lc rgb ") + markColour;
}

std::string ScriptHead(PlotStyle const &style) {
    std::string const size = std::to_string(style.width) + "," + std::to_string(style.height);
    std::string text = "set encoding utf8\n";
    text += style.isPng ? "set terminal pngcairo noenhanced font 'DejaVu Sans,11' background '#ffffff' size "
                        : "set terminal svg noenhanced font 'DejaVu Sans,Arial,sans-serif,13' background "
                          "'#ffffff' size ";
    text += size + "\n"
                   "set border 3 lc rgb '#707070'\n"
                   "set tics nomirror out scale 0.6 textcolor rgb '#303030'\n"
                   "set grid xtics ytics lt 1 lc rgb '#ececec' lw 1\n"
                   "set xzeroaxis lt 1 lc rgb '#909090' lw 1\n"
                   "set rmargin 4\n"
                   "set key tmargin right horizontal samplen 2 textcolor rgb '#303030'\n";
    if (!style.title.empty())
        text += "set title " + Quoted(style.title) + "\n";
    return text;
}

std::string ItemsTitle(ColumnIDs const &items, ProjectVector::VectorTypeEnum axis) {
    std::string title = items.GetRowTitle(1);
    if (title.empty()) {
        title = ItemOf(axis);
        title.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(title.front())));
    }
    return title;
}

std::string ItemLabel(ColumnIDs const &items, std::size_t item) {
    return Shortened(items.GetName(static_cast<int>(item) + 1));
}

std::string ItemTics(ColumnIDs const &items, PlotStyle const &style, bool isBars) {
    auto const count = static_cast<std::size_t>(items.Size());
    std::size_t widest = 1;
    for (std::size_t item = 0; item < count; item += std::max<std::size_t>(1, count / 1000))
        widest = std::max(widest, TextWidth(ItemLabel(items, item)));
    double const room = (style.colouring ? 0.65 : 0.85) * style.width;
    auto const fitting = [&](double each) { return std::max<std::size_t>(2, static_cast<std::size_t>(room / each)); };
    std::size_t const level = fitting(letterWidth * static_cast<double>(widest + 3));
    bool const isTurned = isBars && count > level && count <= fitting(2.2 * letterWidth);
    std::size_t const step = isTurned ? 1 : (count + level - 1) / level;
    std::string text = isTurned ? "set lmargin 13\nset xtics rotate by 35 right (" : "set xtics (";
    for (std::size_t item = 0; item < count; item += step)
        text += (item > 0 ? "," : "") + QuotedFormat(ItemLabel(items, item)) + " " + std::to_string(item + 1);
    text += ")\n";
    if (isBars)
        text += "unset grid\nset grid ytics lt 1 lc rgb '#ececec' lw 1\n";
    return text;
}
