#pragma once

#include "engine/data/DataSet_internal.h"

namespace engine {

// A data set as the source of a model's terms. The model counts columns as the data set that it was fitted to; in any
// other they are found by variable, and dates count from the first day of that data set. Columns below 0 are those of
// its levels. The response of a model of batches is treated as the model says, batch by batch.
class ModelColumns final : public SourceColumns {
public:
    // `chosen` are the rows that the model is about, from 0.
    ModelColumns(ModelDefinition const &definition, boost::shared_ptr<DataSet const> fitted,
                 boost::shared_ptr<DataSet const> rows, std::span<int const> chosen);

    std::span<float const> Values(int column) const override;
    std::span<float const> Untreated(int column) const override;
    std::string Name(int column) const override;
    std::span<int const> Groups() const override { return m_groups; }
    std::span<int const> BatchBeginnings() const override { return m_beginnings; }

private:
    void FindBatches();
    void MakeLevels(std::vector<Level> const &levels);
    void Treat(int treatment, int column, std::span<int const> chosen);

    boost::shared_ptr<DataSet const> m_fitted;
    boost::shared_ptr<DataSet const> m_rows;
    std::vector<int> m_groups;
    std::vector<std::vector<float>> m_levels; // the columns of the levels of the model
    std::vector<std::string> m_levelNames;
    std::vector<int> m_beginnings;                         // of the batch of each row, for lagged terms
    std::unordered_map<int, std::vector<float>> m_dates;   // of other rows, by column of the model's data set
    std::unordered_map<int, std::vector<float>> m_treated; // the same of responses
};

// The group of each row of a data set by its text in the identifier column of that name, -1 for a text that is no
// group.
std::vector<int> GroupsOf(DataSet const &rows, std::string const &identifier, std::vector<std::string> const &groups);

} // namespace engine
