#include "app/ControlChartScript.h"

#include "app/Failure.h"
#include "app/Output.h"
#include "app/ScriptText.h"
#include "platform/containers/Missing.h"
#include "platform/numerics/RunRules.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr char const *centreStyle = "lines lc rgb '#2e8b57' lw 1.4";
constexpr char const *warningStyle = "lines lc rgb '#c98a1b' lw 1.6 dt 3";
constexpr char const *limitStyle = "lines lc rgb '#c0392b' lw 1.4 dt 2";
constexpr char const *ruleTexts[] = {"1: beyond 3 SD", "2: two of three beyond 2 SD", "3: four of five beyond 1 SD",
                                     "4: eight on one side"};
// The number of what is outside of limits that come without rules.
constexpr int outside = 5;
// Of a label at the edge, in pixels.
constexpr double labelHeight = 15;

// What is left by rounding is 0 beside numbers of the size of `scale`.
std::string Figure(double value, double scale = 0) {
    char buffer[32];
    return std::string(NumberText(std::abs(value) < 1e-6 * scale ? 0.0f : static_cast<float>(value), 4, buffer));
}

class Script {
public:
    Script(ControlChart const &chart, ControlChartData const &settings, PlotStyle const &style)
        : m_chart(chart), m_settings(settings), m_style(style) {}

    std::string Write(ColumnIDs const &items, ProjectVector::VectorTypeEnum axis, std::string const &name) {
        Collect();
        if (!(m_low <= m_high))
            throw Problem(ExceptionMessage::translate("There is nothing to draw: all values are missing."));
        std::string text = ScriptHead(m_style) + "unset xzeroaxis\nset rmargin 17\nset xlabel " +
                           Quoted(ItemsTitle(items, axis)) + "\nset ylabel " + Quoted(m_title + name) +
                           "\nset xrange [" + Number(Left()) + ":" + Number(Right()) + "]\n" +
                           ItemTics(items, m_style, false);
        double const margin = m_high > m_low ? 0.08 * (m_high - m_low) : 1.0;
        m_low -= margin;
        m_high += margin;
        text += "set yrange [" + Number(m_low) + ":" + Number(m_high) + "]\n";
        WriteOutside();
        if (!m_marked.empty())
            Add(m_marked, MarkRing(), "marked");
        return text + EdgeLabels() + m_blocks + "plot " + m_plots + "\n";
    }

private:
    double Left() const { return 0.5; }
    double Right() const { return m_chart.Points() + 0.5; }

    void Collect() {
        bool const hasEWMA = m_settings.GetControlChartType() == ControlChartData::EWMA ||
                             m_settings.GetControlChartType() == ControlChartData::ShewhartAndEWMA;
        if (m_settings.GetControlChartType() == ControlChartData::CUSUM)
            return AddSums();
        if (m_settings.GetControlChartType() == ControlChartData::Shewhart &&
            m_settings.GetShewhartType() != ControlChartData::Mean)
            return AddSpreads();
        if (m_settings.GetControlChartType() != ControlChartData::EWMA)
            AddMeans(hasEWMA);
        if (hasEWMA)
            AddEWMA();
    }

    void AddMeans(bool isBesideEWMA) {
        ControlChart::Limits const wide = m_chart.GetMeanLimits(), narrow = m_chart.GetMeanLimits(2);
        m_title = m_chart.GetSubgroupSize() > 1 ? "Mean of " : "";
        AddFigure(limitStyle, "UCL", wide.upper);
        AddFigure(limitStyle, "LCL", wide.lower);
        if (!isBesideEWMA) {
            AddFigure(warningStyle, "+2 SD", narrow.upper);
            AddFigure(warningStyle, "-2 SD", narrow.lower);
            AddFigure(centreStyle, "centre", wide.centre);
        }
        NCDataVector<float> const &means = m_chart.GetMeanVector();
        AddPoints(means, isBesideEWMA ? "means" : "");
        std::vector<int> const rules = RunRules(means.Values(), wide.centre, m_chart.GetStdDevOfPoint());
        for (std::size_t point = 0; point < rules.size(); ++point)
            Mark(point, means.Values()[point], rules[point]);
    }

