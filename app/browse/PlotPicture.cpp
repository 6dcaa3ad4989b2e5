#include "app/browse/PlotPicture.h"

#include "app/Output.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int tickWidth = 9;           // of the numbers left of the axis
constexpr int rowsAbove = 2;           // title and key
constexpr int rowsBelow = 3;           // axis, its labels, what it is
constexpr int itemLabelWidth = 10;     // along the axis
constexpr int pointLabelWidth = 14;    // beside a point
constexpr int mostLabels = 400;        // no screen has room for more
constexpr int fewItems = 600;          // their points can be larger than a dot
constexpr char32_t markGlyph = 0x25C6; // a diamond
constexpr char32_t lowestBlock = 0x2581;
constexpr char32_t horizontal = 0x2500, vertical = 0x2502, corner = 0x2514, tickUp = 0x2534, tickLeft = 0x2524;

// 1, 2 or 5 times a power of 10, so that about so many steps make the range.
double StepOf(double range, int count) {
    double const rough = range / std::max(count, 1);
    double const power = std::pow(10, std::floor(std::log10(rough)));
    for (double const factor : {1.0, 2.0, 5.0})
        if (rough <= factor * power)
            return factor * power;
    return 10 * power;
}

std::vector<double> TicksOf(double low, double high, int count) {
    double const step = StepOf(high - low, count);
    std::vector<double> ticks;
    for (double tick = std::ceil(low / step); tick * step <= high && ticks.size() < 100; ++tick)
        ticks.push_back(tick * step + 0.0); // no -0
    return ticks;
}

std::string TextOf(double value) {
    char buffer[32];
    return std::string(NumberText(static_cast<float>(value), 4, buffer));
}

} // namespace

PlotPicture::PlotPicture(Frame const &frame, PlotPoints const &points)
    : m_frame(frame), m_inner{frame.x + tickWidth + 1, frame.y + rowsAbove, std::max(frame.width - tickWidth - 2, 1),
                              std::max(frame.height - rowsAbove - rowsBelow, 1)},
      m_points(points) {}

int PlotPicture::CellsForItem() const {
    return m_inner.width / std::max(m_points.Items(), 1);
}

int PlotPicture::SlotX(int item) const {
    return m_inner.x + (item - 1) * m_inner.width / std::max(m_points.Items(), 1);
}

bool PlotPicture::AreBars() const {
    return m_points.AreBars() && CellsForItem() >= static_cast<int>(m_points.NumberOfSeries());
}

int PlotPicture::DotX(double x) const {
    Area const &range = m_points.Range();
    double const share = std::clamp((x - range.x0) / (range.x1 - range.x0), 0.0, 1.0);
    return m_inner.x * TextCanvas::dotsAcross +
           static_cast<int>(std::lround(share * (m_inner.width * TextCanvas::dotsAcross - 1)));
}

int PlotPicture::DotY(double y) const {
    Area const &range = m_points.Range();
    double const share = std::clamp((range.y1 - y) / (range.y1 - range.y0), 0.0, 1.0);
    return m_inner.y * TextCanvas::dotsDown +
           static_cast<int>(std::lround(share * (m_inner.height * TextCanvas::dotsDown - 1)));
}

void PlotPicture::Draw(PlotLook const &look, TextCanvas &canvas) const {
    DrawHead(look, canvas);
    DrawZero(canvas);
    DrawValueAxis(canvas);
    DrawItemAxis(look, canvas);
    if (AreBars()) {
        DrawBars(look, canvas);
    } else {
        bool const isCurve = !m_points.HasAxis() || m_points.IsRising();
        bool const isDense = m_points.Items() > 2 * m_inner.width * TextCanvas::dotsAcross;
        for (std::size_t series = 0; series < m_points.NumberOfSeries(); ++series)
            !isCurve ? DrawPoints(series, canvas) : isDense ? DrawEnvelope(series, canvas) : DrawCurve(series, canvas);
        DrawMarks(look, canvas);
        DrawLabels(look, canvas);
    }
    if (look.area)
        DrawArea(*look.area, canvas);
    if (look.cursor < 1 || look.cursor > m_points.Items() || AreBars())
        return;
    if (std::size_t const series = m_points.SeriesAt(look.cursor); series < m_points.NumberOfSeries())
        canvas.Colour(CellX(look.cursor), CellY(series, look.cursor), 1, Ink::Cursor);
}

