#pragma once

#include "app/TransformOptions.h"
#include "engine/Project.h"
#include "selection/SelectDataSeriesData.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

// Which of the items that all series have are shown, by their names; all of them where nothing is named.
struct ShownItems {
    std::vector<std::string> batches, only, without;
};

// A selection as a person asks for it: vectors in their short form ("t:2", "YPred:octane@M1", "Num"), names in lists
// that are separated by commas.
struct SelectionRequest {
    std::optional<ProjectVector::VectorTypeEnum> axis;
    std::string x;
    std::string y;
    std::vector<std::string> series;
    SelectDataSeriesData::ScaleType scale = SelectDataSeriesData::ScaleNone;
    ShownItems items; // batches: of the series where these are of batches, of the items otherwise
    std::optional<double> multiplier;
    TransformRequest transform;
};

// Adds --axis, --x, --y, --series, --scale, --only, --without, --multiplier, --batches, --chart, --transform and their
// settings.
void AddSelectionOptions(CLI::App &command, SelectionRequest &request);

// What the help of a command tells about them.
extern char const *const selectionFooter;

// The selection that is asked for; `items` becomes the names of the items that it shows. Errors of the options: what is
// not there, and what gives no data.
SelectDataSeriesData Select(boost::shared_ptr<engine::Project> const &project, SelectionRequest const &request,
                            ShownItems &items);

// Shows these of the items; answers what is not among them, in words.
std::vector<ExceptionMessage> Show(SelectDataSeriesData &selection, ShownItems const &items);
