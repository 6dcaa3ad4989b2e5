#pragma once

#include "app/TableDates.h"
#include "engine/Project.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

// What tells the observations of a picture apart by colour: the class of each, or a value. One entry for each item.
struct Colouring {
    std::string title;                // an identifier's heading, or what the values are
    std::vector<std::string> classes; // in the order of their first observation; none: by value
    std::vector<int> classOf;         // from 0, -1 for an item without text
    std::vector<float> values;        // -99 for an item without value

    std::size_t Groups() const { return classes.empty() ? 1 : classes.size(); }
    // Which of the groups an item is in, nothing where it is in none. All that have a value are one group.
    std::optional<std::size_t> GroupOf(std::size_t item) const;
};

// More classes than these can't be told apart: the last one is of all others.
constexpr std::size_t mostColouredClasses = 12;

// Adds --color.
CLI::Option *AddColourOption(CLI::App &command, std::string &asked);

// What `asked` names is looked for among the headings of identifier columns, the variables, and the statistics: as an
// argument string ("DModX M1,2,0,0") or as people write it ("DModX:2@M1"). Values of a variable are those of the data
// that the series come from, then those of any data with the observation. Empty: the classes of the first model of the
// series that tells classes apart, otherwise nothing, as for "none". NCError for what is not there, and for a picture
// of something else than observations.
std::optional<Colouring> ReadColouring(boost::shared_ptr<engine::Project> const &project, std::string const &asked,
                                       std::vector<DrawnSeries> const &series, ProjectVector::VectorTypeEnum axis,
                                       ColumnIDs const &items);

// The same by an identifier column for observations by their numbers. NCError when there is no such column.
Colouring ColouringByIdentifier(NCProject const &project, std::string const &heading,
                                std::vector<std::uint32_t> const &observations);
