#include "engine/ProjectFile.h"

#include "engine/storage/ProjectFile_internal.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace engine {

namespace {

// The path by which all names of a file share one lock.
std::filesystem::path RealPath(std::filesystem::path const &path) {
    if (path.empty())
        throw NCError(ExceptionMessage::translate("A project needs the name of a file."), NCError::Error);
    return std::filesystem::weakly_canonical(path);
}

std::filesystem::path ExistingPath(std::filesystem::path const &path) {
    if (!std::filesystem::exists(path))
        throw NCError(ExceptionMessage::translate("The project {1} doesn't exist.") % path.string(), NCError::Error);
    if (std::filesystem::is_directory(path))
        throw NCError(ExceptionMessage::translate("{1} is a folder, expected a project.") % path.string(),
                      NCError::Error);
    return RealPath(path);
}

// What SQLite keeps beside a file.
constexpr char const *sideEndings[] = {"-wal", "-shm", "-journal"};

std::filesystem::path DraftOf(std::filesystem::path const &path) {
    return path.string() + ".new";
}

// What a killed process left beside a project that is no more would be taken for a part of the new one.
void RemoveLeftovers(std::filesystem::path const &path) {
    std::error_code notThere;
    for (char const *ending : sideEndings)
        std::filesystem::remove(path.string() + ending, notThere);
}

// A project that is being made, with what stands beside it: gone again unless it is kept.
class Draft {
public:
    explicit Draft(std::filesystem::path path) : m_path(std::move(path)) { Remove(); }
    ~Draft() {
        if (!m_kept)
            Remove();
    }
    Draft(Draft const &) = delete;
    Draft &operator=(Draft const &) = delete;

    std::filesystem::path const &Path() const { return m_path; }
    void MoveTo(std::filesystem::path const &path) {
        std::filesystem::rename(m_path, path);
        m_path = path;
    }
    void Keep() { m_kept = true; }

private:
    void Remove() const {
        std::error_code notThere;
        std::filesystem::remove(m_path, notThere);
        RemoveLeftovers(m_path);
    }

    std::filesystem::path m_path;
    bool m_kept = false;
};

bool AllHave(std::span<TextColumn const> columns, std::size_t count) {
    return std::ranges::all_of(columns, [&](TextColumn const &column) { return column.texts.size() == count; });
}

void CheckShape(NewDataSet const &dataSet) {
    if (dataSet.observations.empty() || dataSet.variables.empty())
        throw NCInternalError("ProjectFile::AddDataSet", ExceptionMessage::translate("no identifiers"));
    std::size_t const observations = dataSet.observations.front().texts.size();
    bool const even =
        AllHave(dataSet.observations, observations) && AllHave(dataSet.variables, dataSet.columns.size()) &&
        std::ranges::all_of(dataSet.columns, [&](auto const &column) { return column.size() == observations; }) &&
        std::ranges::all_of(dataSet.dates, [&](auto const &column) { return column.days.size() == observations; });
    if (!even)
        throw NCInternalError("ProjectFile::AddDataSet", ExceptionMessage::translate("columns of unequal length"));
}

template <typename Number>
std::vector<Number> NumbersIn(std::span<std::byte const> bytes) {
    std::vector<Number> numbers(bytes.size() / sizeof(Number));
    std::ranges::copy(bytes.first(numbers.size() * sizeof(Number)), std::as_writable_bytes(std::span(numbers)).begin());
    return numbers;
}

} // namespace

ProjectFile::ProjectFile(std::unique_ptr<Implementation> implementation)
    : m_implementation(std::move(implementation)) {}
ProjectFile::ProjectFile(ProjectFile &&other) noexcept = default;
ProjectFile &ProjectFile::operator=(ProjectFile &&other) noexcept = default;
ProjectFile::~ProjectFile() = default;

