#include "app/PlotScript.h"

#include "app/Failure.h"
#include "app/Output.h"
#include "app/ScriptText.h"
#include "app/VectorSearch.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numeric>

namespace {

using Axis = ProjectVector::VectorTypeEnum;

// About the size of a letter of a label of points, in pixels.
constexpr double smallLetterWidth = 6.0;
constexpr double smallLetterHeight = 12.0;
// More bars than these can't be told apart: such a row (a spectrum) is a curve.
constexpr int mostBars = 100;
constexpr std::size_t mostLabelledPoints = 2000;
// Of more marked points than these only those have a label for which there is room.
constexpr std::size_t mostMarkLabels = 25;
constexpr double pointRadius = 3.0;
constexpr double labelGap = 5.0;
constexpr double markGap = 9.0;

constexpr double secondsPerDay = 86400;

std::string Seconds(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.3f", value);
    return buffer;
}

// What is known of the picture while its script is written.
class Script {
public:
    Script(ProjectData const &table, Axis axis, PlotStyle const &style) : m_table(table), m_axis(axis), m_style(style) {
        for (int row = 1; row <= table.Rows(); ++row)
            m_rows.push_back(table.GetMatrix().Row(row));
        // The axis of curves has dates only when all of them are.
        bool mixed = false;
        for (std::size_t row = 0; row < m_rows.size() && !style.isScatter; ++row)
            mixed = mixed || !style.dates.AreDates(row);
        if (!mixed)
            m_dates = style.dates;
    }

    std::string Write() {
        m_text = ScriptHead(m_style);
        if (m_style.isScatter)
            WriteScatter();
        else
            WriteSeries();
        return std::move(m_text);
    }

private:
    void WriteSeries();
    std::string WriteLimit();
    void WriteBars();
    std::vector<std::size_t> AllItems() const {
        std::vector<std::size_t> items(static_cast<std::size_t>(m_table.Columns()));
        std::iota(items.begin(), items.end(), 0);
        return items;
    }
    bool IsMarked(std::size_t item) const { return !m_style.marked.empty() && m_style.marked[item]; }
    std::string WriteMarked();
    std::string WriteMarkedBars(std::size_t row, std::string const &bars, bool isInKey);
    void WriteMarkLabels();
    bool HasErrors(std::size_t row) const { return row < m_style.errors.size() && !m_style.errors[row].empty(); }
    std::string WriteErrors(std::size_t row, std::vector<std::size_t> const &items, double shift);
    std::vector<std::size_t> ItemsOfCurve(std::size_t row) const;
    void WriteLines();
    void MarkLeast(std::size_t row);
    void WriteScatter();
    void WritePointLabels(double x0, double x1, double y0, double y1);
    // A point of an item, "x y".
    struct Point {
        std::size_t item;
        std::string place;
    };
    std::string WriteColoured(std::vector<Point> const &points, char const *size);
    // Over the points, along the axis that has a row's values, and as far as `reach` to both sides of 0.
    void SetRange(char const *name, std::size_t row, double reach, double &low, double &high);
    bool IsPoint(std::size_t item) const { return IsShown(m_rows[0][item]) && IsShown(m_rows[1][item]); }
    void SetLabel(char const *axis, std::string const &text) {
        m_text += std::string("set ") + axis + "label " + Quoted(text) + "\n";
    }
    // Of an observation among others, dates are drawn as numbers.
    std::string Name(std::size_t row) const {
        return m_dates.AreDates(row) ? m_dates.Name(m_table, row) : m_table.GetRowName(static_cast<int>(row) + 1);
    }
    std::string Item(std::size_t item) const { return ItemLabel(m_table.GetColumnIDs(), item); }
    std::string Style(std::size_t row) const { return " lc rgb " + SeriesColour(row); }
    // A value as it is drawn: a date as seconds since 1970.
    double At(std::size_t row, std::size_t item) const {
        return m_dates.AreDates(row) ? m_dates.Days(row, item) * secondsPerDay : m_rows[row][item];
    }
    std::string Place(std::size_t row, double value) const {
        return m_dates.AreDates(row) ? Seconds(value) : Number(value);
    }
    std::string Place(std::size_t row, std::size_t item) const { return Place(row, At(row, item)); }
    // Dates along an axis that reaches so far.
    void SetTimes(std::string const &axis, double low, double high);
    std::string Key(std::size_t row) const { return m_rows.size() > 1 ? " title " + Quoted(Name(row)) : " notitle"; }

