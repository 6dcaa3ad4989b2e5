#include "app/ChartScript.h"

#include "app/Failure.h"
#include "app/Output.h"
#include "app/ScriptText.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

// Of the axis, in pixels for each label, and from a label to that of the next phase.
constexpr double roomOfTic = 40;
constexpr double marginOfTic = 15;
// By how much of a step a maturity may miss a round number.
constexpr double tolerance = 1e-5;
// Of a bar with its name, in pixels; the batches with the smallest sums are left out where there is no room.
constexpr double roomOfBar = 18;

// Where a maturity lies among those of the points, from 0.
double PlaceOf(std::vector<float> const &maturity, double value) {
    auto const after = std::ranges::find_if(maturity, [value](float each) { return each >= value; });
    if (after == maturity.begin())
        return 0;
    if (after == maturity.end())
        return static_cast<double>(maturity.size() - 1);
    double const before = *std::prev(after);
    return static_cast<double>(after - maturity.begin() - 1) + (value - before) / (*after - before);
}

// Where the phases stand on the common axis of points.
class Places {
public:
    explicit Places(std::vector<ChartPhase> const &phases) {
        std::size_t points = 0;
        for (ChartPhase const &phase : phases)
            points += phase.maturity.size();
        m_gap = std::max(1.0, 0.02 * static_cast<double>(points));
        for (ChartPhase const &phase : phases) {
            m_starts.push_back(m_end);
            m_end += static_cast<double>(phase.maturity.size() - 1) + m_gap;
        }
    }

    double Of(std::size_t phase, std::size_t point) const { return m_starts[phase] + static_cast<double>(point); }
    double Border(std::size_t phase) const { return m_starts[phase] - 0.5 * m_gap; }
    double End() const { return m_end - 0.5 * m_gap; }

private:
    std::vector<double> m_starts;
    double m_gap = 0;
    double m_end = 0;
};

class Script {
public:
    Script(std::vector<ChartPhase> const &phases, ChartQuestion const &question, std::vector<std::string> const &chosen,
           PlotStyle const &style)
        : m_phases(phases), m_question(question), m_chosen(chosen), m_style(style), m_places(phases) {}

    std::string Write() {
        m_text = ScriptHead(m_style) + "set key bmargin center horizontal\nset ylabel " + Quoted(m_question.vector) +
                 "\nset xlabel " + Quoted(m_phases.front().maturityName) + "\nset xrange [" +
                 Number(m_places.Border(0)) + ":" + Number(m_places.End()) + "]\n";
        SetRange();
        WriteTics();
        if (m_phases.size() > 1)
            WritePhaseNames();
        m_style.colouring ? WriteClasses() : WriteCurves();
        WriteChosen();
        WriteMarks();
        WriteLimits();
        m_text += "plot " + m_plots.substr(2) + "\n"; // without the comma in front
        return std::move(m_text);
    }

private:
    bool IsChosen(BatchCurve const &curve) const { return std::ranges::count(m_chosen, curve.batch) > 0; }
    // Its scale counts.
    bool IsFramed(BatchCurve const &curve) const { return m_chosen.empty() || IsChosen(curve); }

    void SetRange() {
        double low = HUGE_VAL, high = -HUGE_VAL;
        auto const include = [&](std::vector<float> const &values) {
            for (float const value : values)
                if (IsShown(value)) {
                    low = std::fmin(low, value);
                    high = std::fmax(high, value);
                }
        };
        for (ChartPhase const &phase : m_phases) {
            for (std::vector<float> const &values : {phase.average, phase.lower, phase.upper})
                include(values);
            for (BatchCurve const &curve : phase.curves)
                if (IsFramed(curve))
                    include(curve.values);
        }
        if (low > high)
            throw Problem(ExceptionMessage::translate("There is nothing to draw: all values are missing."));
        double const margin = high > low ? 0.05 * (high - low) : 1;
        // What has no lower limit is never below 0.
        double const bottom = m_phases.front().lower.empty() ? 0 : low - margin;
        m_text += "set yrange [" + Number(bottom) + ":" + Number(high + margin) + "]\n";
    }

