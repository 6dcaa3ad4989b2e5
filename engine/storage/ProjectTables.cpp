#include "engine/storage/ProjectFile_internal.h"

#include <algorithm>
#include <cstring>
#include <system_error>

namespace engine {

namespace {

constexpr std::int64_t applicationId = 0x44536572; // "DSer"
constexpr std::int64_t schemaVersion = 2;
// Of a project with derived data sets, which older versions of the program do not know.
constexpr std::int64_t versionWithRecipes = 3;

// Columns of a hundred observations and of a million are both common: pages between the two.
constexpr char schema[] = R"(
    PRAGMA page_size = 8192;
    PRAGMA application_id = 0x44536572;
    PRAGMA user_version = 2;
    BEGIN;
    CREATE TABLE counter (id INTEGER PRIMARY KEY, next_data_set INTEGER NOT NULL, next_model INTEGER NOT NULL,
        current_prediction_set INTEGER NOT NULL, checksum INTEGER NOT NULL);
    CREATE TABLE data_set (number INTEGER PRIMARY KEY, name TEXT NOT NULL, kind INTEGER NOT NULL,
        observations INTEGER NOT NULL, variables INTEGER NOT NULL, observation_identifiers INTEGER NOT NULL,
        variable_identifiers INTEGER NOT NULL,
        date_variables INTEGER NOT NULL, checksum INTEGER NOT NULL);
    CREATE TABLE model (number INTEGER PRIMARY KEY, name TEXT NOT NULL, data_sets BLOB NOT NULL,
        fitted INTEGER NOT NULL, checksum INTEGER NOT NULL);
    CREATE TABLE section (name TEXT PRIMARY KEY, text TEXT NOT NULL, checksum INTEGER NOT NULL) WITHOUT ROWID;
    CREATE TABLE block (part INTEGER NOT NULL, owner INTEGER NOT NULL, position INTEGER NOT NULL, name TEXT NOT NULL,
        checksum INTEGER NOT NULL, bytes BLOB NOT NULL, UNIQUE (part, owner, position));
)";

// Made with the first plot that is saved: projects of earlier versions of this program, which need not know of plots,
// have none.
constexpr char plotSchema[] = R"(
    CREATE TABLE IF NOT EXISTS plot (position INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, text TEXT NOT NULL,
        checksum INTEGER NOT NULL);
)";

Checksum SumOf(Counters const &counters) {
    return Checksum().Add(std::as_bytes(std::span(counters)));
}

Checksum SumOf(StoredDataSet const &dataSet) {
    std::array<std::int64_t, 7> const numbers = {dataSet.number,
                                                 static_cast<int>(dataSet.kind),
                                                 static_cast<std::int64_t>(dataSet.observations),
                                                 static_cast<std::int64_t>(dataSet.variables),
                                                 static_cast<std::int64_t>(dataSet.observationIdentifiers),
                                                 static_cast<std::int64_t>(dataSet.variableIdentifiers),
                                                 static_cast<std::int64_t>(dataSet.dateVariables)};
    return Checksum().Add(std::as_bytes(std::span(numbers))).Add(dataSet.name);
}

Checksum SumOf(ModelRecord const &model) {
    return Checksum().Add(model.number).Add(model.fitted).Add(std::as_bytes(std::span(model.dataSets))).Add(model.name);
}

Checksum SumOf(std::string_view sectionName, std::string_view text) {
    return Checksum().Add(sectionName).Add(text);
}

Checksum SumOf(StoredPlot const &plot) {
    return Checksum().Add(plot.position).Add(plot.name).Add(plot.text);
}

Checksum SumOf(Part part, int owner, int position, std::string_view name, std::span<std::byte const> bytes) {
    return Checksum().Add(static_cast<int>(part)).Add(owner).Add(position).Add(name).Add(bytes);
}

void ReplaceCounters(Database &database, Counters const &counters) {
    Statement(database, "REPLACE INTO counter VALUES (1, ?, ?, ?, ?)", counters[0], counters[1], counters[2],
              SumOf(counters).Value())
        .Run();
}

