#include "app/SpectralScript.h"

#include "app/Failure.h"
#include "app/Output.h"
#include "app/ScriptText.h"

#include <algorithm>
#include <cmath>

namespace {

// The rows of a table over the numbers that its columns are named by, or over their places from 1.
struct Curves {
    std::vector<double> x;
    std::vector<std::span<float const>> rows;
    std::vector<std::string> names;
    double least = 0, most = 0; // of what is shown

    Curves(ProjectData const &table, bool byName) {
        for (int column = 1; column <= table.Columns(); ++column)
            x.push_back(byName ? std::strtod(table.GetColumnName(column, 1).c_str(), nullptr) : column);
        bool isAny = false;
        for (int row = 1; row <= table.Rows(); ++row) {
            rows.push_back(table.GetMatrix().Row(row));
            names.push_back(table.GetRowName(row));
            for (float const value : rows.back()) {
                if (!IsShown(value))
                    continue;
                least = isAny ? std::min<double>(least, value) : value;
                most = isAny ? std::max<double>(most, value) : value;
                isAny = true;
            }
        }
        if (!isAny)
            throw Problem(ExceptionMessage::translate("There is nothing to draw: all values are missing."));
    }

    // The blocks of data, and plot commands with what is drawn of each.
    std::string Data() const {
        std::string text;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            text += "$row" + std::to_string(row) + " << EOD\n";
            for (std::size_t i = 0; i < x.size(); ++i)
                text += Number(x[i]) + " " + (IsShown(rows[row][i]) ? Number(rows[row][i]) : "NaN") + "\n";
            text += "EOD\n";
        }
        return text;
    }
    std::string Plot(std::string const &style) const {
        std::string text;
        for (std::size_t row = 0; row < rows.size(); ++row)
            text += (row == 0 ? "$row" : ", $row") + std::to_string(row) + " using 1:2 " + style + " lc rgb " +
                    SeriesColour(row) + " title " + Quoted(rows.size() == 1 ? names[row] : Shortened(names[row]));
        return text;
    }
    std::string XRange() const {
        double const margin = x.size() > 1 ? (x[1] - x[0]) / 2 : 0.5;
        return "set xrange [" + Number(x.front() - margin) + ":" + Number(x.back() + margin) + "]\n";
    }
};

} // namespace

std::string CorrelationScript(ProjectData const &table, int items, PlotStyle const &style) {
    Curves const curves(table, true);
    std::string const band = Number(1.96 / std::sqrt(std::max(items, 1)));
    return ScriptHead(style) + curves.Data() + curves.XRange() +
           "set yrange [-1.05:1.05]\nset xlabel \"Lag\"\nset ylabel \"Correlation\"\n" + "plot " + band +
           " with lines dt 2 lc rgb '#888888' title \"95 % of noise\", -" + band +
           " with lines dt 2 lc rgb '#888888' notitle, " +
           curves.Plot(curves.rows.size() == 1 ? "with impulses lw 5" : "with linespoints pt 7 ps 0.5") + "\n";
}

std::string SpectrumScript(ProjectData const &table, bool inDecibel, PlotStyle const &style) {
    Curves const curves(table, true);
    constexpr double spread = 100;
    bool const isLogarithmic = !inDecibel && curves.least > 0 && curves.most > spread * curves.least;
    return ScriptHead(style) + curves.Data() + curves.XRange() + "set xlabel " +
           Quoted(table.GetColumnIDs().GetTitle()) + "\nset ylabel " + (inDecibel ? "\"Power (dB)\"" : "\"Power\"") +
           "\n" + (isLogarithmic ? "set logscale y\n" : "") + "plot " +
           curves.Plot("with linespoints lw 1.5 pt 7 ps 0.4") + "\n";
}

std::string CoefficientScript(ProjectData const &table, PlotStyle const &style) {
    Curves const curves(table, false);
    return ScriptHead(style) + curves.Data() + curves.XRange() + "set xlabel " +
           Quoted(table.GetColumnIDs().GetTitle()) + "\nset xzeroaxis lt 1 lc rgb '#888888'\nplot " +
           curves.Plot(curves.rows.size() == 1 ? "with impulses lw 2" : "with lines lw 1.5") + "\n";
}

std::string StructureScript(ProjectData const &table, NCDataVector<float> const &energy,
                            ProjectVector::VectorTypeEnum axis, PlotStyle const &style) {
    Curves const curves(table, false);
    // Each curve about its own middle, the one that varies most over the height of one.
    std::vector<double> middles;
    double height = 0;
    for (std::span<float const> const row : curves.rows) {
        auto const [least, most] = std::ranges::minmax(row);
        middles.push_back((static_cast<double>(least) + most) / 2);
        height = std::max(height, static_cast<double>(most) - least);
    }
    std::string tics, plots;
    for (std::size_t row = 0; row < curves.rows.size(); ++row) {
        auto const place = static_cast<double>(curves.rows.size() - row);
        int const scale = std::atoi(curves.names[row].substr(curves.names[row].rfind(' ') + 1).c_str());
        std::string label = curves.names[row];
        if (scale >= 1 && scale <= energy.Size()) {
            char share[32];
            std::snprintf(share, sizeof(share), ": %.1f %%", static_cast<double>(energy[scale]));
            label += share;
        }
        tics += (row == 0 ? "" : ", ") + QuotedFormat(label) + " " + Number(place);
        std::string const number = std::to_string(row);
        plots += (row == 0 ? "$row" : ", $row") + number + " using 1:(" + Number(place) + " + 0.9*($2 - (" +
                 Number(middles[row]) + "))/" + Number(height > 0 ? height : 1) + ") with lines lw 1.5 lc rgb " +
                 SeriesColour(row) + " notitle";
    }
    return ScriptHead(style) + curves.Data() + curves.XRange() + "set xlabel " +
           Quoted(ItemsTitle(table.GetColumnIDs(), axis)) + "\n" + ItemTics(table.GetColumnIDs(), style, false) +
           "set ytics (" + tics + ")\nset yrange [0.4:" + Number(static_cast<double>(curves.rows.size()) + 0.6) +
           "]\nplot " + plots + "\n";
}