    ProjectData const &m_table;
    Axis m_axis;
    PlotStyle const &m_style;
    TableDates m_dates;
    std::vector<std::span<float const>> m_rows;
    std::string m_text;
};

void Script::WriteSeries() {
    bool const isBars = m_style.form == SeriesForm::ByAxis && m_axis != ProjectVector::VectorTypeVariablesScores &&
                        m_axis != ProjectVector::VectorTypeAligned && m_table.Columns() <= mostBars;
    SetLabel("x", m_style.itemTitle.empty() ? ItemsTitle(m_table.GetColumnIDs(), m_axis) : m_style.itemTitle);
    if (m_rows.size() == 1)
        SetLabel("y", Name(0));
    double const side = isBars ? 0.6 : 0.02 * m_table.Columns();
    double const end = m_table.Columns() + (m_style.form == SeriesForm::Steps ? 1 : side);
    m_text += "set xrange [" + Number(1 - side) + ":" + Number(end) + "]\n";
    m_text += ItemTics(m_table.GetColumnIDs(), m_style, isBars);
    if (isBars)
        WriteBars();
    else
        WriteLines();
}

// The label of the limit; answers the part of the plot command that draws it, so that it is within the picture.
std::string Script::WriteLimit() {
    if (!m_style.limit)
        return {};
    std::string const at = Number(*m_style.limit);
    m_text += "set yrange [0:*]\nset label " + Quoted(m_style.limitLabel) + " at graph 0.995,first " + at +
              " right front offset 0,0.5 font ',9' textcolor rgb '#c0392b'\n";
    return ", " + at + " with lines lc rgb '#c0392b' lw 1.2 dt 2 notitle";
}

void Script::WriteBars() {
    double const width = 0.8 / static_cast<double>(m_rows.size());
    std::string plots, marked, errors;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        std::string const block = "$s" + std::to_string(row);
        double const shift = (static_cast<double>(row) - 0.5 * static_cast<double>(m_rows.size() - 1)) * width;
        m_text += block + " << EOD\n";
        std::string bars;
        for (std::size_t item = 0; item < m_rows[row].size(); ++item) {
            if (!IsShown(m_rows[row][item]))
                continue;
            std::string const bar =
                Number(static_cast<double>(item + 1) + shift) + " " + Number(m_rows[row][item]) + "\n";
            m_text += bar;
            bars += IsMarked(item) ? bar : "";
        }
        m_text += "EOD\n";
        if (!bars.empty())
            marked += WriteMarkedBars(row, bars, marked.empty());
        plots += (row > 0 ? ", " : "") + block + " using 1:2 with boxes" + Style(row) + Key(row);
        if (HasErrors(row))
            errors +=
                ", " + WriteErrors(row, AllItems(), shift) +
                " using 1:($2-$3):(0):(2*$3) with vectors heads size screen 0.005,90 lc rgb '#303030' lw 1.1 notitle";
    }
    m_text +=
        "set boxwidth " + Number(0.92 * width) +
        "\nset yrange [*<0:0<*]\nset style fill solid 0.9 noborder\nset offsets 0,0,graph 0.04,graph 0.04\nplot " +
        plots + marked + errors + "\n";
}

// Bars of marked items over those of a series, filled where there is only one; answers the part of the plot command,
// with a comma in front.
std::string Script::WriteMarkedBars(std::size_t row, std::string const &bars, bool isInKey) {
    std::string const block = "$m" + std::to_string(row);
    m_text += block + " << EOD\n" + bars + "EOD\n";
    return ", " + block + " using 1:2 with boxes lc rgb " + markColour +
           (m_rows.size() == 1 ? "" : " lw 2.2 fs empty border") + (isInKey ? " title \"marked\"" : " notitle");
}