bool IsOfModel(Part part) {
    return part == Part::Definition || part == Part::Results;
}

std::string Owner(Part part, int number) {
    return (IsOfModel(part) ? "model " : "data set ") + std::to_string(number);
}

} // namespace

ProjectFile::Implementation::Implementation(std::filesystem::path file, std::unique_ptr<WriterLock> lock)
    : path(std::move(file)), m_lock(std::move(lock)),
      database(path.string(), path.string(), m_lock ? Database::Mode::ReadWrite : Database::Mode::ReadOnly) {
    CheckVersion();
    database.Execute("PRAGMA journal_size_limit = 67108864; PRAGMA cache_size = -16000;");
    CheckRecords();
}

void ProjectFile::Implementation::WriteEmpty(std::filesystem::path const &path) {
    Database database(path.string(), path.string(), Database::Mode::Create);
    database.Execute(schema);
    ReplaceCounters(database, {1, 1, 0});
    database.Execute("COMMIT");
}

void ProjectFile::Implementation::LetOthersRead(std::filesystem::path const &path) {
    Database(path.string(), path.string(), Database::Mode::ReadWrite).Execute("PRAGMA journal_mode = WAL");
}

ProjectFile::Implementation &ProjectFile::Implementation::Writable() {
    if (!m_lock)
        throw NCError(ExceptionMessage::translate("The project {1} is open for reading only.") % path.string(),
                      NCError::Error);
    return *this;
}

void ProjectFile::Implementation::CheckVersion() {
    if (database.Number("PRAGMA application_id") != applicationId)
        throw NCError(ExceptionMessage::translate("{1} is not a project.") % path.string(), NCError::Error);
    std::int64_t const version = database.Number("PRAGMA user_version");
    if (version != schemaVersion && version != versionWithRecipes)
        throw NCError(
            ExceptionMessage::translate("The project {1} has format {2}, expected format {3}: {4} version of this "
                                        "program wrote it.") %
                path.string() % version % versionWithRecipes % (version < schemaVersion ? "an older" : "a newer"),
            NCError::Error);
}

// The pages of the records, not those of the blocks: a project of a gigabyte opens in milliseconds.
void ProjectFile::Implementation::CheckRecords() {
    std::vector<char const *> tables = {"sqlite_schema", "counter", "data_set", "model", "section"};
    if (HasPlots())
        tables.push_back("plot");
    for (char const *table : tables) {
        Statement check(database, (std::string("PRAGMA quick_check(") + table + ")").c_str());
        if (!check.Step() || check.Text(1) != "ok")
            database.ThrowDamaged(std::string(check.Text(1)));
    }
    ReadCounters();
    std::vector<StoredDataSet> const dataSets = DataSets();
    auto const isThere = [&dataSets](int number) {
        return std::ranges::find(dataSets, number, &StoredDataSet::number) != dataSets.end();
    };
    for (ModelRecord const &model : Models())
        if (model.dataSets.empty() || !std::ranges::all_of(model.dataSets, isThere))
            database.ThrowDamaged("a data set of model " + std::to_string(model.number) + " is missing");
    Sections();
    Plots();
}

void ProjectFile::Implementation::CheckSum(Checksum const &sum, std::int64_t stored, std::string const &what) const {
    if (sum.Value() != stored)
        database.ThrowDamaged((ExceptionMessage::translate("the checksum of {1} is wrong") % what).Text());
}

std::vector<StoredDataSet> ProjectFile::Implementation::DataSets() {
    std::vector<StoredDataSet> dataSets;
    Statement row(database, "SELECT * FROM data_set ORDER BY number");
    while (row.Step())
        dataSets.push_back(ReadDataSet(row));
    return dataSets;
}

