#pragma once

#include "app/PlotScript.h"

#include <string>

// What the scripts for gnuplot have in common.

// A text in double quotes, with all that means something there to gnuplot (and to the shell that it would run for a
// back quote) as an octal escape. Not in single quotes: gnuplot 5.4 misreads a text that begins with one.
std::string Quoted(std::string const &text);
// The same for a label of an axis, which is a format for its position.
std::string QuotedFormat(std::string const &text);
// As much of a label as a picture has room for.
std::string Shortened(std::string const &text);
std::string Number(double value);
// 1, 2 or 5 times a power of ten, not below a number above 0: a step of an axis.
double RoundStep(double least);
// Whether a cell has a value to draw.
bool IsShown(float value);
// Of the series at a position from 0, for "lc rgb".
std::string SeriesColour(std::size_t position);
// Of the class at a position from 0, told apart by people of any colour vision (Okabe & Ito 2008; Tol 2021): the
// colour, and for points the shape too, "pt 7 lc rgb '#0072b2'".
std::string ClassColour(std::size_t position);
std::string ClassMark(std::size_t position);
// Of what is marked, unlike all of the above, for "lc rgb"; and the ring about a marked point, for "with".
extern char const *const markColour;
std::string MarkRing();
// Terminal, borders, grid, key and title.
std::string ScriptHead(PlotStyle const &style);

// What the items along the axis are called, all of them and the one at a position from 0; and labels below the axis,
// where they stand at 1, 2, ...: all of them, those of bars turned where they need it, or as many as have room side by
// side.
std::string ItemsTitle(ColumnIDs const &items, ProjectVector::VectorTypeEnum axis);
std::string ItemLabel(ColumnIDs const &items, std::size_t item);
std::string ItemTics(ColumnIDs const &items, PlotStyle const &style, bool isBars);