    // Round maturities, each phase by its own.
    void WriteTics() {
        std::string tics;
        double const pixels = 0.85 * m_style.width / m_places.End(); // of one point
        for (std::size_t number = 0; number < m_phases.size(); ++number) {
            std::vector<float> const &maturity = m_phases[number].maturity;
            double const most = std::max(1.0, std::floor(pixels * static_cast<double>(maturity.size()) / roomOfTic));
            double const range = maturity.back() - maturity.front();
            double const step = range > 0 ? RoundStep(range / most) : 1;
            double const end = number + 1 < m_phases.size() ? m_places.Border(number + 1) : HUGE_VAL;
            double const last = maturity.back() / step + tolerance;
            double const first = std::ceil(maturity.front() / step - tolerance) + 0.0; // which makes 0 of -0
            for (double count = first; count <= last; ++count) {
                double const at = m_places.Of(number, 0) + PlaceOf(maturity, count * step);
                if ((end - at) * pixels > marginOfTic)
                    tics += ", " + QuotedFormat(Number(count * step)) + " " + Number(at);
            }
        }
        m_text += "set xtics (" + tics.substr(std::min<std::size_t>(2, tics.size())) + ")\n";
    }

    void WritePhaseNames() {
        m_text += m_style.title.empty() ? "set tmargin 2.5\n" : "set tmargin 3.8\n";
        for (std::size_t number = 0; number < m_phases.size(); ++number) {
            double const middle = m_places.Of(number, m_phases[number].maturity.size() / 2);
            m_text += "set label " + Quoted(Shortened(m_phases[number].name)) + " at " + Number(middle) +
                      ",graph 1 center offset 0,0.7 textcolor rgb '#303030'\n";
            if (number > 0)
                m_text += "set arrow from " + Number(m_places.Border(number)) + ",graph 0 to " +
                          Number(m_places.Border(number)) + ",graph 1 nohead lc rgb '#707070' lw 1\n";
        }
    }

    // Missing values and the ends of phases break a curve, for which an empty line stands.
    std::string Points(std::size_t phase, std::vector<float> const &values) const {
        std::string points;
        for (std::size_t point = 0; point < values.size(); ++point)
            points += IsShown(values[point]) ? Number(m_places.Of(phase, point)) + " " + Number(values[point]) + "\n"
                                             : std::string("\n");
        return points + "\n";
    }

    // A block of data, and how it is drawn; without a name it has no line in the key.
    void Add(std::string const &points, std::string const &style, std::string const &name) {
        if (points.find_first_not_of('\n') == std::string::npos)
            return;
        std::string const block = "$d" + std::to_string(m_blocks++);
        m_text += block + " << EOD\n" + points + "EOD\n";
        m_plots += ", " + block + " using 1:2 with " + style + (name.empty() ? " notitle" : " title " + Quoted(name));
    }

    // The curves of each class, after those without.
    void WriteClasses() {
        std::vector<std::string> const &classes = m_style.colouring->classes;
        std::vector<std::string> points(1 + classes.size());
        for (std::size_t number = 0; number < m_phases.size(); ++number)
            for (BatchCurve const &curve : m_phases[number].curves)
                points[curve.group ? 1 + *curve.group : 0] += Points(number, curve.values);
        Add(points[0], "lines lc rgb '#c4c4c4' lw 0.8", "no " + m_style.colouring->title);
        for (std::size_t each = 0; each < classes.size(); ++each)
            Add(points[1 + each], "lines lc rgb " + ClassColour(each) + " lw 1", Shortened(classes[each]));
    }

    void WriteCurves() {
        std::string points;
        for (std::size_t number = 0; number < m_phases.size(); ++number)
            for (BatchCurve const &curve : m_phases[number].curves)
                if (!IsChosen(curve))
                    points += Points(number, curve.values);
        std::string const kind = m_question.ofPredictions ? "predicted batches" : "batches";
        Add(points, "lines lc rgb '#c4c4c4' lw 0.8", m_chosen.empty() ? kind : "other " + kind);
    }