StoredDataSet ProjectFile::Implementation::DataSet(int number) {
    Statement row(database, "SELECT * FROM data_set WHERE number = ?", number);
    if (!row.Step())
        throw NCError(ExceptionMessage::translate("The project {1} has no data set {2}.") % path.string() % number,
                      NCError::Error);
    return ReadDataSet(row);
}

StoredDataSet ProjectFile::Implementation::ReadDataSet(Statement const &row) const {
    StoredDataSet dataSet;
    dataSet.number = static_cast<int>(row.Integer(1));
    dataSet.name = row.Text(2);
    dataSet.kind = static_cast<DataSetKind>(row.Integer(3));
    dataSet.observations = static_cast<std::size_t>(row.Integer(4));
    dataSet.variables = static_cast<std::size_t>(row.Integer(5));
    dataSet.observationIdentifiers = static_cast<std::size_t>(row.Integer(6));
    dataSet.variableIdentifiers = static_cast<std::size_t>(row.Integer(7));
    dataSet.dateVariables = static_cast<std::size_t>(row.Integer(8));
    CheckSum(SumOf(dataSet), row.Integer(9), "data set " + std::to_string(dataSet.number));
    return dataSet;
}

void ProjectFile::Implementation::ReplaceDataSet(StoredDataSet const &dataSet) {
    Statement(database, "REPLACE INTO data_set VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)", dataSet.number, dataSet.name,
              static_cast<int>(dataSet.kind), static_cast<std::int64_t>(dataSet.observations),
              static_cast<std::int64_t>(dataSet.variables), static_cast<std::int64_t>(dataSet.observationIdentifiers),
              static_cast<std::int64_t>(dataSet.variableIdentifiers), static_cast<std::int64_t>(dataSet.dateVariables),
              SumOf(dataSet).Value())
        .Run();
}

void ProjectFile::Implementation::AddRecipe(int dataSet, std::span<std::byte const> recipe) {
    database.Execute(("PRAGMA user_version = " + std::to_string(versionWithRecipes)).c_str());
    ReplaceBlock(Part::Recipe, dataSet, 1, {}, recipe);
}

void ProjectFile::Implementation::DeleteDataSet(int number) {
    for (Part const part :
         {Part::Column, Part::ObservationIdentifier, Part::VariableIdentifier, Part::Dates, Part::Recipe})
        DeleteBlocks(part, number);
    Statement(database, "DELETE FROM data_set WHERE number = ?", number).Run();
}

std::vector<ModelRecord> ProjectFile::Implementation::Models() {
    std::vector<ModelRecord> models;
    Statement row(database, "SELECT * FROM model ORDER BY number");
    while (row.Step())
        models.push_back(ReadModel(row));
    return models;
}

ModelRecord ProjectFile::Implementation::Model(int number) {
    Statement row(database, "SELECT * FROM model WHERE number = ?", number);
    if (!row.Step())
        throw NCError(ExceptionMessage::translate("The project {1} has no model {2}.") % path.string() % number,
                      NCError::Error);
    return ReadModel(row);
}

ModelRecord ProjectFile::Implementation::ReadModel(Statement const &row) const {
    ModelRecord model;
    model.number = static_cast<int>(row.Integer(1));
    model.name = row.Text(2);
    std::span<std::byte const> const dataSets = row.Bytes(3);
    model.dataSets.resize(dataSets.size() / sizeof(int));
    std::ranges::copy(dataSets.first(model.dataSets.size() * sizeof(int)),
                      std::as_writable_bytes(std::span(model.dataSets)).begin());
    model.fitted = row.Integer(4) != 0;
    CheckSum(SumOf(model), row.Integer(5), "model " + std::to_string(model.number));
    return model;
}

void ProjectFile::Implementation::ReplaceModel(ModelRecord const &model) {
    Statement(database, "REPLACE INTO model VALUES (?, ?, ?, ?, ?)", model.number, model.name,
              std::as_bytes(std::span(model.dataSets)), model.fitted, SumOf(model).Value())
        .Run();
}