// Rings about the points of marked items; answers the part of the plot command, with a comma in front.
std::string Script::WriteMarked() {
    std::string points;
    for (std::size_t item = 0; item < m_style.marked.size(); ++item) {
        if (!IsMarked(item))
            continue;
        if (m_style.isScatter)
            points += IsPoint(item) ? Place(0, item) + " " + Place(1, item) + "\n" : "";
        for (std::size_t row = 0; row < m_rows.size() && !m_style.isScatter; ++row)
            points += IsShown(m_rows[row][item]) ? std::to_string(item + 1) + " " + Place(row, item) + "\n" : "";
    }
    if (points.empty())
        return {};
    m_text += "$m << EOD\n" + points + "EOD\n";
    return ", $m using 1:2 with " + MarkRing() + " title \"marked\"";
}

// Labels above the first curve, each only where it does not cover the one before it.
void Script::WriteMarkLabels() {
    double const pixels = 0.85 * m_style.width / m_table.Columns(); // of one item
    double end = 0;
    for (std::size_t item = 0; item < m_style.marked.size(); ++item) {
        if (!IsMarked(item) || !IsShown(m_rows[0][item]))
            continue;
        std::string const label = Item(item);
        double const half = 0.5 * smallLetterWidth * static_cast<double>(TextWidth(label) + 1);
        double const middle = static_cast<double>(item + 1) * pixels;
        if (end > 0 && middle - half < end)
            continue;
        end = middle + half;
        m_text += "set label " + Quoted(label) + " at " + std::to_string(item + 1) + "," + Place(0, item) +
                  " center offset 0,0.9 front font ',9' textcolor rgb " + markColour + "\n";
    }
}

// Place, value and error of items of a series, an empty line where there is none; answers the block's name.
std::string Script::WriteErrors(std::size_t row, std::vector<std::size_t> const &items, double shift) {
    std::string const block = "$e" + std::to_string(row);
    std::vector<double> const &errors = m_style.errors[row];
    m_text += block + " << EOD\n";
    for (std::size_t const item : items)
        m_text += IsShown(m_rows[row][item]) && errors[item] >= 0
                      ? Number(static_cast<double>(item + 1) + shift) + " " + Number(m_rows[row][item]) + " " +
                            Number(errors[item]) + "\n"
                      : "\n";
    m_text += "EOD\n";
    return block;
}

// The items that a curve is drawn through: all of them, or where many share a column of pixels, the least and the
// greatest among these, or one where the curve has a gap.
std::vector<std::size_t> Script::ItemsOfCurve(std::size_t row) const {
    std::span<float const> const values = m_rows[row];
    std::size_t const each = values.size() / (2 * static_cast<std::size_t>(m_style.width));
    if (each < 2)
        return AllItems();
    std::vector<std::size_t> items;
    for (std::size_t first = 0; first < values.size(); first += each) {
        std::size_t low = first;
        std::size_t high = first;
        for (std::size_t item = first; item < std::min(first + each, values.size()); ++item) {
            if (!IsShown(values[item]))
                continue;
            if (!IsShown(values[low]) || values[item] < values[low])
                low = item;
            if (!IsShown(values[high]) || values[item] > values[high])
                high = item;
        }
        items.push_back(std::min(low, high));
        if (low != high)
            items.push_back(std::max(low, high));
    }
    return items;
}

void Script::SetTimes(std::string const &axis, double low, double high) {
    double const days = (high - low) / secondsPerDay;
    char const *const format = days > 5 ? "%Y-%m-%d" : days > 0.02 ? "%Y-%m-%d %H:%M" : "%Y-%m-%d %H:%M:%S";
    m_text += "set timefmt '%s'\nset " + axis + "data time\nset format " + axis + " '" + format + "'\n";
    if (axis == "x")
        m_text += "set xtics rotate by 20 right\n";
}