void PlotPicture::DrawHead(PlotLook const &look, TextCanvas &canvas) const {
    canvas.Write(m_inner.x, m_frame.y, look.title, Ink::Heading, m_inner.width);
    if (m_points.NumberOfSeries() < 2)
        return;
    int const end = m_inner.x + m_inner.width;
    int x = m_inner.x;
    for (std::size_t series = 0; series < m_points.NumberOfSeries() && x + 3 < end; ++series) {
        canvas.Put(x, m_frame.y + 1, 0x25A0, InkOfSeries(series));
        x += 4 + canvas.Write(x + 2, m_frame.y + 1, m_points.Name(series), InkOfSeries(series), end - x - 2);
    }
}

// Where 0 is between the ends.
void PlotPicture::DrawZero(TextCanvas &canvas) const {
    Area const &range = m_points.Range();
    if (m_points.HasAxis() && range.x0 < 0 && range.x1 > 0)
        for (int y = 0; y < m_inner.height; ++y)
            canvas.Put(DotX(0) / TextCanvas::dotsAcross, m_inner.y + y, vertical, Ink::Faint);
    if (range.y0 < 0 && range.y1 > 0 && !AreBars())
        canvas.Fill(m_inner.x, DotY(0) / TextCanvas::dotsDown, m_inner.width, horizontal, Ink::Faint);
}

void PlotPicture::DrawValueAxis(TextCanvas &canvas) const {
    for (int y = 0; y < m_inner.height; ++y)
        canvas.Put(m_inner.x - 1, m_inner.y + y, vertical, Ink::Plain);
    constexpr int rowsForTick = 4, leastTicks = 3;
    int const count = std::max(m_inner.height / rowsForTick, leastTicks);
    for (double const tick : TicksOf(m_points.Range().y0, m_points.Range().y1, count)) {
        int const y = DotY(tick) / TextCanvas::dotsDown;
        canvas.WriteBefore(m_inner.x - 2, y, TextOf(tick), Ink::Plain, tickWidth - 1);
        canvas.Put(m_inner.x - 1, y, tickLeft, Ink::Plain);
    }
}

void PlotPicture::DrawItemAxis(PlotLook const &look, TextCanvas &canvas) const {
    int const y = m_inner.y + m_inner.height;
    canvas.Put(m_inner.x - 1, y, corner, Ink::Plain);
    canvas.Fill(m_inner.x, y, m_inner.width, horizontal, Ink::Plain);
    canvas.WriteBefore(m_inner.x + m_inner.width, y + 2, m_points.AxisName(), Ink::Heading, m_inner.width);
    if (!m_points.HasAxis())
        return DrawItemTicks(look, canvas);
    for (double const tick :
         TicksOf(m_points.Range().x0, m_points.Range().x1, std::max(m_inner.width / itemLabelWidth, 2))) {
        int const x = DotX(tick) / TextCanvas::dotsAcross;
        std::string const text = TextOf(tick);
        canvas.Put(x, y, tickUp, Ink::Plain);
        canvas.Write(std::max(x - CellsOf(text) / 2, 0), y + 1, text, Ink::Plain, itemLabelWidth);
    }
}

// As many items as have room for their label or, where labels are off, for their position.
void PlotPicture::DrawItemTicks(PlotLook const &look, TextCanvas &canvas) const {
    int const y = m_inner.y + m_inner.height;
    int const items = m_points.Items();
    auto const labelOf = [&](int item) {
        return look.labels > 0 ? m_points.Label(item, look.labels) : std::to_string(item);
    };
    int widest = items > m_inner.width ? itemLabelWidth : 1;
    for (int item = 1; item <= items && widest < itemLabelWidth; ++item)
        widest = std::max(widest, std::min(CellsOf(labelOf(item)), itemLabelWidth));
    int const each = std::max(((widest + 1) * items + m_inner.width - 1) / m_inner.width, 1);
    int const room = std::max(m_inner.width * each / std::max(items, 1) - 1, 1);
    for (int item = 1; item <= items; item += each) {
        std::string const label = labelOf(item);
        int const x = AreBars() ? SlotX(item) : CellX(item);
        canvas.Put(x, y, tickUp, Ink::Plain);
        int const width = std::min(CellsOf(label), room);
        if (x + width <= m_frame.x + m_frame.width)
            canvas.Write(x, y + 1, label, item == look.cursor ? Ink::Cursor : Ink::Plain, width);
    }
}