void ProjectFile::Implementation::DeleteModel(int number) {
    Model(number);
    for (Part const part : {Part::Definition, Part::Results})
        DeleteBlocks(part, number);
    Statement(database, "DELETE FROM model WHERE number = ?", number).Run();
}

int ProjectFile::Implementation::UserOfDataSet(int number) {
    for (ModelRecord const &model : Models())
        if (std::ranges::find(model.dataSets, number) != model.dataSets.end())
            return model.number;
    return 0;
}

Counters ProjectFile::Implementation::ReadCounters() {
    Statement row(database,
                  "SELECT next_data_set, next_model, current_prediction_set, checksum FROM counter WHERE id = 1");
    if (!row.Step())
        database.ThrowDamaged("the table of counters is empty");
    Counters const counters = {row.Integer(1), row.Integer(2), row.Integer(3)};
    CheckSum(SumOf(counters), row.Integer(4), "the counters");
    return counters;
}

int ProjectFile::Implementation::CounterValue(Counter counter) {
    return static_cast<int>(ReadCounters()[static_cast<std::size_t>(counter)]);
}

void ProjectFile::Implementation::SetCounter(Counter counter, int value) {
    Counters counters = ReadCounters();
    counters[static_cast<std::size_t>(counter)] = value;
    ReplaceCounters(database, counters);
}

int ProjectFile::Implementation::Next(Counter counter) {
    int const number = CounterValue(counter);
    SetCounter(counter, number + 1);
    return number;
}

void ProjectFile::Implementation::ReplaceBlock(Part part, int owner, int position, std::string_view name,
                                               std::span<std::byte const> bytes) {
    Statement &row = Prepared(m_replaceBlock, "REPLACE INTO block VALUES (?, ?, ?, ?, ?, ?)");
    StatementRun const run(row);
    row.Bind(static_cast<int>(part), owner, position, name, SumOf(part, owner, position, name, bytes).Value(), bytes);
    row.Run();
}

Statement &ProjectFile::Implementation::Prepared(std::optional<Statement> &statement, char const *sql) {
    return statement ? *statement : statement.emplace(database, sql);
}

void ProjectFile::Implementation::FindBlock(Statement &row, Part part, int owner, int position) {
    row.Bind(static_cast<int>(part), owner, position);
    if (!row.Step())
        ThrowNoBlock(part, owner, position);
    CheckSum(SumOf(part, owner, position, row.Text(1), row.Bytes(2)), row.Integer(3),
             "a part of " + Owner(part, owner));
}

// The owner's record is looked at after the block, so that one that another program deletes meanwhile is told as such.
void ProjectFile::Implementation::ThrowNoBlock(Part part, int owner, int position) {
    if (IsOfModel(part))
        Model(owner);
    else if (std::size_t const variables = DataSet(owner).variables;
             part == Part::Column && (position < 1 || static_cast<std::size_t>(position) > variables))
        throw NCError(ExceptionMessage::translate("Data set {1} has {2} variables, asked was variable {3}.") % owner %
                          variables % position,
                      NCError::Error);
    database.ThrowDamaged((ExceptionMessage::translate("a part of {1} is missing") % Owner(part, owner)).Text());
}

void ProjectFile::Implementation::WriteTextColumns(Part part, int owner, std::span<TextColumn const> columns) {
    for (std::size_t index = 0; index < columns.size(); ++index)
        ReplaceBlock(part, owner, static_cast<int>(index + 1), columns[index].name, columns[index].texts.Pack());
}

std::vector<TextColumn> ProjectFile::Implementation::ReadTextColumns(Part part, int owner, std::size_t count,
                                                                     std::size_t items) {
    std::vector<TextColumn> columns;
    for (std::size_t position = 1; position <= count; ++position) {
        ReadBlock(part, owner, static_cast<int>(position),
                  [&](std::string_view name, std::span<std::byte const> bytes) {
                      std::optional<PackedTexts> texts = PackedTexts::Unpack(bytes);
                      CheckCount(owner, "identifiers", texts ? texts->size() : 0, items);
                      columns.push_back({std::string(name), std::move(*texts)});
                  });
    }
    CheckCount(owner, "columns of identifiers", columns.size(), std::max<std::size_t>(count, 1));
    return columns;
}

