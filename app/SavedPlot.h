#pragma once

#include "app/BuiltPlot.h"
#include "app/SelectionOptions.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

// A plot that was kept, as it can be shown now. Never moved: its selection is what a BuiltPlot borrows.
struct SavedPlot {
    std::unique_ptr<SelectDataSeriesData> selection;
    PictureSettings settings;
    std::vector<std::string> losses; // what is not there any more, one text each

    // The script of its picture; a colouring that is not there any more becomes a loss.
    std::string Script(BuiltPlot const &built);
};

// A plot as text, of whatever project: the section of its selection, and what belongs to its picture. Items that it
// shows or leaves out are kept by their names.
std::string PlotText(SelectDataSeriesData const &selection, ShownItems const &items, PictureSettings const &settings);

// The text in lines, as files have it; nothing for a text that is no plot.
std::optional<std::string> InLines(std::string const &text);

// The plot of a text; of another model, when one is given, wherever it is of a model. NCError with the reasons when
// nothing of it can be shown.
SavedPlot ReadPlot(boost::shared_ptr<engine::Project> const &project, std::string const &text,
                   std::optional<int> model = {});
