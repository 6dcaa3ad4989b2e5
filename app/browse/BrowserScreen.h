#pragma once

#include "app/browse/Browser.h"
#include "app/browse/PlotPicture.h"

// What a session looks like on a screen of character cells, and what the mouse means there: left the list with the help
// of the highlighted vector, right the plot, below the status.
class BrowserScreen {
public:
    static constexpr int leastWidth = 50, leastHeight = 12;

    explicit BrowserScreen(Browser &browser) : m_browser(browser) {}

    // A screen that is too small says so.
    TextCanvas Draw(int width, int height);
    // At a cell of what was drawn. A click in the list highlights, one in the plot puts the cursor; a drag makes a
    // rectangle.
    void PressMouse(int x, int y);
    void ReleaseMouse(int x, int y);

private:
    struct Point {
        int x, y;
    };

    void DrawList(Frame const &frame, TextCanvas &canvas);
    void DrawHelp(Frame const &frame, TextCanvas &canvas) const;
    void DrawRight(TextCanvas &canvas) const;
    void DrawTable(TextCanvas &canvas) const;
    void DrawKeys(TextCanvas &canvas) const;
    void DrawSavedPlots(TextCanvas &canvas) const;
    void DrawStatus(TextCanvas &canvas) const;
    bool ShowsPlot() const { return m_browser.GetView() == Browser::View::Plot && m_browser.Plot(); }

    Browser &m_browser;
    Frame m_list{}, m_right{};
    int m_firstRow = 0; // of the list, that is in sight
    std::optional<Point> m_pressed;
};