// Written under another name first: under its own name, the file is whole from the first moment.
ProjectFile ProjectFile::Create(std::filesystem::path const &path, std::function<void(ProjectFile &)> const &fill) {
    std::filesystem::path const real = RealPath(path);
    auto lock = std::make_unique<WriterLock>(real);
    if (std::filesystem::exists(real))
        throw NCError(ExceptionMessage::translate("{1} exists already.") % real.string(), NCError::Error);
    Draft draft(DraftOf(real));
    RemoveLeftovers(real);
    Implementation::WriteEmpty(draft.Path());
    if (fill) {
        ProjectFile file = OpenToWrite(draft.Path());
        fill(file);
    }
    Implementation::LetOthersRead(draft.Path());
    draft.MoveTo(real);
    ProjectFile file(std::make_unique<Implementation>(real, std::move(lock)));
    draft.Keep();
    return file;
}

ProjectFile ProjectFile::OpenToWrite(std::filesystem::path const &path) {
    std::filesystem::path const real = ExistingPath(path);
    return ProjectFile(std::make_unique<Implementation>(real, std::make_unique<WriterLock>(real)));
}

ProjectFile ProjectFile::OpenToRead(std::filesystem::path const &path) {
    return ProjectFile(std::make_unique<Implementation>(ExistingPath(path), nullptr));
}

std::vector<std::filesystem::path> ProjectFile::FilesOf(std::filesystem::path const &path) {
    std::filesystem::path const real = RealPath(path);
    std::vector<std::filesystem::path> files;
    for (std::filesystem::path const &file : {real, DraftOf(real)}) {
        files.push_back(file);
        files.push_back(WriterLock::PathOf(file));
        for (char const *ending : sideEndings)
            files.push_back(file.string() + ending);
    }
    return files;
}

std::filesystem::path const &ProjectFile::Path() const {
    return m_implementation->path;
}

bool ProjectFile::IsWritable() const {
    return m_implementation->IsWritable();
}

std::vector<DataSetRecord> ProjectFile::DataSets() const {
    std::vector<StoredDataSet> const stored = m_implementation->DataSets();
    return {stored.begin(), stored.end()};
}

DataSetRecord ProjectFile::DataSet(int number) const {
    return m_implementation->DataSet(number);
}

std::vector<TextColumn> ProjectFile::ObservationIdentifiers(int dataSet) const {
    StoredDataSet const record = m_implementation->DataSet(dataSet);
    return m_implementation->ReadTextColumns(Part::ObservationIdentifier, dataSet, record.observationIdentifiers,
                                             record.observations);
}

std::vector<TextColumn> ProjectFile::VariableIdentifiers(int dataSet) const {
    StoredDataSet const record = m_implementation->DataSet(dataSet);
    return m_implementation->ReadTextColumns(Part::VariableIdentifier, dataSet, record.variableIdentifiers,
                                             record.variables);
}

std::vector<float> ProjectFile::Column(DataSetRecord const &dataSet, int variable) const {
    std::vector<float> values;
    m_implementation->ReadBlock(Part::Column, dataSet.number, variable,
                                [&](auto, std::span<std::byte const> bytes) { values = NumbersIn<float>(bytes); });
    m_implementation->CheckCount(dataSet.number, "values", values.size(), dataSet.observations);
    return values;
}

// The name of the block is the number of the variable.
std::vector<DateColumn> ProjectFile::Dates(int dataSet) const {
    std::vector<DateColumn> dates;
    StoredDataSet const record = m_implementation->DataSet(dataSet);
    for (int position = 1; position <= static_cast<int>(record.dateVariables); ++position)
        m_implementation->ReadBlock(
            Part::Dates, dataSet, position, [&](std::string_view name, std::span<std::byte const> bytes) {
                DateColumn &column = dates.emplace_back(DateColumn{0, NumbersIn<double>(bytes)});
                std::from_chars(name.data(), name.data() + name.size(), column.variable);
                if (column.variable < 1 || static_cast<std::size_t>(column.variable) > record.variables)
                    m_implementation->database.ThrowDamaged("dates of no variable");
                m_implementation->CheckCount(dataSet, "dates", column.days.size(), record.observations);
            });
    return dates;
}