// All bars of an item side by side.
void PlotPicture::DrawBars(PlotLook const &look, TextCanvas &canvas) const {
    Area const &range = m_points.Range();
    int const series = static_cast<int>(m_points.NumberOfSeries());
    int const width = std::max((CellsForItem() - 1) / series, 1);
    int const partsInAll = m_inner.height * TextCanvas::partsOfCell;
    double const parts = partsInAll / (range.y1 - range.y0);
    // Bars stand on the border of two cells.
    int const base = m_inner.y + static_cast<int>(std::lround(range.y1 * parts / TextCanvas::partsOfCell)) - 1;
    if (base >= m_inner.y)
        canvas.Fill(m_inner.x, base, m_inner.width, lowestBlock, Ink::Faint);
    for (int item = 1; item <= m_points.Items(); ++item)
        for (int i = 0; i < series; ++i) {
            auto const index = static_cast<std::size_t>(i);
            if (!m_points.IsShown(index, item))
                continue;
            bool const isMarked = !look.marks.empty() && look.marks[static_cast<std::size_t>(item - 1)];
            Ink const ink = item == look.cursor ? Ink::Cursor : isMarked ? Ink::Marked : InkOfSeries(index);
            int const size = static_cast<int>(std::lround(m_points.Y(index, item) * parts));
            int const above = (base + 1 - m_inner.y) * TextCanvas::partsOfCell;
            canvas.Bar(SlotX(item) + i * width, base, std::clamp(size, above - partsInAll, above), width, ink);
        }
}

void PlotPicture::DrawCurve(std::size_t series, TextCanvas &canvas) const {
    for (int item = 1; item <= m_points.Items(); ++item) {
        if (!m_points.IsShown(series, item))
            continue;
        int const x = DotX(m_points.X(item)), y = DotY(m_points.Y(series, item));
        if (item > 1 && m_points.IsShown(series, item - 1))
            canvas.Line(DotX(m_points.X(item - 1)), DotY(m_points.Y(series, item - 1)), x, y, InkOfSeries(series));
        else
            canvas.Dot(x, y, InkOfSeries(series));
    }
}

void PlotPicture::DrawEnvelope(std::size_t series, TextCanvas &canvas) const {
    int column = -1, least = 0, greatest = 0;
    for (int item = 1; item <= m_points.Items(); ++item) {
        if (!m_points.IsShown(series, item))
            continue;
        int const x = DotX(m_points.X(item)), y = DotY(m_points.Y(series, item));
        if (x == column) {
            least = std::min(least, y);
            greatest = std::max(greatest, y);
            continue;
        }
        if (column >= 0)
            canvas.Line(column, least, column, greatest, InkOfSeries(series));
        column = x;
        least = greatest = y;
    }
    if (column >= 0)
        canvas.Line(column, least, column, greatest, InkOfSeries(series));
}

void PlotPicture::DrawPoints(std::size_t series, TextCanvas &canvas) const {
    int const size = m_points.Items() <= fewItems ? 2 : 1;
    for (int item = 1; item <= m_points.Items(); ++item) {
        if (!m_points.IsShown(series, item))
            continue;
        // A larger point stays in its cell.
        int const x = DotX(m_points.X(item)) / size * size, y = DotY(m_points.Y(series, item)) / size * size;
        for (int i = 0; i < size * size; ++i)
            canvas.Dot(x + i % size, y + i / size, InkOfSeries(series));
    }
}

void PlotPicture::DrawMarks(PlotLook const &look, TextCanvas &canvas) const {
    for (int item = 1; item <= static_cast<int>(look.marks.size()); ++item)
        for (std::size_t series = 0;
             look.marks[static_cast<std::size_t>(item - 1)] && series < m_points.NumberOfSeries(); ++series)
            if (m_points.IsShown(series, item))
                canvas.Put(CellX(item), CellY(series, item), markGlyph, Ink::Marked);
}

