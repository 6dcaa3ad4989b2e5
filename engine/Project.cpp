#include "engine/Project.h"

#include "engine/TableReader.h"
#include "engine/data/DataSet_internal.h"
#include "engine/models/Definition_internal.h"
#include "engine/models/Fit.h"
#include "engine/statistics/Handlers.h"
#include "platform/storage/XercesXMLSection.h"
#include "platform/text/Exception.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <unordered_set>

namespace engine {

namespace {

std::string AsText(std::vector<std::byte> const &bytes) {
    return {reinterpret_cast<char const *>(bytes.data()), bytes.size()};
}

std::span<std::byte const> AsBytes(std::string const &text) {
    return std::as_bytes(std::span(text));
}

std::vector<std::string> UnknownGroups(DefaultCenterValues const &centres, std::span<TextColumn const> observations) {
    if (centres.SizeVars() == 0)
        return {};
    auto const column = std::ranges::find(observations, centres.identifier, &TextColumn::name);
    if (column == observations.end())
        return {""};
    std::set<std::string> unknown;
    for (std::size_t row = 0; row < column->texts.size(); ++row)
        unknown.emplace(column->texts[row]);
    for (std::string const &group : centres.groups)
        unknown.erase(group);
    return {unknown.begin(), unknown.end()};
}

// How a table with variables of these names fits a model.
VariableMatch Match(ModelView const &model, std::span<TextColumn const> observations, PackedTexts const &names) {
    NameList const columns(names);
    NCVariables const &variables = model.GetProject()->GetVariables();
    std::unordered_set<std::string> known;
    VariableMatch match;
    for (ColumnTerms const *terms : {&model.GetXColumnTerms(), &model.GetYColumnTerms()})
        for (ColumnTerm const &term : *terms) {
            if (term.Size() > 1)
                continue; // its factors are terms too
            std::string const &name = variables.GetText(term.GetMotherVariable(1), 1);
            known.insert(name);
            if (terms == &model.GetYColumnTerms())
                continue;
            if (columns.Find(name))
                ++match.found;
            else
                match.missing.push_back(name);
        }
    for (std::size_t i = 0; i < names.size(); ++i)
        if (!known.contains(std::string(names[i])))
            match.surplus.emplace_back(names[i]);
    match.unknownGroups = UnknownGroups(model.GetCenterValues(), observations);
    return match;
}

NewDataSet AsDataSet(ImportedTable const &table) {
    NewDataSet dataSet;
    dataSet.name = table.name;
    dataSet.observations = table.observations;
    dataSet.variables = table.variables;
    dataSet.columns = table.columns;
    dataSet.dates = table.dates;
    return dataSet;
}

// Remembers which identifier columns tell batch and phase.
void StoreRoles(ProjectFile &file, ImportedTable const &table) {
    std::unique_ptr<XercesXMLSection> const section = ReadRoles(file);
    AddRole(*section, batchRole, table.batchColumn);
    AddRole(*section, phaseRole, table.phaseColumn);
    for (DateColumn const &dates : table.dates)
        AddRole(*section, dateTimeRole,
                std::string(table.variables.front().texts[static_cast<std::size_t>(dates.variable - 1)]));
    std::string text;
    section->Flush(text);
    file.SetSection(roleSection, text);
}

int Store(ProjectFile &file, NewDataSet const &dataSet, ImportedTable const &table, Progress const &progress) {
    Transaction transaction(file);
    int const number = file.AddDataSet(dataSet, progress);
    StoreRoles(file, table);
    transaction.Commit();
    return number;
}

// The rows of a prediction set on a model.
class Predictions final : public NCPredictions {
public:
    Predictions(boost::shared_ptr<NCModel const> model, boost::shared_ptr<DataSet const> rows)
        : m_model(std::move(model)), m_rows(std::move(rows)) {}

    boost::shared_ptr<NCModel const> GetModel() const override { return m_model; }
    ObservationInfos const &GetObservations() const override { return m_rows->GetObservations(); }
    BatchRuns const &GetBatchRuns() const override { return m_rows->GetBatchRuns(); }

private:
    boost::shared_ptr<NCModel const> m_model;
    boost::shared_ptr<DataSet const> m_rows;
};

} // namespace

// The file, and what was read from it so far.
class Project::State final : public StatisticSource, public Subject {
public:
    explicit State(ProjectFile file) : m_file(std::move(file)) {}

