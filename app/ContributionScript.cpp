#include "app/ContributionScript.h"

#include "app/ScriptText.h"

#include <algorithm>

namespace {

// Of a bar with its name, in pixels.
constexpr double roomOfBar = 18;
// Of the picture, for the bars.
constexpr double shareOfBars = 0.47;
constexpr double stepsOfBars = 4; // along their axis, about

std::string Block(std::string const &name, std::string const &lines) {
    return name + " << EOD\n" + lines + "EOD\n";
}

std::string BarsPanel(Contribution const &contribution, std::size_t count) {
    std::size_t const all = contribution.bars.size();
    std::string const cut =
        count < all ? " (" + std::to_string(count) + " largest of " + std::to_string(all) + ")" : "";
    std::string lines, tics;
    float low = 0, high = 0;
    for (std::size_t bar = 0; bar < count; ++bar) {
        float const value = contribution.bars[bar].value;
        low = std::min(low, value);
        high = std::max(high, value);
        lines += std::to_string(bar + 1) + " " + Number(value) + "\n";
        tics += (bar > 0 ? ", " : "") + QuotedFormat(Shortened(contribution.bars[bar].variable)) + " " +
                std::to_string(bar + 1);
    }
    std::string const step = high > low ? Number(RoundStep((high - low) / stepsOfBars)) : "1";
    return "set size " + Number(shareOfBars) + ",0.94\nset origin 0,0\nset xtics " + step + "\nset xlabel " +
           Quoted("contribution" + cut) + "\nset yrange [" + Number(static_cast<double>(count) + 0.6) +
           ":0.4]\nset ytics (" + tics +
           ")\nset yzeroaxis lt 1 lc rgb '#909090' lw 1\nset style fill solid 0.9 noborder\n" + Block("$bars", lines) +
           "plot $bars using (0.5*$2):1:(0.5*abs($2)):(0.36) with boxxyerror lc rgb " + SeriesColour(0) + " notitle\n";
}

// How a layer is drawn; `curves` counts the curves so far.
std::string StyleOf(VariableLayer::Kind kind, std::size_t &curves) {
    switch (kind) {
    case VariableLayer::Others:
        return "points pt 7 ps 0.5 lc rgb '#b0b0b0'";
    case VariableLayer::Average:
        return "lines lc rgb '#404040' lw 1.6";
    case VariableLayer::Limit:
        return "lines lc rgb '#c0392b' lw 1.4 dt 2";
    case VariableLayer::Curve:
        return "lines lc rgb " + SeriesColour(curves++) + " lw 1.8";
    case VariableLayer::Reference:
        return "points pt 6 ps 0.8 lc rgb " + SeriesColour(0);
    default:
        return "points pt 7 ps 0.6 lc rgb '#c0392b'";
    }
}

std::string VariablePanel(std::string const &variable, VariableView const &view) {
    std::string text =
        "set size " + Number(1 - shareOfBars) + ",0.94\nset origin " + Number(shareOfBars) +
        ",0\nunset yzeroaxis\nset offsets graph 0.02,graph 0.02,graph 0.05,graph 0.05\nset xlabel " +
        Quoted(view.axis) + "\nset ylabel " + Quoted(variable) +
        "\nset xrange [*:*] noextend\nset yrange [*:*] noreverse\nset xtics autofreq\nset ytics autofreq\n";
    std::string plots;
    std::size_t curves = 0;
    for (std::size_t layer = 0; layer < view.layers.size(); ++layer) {
        VariableLayer const &each = view.layers[layer];
        std::string lines;
        bool isEmpty = true;
        for (std::size_t point = 0; point < each.x.size(); ++point) {
            bool const isThere = IsShown(each.y[point]);
            // An empty line breaks a curve.
            lines += isThere ? Number(each.x[point]) + " " + Number(each.y[point]) + "\n" : "\n";
            isEmpty = isEmpty && !isThere;
        }
        std::string const style = StyleOf(each.kind, curves);
        if (isEmpty)
            continue;
        std::string const block = "$layer" + std::to_string(layer);
        text += Block(block, lines);
        plots += (plots.empty() ? "" : ", ") + block + " using 1:2 with " + style +
                 (each.name.empty() ? " notitle" : " title " + Quoted(each.name));
    }
    return plots.empty() ? "" : text + "plot " + plots + "\n";
}

} // namespace

std::size_t RoomForBars(PlotStyle const &style) {
    return std::max<std::size_t>(1, static_cast<std::size_t>(0.8 * style.height / roomOfBar));
}

std::string ContributionScript(Contribution const &contribution, std::size_t bars, VariableView const &view,
                               PlotStyle const &style) {
    PlotStyle untitled = style;
    untitled.title.clear();
    return ScriptHead(untitled) + "set multiplot title " +
           Quoted(style.title.empty() ? contribution.title : style.title) + "\n" + BarsPanel(contribution, bars) +
           VariablePanel(contribution.bars.front().variable, view) + "unset multiplot\n";
}
