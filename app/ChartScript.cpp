#include "app/ChartScript.h"

#include "app/Failure.h"
#include "app/Output.h"
#include "app/ScriptText.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <map>

namespace {

// Of the axis, in pixels for each label, and from a label to that of the next phase.
constexpr double roomOfTic = 40;
constexpr double marginOfTic = 15;
// By how much of a step a maturity may miss a round number.
constexpr double tolerance = 1e-5;
// Of the name of a marked batch, in pixels.
constexpr double roomOfName = 80;
constexpr double heightOfName = 16;
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
        m_style.colouring ? WriteClasses(false) : WriteCurves();
        WriteMarked();
        if (m_style.colouring)
            WriteClasses(true);
        WriteChosen();
        WriteOutside();
        WriteLimits();
        m_text += "plot " + m_plots.substr(2) + "\n"; // without the comma in front
        return std::move(m_text);
    }

private:
    bool IsChosen(BatchCurve const &curve) const { return std::ranges::count(m_chosen, curve.batch) > 0; }
    // Its scale counts.
    bool IsFramed(BatchCurve const &curve) const { return m_chosen.empty() || IsChosen(curve) || curve.isMarked; }

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
        m_height = high + margin - bottom;
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

    // The curves of each class, after those without; or only those that are marked, which are in the key already.
    void WriteClasses(bool onlyMarked) {
        std::vector<std::string> const &classes = m_style.colouring->classes;
        std::vector<std::string> points(1 + classes.size());
        for (std::size_t number = 0; number < m_phases.size(); ++number)
            for (BatchCurve const &curve : m_phases[number].curves)
                if (curve.isMarked || !onlyMarked)
                    points[curve.group ? 1 + *curve.group : 0] += Points(number, curve.values);
        Add(points[0], "lines lc rgb '#c4c4c4' lw 0.8", onlyMarked ? "" : "no " + m_style.colouring->title);
        for (std::size_t each = 0; each < classes.size(); ++each)
            Add(points[1 + each], "lines lc rgb " + ClassColour(each) + " lw 1",
                onlyMarked ? "" : Shortened(classes[each]));
    }

    void WriteCurves() {
        std::string points;
        for (std::size_t number = 0; number < m_phases.size(); ++number)
            for (BatchCurve const &curve : m_phases[number].curves)
                if (!IsChosen(curve) && !curve.isMarked)
                    points += Points(number, curve.values);
        std::string const kind = m_question.ofPredictions ? "predicted batches" : "batches";
        Add(points, "lines lc rgb '#c4c4c4' lw 0.8", m_chosen.empty() ? kind : "other " + kind);
    }

    // Curves of a colour of their own, or bands below those that have a colour already, each with the batch's name
    // where it is farthest from the average.
    void WriteMarked() {
        std::string points;
        std::map<std::string, Farthest> places;
        for (std::size_t number = 0; number < m_phases.size(); ++number)
            for (BatchCurve const &curve : m_phases[number].curves)
                if (curve.isMarked) {
                    points += Points(number, curve.values);
                    SeekFarthest(number, curve, places[curve.batch]);
                }
        bool const isBand = m_style.colouring || !m_chosen.empty();
        Add(points, std::string(isBand ? "lines lw 5" : "lines lw 2.6") + " lc rgb " + markColour, "marked");
        std::vector<Farthest> before;
        for (auto const &[batch, place] : places)
            if (place.distance >= 0)
                WriteName(batch, place, before);
    }

    // Where a curve is farthest from the average.
    struct Farthest {
        double distance = -1;
        double x = 0, y = 0;
    };

    void SeekFarthest(std::size_t number, BatchCurve const &curve, Farthest &farthest) const {
        std::vector<float> const &average = m_phases[number].average;
        for (std::size_t point = 0; point < curve.values.size(); ++point) {
            double const distance = std::abs(curve.values[point] - average[point]);
            if (IsShown(curve.values[point]) && IsShown(average[point]) && distance > farthest.distance)
                farthest = {distance, m_places.Of(number, point), curve.values[point]};
        }
    }

    // Above the place, and above the names before that are near.
    void WriteName(std::string const &batch, Farthest place, std::vector<Farthest> &before) {
        double const width = roomOfName * m_places.End() / (0.85 * m_style.width);
        double const height = heightOfName * m_height / (0.75 * m_style.height);
        place.y += 0.8 * height;
        std::ranges::sort(before, {}, &Farthest::y);
        for (Farthest const &other : before)
            if (std::abs(other.x - place.x) < width && std::abs(other.y - place.y) < height)
                place.y = other.y + height;
        before.push_back(place);
        m_text += "set label " + Quoted(Shortened(batch)) + " at " + Number(place.x) + "," + Number(place.y) +
                  " center front font ',9' textcolor rgb " + markColour + "\n";
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

    void WriteOutside() {
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
    double m_height = 0; // of the range of values
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
    std::string marked;
    for (std::size_t batch = 0; batch < count; ++batch)
        if (sums.batches[batch].isMarked)
            marked += std::to_string(batch + 1) + " " + Number(tops[batch]) + "\n";
    if (!marked.empty()) {
        text += "$m << EOD\n" + marked + "EOD\n";
        plots += std::string(", $m using 1:2:(0.76) with boxes fs empty border lw 2.2 lc rgb ") + markColour +
                 " title \"marked\"";
    }
    return text + "plot " + plots + "\n";
}