void Script::WriteLines() {
    bool const showsPoints = m_table.Columns() <= 250;
    double low = HUGE_VAL, high = -HUGE_VAL;
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        for (std::size_t item = 0; m_dates.AreDates(row) && item < m_rows[row].size(); ++item) {
            low = std::fmin(low, At(row, item));
            high = std::fmax(high, At(row, item));
        }
    if (low <= high)
        SetTimes("y", low, high);
    bool const isColoured = m_style.colouring.has_value();
    std::vector<Point> points;
    std::string plots, bands;
    for (std::size_t row = 0; row < m_rows.size(); ++row) {
        std::string const block = "$s" + std::to_string(row);
        m_text += block + " << EOD\n";
        bool hasPoint = false;
        std::vector<std::size_t> const items = ItemsOfCurve(row);
        for (std::size_t const item : items) {
            bool const isShown = IsShown(m_rows[row][item]);
            if (isShown)
                points.push_back({item, std::to_string(item + 1) + " " + Place(row, item)});
            if (isShown)
                m_text += points.back().place + "\n";
            else if (hasPoint)
                m_text += "\n"; // an empty line breaks the curve
            hasPoint = isShown;
        }
        if (m_style.form == SeriesForm::Steps && hasPoint)
            m_text += std::to_string(items.back() + 2) + " " + Place(row, items.back()) + "\n";
        m_text += "EOD\n";
        plots += (row > 0 ? ", " : "") + block + " using 1:2 with " +
                 (m_style.form == SeriesForm::Steps ? "steps lw 1.6"
                  : isColoured                      ? "lines lw 0.8"
                  : showsPoints                     ? "linespoints pt 7 ps 0.35 lw 1.4"
                                                    : "lines lw 1.2") +
                 (isColoured && m_rows.size() == 1 ? " lc rgb '#c4c4c4'" : Style(row)) + Key(row);
        if (m_style.form == SeriesForm::Valley)
            MarkLeast(row);
        if (HasErrors(row))
            bands += WriteErrors(row, items, 0) +
                     " using 1:($2-$3):($2+$3) with filledcurves fs transparent solid 0.25 noborder" + Style(row) +
                     " notitle, ";
    }
    if (isColoured)
        plots += WriteColoured(points, showsPoints ? "0.7" : "0.35");
    plots += WriteMarked();
    WriteMarkLabels();
    plots += WriteLimit();
    m_text += "plot " + bands + plots + "\n";
}

// A disk at the least value of a curve, labelled by its item.
void Script::MarkLeast(std::size_t row) {
    std::optional<std::size_t> least;
    for (std::size_t item = 0; item < m_rows[row].size(); ++item)
        if (IsShown(m_rows[row][item]) && (!least || m_rows[row][item] < m_rows[row][*least]))
            least = item;
    if (!least)
        return;
    bool const isLeft = 2 * *least < m_rows[row].size();
    m_text += "set label " + Quoted("least at " + Item(*least)) + " at " + std::to_string(*least + 1) + "," +
              Place(row, *least) + (isLeft ? " left offset 0,-0.9" : " right offset 0,-0.9") +
              " front font ',9' textcolor rgb '#303030' point pt 7 ps 0.9 lc rgb '#c0392b'\n";
}

// Key or colour bar, and the points of each class; answers the parts of the plot command, each with a comma in front.
// What has no class or value lies behind the others, in grey.
std::string Script::WriteColoured(std::vector<Point> const &points, char const *size) {
    Colouring const &colouring = *m_style.colouring;
    bool const isByValue = colouring.classes.empty();
    std::vector<std::string> blocks(1 + colouring.Groups());
    for (auto const &[item, place] : points) {
        std::optional<std::size_t> const group = colouring.GroupOf(item);
        blocks[group ? 1 + *group : 0] +=
            place + (group && isByValue ? " " + Number(colouring.values[item]) : "") + "\n";
    }
    m_text += "unset rmargin\n";
    if (isByValue)
        m_text += "set palette defined (0 '#440154', 1 '#3b528b', 2 '#21918c', 3 '#5ec962', 4 '#e3c51c')\n"
                  "set colorbox vertical noborder\nset cblabel " +
                  Quoted(colouring.title) + "\n";
    else
        m_text += "set key outside right top vertical Left reverse samplen 1 title " +
                  Quoted(Shortened(colouring.title)) + " left\n";
    std::string plots, missing;
    for (std::size_t group = 0; group < blocks.size(); ++group) {
        if (blocks[group].empty())
            continue;
        std::string const block = "$c" + std::to_string(group);
        m_text += block + " << EOD\n" + blocks[group] + "EOD\n";
        std::string const points = std::string(" with points ps ") + size + " ";
        if (group == 0) {
            std::string const mark = points + "pt 7 lc rgb '#c4c4c4'";
            plots += ", " + block + " using 1:2" + mark + " notitle";
            missing = ", keyentry" + mark + " title \"missing\"";
        } else if (isByValue)
            plots += ", " + block + " using 1:2:3" + points + "pt 7 lc palette notitle";
        else
            plots += ", " + block + " using 1:2" + points + ClassMark(group - 1) + " title " +
                     Quoted(Shortened(colouring.classes[group - 1]));
    }
    return plots + missing;
}

