#pragma once

#include "app/browse/PlotPoints.h"
#include "app/browse/TextCanvas.h"

#include <optional>

// Cells of a canvas.
struct Frame {
    int x, y, width, height;

    bool Holds(int atX, int atY) const { return atX >= x && atX < x + width && atY >= y && atY < y + height; }
};

// What is shown of a plot beside its points.
struct PlotLook {
    std::string title = {};
    std::vector<bool> marks = {}; // one for each item, or none
    int cursor = 0;               // an item, 0 for none
    std::optional<Area> area = {};
    int labels = 1; // which identifier column, 0 for none
};

// Draws points in a frame of a canvas: title, key, axes with their labels; bars of block characters where there is a
// cell for each, else dots and lines of braille characters. Series with more items than dots show the least and the
// greatest value of each column of dots. Labels are made only of what is in sight.
class PlotPicture {
public:
    PlotPicture(Frame const &frame, PlotPoints const &points);

    void Draw(PlotLook const &look, TextCanvas &canvas) const;
    // The item nearest to a cell, 0 when none is near.
    int ItemAt(int x, int y) const;
    // What these two cells and those between show.
    Area AreaOf(int x0, int y0, int x1, int y1) const;

private:
    bool AreBars() const;
    int CellsForItem() const;
    int SlotX(int item) const; // where the bars of an item begin
    int DotX(double x) const;
    int DotY(double y) const;
    int CellX(int item) const { return DotX(m_points.X(item)) / TextCanvas::dotsAcross; }
    int CellY(std::size_t series, int item) const { return DotY(m_points.Y(series, item)) / TextCanvas::dotsDown; }
    void DrawHead(PlotLook const &look, TextCanvas &canvas) const;
    void DrawValueAxis(TextCanvas &canvas) const;
    void DrawItemAxis(PlotLook const &look, TextCanvas &canvas) const;
    void DrawItemTicks(PlotLook const &look, TextCanvas &canvas) const;
    void DrawZero(TextCanvas &canvas) const;
    void DrawBars(PlotLook const &look, TextCanvas &canvas) const;
    void DrawCurve(std::size_t series, TextCanvas &canvas) const;
    void DrawEnvelope(std::size_t series, TextCanvas &canvas) const;
    void DrawPoints(std::size_t series, TextCanvas &canvas) const;
    void DrawMarks(PlotLook const &look, TextCanvas &canvas) const;
    void DrawLabels(PlotLook const &look, TextCanvas &canvas) const;
    bool DrawLabel(int item, int labels, Ink ink, TextCanvas &canvas) const;
    void DrawArea(Area const &area, TextCanvas &canvas) const;

    Frame m_frame, m_inner;
    PlotPoints const &m_points;
};