std::vector<std::byte> ProjectFile::Recipe(int dataSet) const {
    return m_implementation->ReadBytes(Part::Recipe, dataSet);
}

int ProjectFile::AddDataSet(NewDataSet const &dataSet, Progress const &progress) {
    CheckShape(dataSet);
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    StoredDataSet stored;
    stored.number = file.Next(Counter::DataSet);
    stored.name = dataSet.name;
    stored.kind = dataSet.kind;
    stored.observations = dataSet.observations.front().texts.size();
    stored.variables = dataSet.columns.size();
    stored.observationIdentifiers = dataSet.observations.size();
    stored.variableIdentifiers = dataSet.variables.size();
    stored.dateVariables = dataSet.dates.size();
    file.ReplaceDataSet(stored);
    file.WriteTextColumns(Part::ObservationIdentifier, stored.number, dataSet.observations);
    file.WriteTextColumns(Part::VariableIdentifier, stored.number, dataSet.variables);
    for (std::size_t column = 0; column < stored.variables; ++column) {
        progress.Report(static_cast<double>(column) / static_cast<double>(stored.variables));
        file.ReplaceBlock(Part::Column, stored.number, static_cast<int>(column + 1), {},
                          std::as_bytes(std::span(dataSet.columns[column])));
    }
    int position = 0;
    for (DateColumn const &column : dataSet.dates)
        file.ReplaceBlock(Part::Dates, stored.number, ++position, std::to_string(column.variable),
                          std::as_bytes(std::span(column.days)));
    if (!dataSet.recipe.empty())
        file.AddRecipe(stored.number, dataSet.recipe);
    if (stored.kind == DataSetKind::Prediction)
        file.SetCounter(Counter::CurrentPredictionSet, stored.number);
    progress.Report(1.0);
    change.Commit();
    return stored.number;
}

void ProjectFile::RenameDataSet(int number, std::string_view name) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    StoredDataSet dataSet = file.DataSet(number);
    dataSet.name = name;
    file.ReplaceDataSet(dataSet);
    change.Commit();
}

void ProjectFile::DeleteDataSet(int number) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    file.DataSet(number);
    if (int const user = file.UserOfDataSet(number); user != 0)
        throw NCError(ExceptionMessage::translate("Data set {1} can't be deleted: model {2} is made of it.") % number %
                          user,
                      NCError::Error);
    file.DeleteDataSet(number);
    if (file.CounterValue(Counter::CurrentPredictionSet) == number) {
        int newest = 0;
        for (StoredDataSet const &left : file.DataSets())
            newest = left.kind == DataSetKind::Prediction ? left.number : newest;
        file.SetCounter(Counter::CurrentPredictionSet, newest);
    }
    change.Commit();
}

int ProjectFile::CurrentPredictionSet() const {
    return m_implementation->CounterValue(Counter::CurrentPredictionSet);
}

void ProjectFile::UsePredictionSet(int number) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    if (file.DataSet(number).kind != DataSetKind::Prediction)
        throw NCError(ExceptionMessage::translate("Data set {1} is no prediction set.") % number, NCError::Error);
    file.SetCounter(Counter::CurrentPredictionSet, number);
    change.Commit();
}

std::vector<ModelRecord> ProjectFile::Models() const {
    return m_implementation->Models();
}

ModelRecord ProjectFile::Model(int number) const {
    return m_implementation->Model(number);
}

std::vector<std::byte> ProjectFile::Definition(int model) const {
    return m_implementation->ReadBytes(Part::Definition, model);
}

std::optional<std::vector<std::byte>> ProjectFile::Results(int model) const {
    if (!m_implementation->Model(model).fitted)
        return std::nullopt;
    return m_implementation->ReadBytes(Part::Results, model);
}