void Script::SetRange(char const *name, std::size_t row, double reach, double &low, double &high) {
    low = reach > 0 ? -reach : HUGE_VAL;
    high = reach > 0 ? reach : -HUGE_VAL;
    for (std::size_t item = 0; item < m_rows[row].size(); ++item)
        if (IsPoint(item)) {
            low = std::min(low, At(row, item));
            high = std::max(high, At(row, item));
        }
    double const margin = high > low ? 0.06 * (high - low) : 1.0;
    low -= margin;
    high += margin;
    if (m_dates.AreDates(row))
        SetTimes(name, low, high);
    m_text += std::string("set ") + name + "range [" + Place(row, low) + ":" + Place(row, high) + "]\n";
}

void Script::WriteScatter() {
    double x0, x1, y0, y1;
    SetRange("x", 0, m_style.ellipseX, x0, x1);
    SetRange("y", 1, m_style.ellipseY, y0, y1);
    SetLabel("x", Name(0));
    SetLabel("y", Name(1));
    m_text += "set yzeroaxis lt 1 lc rgb '#909090' lw 1\n";
    WritePointLabels(x0, x1, y0, y1);
    std::string guides;
    if (m_style.ellipseX > 0) {
        m_text += "set parametric\nset trange [0:2*pi]\nset samples 400\n";
        guides = ", " + Number(m_style.ellipseX) + "*cos(t)," + Number(m_style.ellipseY) +
                 "*sin(t) with lines lc rgb '#808080' lw 1 notitle";
    } else if (m_style.hasDiagonal) {
        guides = ", x with lines lc rgb '#808080' lw 1 notitle";
    }
    // Of points on the same pixel one of each colour is enough.
    std::size_t const groups = m_style.colouring ? 1 + m_style.colouring->Groups() : 1;
    std::vector<bool> taken(static_cast<std::size_t>(m_style.width) * static_cast<std::size_t>(m_style.height) *
                            groups);
    std::vector<Point> points;
    for (std::size_t item = 0; item < m_rows[0].size(); ++item) {
        if (!IsPoint(item))
            continue;
        double const x = At(0, item);
        double const y = At(1, item);
        auto const column = static_cast<std::size_t>((x - x0) / (x1 - x0) * (m_style.width - 1));
        auto const line = static_cast<std::size_t>((y - y0) / (y1 - y0) * (m_style.height - 1));
        std::optional<std::size_t> const group = m_style.colouring ? m_style.colouring->GroupOf(item) : std::nullopt;
        std::size_t const pixel =
            (line * static_cast<std::size_t>(m_style.width) + column) * groups + (group ? 1 + *group : 0);
        if (!taken[pixel])
            points.push_back({item, Place(0, x) + " " + Place(1, y)});
        taken[pixel] = true;
    }
    char const *const size = m_table.Columns() > 2000 ? "0.3" : "0.8";
    std::string const marked = WriteMarked();
    if (m_style.colouring) {
        std::string const plots = WriteColoured(points, size);
        m_text += "plot " + plots.substr(2) + marked + guides + "\n"; // without the comma in front
        return;
    }
    m_text += "$s << EOD\n";
    for (Point const &point : points)
        m_text += point.place + "\n";
    m_text += std::string("EOD\nplot $s using 1:2 with points pt 7 ps ") + size + Style(0) + " notitle" + marked +
              guides + "\n";
}

