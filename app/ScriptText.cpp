#include "app/ScriptText.h"

#include "app/Output.h"
#include "platform/containers/Missing.h"

#include <array>
#include <cctype>
#include <cmath>

namespace {

constexpr std::array<char const *, 8> colours = {"#1f5fa8", "#d9642b", "#2e8b57", "#8e4ba8",
                                                 "#b8860b", "#c0394b", "#2aa0a0", "#5f6b73"};
constexpr std::size_t longestLabel = 20;

} // namespace

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
