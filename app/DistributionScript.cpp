#include "app/DistributionScript.h"

#include "app/Failure.h"
#include "app/Output.h"
#include "app/ScriptText.h"
#include "platform/numerics/FrequencyHistogram.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

// Of the picture, inside its axes.
constexpr double widthOfPlot = 0.85;
constexpr double heightOfPlot = 0.78;
// Pixels of a point of size 1.
constexpr double pointSize = 7.5;

std::string Figure(double value) {
    char buffer[32];
    return std::string(NumberText(static_cast<float>(value), 4, buffer));
}

std::string HeadOf(std::string const &name, PlotStyle const &style) {
    return ScriptHead(style) + "set xlabel " + Quoted(name) + "\nset ylabel \"Count\"\n";
}

} // namespace

std::string HistogramScript(NCDataVector<float> const &values, std::string const &name, PlotStyle const &style) {
    FrequencyHistogram::HistogramInfo info;
    FrequencyHistogram::CreateHistogram(values, info);
    double const width = info.positions[2] - info.positions[1];
    double count = 0, most = 0;
    std::string text = HeadOf(name, style) + "$bins << EOD\n";
    for (int bin = 1; bin <= info.heights.Size(); ++bin) {
        count += info.heights[bin];
        most = std::max<double>(most, info.heights[bin]);
        text += Number(info.positions[bin]) + " " + Number(info.heights[bin]) + "\n";
    }
    double const first = info.positions[1], last = info.positions[info.positions.Size()];
    double const mean = values.GetMean(), deviation = count > 1 ? std::sqrt(values.GetSS() / (count - 1)) : 0;
    double const top = deviation > 0 ? count * width / (deviation * std::sqrt(2 * std::numbers::pi)) : 0;
    text += "EOD\nset xrange [" + Number(first - width) + ":" + Number(last + width) +
            "]\nset yrange [0:" + Number(1.08 * std::max(most, top)) +
            "]\nunset grid\nset grid ytics lt 1 lc rgb '#ececec' lw 1\n" +
            "set style fill solid 0.8 border rgb '#ffffff'\nset boxwidth " + Number(width) +
            "\nset samples 400\nplot $bins using 1:2 with boxes lc rgb " + SeriesColour(0) + " notitle";
    if (deviation > 0)
        text += ", " + Number(top) + "*exp(-0.5*((x-(" + Number(mean) + "))/" + Number(deviation) +
                ")**2) with lines lw 2 lc rgb " + SeriesColour(1) + " title " +
                Quoted("normal curve, mean " + Figure(mean) + ", SD " + Figure(deviation));
    return text + "\n";
}

std::string DotPlotScript(ProjectData const &dots, float lo, float hi, std::string const &name,
                          PlotStyle const &style) {
    std::span<float const> const places = dots.GetMatrix().Row(1), heights = dots.GetMatrix().Row(2);
    std::string points;
    std::vector<float> stacks;
    float highest = 1;
    for (std::size_t dot = 0; dot < places.size(); ++dot) {
        if (!IsShown(places[dot]))
            continue;
        points += Number(places[dot]) + " " + Number(heights[dot] - 0.5) + "\n";
        stacks.push_back(places[dot]);
        highest = std::max(highest, heights[dot]);
    }
    if (stacks.empty())
        throw Problem(ExceptionMessage::translate("There is nothing to draw: all values are missing."));
    // Dots of neighbouring stacks, and those on one another, touch at most.
    std::ranges::sort(stacks);
    float apart = hi - lo;
    for (std::size_t next = 1; next < stacks.size(); ++next)
        if (stacks[next] > stacks[next - 1])
            apart = std::min(apart, stacks[next] - stacks[next - 1]);
    double const across = widthOfPlot * style.width * apart / (hi - lo);
    double const top = std::max(highest, 4.0f) + 0.5;
    double const size = std::clamp(std::min(across, heightOfPlot * style.height / top) / pointSize, 0.2, 3.0);
    return HeadOf(name, style) + "$dots << EOD\n" + points + "EOD\nset xrange [" + Number(lo) + ":" + Number(hi) +
           "]\nset yrange [0:" + Number(top) + "]\nunset grid\nplot $dots using 1:2 with points pt 7 ps " +
           Number(size) + " lc rgb " + SeriesColour(0) + " notitle\n";
}

std::string ProbabilityScript(ProjectData const &table, std::string const &name, PlotStyle const &style) {
    std::span<float const> const values = table.GetMatrix().Row(1);
    std::vector<std::size_t> order;
    for (std::size_t item = 0; item < values.size(); ++item)
        if (IsShown(values[item]))
            order.push_back(item);
    std::ranges::stable_sort(order, {}, [&](std::size_t item) { return values[item]; });
    NCDataVector<float> sorted;
    for (std::size_t const item : order)
        sorted.push_back(values[item]);
    double const count = static_cast<double>(order.size());
    double const mean = sorted.GetMean(), deviation = count > 1 ? std::sqrt(sorted.GetSS() / (count - 1)) : 0;
    if (!(deviation > 0))
        throw Problem(ExceptionMessage::translate("A normal probability plot needs two different values at least."));
    constexpr std::size_t named = 3; // at each end
    std::string points, labels, tics;
    for (std::size_t i = 0; i < order.size(); ++i) {
        std::string const place = Number(values[order[i]]) + " " + Number((static_cast<double>(i) + 0.5) / count);
        points += place + "\n";
        if (i < named || i + named >= order.size())
            labels += place + " " + Quoted(ItemLabel(table.GetColumnIDs(), order[i])) + "\n";
    }
    for (double const percent : {0.01, 0.1, 1.0, 5.0, 20.0, 50.0, 80.0, 95.0, 99.0, 99.9, 99.99})
        tics += (tics.empty() ? "" : ", ") + QuotedFormat(Number(percent) + " %") + " invnorm(" +
                Number(percent / 100) + ")";
    return ScriptHead(style) + "set xlabel " + Quoted(name) +
           "\nset ylabel \"Normal probability\"\nset offsets graph 0.04, graph 0.04\nset key left\n$points << EOD\n" +
           points + "EOD\n$labels << EOD\n" + labels + "EOD\nset yrange [invnorm(" + Number(0.25 / count) +
           "):invnorm(" + Number(1 - 0.25 / count) + ")]\nset ytics (" + tics + ")\nplot (x-(" + Number(mean) + "))/" +
           Number(deviation) + " with lines lw 1.5 lc rgb " + SeriesColour(1) + " title " +
           Quoted("normal, mean " + Figure(mean) + ", SD " + Figure(deviation)) +
           ", $points using 1:(invnorm($2)) with points pt 7 ps 0.6 lc rgb " + SeriesColour(0) +
           " notitle, $labels using 1:(invnorm($2)):3 with labels offset 0,0.7 font \",8\" tc rgb '#555555' notitle\n";
}