    std::string PointsOfAll(std::vector<float> ChartPhase::*values) const {
        std::string points;
        for (std::size_t number = 0; number < m_phases.size(); ++number)
            points += Points(number, m_phases[number].*values);
        return points;
    }

    void WriteLimits() {
        std::string const style = "lines lc rgb '#c0392b' lw 1.4 dt 2";
        Add(PointsOfAll(&ChartPhase::average), "lines lc rgb '#404040' lw 1.6", "average");
        Add(PointsOfAll(&ChartPhase::upper), style, "limits of " + Number(m_question.multiplier) + " SD");
        Add(PointsOfAll(&ChartPhase::lower), style, "");
    }

    void WriteChosen() {
        for (std::size_t position = 0; position < m_chosen.size(); ++position) {
            std::string points;
            for (std::size_t number = 0; number < m_phases.size(); ++number)
                for (BatchCurve const &curve : m_phases[number].curves)
                    if (curve.batch == m_chosen[position])
                        points += Points(number, curve.values);
            Add(points, "lines lc rgb " + SeriesColour(position) + " lw 1.8", m_chosen[position]);
        }
    }

    void WriteMarks() {
        std::string points;
        for (std::size_t number = 0; number < m_phases.size(); ++number)
            for (BatchCurve const &curve : m_phases[number].curves)
                for (std::size_t point = 0; point < curve.values.size(); ++point)
                    if (IsFramed(curve) && m_phases[number].IsOutside(curve, point))
                        points += Number(m_places.Of(number, point)) + " " + Number(curve.values[point]) + "\n";
        Add(points, "points pt 6 ps 0.6 lc rgb '#c0392b'", "outside");
    }

    std::vector<ChartPhase> const &m_phases;
    ChartQuestion const &m_question;
    std::vector<std::string> const &m_chosen;
    PlotStyle const &m_style;
    Places m_places;
    std::string m_text;
    std::string m_plots;
    int m_blocks = 0;
};

} // namespace

std::string ChartScript(std::vector<ChartPhase> const &phases, ChartQuestion const &question,
                        std::vector<std::string> const &chosen, PlotStyle const &style) {
    return Script(phases, question, chosen, style).Write();
}

std::string SumsScript(ChartSums const &sums, ChartQuestion const &question, PlotStyle const &style) {
    auto const most = static_cast<std::size_t>(0.85 * style.width / roomOfBar);
    std::size_t const count = std::min(most, sums.batches.size());
    std::string text = ScriptHead(style) + "set ylabel " + Quoted(question.vector + " outside its limits") +
                       "\nset xrange [0.4:" + Number(static_cast<double>(count) + 0.6) +
                       "]\nset yrange [0:*]\nset lmargin 13\nset xtics rotate by 35 right (";
    for (std::size_t batch = 0; batch < count; ++batch)
        text += (batch > 0 ? ", " : "") + QuotedFormat(Shortened(sums.batches[batch].batch)) + " " +
                std::to_string(batch + 1);
    text += ")\nunset grid\nset grid ytics lt 1 lc rgb '#ececec' lw 1\nset style fill solid 0.9 noborder\n";
    std::string plots;
    std::vector<double> tops(count); // of what is stacked so far
    for (std::size_t phase = 0; phase < sums.phases.size(); ++phase) {
        std::string const block = "$d" + std::to_string(phase);
        text += block + " << EOD\n";
        for (std::size_t batch = 0; batch < count; ++batch) {
            text += std::to_string(batch + 1) + " " + Number(tops[batch]);
            tops[batch] += sums.batches[batch].sums[phase];
            text += " " + Number(tops[batch]) + "\n";
        }
        text += "EOD\n";
        plots += (plots.empty() ? "" : ", ") + block +
                 " using 1:3:($1-0.38):($1+0.38):2:3 with boxxyerrorbars lc rgb " + SeriesColour(phase) +
                 (sums.phases.size() > 1 ? " title " + Quoted(sums.phases[phase]) : " notitle");
    }
    return text + "plot " + plots + "\n";
}