// Those of the cursor and of marked items first; of points, then those of all others.
void PlotPicture::DrawLabels(PlotLook const &look, TextCanvas &canvas) const {
    if (look.labels == 0)
        return;
    int drawn = 0;
    if (look.cursor >= 1 && look.cursor <= m_points.Items())
        drawn += DrawLabel(look.cursor, look.labels, Ink::Cursor, canvas);
    for (int item = 1; item <= static_cast<int>(look.marks.size()) && drawn < mostLabels; ++item)
        if (look.marks[static_cast<std::size_t>(item - 1)] && item != look.cursor)
            drawn += DrawLabel(item, look.labels, Ink::Marked, canvas);
    if (!m_points.HasAxis() || m_points.IsRising())
        return;
    for (int item = 1; item <= m_points.Items() && drawn < mostLabels; ++item)
        if (item != look.cursor && (look.marks.empty() || !look.marks[static_cast<std::size_t>(item - 1)]))
            drawn += DrawLabel(item, look.labels, Ink::Faint, canvas);
}

// Beside the first point of the item, right or left of it; the text is made where a part of it has room.
bool PlotPicture::DrawLabel(int item, int labels, Ink ink, TextCanvas &canvas) const {
    std::size_t const series = m_points.SeriesAt(item);
    if (series == m_points.NumberOfSeries())
        return false;
    int const x = CellX(item), y = CellY(series, item);
    bool const hasRight = canvas.IsFree(x + 1, y, 2), hasLeft = canvas.IsFree(x - 2, y, 2);
    if (!hasRight && !hasLeft)
        return false;
    std::string const label = m_points.Label(item, labels);
    int const width = std::min(CellsOf(label), pointLabelWidth);
    // A free cell behind it keeps it apart from the next one.
    bool const isRight = hasRight && m_inner.Holds(x + width, y) && canvas.IsFree(x + 1, y, width + 1);
    bool const isLeft = hasLeft && m_inner.Holds(x - width - 1, y) && canvas.IsFree(x - width - 1, y, width + 1);
    if (width == 0 || (!isRight && !isLeft))
        return false;
    canvas.Write(isRight ? x + 1 : x - width, y, label, ink, width);
    return true;
}

void PlotPicture::DrawArea(Area const &area, TextCanvas &canvas) const {
    int const x0 = DotX(area.x0) / TextCanvas::dotsAcross, x1 = DotX(area.x1) / TextCanvas::dotsAcross;
    int const y0 = DotY(area.y1) / TextCanvas::dotsDown, y1 = DotY(area.y0) / TextCanvas::dotsDown;
    canvas.Fill(x0, y0, x1 - x0 + 1, horizontal, Ink::Cursor);
    canvas.Fill(x0, y1, x1 - x0 + 1, horizontal, Ink::Cursor);
    for (int y = y0; y <= y1; ++y) {
        canvas.Put(x0, y, vertical, Ink::Cursor);
        canvas.Put(x1, y, vertical, Ink::Cursor);
    }
    canvas.Put(x0, y0, 0x250C, Ink::Cursor);
    canvas.Put(x1, y0, 0x2510, Ink::Cursor);
    canvas.Put(x0, y1, corner, Ink::Cursor);
    canvas.Put(x1, y1, 0x2518, Ink::Cursor);
}

int PlotPicture::ItemAt(int x, int y) const {
    if (!m_inner.Holds(x, y))
        return 0;
    if (AreBars()) {
        int item = m_points.Items();
        while (SlotX(item) > x)
            --item;
        return item;
    }
    // In cells; a cell is about twice as high as wide.
    constexpr double near = 3;
    double nearest = near * near;
    int found = 0;
    for (int item = 1; item <= m_points.Items(); ++item)
        for (std::size_t series = 0; series < m_points.NumberOfSeries(); ++series) {
            if (!m_points.IsShown(series, item))
                continue;
            double const across = CellX(item) - x, down = 2.0 * (CellY(series, item) - y);
            double const distance = across * across + down * down;
            if (distance < nearest) {
                nearest = distance;
                found = item;
            }
        }
    return found;
}

Area PlotPicture::AreaOf(int x0, int y0, int x1, int y1) const {
    Area const &range = m_points.Range();
    auto const [left, right] = std::minmax(x0, x1);
    auto const [top, bottom] = std::minmax(y0, y1);
    double const across = (range.x1 - range.x0) / m_inner.width, down = (range.y1 - range.y0) / m_inner.height;
    return {range.x0 + (left - m_inner.x) * across, range.x0 + (right + 1 - m_inner.x) * across,
            range.y1 - (bottom + 1 - m_inner.y) * down, range.y1 - (top - m_inner.y) * down};
}