    ProjectFile &File() { return m_file; }
    ProjectFile const &File() const { return m_file; }
    void SetProject(NCProject const &project) { m_project = &project; }

    ItemLists const &Items() const {
        if (!m_items)
            m_items = std::make_unique<ItemLists>(m_file);
        else if (m_itemsChanged)
            m_items->Refresh(m_file);
        m_itemsChanged = false;
        return *m_items;
    }

    std::vector<ModelRecord> const &Models() const {
        if (!m_models)
            m_models = m_file.Models();
        return *m_models;
    }

    std::vector<DataSetRecord> const &DataSets() const {
        if (!m_dataSets)
            m_dataSets = m_file.DataSets();
        return *m_dataSets;
    }

    DataSetRecord const *RecordOf(int dataSet) const {
        auto const found = std::find_if(DataSets().begin(), DataSets().end(),
                                        [dataSet](DataSetRecord const &record) { return record.number == dataSet; });
        return found == DataSets().end() ? nullptr : &*found;
    }

    // 0 when there is none.
    int CurrentPredictionSet() const {
        if (!m_currentPredictionSet)
            m_currentPredictionSet = m_file.CurrentPredictionSet();
        return *m_currentPredictionSet;
    }

    boost::shared_ptr<DataSet const> FindData(int number) const {
        DataSetRecord const *const record = RecordOf(number);
        if (!record)
            return {};
        boost::shared_ptr<DataSet const> &data = m_data[number];
        if (!data)
            data = boost::make_shared<DataSet>(m_file, *record, Items(), m_project->shared_from_this());
        return data;
    }

    boost::shared_ptr<ModelView const> View(int number) const {
        boost::shared_ptr<ModelView const> &view = m_views[number];
        if (view)
            return view;
        auto const record = FindModel(number);
        std::optional<std::vector<std::byte>> const results = record ? m_file.Results(number) : std::nullopt;
        if (results)
            view = boost::make_shared<ModelView>(number, FittedModel::Load(AsText(*results)),
                                                 FindData(record->dataSets.front()), m_project->shared_from_this());
        return view;
    }

    ModelRecord const *FindModel(int number) const {
        auto const found = std::find_if(Models().begin(), Models().end(),
                                        [number](ModelRecord const &record) { return record.number == number; });
        return found == Models().end() ? nullptr : &*found;
    }

    // What the project holds has changed.
    void Forget() {
        m_predictions.clear();
        m_views.clear();
        m_data.clear();
        m_itemsChanged = true;
        m_models.reset();
        m_dataSets.reset();
        m_currentPredictionSet.reset();
    }

    TablePtr Table(Call const &call) const override { return Answers().Table(call, *this); }
    ColumnIDs Columns(Call const &call) const override { return Answers().Columns(call, *this); }

    ModelView const *Model(int number) const override {
        if (!FindModel(number))
            throw NCError(ExceptionMessage::translate("There is no model {1}.") % number, NCError::Error);
        return View(number).get();
    }

    ModelView const &FittedView(int number) const {
        ModelView const *const view = Model(number);
        if (!view)
            throw NCError(ExceptionMessage::translate("Model {1} is not fitted.") % number, NCError::Error);
        return *view;
    }

    DataSet const &Data(int number) const override {
        boost::shared_ptr<DataSet const> const data = FindData(number);
        if (!data)
            throw NCError(ExceptionMessage::translate("There is no data set {1}.") % number, NCError::Error);
        return *data;
    }

    PredictedRows const *Predictions(int model) const override {
        boost::shared_ptr<DataSet const> const rows = FindData(CurrentPredictionSet());
        if (!rows)
            return nullptr;
        auto const known = m_predictions.find(model);
        if (known != m_predictions.end())
            return &known->second;
        ModelView const *const view = Model(model);
        if (!view)
            return nullptr;
        if (MatchOf(*view, rows->GetNumber()).found == 0)
            throw NCError(ExceptionMessage::translate("None of the {1} X variables of model {2} is among the {3} "
                                                      "variables of prediction set {4} (\"{5}\").") %
                              view->Fit().definition.xTerms.size() % model % rows->GetVariables().size() %
                              rows->GetNumber() % rows->GetName(),
                          NCError::Error);
        return &m_predictions.emplace(model, view->Predict(rows, m_project->shared_from_this())).first->second;
    }