int ProjectFile::AddModel(std::string_view name, std::span<int const> dataSets, std::span<std::byte const> definition) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    int const number = file.Next(Counter::Model);
    file.ReplaceModel({number, {}, {}, false});
    ChangeModel(number, name, dataSets, definition);
    change.Commit();
    return number;
}

void ProjectFile::ChangeModel(int number, std::string_view name, std::span<int const> dataSets,
                              std::span<std::byte const> definition) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    ModelRecord model = file.Model(number);
    for (int const dataSet : dataSets)
        file.DataSet(dataSet);
    model.name = name;
    model.dataSets.assign(dataSets.begin(), dataSets.end());
    file.ReplaceModel(model);
    file.ReplaceBlock(Part::Definition, number, 1, {}, definition);
    change.Commit();
}

void ProjectFile::SetResults(int model, std::span<std::byte const> results) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    ModelRecord record = file.Model(model);
    record.fitted = true;
    file.ReplaceModel(record);
    file.ReplaceBlock(Part::Results, model, 1, {}, results);
    change.Commit();
}

void ProjectFile::DropResults(int model) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    ModelRecord record = file.Model(model);
    record.fitted = false;
    file.ReplaceModel(record);
    file.DeleteBlocks(Part::Results, model);
    change.Commit();
}

void ProjectFile::DeleteModel(int number) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    file.DeleteModel(number);
    change.Commit();
}

std::vector<std::string> ProjectFile::SectionNames() const {
    std::vector<std::string> names;
    for (auto &section : m_implementation->Sections())
        names.push_back(std::move(section.first));
    return names;
}

std::optional<std::string> ProjectFile::Section(std::string_view name) const {
    return m_implementation->Section(name);
}

void ProjectFile::SetSection(std::string_view name, std::string_view text) {
    m_implementation->Writable().ReplaceSection(name, text);
}

void ProjectFile::DeleteSection(std::string_view name) {
    m_implementation->Writable().DeleteSection(name);
}

std::vector<std::string> ProjectFile::PlotNames() const {
    std::vector<std::string> names;
    for (StoredPlot &plot : m_implementation->Plots())
        names.push_back(std::move(plot.name));
    return names;
}

std::string ProjectFile::Plot(std::string_view name) const {
    return m_implementation->Plot(name).text;
}

void ProjectFile::SetPlot(std::string_view name, std::string_view text) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    StoredPlot plot{0, std::string(name), std::string(text)};
    for (StoredPlot const &stored : file.Plots())
        if (stored.name == name)
            plot.position = stored.position;
    file.ReplacePlot(plot);
    change.Commit();
}

void ProjectFile::RenamePlot(std::string_view name, std::string_view newName) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    StoredPlot plot = file.Plot(name);
    for (StoredPlot const &stored : file.Plots())
        if (stored.name == newName && newName != name)
            throw NCError(ExceptionMessage::translate("The project {1} has a plot \"{2}\" already.") % Path().string() %
                              newName,
                          NCError::Error);
    plot.name = newName;
    file.ReplacePlot(plot);
    change.Commit();
}

void ProjectFile::DeletePlot(std::string_view name) {
    Implementation &file = m_implementation->Writable();
    Transaction change(file);
    file.DeletePlot(name);
    change.Commit();
}

Transaction::Transaction(ProjectFile const &file) : Transaction(*file.m_implementation) {}

Transaction::Transaction(ProjectFile::Implementation &file) : m_file(file), m_nested(file.database.InTransaction()) {
    m_file.database.Execute(m_nested ? "SAVEPOINT change" : m_file.IsWritable() ? "BEGIN IMMEDIATE" : "BEGIN");
}

Transaction::~Transaction() {
    if (m_open)
        m_file.database.ExecuteIfPossible(m_nested ? "ROLLBACK TO change; RELEASE change" : "ROLLBACK");
}

void Transaction::Commit() {
    m_file.database.Execute(m_nested ? "RELEASE change" : "COMMIT");
    m_open = false;
}

} // namespace engine
