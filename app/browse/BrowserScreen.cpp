#include "app/browse/BrowserScreen.h"

#include <algorithm>

namespace {

constexpr int leastList = 20, mostList = 44;
constexpr int labelWidth = 20, leastCell = 16, mostCell = 40;
constexpr char32_t vertical = 0x2502, horizontal = 0x2500;

// So that a row is in sight, with as little movement as possible.
int Scrolled(int first, int row, int height) {
    return std::max(std::clamp(first, row - height + 1, std::max(row, 0)), 0);
}

} // namespace

TextCanvas BrowserScreen::Draw(int width, int height) {
    TextCanvas canvas(width, height);
    m_list = m_right = {};
    if (width < leastWidth || height < leastHeight) {
        std::vector<std::string> const lines = Wrapped(
            "Too small: " + std::to_string(leastWidth) + " x " + std::to_string(leastHeight) + " needed", width);
        for (int y = 0; y < static_cast<int>(lines.size()); ++y)
            canvas.Write(0, y, lines[static_cast<std::size_t>(y)], Ink::Problem, width);
        return canvas;
    }
    if (m_browser.GetView() == Browser::View::Keys) {
        DrawKeys(canvas);
        DrawStatus(canvas);
        return canvas;
    }
    int const listWidth = std::clamp(width / 3, leastList, mostList);
    int const above = height - 1; // the status stands below
    int const helpHeight = above / 3;
    m_list = {0, 1, listWidth, above - helpHeight - 2};
    m_right = {listWidth + 1, 0, width - listWidth - 1, above};
    for (int y = 0; y < above; ++y)
        canvas.Put(listWidth, y, vertical, Ink::Faint);
    DrawList(m_list, canvas);
    DrawHelp({0, above - helpHeight, listWidth, helpHeight}, canvas);
    DrawRight(canvas);
    DrawStatus(canvas);
    return canvas;
}

void BrowserScreen::DrawList(Frame const &frame, TextCanvas &canvas) {
    VectorList const &list = m_browser.List();
    std::string heading = list.GetSource() ? "Vectors of " + list.GetSource()->name : "No data";
    if (!list.SearchedText().empty())
        heading += " /" + list.SearchedText();
    canvas.Write(0, 0, heading, m_browser.IsInList() ? Ink::Chosen : Ink::Heading, frame.width);
    canvas.Fill(0, frame.y + frame.height, frame.width, horizontal, Ink::Faint);
    std::vector<VectorList::Row> const &rows = list.Rows();
    // The heading above the first vector is shown with it.
    int const wanted = list.Highlighted() == 1 ? 0 : list.Highlighted();
    m_firstRow = Scrolled(m_firstRow, wanted, frame.height);
    for (int i = 0; i < frame.height && m_firstRow + i < static_cast<int>(rows.size()); ++i) {
        VectorList::Row const &row = rows[static_cast<std::size_t>(m_firstRow + i)];
        bool const isHighlighted = m_firstRow + i == list.Highlighted();
        Ink const ink = isHighlighted ? Ink::Chosen : row.vector ? Ink::Plain : Ink::Heading;
        canvas.Write(row.vector ? 1 : 0, frame.y + i, row.text, ink, frame.width - 1);
    }
    if (rows.empty())
        canvas.Write(1, frame.y, "nothing found", Ink::Faint, frame.width - 1);
}

void BrowserScreen::DrawHelp(Frame const &frame, TextCanvas &canvas) const {
    ProjectVector const *const vector = m_browser.List().Vector();
    if (!vector)
        return;
    std::vector<std::string> const lines = Wrapped(vector->GetHelpString(), frame.width - 1);
    for (int i = 0; i < std::min(frame.height, static_cast<int>(lines.size())); ++i)
        canvas.Write(frame.x, frame.y + i, lines[static_cast<std::size_t>(i)], Ink::Plain, frame.width);
}

void BrowserScreen::DrawRight(TextCanvas &canvas) const {
    if (m_browser.GetView() == Browser::View::SavedPlots)
        return DrawSavedPlots(canvas);
    BrowsedPlot const *const plot = m_browser.Plot();
    if (!plot)
        return;
    if (m_browser.GetView() == Browser::View::Table)
        return DrawTable(canvas);
    PlotPicture(m_right, plot->Points())
        .Draw({plot->Title(), m_browser.Marks(), m_browser.Cursor(), m_browser.GetArea(), m_browser.Labels()}, canvas);
}