    VariableMatch MatchOf(ModelView const &model, int dataSet) const {
        return Match(model, m_file.ObservationIdentifiers(dataSet), m_file.VariableIdentifiers(dataSet).front().texts);
    }

private:
    static Handlers const &Answers() {
        static Handlers const handlers;
        return handlers;
    }

    ProjectFile m_file;
    NCProject const *m_project = nullptr;
    mutable std::optional<std::vector<ModelRecord>> m_models;
    mutable std::optional<std::vector<DataSetRecord>> m_dataSets;
    mutable std::optional<int> m_currentPredictionSet;
    mutable std::unique_ptr<ItemLists> m_items;
    mutable bool m_itemsChanged = false;
    mutable std::map<int, boost::shared_ptr<DataSet const>> m_data;
    mutable std::map<int, boost::shared_ptr<ModelView const>> m_views;
    mutable std::map<int, PredictedRows> m_predictions;
};

Project::Project(ProjectFile file) : m_state(std::make_unique<State>(std::move(file))) {
    m_state->SetProject(*this);
}

Project::~Project() = default;

boost::shared_ptr<Project> Project::Create(std::filesystem::path const &path) {
    return boost::shared_ptr<Project>(new Project(ProjectFile::Create(path)));
}

boost::shared_ptr<Project> Project::Create(std::filesystem::path const &path, ImportedTable const &table,
                                           Progress const &progress) {
    auto const fill = [&](ProjectFile &file) { Store(file, AsDataSet(table), table, progress); };
    return boost::shared_ptr<Project>(new Project(ProjectFile::Create(path, fill)));
}

boost::shared_ptr<Project> Project::OpenToRead(std::filesystem::path const &path) {
    return boost::shared_ptr<Project>(new Project(ProjectFile::OpenToRead(path)));
}

boost::shared_ptr<Project> Project::OpenToWrite(std::filesystem::path const &path) {
    return boost::shared_ptr<Project>(new Project(ProjectFile::OpenToWrite(path)));
}

int Project::AddDataSet(ImportedTable const &table, Progress const &progress) {
    int const number = Store(m_state->File(), AsDataSet(table), table, progress);
    m_state->Forget();
    return number;
}

void Project::SetLocalCentring(LocalCentring const &centring) {
    AliasAccess const aliases(GetObservations());
    std::set<std::string> const groups(centring.groups.begin(), centring.groups.end());
    auto const isKnown = [&](int alias) {
        auto const &texts = GetObservations().GetAlias(alias)->texts;
        return aliases.GetRawAliasName(alias) == centring.identifier &&
               std::ranges::any_of(texts, [&](std::string const &text) { return groups.contains(text); });
    };
    if (!centring.variables.empty() && std::ranges::none_of(aliases.GetUsedAliases(), isKnown))
        throw NCError(ExceptionMessage::translate("No observation has one of the {1} groups as its \"{2}\".") %
                          centring.groups.size() % centring.identifier,
                      NCError::Error);
    StoreCentring(m_state->File(), centring);
}

LocalCentring Project::MeansOfGroups(GroupMeansRequest const &request) const {
    return GroupMeans(m_state->File(), request);
}

int Project::AddModel(ModelRequest const &request, Progress const &progress) {
    DataSetRecord const *const record = m_state->RecordOf(request.dataSet);
    if (!record)
        throw NCError(ExceptionMessage::translate("There is no data set {1}.") % request.dataSet, NCError::Error);
    ModelDefinition const definition = DefinitionOf(request, m_state->File());
    boost::shared_ptr<DataSet const> const data = m_state->FindData(request.dataSet);
    Workset const workset = [&] {
        // One lock on the file, not one for each column.
        Transaction const reading(m_state->File());
        return Workset::Build(definition, ModelColumns(definition, data, data));
    }();
    FittedModel const fitted = Fit(definition, workset, progress);
    std::string const saved = definition.Save();
    std::string const results = fitted.Save();
    Transaction transaction(m_state->File());
    int const number = m_state->File().AddModel("", std::vector{request.dataSet}, AsBytes(saved));
    m_state->File().ChangeModel(number, "M" + std::to_string(number), std::vector{request.dataSet}, AsBytes(saved));
    m_state->File().SetResults(number, AsBytes(results));
    transaction.Commit();
    m_state->Forget();
    return number;
}

FitQuality Project::QualityOf(int model) const {
    ModelView const &view = m_state->FittedView(model);
    FitQuality quality;
    for (Unconverged const &one : view.Fit().notes.unconverged)
        quality.stopped.push_back({one.component, one.rounds, one.change, one.ofCompanion});
    quality.scarceObservations = view.Fit().notes.scarceRows;
    for (auto const &[scales, columns] :
         {std::pair(&view.Fit().xScales, &view.XTerms()), std::pair(&view.Fit().yScales, &view.YTerms())})
        for (std::size_t term = 0; term < scales->size(); ++term)
            if ((*scales)[term].IsConstant())
                quality.constantTerms.push_back(columns->GetName(static_cast<int>(term) + 1));
    if (view.Fit().definition.q2 == Q2Form::Deflated)
        quality.q2 = ModelRequest::DeflatedMatrices;
    return quality;
}

VariableMatch Project::MatchVariables(int model, ImportedTable const &table) const {
    return Match(m_state->FittedView(model), table.observations, table.variables.front().texts);
}

VariableMatch Project::MatchVariables(int model, int dataSet) const {
    return m_state->MatchOf(m_state->FittedView(model), dataSet);
}

int Project::AddPredictions(ImportedTable const &table, bool replace, Progress const &progress) {
    NewDataSet dataSet = AsDataSet(table);
    dataSet.kind = DataSetKind::Prediction;
    int const old = FindPredictionSet(table.name);
    if (old != 0 && !replace)
        throw NCError(ExceptionMessage::translate("There is a prediction set \"{1}\" already.") % table.name,
                      NCError::Error);
    Transaction transaction(m_state->File());
    if (old != 0)
        m_state->File().DeleteDataSet(old);
    int const number = Store(m_state->File(), dataSet, table, progress);
    transaction.Commit();
    m_state->Forget();
    return number;
}

int Project::FindPredictionSet(std::string const &name) const {
    for (DataSetRecord const &record : m_state->DataSets())
        if (record.kind == DataSetKind::Prediction && record.name == name)
            return record.number;
    return 0;
}

void Project::UsePredictions(int number) {
    m_state->File().UsePredictionSet(number);
    m_state->Forget();
}

std::vector<DataSetRecord> Project::DataSets() const {
    return m_state->DataSets();
}

StatisticSource const &Project::GetStatisticSource() const {
    return *m_state;
}

int Project::GetNumberOfModels() const {
    return static_cast<int>(m_state->Models().size());
}

int Project::GetModelNumberAt(int index) const {
    return m_state->Models().at(static_cast<std::size_t>(index - 1)).number;
}

boost::shared_ptr<ModelInfo const> Project::GetModelInfo(int model) const {
    ModelRecord const *const record = m_state->FindModel(model);
    if (!record)
        return {};
    auto const info = boost::make_shared<ModelInfo>();
    info->number = model;
    info->name = record->name;
    info->dataSets = record->dataSets;
    boost::shared_ptr<ModelView const> const view = m_state->View(model);
    ModelDefinition stored;
    if (!view)
        stored = ModelDefinition::Load(AsText(m_state->File().Definition(model)));
    ModelDefinition const &definition = view ? view->Fit().definition : stored;
    info->hasDateTime = HasDates(record->dataSets.front());
    info->type = static_cast<ModelTypeE::Model>(definition.kind);
    info->sizeXVariables = static_cast<int>(definition.xTerms.size());
    info->sizeYVariables = static_cast<int>(definition.yTerms.size());
    info->sizeObservations = static_cast<int>(definition.rows.size());
    if (view) {
        Components const &components = view->Fit().components;
        info->fitted = true;
        info->crossValidated = view->Fit().crossValidation.has_value();
        info->predictiveComponents = static_cast<int>(components.Predictive());
        info->xSideOrthogonalComponents = static_cast<int>(components.XOrthogonal());
        info->ySideOrthogonalComponents = static_cast<int>(components.YOrthogonal());
    }
    return info;
}

// The data set has the project's default time variable.
bool Project::HasDates(int dataSet) const {
    VariableInfo const *const time = GetVariables().GetDefaultTimeVariable();
    return time && m_state->RecordOf(dataSet) && m_state->Data(dataSet).ColumnOf(time->GetUniqueID());
}

boost::shared_ptr<NCModel const> Project::GetModel(int model) const {
    return m_state->View(model);
}

boost::shared_ptr<NCDataContainerBase const> Project::GetWorkset(int model) const {
    return m_state->View(model);
}

NCVariables const &Project::GetVariables() const {
    return m_state->Items().variables;
}

NCObservations const &Project::GetObservations() const {
    return m_state->Items().observations;
}

LocalCenteringData Project::GetLocalCentering() const {
    LocalCentring const centring = ReadCentring(m_state->File());
    std::unordered_map<std::string, std::uint32_t> numbers;
    for (std::uint32_t variable = 1; variable <= GetVariables().Size(); ++variable)
        numbers.emplace(GetVariables().GetText(variable, 1), variable);
    LocalCenteringData data{centring.identifier, centring.groups, {}};
    for (LocalCentring::Variable const &variable : centring.variables)
        if (auto const found = numbers.find(variable.name); found != numbers.end())
            data.variables.push_back({found->second, {variable.centres.begin(), variable.centres.end()}});
    return data;
}

boost::shared_ptr<NCDataSet const> Project::GetDataSet(int number) const {
    return m_state->FindData(number);
}

boost::shared_ptr<NCDataSetInfo const> Project::GetDataSetInfo(int number) const {
    DataSetRecord const *const record = m_state->RecordOf(number);
    if (!record)
        return {};
    auto const info = boost::make_shared<NCDataSetInfo>();
    info->number = number;
    info->name = record->name;
    info->kind = record->kind == DataSetKind::Data ? NCDataSetInfo::Primary : NCDataSetInfo::Secondary;
    info->observations = static_cast<std::uint32_t>(record->observations);
    info->variables = static_cast<std::uint32_t>(record->variables);
    return info;
}

int Project::GetFirstDataSet(int after) const {
    for (DataSetRecord const &record : m_state->DataSets())
        if (record.number > after && record.kind == DataSetKind::Data)
            return record.number;
    return 0;
}

boost::shared_ptr<NCDataSet const> Project::GetPredSet(int number) const {
    DataSetRecord const *const record = m_state->RecordOf(number == -1 ? m_state->CurrentPredictionSet() : number);
    bool const isPrediction = record && record->kind == DataSetKind::Prediction;
    return isPrediction ? m_state->FindData(record->number) : nullptr;
}

boost::shared_ptr<NCDataSet const> Project::GetModelPredSet(int) const {
    return GetPredSet(-1);
}

boost::shared_ptr<NCPredictions const> Project::GetPredictions(int model, bool required) const {
    if (PredictedRows const *const rows = m_state->Predictions(model))
        return boost::make_shared<Predictions>(GetModel(model), rows->dataSet);
    if (required)
        throw NCError(ExceptionMessage::translate("There is no prediction set for model {1}.") % model, NCError::Error);
    return {};
}

namespace {

// A section that goes back into the file when it is let go.
class StoredSection final : public ConfigurationSection {
public:
    StoredSection(ProjectFile &file, boost::shared_ptr<NCProject> project, std::string name)
        : m_file(file), m_project(std::move(project)), m_name(std::move(name)) {
        std::optional<std::string> const text = m_file.Section(m_name);
        m_section = text ? XercesXMLSection::CreateXMLSectionFromString(*text) : std::make_unique<XercesXMLSection>();
        if (!m_section)
            throw NCError(ExceptionMessage::translate("The settings \"{1}\" of the project can't be read.") % m_name,
                          NCError::Error);
        m_section->Flush(m_before);
    }
    ~StoredSection() override {
        try {
            std::string text;
            m_section->Flush(text);
            if (text != m_before && m_file.IsWritable())
                m_file.SetSection(m_name, text);
        } catch (Exception const &) {
            // Nobody hears a destructor: a file that can't be written tells so at the next change of the project.
        }
    }