    void AddSpreads() {
        bool const isRange = m_settings.GetShewhartType() == ControlChartData::Range;
        ControlChart::Limits const limits = isRange ? m_chart.GetRangeLimits() : m_chart.GetStdDevLimits();
        m_title = isRange ? "Range of " : "Std.Dev. of ";
        AddFigure(limitStyle, "UCL", limits.upper);
        AddFigure(limitStyle, "LCL", limits.lower);
        if (!IsMissing(static_cast<float>(limits.upper))) {
            double const narrow = 2.0 / 3 * (limits.upper - limits.centre);
            AddFigure(warningStyle, "+2 SD", limits.centre + narrow);
            // Where it would lie below 0 there is none.
            if (limits.centre > narrow)
                AddFigure(warningStyle, "-2 SD", limits.centre - narrow);
        }
        AddFigure(centreStyle, "centre", limits.centre);
        NCDataVector<float> const &spreads = isRange ? m_chart.GetRangeVector() : m_chart.GetStdDevVector();
        AddPoints(spreads, "");
        for (std::size_t point = 0; point < spreads.size(); ++point)
            if (spreads.Values()[point] > limits.upper || spreads.Values()[point] < limits.lower)
                Mark(point, spreads.Values()[point], outside);
    }

    void AddEWMA() {
        bool const isAlone = m_settings.GetControlChartType() == ControlChartData::EWMA;
        if (isAlone)
            m_title = "EWMA (lambda " + Figure(m_chart.GetEWMALambda()) + ") of ";
        double const target = m_chart.GetTarget();
        NCDataVector<float> const wide = m_chart.GetEWMAHalfWidths(), narrow = m_chart.GetEWMAHalfWidths(2);
        std::string const prefix = isAlone ? "" : "EWMA ";
        AddCurves(limitStyle, prefix + "UCL", prefix + "LCL", target, wide);
        if (isAlone)
            AddCurves(warningStyle, "+2 SD", "-2 SD", target, narrow);
        AddFigure(centreStyle, "centre", target);
        NCDataVector<float> const averages = m_chart.GetEWMA();
        AddPoints(averages, isAlone ? "" : "EWMA (lambda " + Figure(m_chart.GetEWMALambda()) + ")");
        for (std::size_t point = 0; point < averages.size(); ++point)
            if (std::abs(averages.Values()[point] - target) > wide.Values()[point])
                Mark(point, averages.Values()[point], outside);
    }

    // The low sum runs downwards.
    void AddSums() {
        m_title = "CUSUM of ";
        double const interval = m_chart.GetCuSumInterval();
        if (IsMissing(static_cast<float>(interval)))
            return;
        AddAcross(limitStyle, "H " + Figure(interval), interval);
        AddAcross(limitStyle, "-H", -interval);
        AddAcross(centreStyle, "target " + Figure(m_chart.GetTarget(), interval), 0);
        for (int const sign : {1, -1}) {
            NCDataVector<float> sums = sign > 0 ? m_chart.GetHighCuSum() : m_chart.GetLowCuSum();
            for (float &sum : sums.MutableValues())
                if (!IsMissing(sum))
                    sum = sum == 0 ? 0 : static_cast<float>(sign) * sum;
            AddPoints(sums, sign > 0 ? "high CUSUM" : "low CUSUM");
            for (std::size_t point = 0; point < sums.size(); ++point)
                if (static_cast<float>(sign) * sums.Values()[point] > interval)
                    Mark(point, sums.Values()[point], outside);
        }
    }

    void Mark(std::size_t point, float value, int rule) {
        if (rule > 0 && IsShown(value))
            m_marks[static_cast<std::size_t>(rule)] +=
                std::to_string(point + 1) + " " + Number(value) + " " + std::to_string(rule) + "\n";
    }

    void Cover(double value) {
        m_low = std::min(m_low, value);
        m_high = std::max(m_high, value);
    }

    // A block of data, and how it is drawn; without a name it has no line in the key.
    void Add(std::string const &points, std::string const &style, std::string const &name) {
        std::string const block = "$d" + std::to_string(m_number++);
        m_blocks += block + " << EOD\n" + points + "EOD\n";
        m_plots += (m_plots.empty() ? "" : ", ") + block + " using 1:2 with " + style +
                   (name.empty() ? " notitle" : " title " + Quoted(name));
    }

