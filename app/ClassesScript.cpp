#include "app/ClassesScript.h"

#include "app/Failure.h"
#include "app/ScriptText.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

// A cell that is smaller, in pixels, has no text.
constexpr double roomOfCount = 28;
constexpr double roomOfShare = 60;
// Names that have less room along the axis are turned.
constexpr double roomOfName = 110;
constexpr double leastShade = 0.15;
constexpr std::size_t mostInside = 5;

// From white to blue, or to red for what is taken for another class.
std::string Shade(double share, bool isRight) {
    constexpr int blue[] = {0x1f, 0x5f, 0xa8}, red[] = {0xc0, 0x39, 0x2b};
    int colour = 0;
    for (int part = 0; part < 3; ++part)
        colour = colour * 256 + static_cast<int>(std::lround(255 - share * (255 - (isRight ? blue : red)[part])));
    return std::to_string(colour);
}

std::string Tics(std::vector<std::string> const &names) {
    std::string tics;
    for (std::size_t i = 0; i < names.size(); ++i)
        tics += (i == 0 ? "(" : ", ") + QuotedFormat(Shortened(names[i])) + " " + std::to_string(i + 1);
    return tics + ")";
}

std::string Percent(double share) {
    return Number(std::round(1000 * share) / 10) + " %";
}

} // namespace

std::string ConfusionScript(std::vector<std::string> const &classes, engine::ConfusionTable const &table,
                            std::string const &by, PlotStyle const &style) {
    double const count = static_cast<double>(classes.size());
    double const room = 0.75 * std::min(style.width, style.height) / count; // of a cell
    std::string const range = "[0.5:" + Number(count + 0.5) + "]";
    std::string text = ScriptHead(style) + "unset grid\nunset key\nset border 15\nset tics scale 0\nset size square\n" +
                       "set xrange " + range + "\nset yrange [" + Number(count + 0.5) + ":0.5]\nset xtics " +
                       (room < roomOfName ? "rotate by 35 right " : "") + Tics(classes) + "\nset ytics " +
                       Tics(classes) + "\nset xlabel " + Quoted("predicted class, " + by) +
                       "\nset ylabel \"true class\"\nset style fill solid 1 border lc rgb '#d0d0d0'\n";
    std::string cells;
    std::string labels;
    for (std::size_t row = 0; row < classes.size(); ++row)
        for (std::size_t column = 0; column < classes.size(); ++column) {
            int const number = table.Count(row, column);
            double const share = table.SizeOf(row) == 0 ? 0 : static_cast<double>(number) / table.SizeOf(row);
            std::string const place = std::to_string(column + 1) + " " + std::to_string(row + 1);
            // A single one is still seen.
            double const depth = number > 0 ? std::max(share, leastShade) : 0;
            cells += place + " " + Shade(depth, row == column) + "\n";
            if (room < roomOfCount || number == 0)
                continue;
            std::string const shown =
                room < roomOfShare ? std::to_string(number) : std::to_string(number) + "\\n" + Percent(share);
            labels += "set label \"" + shown + "\" at " + std::to_string(column + 1) + "," + std::to_string(row + 1) +
                      " center front textcolor rgb " + (share > 0.5 ? "'#ffffff'" : "'#303030'") + "\n";
        }
    return text + labels + "$cells << EOD\n" + cells +
           "EOD\nplot $cells using 1:2:($1-0.5):($1+0.5):($2-0.5):($2+0.5):3 with boxxyerror lc rgb variable\n";
}

std::string RocScript(std::vector<std::string> const &classes, std::vector<engine::RocCurve> const &curves,
                      std::string const &by, PlotStyle const &style) {
    // The key of a few has room below the curves.
    std::string const key = curves.size() > mostInside ? "outside right center" : "at graph 0.97,0.05 bottom right";
    std::string text = ScriptHead(style) + "set size square\nset xrange [-0.02:1.02]\nset yrange [-0.02:1.02]\n" +
                       "unset rmargin\nset key " + key + " vertical Left reverse\nset xtics 0.2\nset ytics 0.2\n" +
                       "set xlabel " + Quoted("1 - specificity, " + by) + "\nset ylabel \"sensitivity\"\n" +
                       "set arrow from 0,0 to 1,1 nohead lc rgb '#909090' lw 1 dt 2\n";
    std::string plots;
    for (std::size_t each = 0; each < curves.size(); ++each) {
        if (curves[each].points.empty())
            continue;
        std::string const block = "$d" + std::to_string(each);
        text += block + " << EOD\n";
        for (engine::RocCurve::Point const &point : curves[each].points)
            text += Number(point.falsePositives) + " " + Number(point.truePositives) + "\n";
        text += "EOD\n";
        char area[16];
        std::snprintf(area, sizeof area, "%.3f", curves[each].area);
        plots += (plots.empty() ? "" : ", ") + block + " using 1:2 with lines lw 2 lc rgb " + SeriesColour(each) +
                 " title " + Quoted(Shortened(classes[each]) + ", area " + area);
    }
    if (plots.empty())
        throw Problem(
            ExceptionMessage::translate("There is no curve to draw: no class has observations beside others."));
    return text + "plot " + plots + "\n";
}
