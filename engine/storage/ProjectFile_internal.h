#pragma once

#include "engine/ProjectFile.h"
#include "engine/storage/Checksum_internal.h"
#include "engine/storage/Database_internal.h"
#include "engine/storage/WriterLock_internal.h"

#include "platform/text/Exception.h"

#include <array>
#include <mutex>
#include <optional>
#include <utility>

namespace engine {

// A record with what only the file needs to know of the data set.
struct StoredDataSet : DataSetRecord {
    std::size_t observationIdentifiers = 0;
    std::size_t variableIdentifiers = 0;
    std::size_t dateVariables = 0;
};

struct StoredPlot {
    int position = 0; // from 1, with gaps
    std::string name, text;
};

// The numbers of the table `counter`: the next data set and model, and the current prediction set or 0.
enum class Counter { DataSet, Model, CurrentPredictionSet };
using Counters = std::array<std::int64_t, 3>;

// Numbers kept in files.
enum class Part { Column = 1, ObservationIdentifier, VariableIdentifier, Definition, Results, Dates, Recipe };

// The tables of the file. Records are small rows, each with a checksum over all its fields; everything big is a row of
// the table `block`, found by its part, its owner (a data set or a model) and its position from 1.
class ProjectFile::Implementation {
public:
    // For reading only without a lock.
    Implementation(std::filesystem::path path, std::unique_ptr<WriterLock> lock);

    // Writes the tables of a project without content.
    static void WriteEmpty(std::filesystem::path const &path);
    // From then on a file can be read while it is written.
    static void LetOthersRead(std::filesystem::path const &path);

    bool IsWritable() const { return m_lock != nullptr; }
    // This, or an error when the file is open for reading.
    Implementation &Writable();

    std::vector<StoredDataSet> DataSets();
    StoredDataSet DataSet(int number);
    void ReplaceDataSet(StoredDataSet const &dataSet);
    void AddRecipe(int dataSet, std::span<std::byte const> recipe);
    void DeleteDataSet(int number);

    std::vector<ModelRecord> Models();
    ModelRecord Model(int number);
    void ReplaceModel(ModelRecord const &model);
    // Throws when there is none.
    void DeleteModel(int number);
    // The number of a model that is made of the data set; 0 when there is none.
    int UserOfDataSet(int number);

    int CounterValue(Counter counter);
    void SetCounter(Counter counter, int value);
    // Answers the number, and counts on.
    int Next(Counter counter);

    void ReplaceBlock(Part part, int owner, int position, std::string_view name, std::span<std::byte const> bytes);
    // Calls use(name, bytes) with what the block holds, for the time of the call. Several threads may ask at once.
    template <typename Use>
    void ReadBlock(Part part, int owner, int position, Use use) {
        std::lock_guard const reading(m_reading);
        Statement &row = Prepared(
            m_readBlock, "SELECT name, bytes, checksum FROM block WHERE part = ? AND owner = ? AND position = ?");
        StatementRun const run(row);
        FindBlock(row, part, owner, position);
        use(row.Text(1), row.Bytes(2));
    }
    // Of a part that is one block.
    std::vector<std::byte> ReadBytes(Part part, int owner) {
        std::vector<std::byte> copy;
        ReadBlock(part, owner, 1,
                  [&](auto, std::span<std::byte const> bytes) { copy.assign(bytes.begin(), bytes.end()); });
        return copy;
    }
    void WriteTextColumns(Part part, int owner, std::span<TextColumn const> columns);
    // At least one, of `items` texts each.
    std::vector<TextColumn> ReadTextColumns(Part part, int owner, std::size_t count, std::size_t items);
    // Throws when a data set does not have as many of something as its record says, or none.
    void CheckCount(int dataSet, char const *what, std::size_t found, std::size_t expected) const;
    void DeleteBlocks(Part part, int owner);

    std::vector<std::pair<std::string, std::string>> Sections();
    std::optional<std::string> Section(std::string_view name);
    void ReplaceSection(std::string_view name, std::string_view text);
    void DeleteSection(std::string_view name);

    std::vector<StoredPlot> Plots();
    // Throws when there is none.
    StoredPlot Plot(std::string_view name);
    // Without a position behind all others.
    void ReplacePlot(StoredPlot const &plot);
    void DeletePlot(std::string_view name);

    std::filesystem::path const path;

private:
    void CheckVersion();
    void CheckRecords();
    void CheckSum(Checksum const &sum, std::int64_t stored, std::string const &what) const;
    StoredDataSet ReadDataSet(Statement const &row) const;
    ModelRecord ReadModel(Statement const &row) const;
    Counters ReadCounters();
    bool HasPlots();
    StoredPlot ReadPlot(Statement const &row) const;
    // Stands on the row of the block, whose checksum is right.
    void FindBlock(Statement &row, Part part, int owner, int position);
    [[noreturn]] void ThrowNoBlock(Part part, int owner, int position);
    Statement &Prepared(std::optional<Statement> &statement, char const *sql);

    std::unique_ptr<WriterLock> m_lock;

public:
    // Closed before the lock is let go.
    Database database;

private:
    // A data set has a block for each variable: to prepare a statement takes longer than to read a short block.
    std::mutex m_reading;
    std::optional<Statement> m_readBlock, m_replaceBlock;
};

} // namespace engine