// Items down, with the cursor in the middle; as many series as have room.
void BrowserScreen::DrawTable(TextCanvas &canvas) const {
    BrowsedPlot const &plot = *m_browser.Plot();
    ProjectData const &table = plot.Table();
    int const end = m_right.x + m_right.width;
    int const labels = std::max(m_browser.Labels(), 1);
    int const rows = m_right.height - 1;
    int const cellWidth = std::clamp((m_right.width - labelWidth) / std::max(table.Rows(), 1), leastCell, mostCell);
    int const first = std::clamp(m_browser.Cursor() - rows / 2, 1, std::max(table.Columns() - rows + 1, 1));
    canvas.Write(m_right.x, 0, table.GetColumnIDs().GetRowTitle(labels), Ink::Heading, labelWidth - 1);
    for (int row = m_browser.FirstColumn(), x = m_right.x + labelWidth + cellWidth; row <= table.Rows() && x <= end;
         ++row, x += cellWidth)
        canvas.WriteBefore(x, 0, plot.Built().Dates().Name(table, static_cast<std::size_t>(row - 1)), Ink::Heading,
                           cellWidth - 1);
    for (int y = 1; y <= rows && first + y - 1 <= table.Columns(); ++y) {
        int const item = first + y - 1;
        canvas.Write(m_right.x, y, table.GetColumnName(item, labels), Ink::Plain, labelWidth - 1);
        for (int row = m_browser.FirstColumn(), x = m_right.x + labelWidth + cellWidth; row <= table.Rows() && x <= end;
             ++row, x += cellWidth)
            canvas.WriteBefore(x, y, plot.CellText(row, item), Ink::Plain, cellWidth - 1);
        if (m_browser.Marks()[static_cast<std::size_t>(item - 1)])
            canvas.Colour(m_right.x, y, m_right.width, Ink::Marked);
        if (item == m_browser.Cursor())
            canvas.Colour(m_right.x, y, m_right.width, Ink::Cursor);
    }
}

// In as many columns as it takes.
void BrowserScreen::DrawKeys(TextCanvas &canvas) const {
    constexpr int nameWidth = 17;
    std::vector<Browser::Command> told;
    for (Browser::Command const &command : Browser::Commands())
        if (*command.purpose != 0)
            told.push_back(command);
    int const count = static_cast<int>(told.size()), rows = canvas.Height() - 2;
    int const columns = (count + rows - 1) / rows;
    int const perColumn = (count + columns - 1) / columns, width = canvas.Width() / columns;
    canvas.Write(1, 0, "Keys", Ink::Heading, canvas.Width() - 1);
    for (int i = 0; i < count; ++i) {
        Browser::Command const &command = told[static_cast<std::size_t>(i)];
        int const x = 1 + i / perColumn * width, y = 1 + i % perColumn;
        canvas.Write(x, y, command.name, Ink::Heading, nameWidth);
        canvas.Write(x + nameWidth, y, command.purpose, Ink::Plain, width - 1 - nameWidth);
    }
}

void BrowserScreen::DrawSavedPlots(TextCanvas &canvas) const {
    canvas.Write(m_right.x + 1, 0, "Saved plots: Enter opens", Ink::Heading, m_right.width - 1);
    std::vector<std::string> const &names = m_browser.SavedPlots();
    int const rows = m_right.height - 1;
    int const first = Scrolled(0, m_browser.ChosenPlot(), rows);
    for (int i = 0; i < rows && first + i < static_cast<int>(names.size()); ++i)
        canvas.Write(m_right.x + 1, 1 + i, names[static_cast<std::size_t>(first + i)],
                     first + i == m_browser.ChosenPlot() ? Ink::Chosen : Ink::Plain, m_right.width - 2);
}

void BrowserScreen::DrawStatus(TextCanvas &canvas) const {
    int const y = canvas.Height() - 1;
    if (!m_browser.GetPrompt()) {
        bool const isQuiet = m_browser.Status().empty();
        canvas.Write(0, y, isQuiet ? "? lists the keys" : m_browser.Status(),
                     isQuiet                 ? Ink::Faint
                     : m_browser.IsProblem() ? Ink::Problem
                                             : Ink::Plain,
                     canvas.Width());
        return;
    }
    // Of a long text its end is what counts.
    Browser::Prompt const &prompt = *m_browser.GetPrompt();
    int const asked = canvas.Write(0, y, prompt.question, Ink::Heading, canvas.Width() * 2 / 3);
    canvas.Fill(asked, y, canvas.Width() - asked, U' ', Ink::Plain);
    int const over = std::max(asked + CellsOf(prompt.text) + 1 - canvas.Width(), 0);
    TextCanvas line(CellsOf(prompt.text), 1);
    line.Write(0, 0, prompt.text, Ink::Plain, line.Width());
    int x = asked;
    for (int cell = over; cell < line.Width(); ++cell)
        canvas.Put(x++, y, line.At(cell, 0).glyph, Ink::Plain);
    canvas.Put(x, y, U'_', Ink::Cursor);
}

void BrowserScreen::PressMouse(int x, int y) {
    m_pressed.reset();
    if (m_list.Holds(x, y))
        m_browser.Highlight(m_firstRow + y - m_list.y);
    else if (m_right.Holds(x, y) && ShowsPlot())
        m_pressed = {x, y};
}

void BrowserScreen::ReleaseMouse(int x, int y) {
    if (!m_pressed || !ShowsPlot())
        return;
    Point const from = *m_pressed;
    m_pressed.reset();
    PlotPicture const picture(m_right, m_browser.Plot()->Points());
    if (from.x == x && from.y == y)
        m_browser.PutCursor(picture.ItemAt(x, y));
    else
        m_browser.Frame(picture.AreaOf(from.x, from.y, x, y));
}
