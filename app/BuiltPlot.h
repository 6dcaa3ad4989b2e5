#pragma once

#include "app/Listing.h"
#include "app/PlotScript.h"
#include "app/TableDates.h"
#include "building/ProjectDataBuilder.h"
#include "engine/Project.h"
#include "selection/SelectDataSeriesData.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

// What belongs to the picture of a selection, and not to the selection itself.
struct PictureSettings {
    bool isProbability = false; // against normal probabilities
    std::string color;          // as --color has it
    PlotStyle style;
};

// Adds --probability, --color, --title and --size.
void AddPictureSettings(CLI::App &command, PictureSettings &settings);

// UsageError for settings that don't go with the selection, or that only a picture has.
void CheckPicture(PictureSettings const &settings, SelectDataSeriesData const &selection, bool isDrawn);

// The labels that a window shows for the vectors of a selection.
std::vector<std::string> LabelsOf(SelectDataSeriesData const &selection);

// The table of a selection, and the script of its picture. The selection is borrowed. NCError that tells what gives
// nothing, and why.
class BuiltPlot {
public:
    // What is drawn lacks the constant of a regression.
    BuiltPlot(boost::shared_ptr<engine::Project> project, SelectDataSeriesData const &selection, bool isDrawn);

    ProjectData const &Table() const { return m_transformed ? *m_transformed : *m_plain; }
    TableDates const &Dates() const { return m_dates; }
    // With what the manager of marks holds. NCError when there is nothing to draw.
    std::string Script(PictureSettings const &settings) const;

private:
    boost::shared_ptr<engine::Project> m_project;
    SelectDataSeriesData const &m_selection;
    ProjectDataUtilities::ProjectDataBuilder m_builder;
    TablePtr m_plain;       // as it was read
    TablePtr m_transformed; // as its transformation or chart makes it, null without one
    TableDates m_dates;
};

// Where a plot goes: its table, and its picture in place of it or beside it.
struct PlotOutput {
    Format format = Format::Text;
    std::filesystem::path file;    // of the table; empty for standard output
    std::filesystem::path picture; // empty without one

    bool IsDrawn() const { return !picture.empty(); }
    bool HasTable() const { return !IsDrawn() || !file.empty(); }
};

// Adds --format, --output and --plot.
void AddPlotOutput(CLI::App &command, PlotOutput &output);

// UsageError for files that can't be meant.
void CheckPlotOutput(PlotOutput const &output, std::filesystem::path const &project);

void WriteTable(BuiltPlot const &plot, PlotOutput const &output, std::filesystem::path const &project);