// Labels beside the points, those of marked items first, then the outermost points, each only where it covers neither a
// point nor another label; of few marked items all.
void Script::WritePointLabels(double x0, double x1, double y0, double y1) {
    struct Box {
        double left, bottom, right, top;
        bool Meets(Box const &other) const {
            return left < other.right && other.left < right && bottom < other.top && other.bottom < top;
        }
    };
    double const xScale = 0.85 * m_style.width / (x1 - x0);
    double const yScale = 0.8 * m_style.height / (y1 - y0);
    auto const x = [&](std::size_t item) { return (At(0, item) - 0.5 * (x0 + x1)) * xScale; };
    auto const y = [&](std::size_t item) { return (At(1, item) - 0.5 * (y0 + y1)) * yScale; };
    std::vector<std::size_t> order(m_rows[0].size());
    std::iota(order.begin(), order.end(), std::size_t(0));
    std::erase_if(order, [&](std::size_t item) { return !IsPoint(item); });
    auto const marked =
        static_cast<std::size_t>(std::ranges::count_if(order, [this](std::size_t item) { return IsMarked(item); }));
    bool const labelsAllMarked = marked <= mostMarkLabels;
    if (order.size() > mostLabelledPoints && labelsAllMarked)
        std::erase_if(order, [this](std::size_t item) { return !IsMarked(item); });
    else if (order.size() > mostLabelledPoints)
        return;
    std::ranges::stable_sort(order, std::greater<>(),
                             [&](std::size_t item) { return std::pair(IsMarked(item), std::hypot(x(item), y(item))); });
    std::vector<Box> taken;
    for (std::size_t const item : order)
        taken.push_back({x(item) - pointRadius, y(item) - pointRadius, x(item) + pointRadius, y(item) + pointRadius});
    for (std::size_t const item : order) {
        std::string const label = Item(item);
        double const width = smallLetterWidth * static_cast<double>(TextWidth(label));
        double const gap = IsMarked(item) ? markGap : labelGap;
        auto const place = [&](bool right) {
            double const left = right ? x(item) + gap : x(item) - gap - width;
            return Box{left, y(item) - 0.5 * smallLetterHeight, left + width, y(item) + 0.5 * smallLetterHeight};
        };
        auto const isFree = [&](bool right) {
            return std::ranges::none_of(taken, [box = place(right)](Box const &other) { return box.Meets(other); });
        };
        bool const right = isFree(true) || !isFree(false);
        if (!isFree(right) && !(IsMarked(item) && labelsAllMarked))
            continue;
        taken.push_back(place(right));
        m_text += "set label " + Quoted(label) + " at " + Place(0, item) + "," + Place(1, item) +
                  (right ? " left offset " : " right offset -") + (IsMarked(item) ? "1.1" : "0.7") + ",0" +
                  (IsMarked(item) ? std::string(" front font ',9' textcolor rgb ") + markColour
                                  : " font ',8' textcolor rgb '#505050'") +
                  "\n";
    }
}

void SetSize(PlotStyle &style, std::string const &text) {
    int end = 0;
    int const read = std::sscanf(text.c_str(), "%4dx%4d%n", &style.width, &style.height, &end);
    if (read != 2 || static_cast<std::size_t>(end) != text.size() || style.width < PlotStyle::smallest ||
        style.height < PlotStyle::smallest)
        throw UsageError("\"" + text + "\" is no size: give width and height in pixels, from 100x100 to 9999x9999");
}

} // namespace

void AddPictureOptions(CLI::App &command, PlotStyle &style) {
    command.add_option("--title", style.title, "What stands above the picture");
    command
        .add_option_function<std::string>(
            "--size", [&style](std::string const &text) { SetSize(style, text); },
            "Of the picture, in pixels (900x600)")
        ->type_name("WxH");
}

std::string PlotScript(ProjectData const &table, Axis axis, PlotStyle const &style) {
    auto const hasShown = [&](int item) {
        auto const isShown = [&](int row) {
            return IsShown(table.GetMatrix().Row(row)[static_cast<std::size_t>(item)]);
        };
        if (style.isScatter)
            return isShown(1) && isShown(2);
        for (int row = 1; row <= table.Rows(); ++row)
            if (isShown(row))
                return true;
        return false;
    };
    for (int item = 0; item < table.Columns(); ++item)
        if (hasShown(item))
            return Script(table, axis, style).Write();
    throw Problem(ExceptionMessage::translate("There is nothing to draw: all values are missing."));
}
