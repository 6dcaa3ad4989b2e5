#pragma once

#include "engine/DateColumn.h"
#include "engine/PackedTexts.h"
#include "engine/Progress.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace engine {

enum class DataSetKind {
    Data,
    Prediction,       // observations that models predict
    Derived,          // made of other data sets and models by a recipe
    DerivedPrediction // the same of a prediction set
};

inline bool IsDerived(DataSetKind kind) {
    return kind == DataSetKind::Derived || kind == DataSetKind::DerivedPrediction;
}

// What a project knows of a data set without reading its values.
struct DataSetRecord {
    int number = 0; // counted from 1, never given twice
    std::string name;
    DataSetKind kind = DataSetKind::Data;
    std::size_t observations = 0;
    std::size_t variables = 0;
};

// A data set to be stored. It refers to what its maker holds.
struct NewDataSet {
    std::string_view name;
    std::span<TextColumn const> observations;    // at least one, each with a text for every observation
    std::span<TextColumn const> variables;       // at least one, each with a text for every variable
    std::span<std::vector<float> const> columns; // for each variable a value for every observation, -99 missing
    DataSetKind kind = DataSetKind::Data;
    std::span<DateColumn const> dates = {}; // of the variables that hold dates
    std::span<std::byte const> recipe = {}; // of a derived one; its maker's own
};

// What a project knows of a model without reading its definition or results.
struct ModelRecord {
    int number = 0; // counted from 1, never given twice
    std::string name;
    std::vector<int> dataSets; // the numbers of those it is made of
    bool fitted = false;       // there are results
};

// A project in one file. Every change is stored whole or not at all, even when the process is killed in the middle of
// it; a change outside of a Transaction is a transaction of its own. One object writes a file at a time; any number may
// read it meanwhile. Nothing is kept in memory: each question is answered from the file.
//
// Opening checks the kind and version of the file, its directory pages, and all records. Values, identifiers,
// definitions and results carry a checksum that is verified whenever one is read. A damaged file throws NCError.
//
// All operations throw NCError: for a number that the project doesn't have, for a change of a file that is open for
// reading, for a file that can't be read or written. An object serves one thread at a time.
class DATASERIES_API ProjectFile {
public:
    // A new project with what `fill` puts in. The path must not exist. It does so once the project is whole: whatever
    // fails before leaves nothing, and what a killed process left is cleaned up by the next one.
    static ProjectFile Create(std::filesystem::path const &path, std::function<void(ProjectFile &)> const &fill = {});
    static ProjectFile OpenToWrite(std::filesystem::path const &path);
    static ProjectFile OpenToRead(std::filesystem::path const &path);

    ProjectFile(ProjectFile &&other) noexcept;
    ProjectFile &operator=(ProjectFile &&other) noexcept;
    ~ProjectFile();

    // The files that belong to a project: the one of that path, whatever its spelling, and those that stand beside it
    // while it is made, open or left by a killed process.
    static std::vector<std::filesystem::path> FilesOf(std::filesystem::path const &path);

    std::filesystem::path const &Path() const;
    bool IsWritable() const;

    // In the order of their numbers.
    std::vector<DataSetRecord> DataSets() const;
    DataSetRecord DataSet(int number) const;
    std::vector<TextColumn> ObservationIdentifiers(int dataSet) const;
    std::vector<TextColumn> VariableIdentifiers(int dataSet) const;
    // The values of one variable, counted from 1.
    std::vector<float> Column(DataSetRecord const &dataSet, int variable) const;
    std::vector<float> Column(int dataSet, int variable) const { return Column(DataSet(dataSet), variable); }
    // The dates of the variables that hold dates.
    std::vector<DateColumn> Dates(int dataSet) const;
    // Of a derived data set.
    std::vector<std::byte> Recipe(int dataSet) const;

    // Answers the number of the data set. A prediction set becomes the current one. Throws Cancelled, with nothing
    // stored.
    int AddDataSet(NewDataSet const &dataSet, Progress const &progress = {});
    void RenameDataSet(int number, std::string_view name);
    // Throws NCError when a model is made of it. In place of the current prediction set, the newest one becomes
    // current.
    void DeleteDataSet(int number);

    // The number of the prediction set that models predict; 0 when there is none.
    int CurrentPredictionSet() const;
    // NCError when the number is not that of a prediction set.
    void UsePredictionSet(int number);

    std::vector<ModelRecord> Models() const;
    ModelRecord Model(int number) const;
    std::vector<std::byte> Definition(int model) const;
    // Nothing when the model isn't fitted.
    std::optional<std::vector<std::byte>> Results(int model) const;

    // Answers the number of the model. Definition and results are the caller's own.
    int AddModel(std::string_view name, std::span<int const> dataSets, std::span<std::byte const> definition);
    // Results stay.
    void ChangeModel(int number, std::string_view name, std::span<int const> dataSets,
                     std::span<std::byte const> definition);
    void SetResults(int model, std::span<std::byte const> results);
    void DropResults(int model);
    void DeleteModel(int number);

    // In the order of their bytes.
    std::vector<std::string> SectionNames() const;
    // Nothing when there is no such section.
    std::optional<std::string> Section(std::string_view name) const;
    void SetSection(std::string_view name, std::string_view text);
    // Nothing happens when there is none.
    void DeleteSection(std::string_view name);

    // Saved plots, in the order in which they were saved first. Names are texts of UTF-8 that are not empty.
    std::vector<std::string> PlotNames() const;
    // NCError when there is none of that name.
    std::string Plot(std::string_view name) const;
    // In the place of the one of that name, if any.
    void SetPlot(std::string_view name, std::string_view text);
    // Keeps its place. NCError when there is none, or one that has the new name.
    void RenamePlot(std::string_view name, std::string_view newName);
    // NCError when there is none.
    void DeletePlot(std::string_view name);

private:
    friend class Transaction;
    class Implementation;

    explicit ProjectFile(std::unique_ptr<Implementation> implementation);

    std::unique_ptr<Implementation> m_implementation;
};

// Changes that belong together: kept by Commit, taken back when the object ends without it. Transactions nest; an inner
// one is kept with the outer one. On a file that is open for reading, all reads within it see one state.
class DATASERIES_API Transaction {
public:
    explicit Transaction(ProjectFile const &file);
    ~Transaction();
    Transaction(Transaction const &) = delete;
    Transaction &operator=(Transaction const &) = delete;

    void Commit();

private:
    friend class ProjectFile;
    explicit Transaction(ProjectFile::Implementation &file);

    ProjectFile::Implementation &m_file;
    bool m_nested;
    bool m_open = true;
};

} // namespace engine