    using ConfigurationSection::ReadKey;
    using ConfigurationSection::WriteKey;
    bool ReadKey(std::string const &key, std::string &value) const override { return m_section->ReadKey(key, value); }
    void WriteKey(std::string const &key, std::string const &value) override { m_section->WriteKey(key, value); }
    bool DeleteKey(std::string const &key) override { return m_section->DeleteKey(key); }
    int CountSubSections(std::string const &name) const override { return m_section->CountSubSections(name); }
    std::unique_ptr<ConfigurationSection> OpenSubSection(std::string const &name, int index) override {
        return m_section->OpenSubSection(name, index);
    }
    std::unique_ptr<ConfigurationSection> CreateSubSection(std::string const &name, int index) override {
        return m_section->CreateSubSection(name, index);
    }
    bool DeleteSubSection(std::string const &name, int index) override {
        return m_section->DeleteSubSection(name, index);
    }
    void Clear() override { m_section->Clear(); }
    std::unique_ptr<ConfigurationSection> Clone() const override { return m_section->Clone(); }

private:
    ProjectFile &m_file;
    boost::shared_ptr<NCProject> m_project; // keeps the file open
    std::string m_name;
    std::string m_before;
    std::unique_ptr<XercesXMLSection> m_section;
};

} // namespace

std::unique_ptr<ConfigurationSection> Project::GetSettingsSection(std::string const &name) {
    return std::make_unique<StoredSection>(m_state->File(), shared_from_this(), name);
}

int Project::GetActiveModelNumber() const {
    for (int index = GetNumberOfModels(); index >= 1; --index)
        if (int const model = GetModelNumberAt(index); IsModelFitted(model))
            return model;
    return -1;
}

namespace {

constexpr char const *optionsSection = "ProjectOptions";

// The settings of one axis: a key for each member.
struct LabelKeys {
    char const *identifier;
    char const *start;
    char const *length;
};

constexpr LabelKeys observationKeys{"ObservationIdentifier", "ObservationStart", "ObservationLength"};
constexpr LabelKeys variableKeys{"VariableIdentifier", "VariableStart", "VariableLength"};

void ReadLabels(ConfigurationSection const &section, LabelKeys const &keys, NCProjectOptions::LabelSettings &labels) {
    section.ReadKey(keys.identifier, labels.identifier);
    section.ReadKey(keys.start, labels.start);
    section.ReadKey(keys.length, labels.length);
}

void WriteLabels(ConfigurationSection &section, LabelKeys const &keys, NCProjectOptions::LabelSettings const &labels) {
    section.WriteKey(keys.identifier, labels.identifier);
    section.WriteKey(keys.start, labels.start);
    section.WriteKey(keys.length, labels.length);
}

} // namespace

void Project::GetProjectOptions(NCProjectOptions *options) const {
    *options = NCProjectOptions();
    std::optional<std::string> const text = m_state->File().Section(optionsSection);
    auto const section = text ? XercesXMLSection::CreateXMLSectionFromString(*text) : nullptr;
    if (!section)
        return;
    ReadLabels(*section, observationKeys, options->observations);
    ReadLabels(*section, variableKeys, options->variables);
}

void Project::SetProjectOptions(NCProjectOptions const *options) {
    auto const section = GetSettingsSection(optionsSection);
    WriteLabels(*section, observationKeys, options->observations);
    WriteLabels(*section, variableKeys, options->variables);
}

int Project::GetPreferredObservationAlias() const {
    NCProjectOptions options;
    GetProjectOptions(&options);
    return options.observations.identifier;
}

int Project::GetPreferredVariableAlias() const {
    NCProjectOptions options;
    GetProjectOptions(&options);
    return options.variables.identifier;
}

bool Project::IsBatchProject() const {
    NCObservations const &observations = GetObservations();
    return observations.GetBatchID(AliasAccess(observations)) != 0;
}

} // namespace engine