    // A limit or a centre, unless it is missing, and its label.
    void AddFigure(char const *style, std::string const &label, double value) {
        if (!IsMissing(static_cast<float>(value)))
            AddAcross(style, label + " " + Figure(value, m_chart.GetStdDevOfPoint()), value);
    }

    void AddAcross(char const *style, std::string const &label, double value) {
        Add(Number(Left()) + " " + Number(value) + "\n" + Number(Right()) + " " + Number(value) + "\n", style, "");
        AddEdge(label, value);
    }

    void AddCurves(char const *style, std::string const &upper, std::string const &lower, double centre,
                   NCDataVector<float> const &widths) {
        if (widths.empty() || IsMissing(widths.Values().back()))
            return;
        for (int const sign : {1, -1}) {
            std::string points;
            double value = centre;
            for (std::size_t point = 0; point < widths.size(); ++point) {
                value = centre + sign * widths.Values()[point];
                points += std::to_string(point + 1) + " " + Number(value) + "\n";
            }
            Add(points + Number(Right()) + " " + Number(value) + "\n", style, "");
            AddEdge((sign > 0 ? upper : lower) + " " + Figure(value), value);
        }
    }

    void AddPoints(NCDataVector<float> const &values, std::string const &name) {
        std::string points;
        for (std::size_t point = 0; point < values.size(); ++point) {
            bool const isShown = IsShown(values.Values()[point]);
            points += isShown ? std::to_string(point + 1) + " " + Number(values.Values()[point]) + "\n" : "\n";
            if (isShown)
                Cover(values.Values()[point]);
            if (isShown && !m_style.marked.empty() && m_style.marked[point])
                m_marked += std::to_string(point + 1) + " " + Number(values.Values()[point]) + "\n";
        }
        Add(points,
            std::string(m_chart.Points() <= 250 ? "linespoints pt 7 ps 0.5 lw 1.2" : "lines lw 1") + " lc rgb " +
                SeriesColour(m_curves++),
            name);
    }

    void WriteOutside() {
        for (std::size_t rule = 1; rule < std::size(m_marks); ++rule) {
            if (m_marks[rule].empty())
                continue;
            Add(m_marks[rule], "points pt 6 ps 1.3 lw 1.5 lc rgb '#c0392b'",
                rule == outside ? "outside" : ruleTexts[rule - 1]);
            if (rule != outside)
                m_plots += ", $d" + std::to_string(m_number - 1) +
                           " using 1:2:3 with labels offset 0,0.9 font ',9' textcolor rgb '#c0392b' notitle";
        }
    }

    struct Edge {
        std::string label;
        double value;
    };

    void AddEdge(std::string label, double value) {
        Cover(value);
        m_edges.push_back({std::move(label), value});
    }

    // Labels of the lines at the right edge, moved apart where they would cover each other.
    std::string EdgeLabels() {
        std::ranges::stable_sort(m_edges, {}, &Edge::value);
        double const apart = labelHeight * (m_high - m_low) / (0.75 * m_style.height);
        std::string text;
        double least = m_low;
        for (Edge const &edge : m_edges) {
            double const at = std::max(edge.value, least);
            text += "set label " + Quoted(edge.label) + " at graph 1.01, first " + Number(at) +
                    " left font ',9' textcolor rgb '#404040'\n";
            least = at + apart;
        }
        return text;
    }

    ControlChart const &m_chart;
    ControlChartData const &m_settings;
    PlotStyle const &m_style;
    std::string m_title, m_blocks, m_plots;
    std::string m_marks[outside + 1]; // points by rule
    std::string m_marked;             // points of marked items
    std::vector<Edge> m_edges;
    std::size_t m_curves = 0;
    int m_number = 0;
    double m_low = HUGE_VAL, m_high = -HUGE_VAL;
};

} // namespace

std::string ControlChartScript(ControlChart const &chart, ControlChartData const &settings, ColumnIDs const &items,
                               ProjectVector::VectorTypeEnum axis, std::string const &name, PlotStyle const &style) {
    return Script(chart, settings, style).Write(items, axis, name);
}
