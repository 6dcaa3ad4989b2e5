#pragma once

#include "engine/PackedTexts.h"

#include <optional>
#include <string>
#include <vector>

namespace engine {

// Where the batches of a data set stand, and their phases, by the texts of two identifier columns. Rows count from 0.
//
// For models of batches the rows of a batch follow each other, as do those of a phase within its batch; a batch may
// lack phases, and all batches have theirs in one order.
class BatchLayout {
public:
    // `dataSet` is how messages name it.
    BatchLayout(std::string dataSet, TextColumn batches, std::optional<TextColumn> phases);

    std::string_view BatchOf(int row) const { return m_batches.texts[static_cast<std::size_t>(row)]; }
    bool HasBatch(std::string const &name) const;
    // Whether the row is in a batch and in that phase; in any phase when it is empty.
    bool IsIn(int row, std::string const &phase) const;

    // NCError, which tells the rows, when the rows of a batch do not follow each other.
    void CheckBatches() const { BatchBeginnings(); }

    // In the order in which batches go through them; none without a column of phases. NCError, which tells the rows,
    // when batches and phases do not stand as said above.
    std::vector<std::string> Phases() const;

private:
    std::vector<std::size_t> BatchBeginnings() const;
    void CheckPhases(std::vector<std::size_t> const &beginnings) const;
    std::vector<std::string> OrderedPhases(std::vector<std::size_t> const &beginnings) const;

    std::string m_dataSet;
    TextColumn m_batches;
    std::optional<TextColumn> m_phases;
};

} // namespace engine