void ProjectFile::Implementation::CheckCount(int dataSet, char const *what, std::size_t found,
                                             std::size_t expected) const {
    if (found != expected || found == 0)
        database.ThrowDamaged((ExceptionMessage::translate("data set {1} has {2} {3} in a place, expected {4}") %
                               dataSet % found % what % expected)
                                  .Text());
}

void ProjectFile::Implementation::DeleteBlocks(Part part, int owner) {
    Statement(database, "DELETE FROM block WHERE part = ? AND owner = ?", static_cast<int>(part), owner).Run();
}

std::vector<std::pair<std::string, std::string>> ProjectFile::Implementation::Sections() {
    std::vector<std::pair<std::string, std::string>> sections;
    Statement row(database, "SELECT name, text, checksum FROM section ORDER BY name");
    while (row.Step()) {
        sections.emplace_back(row.Text(1), row.Text(2));
        CheckSum(SumOf(row.Text(1), row.Text(2)), row.Integer(3), "section " + sections.back().first);
    }
    return sections;
}

std::optional<std::string> ProjectFile::Implementation::Section(std::string_view name) {
    Statement row(database, "SELECT text, checksum FROM section WHERE name = ?", name);
    if (!row.Step())
        return std::nullopt;
    CheckSum(SumOf(name, row.Text(1)), row.Integer(2), "section " + std::string(name));
    return std::string(row.Text(1));
}

void ProjectFile::Implementation::ReplaceSection(std::string_view name, std::string_view text) {
    Statement(database, "REPLACE INTO section VALUES (?, ?, ?)", name, text, SumOf(name, text).Value()).Run();
}

void ProjectFile::Implementation::DeleteSection(std::string_view name) {
    Statement(database, "DELETE FROM section WHERE name = ?", name).Run();
}

bool ProjectFile::Implementation::HasPlots() {
    return database.Number("SELECT count(*) FROM sqlite_schema WHERE type = 'table' AND name = 'plot'") != 0;
}

std::vector<StoredPlot> ProjectFile::Implementation::Plots() {
    std::vector<StoredPlot> plots;
    if (!HasPlots())
        return plots;
    Statement row(database, "SELECT * FROM plot ORDER BY position");
    while (row.Step())
        plots.push_back(ReadPlot(row));
    return plots;
}

StoredPlot ProjectFile::Implementation::Plot(std::string_view name) {
    if (HasPlots())
        if (Statement row(database, "SELECT * FROM plot WHERE name = ?", name); row.Step())
            return ReadPlot(row);
    throw NCError(ExceptionMessage::translate("The project {1} has no plot \"{2}\".") % path.string() % name,
                  NCError::Error);
}

StoredPlot ProjectFile::Implementation::ReadPlot(Statement const &row) const {
    StoredPlot const plot{static_cast<int>(row.Integer(1)), std::string(row.Text(2)), std::string(row.Text(3))};
    CheckSum(SumOf(plot), row.Integer(4), "plot " + plot.name);
    return plot;
}

void ProjectFile::Implementation::ReplacePlot(StoredPlot const &plot) {
    database.Execute(plotSchema);
    StoredPlot placed = plot;
    if (placed.position == 0)
        placed.position = static_cast<int>(database.Number("SELECT ifnull(max(position), 0) + 1 FROM plot"));
    Statement(database, "REPLACE INTO plot VALUES (?, ?, ?, ?)", placed.position, placed.name, placed.text,
              SumOf(placed).Value())
        .Run();
}

void ProjectFile::Implementation::DeletePlot(std::string_view name) {
    Plot(name);
    Statement(database, "DELETE FROM plot WHERE name = ?", name).Run();
}

} // namespace engine
