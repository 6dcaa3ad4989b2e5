#include "engine/ProjectState_internal.h"

#include "engine/data/QualitativeVariables_internal.h"
#include "engine/models/Fit.h"
#include "engine/statistics/BatchModel.h"
#include "engine/statistics/Classes.h"

#include <algorithm>
#include <set>
#include <unordered_set>

namespace engine {

namespace {

// The texts of the observations under a heading; null where the table has none.
PackedTexts const *TextsOf(std::string const &heading, std::span<TextColumn const> observations) {
    auto const column = std::ranges::find(observations, heading, &TextColumn::name);
    return column == observations.end() ? nullptr : &column->texts;
}

std::vector<std::string> UnknownGroups(DefaultCenterValues const &centres, std::span<TextColumn const> observations) {
    if (centres.SizeVars() == 0)
        return {};
    PackedTexts const *const texts = TextsOf(centres.identifier, observations);
    if (!texts)
        return {""};
    std::set<std::string> unknown;
    for (std::size_t row = 0; row < texts->size(); ++row)
        unknown.emplace((*texts)[row]);
    for (std::string const &group : centres.groups)
        unknown.erase(group);
    return {unknown.begin(), unknown.end()};
}

std::vector<std::string> UnknownLevels(std::vector<Level> const &levels, std::span<TextColumn const> observations) {
    std::map<std::string, std::set<std::string, std::less<>>> known; // by variable
    for (Level const &level : levels)
        known[level.variable].insert(level.text);
    std::vector<std::string> unknown;
    for (auto &[variable, texts] : known)
        if (PackedTexts const *const found = TextsOf(variable, observations))
            for (std::size_t row = 0; row < found->size(); ++row)
                if (std::string_view const text = (*found)[row]; !text.empty() && !texts.contains(text)) {
                    texts.emplace(text);
                    unknown.push_back(Level{variable, std::string(text)}.Name());
                }
    return unknown;
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

// How a table fits a model of a data set that is made of another one: the variables of that.
VariableMatch MatchOfSource(ModelView const &model, DataSet const &source, ImportedTable const &table) {
    NameList const names(table.variables.front().texts);
    VariableMatch match;
    std::set<std::string> known;
    for (int column = 0; column < static_cast<int>(source.GetVariables().size()); ++column) {
        std::string const name = source.Name(column);
        known.insert(name);
        bool const isResponse =
            model.GetYColumnTerms().FindFirst(source.GetVariables()[static_cast<std::size_t>(column)]) > 0;
        if (names.Find(name))
            match.found += isResponse ? 0 : 1;
        else if (!isResponse)
            match.missing.push_back(name);
    }
    for (std::size_t i = 0; i < table.variables.front().texts.size(); ++i)
        if (std::string name(table.variables.front().texts[i]); !known.contains(name))
            match.surplus.push_back(std::move(name));
    return match;
}

// How a table fits a model above others: its variables as they are, and all of the models below.
VariableMatch Together(VariableMatch own, std::vector<VariableMatch> const &lower) {
    // Its results are no variables of a table.
    own.missing.clear();
    for (VariableMatch const &match : lower) {
        own.found += match.found;
        for (std::string const &name : match.missing)
            if (std::ranges::find(own.missing, name) == own.missing.end())
                own.missing.push_back(name);
        std::erase_if(own.surplus, [&](std::string const &name) {
            return std::ranges::find(match.surplus, name) == match.surplus.end();
        });
        own.unknownGroups.insert(own.unknownGroups.end(), match.unknownGroups.begin(), match.unknownGroups.end());
    }
    return own;
}

// The rows of a prediction set on a model.
class Predictions final : public NCPredictions {
public:
    Predictions(boost::shared_ptr<NCModel const> model, boost::shared_ptr<ModelView const> view,
                std::shared_ptr<PredictedRows const> rows)
        : m_model(std::move(model)), m_view(std::move(view)), m_rows(std::move(rows)) {}

    boost::shared_ptr<NCModel const> GetModel() const override { return m_model; }
    ObservationInfos const &GetObservations() const override { return m_rows->GetObservations(); }
    BatchRuns const &GetBatchRuns() const override { return m_rows->GetBatchRuns(); }
    NCDataVector<float> GetMaturity() const override { return MaturityOf({*m_view, true, m_rows.get()}); }

private:
    boost::shared_ptr<NCModel const> m_model;
    boost::shared_ptr<ModelView const> m_view;
    std::shared_ptr<PredictedRows const> m_rows;
};

} // namespace

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
            // Some are there once more, lagged; a response that is makes X too.
            if (!known.insert(name).second || terms == &model.GetYColumnTerms())
                continue;
            if (term.GetQualSetting(1) != 0 ? TextsOf(name, observations) != nullptr : columns.Find(name) != nullptr)
                ++match.found;
            else
                match.missing.push_back(name);
        }
    for (std::size_t i = 0; i < names.size(); ++i)
        if (!known.contains(std::string(names[i])))
            match.surplus.emplace_back(names[i]);
    match.unknownGroups = UnknownGroups(model.GetCenterValues(), observations);
    match.unknownLevels = UnknownLevels(model.Fit().definition.levels, observations);
    return match;
}

int Store(ProjectFile &file, ImportedTable const &table, DataSetKind kind, Progress const &progress) {
    NewDataSet dataSet = AsDataSet(table);
    dataSet.kind = kind;
    Transaction transaction(file);
    int const number = file.AddDataSet(dataSet, progress);
    StoreRoles(file, table);
    transaction.Commit();
    return number;
}

Project::Project(ProjectFile file) : m_state(std::make_unique<State>(std::move(file))) {
    m_state->SetProject(*this);
}

Project::~Project() = default;

boost::shared_ptr<Project> Project::Create(std::filesystem::path const &path) {
    return boost::shared_ptr<Project>(new Project(ProjectFile::Create(path)));
}

boost::shared_ptr<Project> Project::Create(std::filesystem::path const &path, ImportedTable const &table,
                                           Progress const &progress) {
    auto const fill = [&](ProjectFile &file) { Store(file, table, DataSetKind::Data, progress); };
    return boost::shared_ptr<Project>(new Project(ProjectFile::Create(path, fill)));
}

boost::shared_ptr<Project> Project::OpenToRead(std::filesystem::path const &path) {
    return boost::shared_ptr<Project>(new Project(ProjectFile::OpenToRead(path)));
}

boost::shared_ptr<Project> Project::OpenToWrite(std::filesystem::path const &path) {
    return boost::shared_ptr<Project>(new Project(ProjectFile::OpenToWrite(path)));
}

int Project::AddDataSet(ImportedTable const &table, Progress const &progress) {
    return m_state->Change([&] {
        int const number = Store(m_state->File(), table, DataSetKind::Data, progress);
        m_state->Forget();
        DeriveFor(number);
        return number;
    });
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
    int const number = Fitted(request, 0, progress);
    m_state->Forget();
    return number;
}

// A stored model; `phaseGroup` is the number of the first model that was made together with it, 0 for itself.
int Project::Fitted(ModelRequest const &request, int phaseGroup, Progress const &progress) {
    DataSetRecord const *const record = m_state->RecordOf(request.dataSet);
    if (!record)
        throw NCError(ExceptionMessage::translate("There is no data set {1}.") % request.dataSet, NCError::Error);
    ModelDefinition definition = DefinitionOf(request, m_state->File());
    if (definition.evolution)
        definition.evolution->phaseGroup = phaseGroup;
    // The workset, which is large, is gone before the model is written.
    FittedModel model = Fit(definition, m_state->BuildWorkset(request.dataSet, definition), progress);
    return m_state->StoreModel(request.dataSet, std::move(model));
}

FitQuality Project::QualityOf(int model) const {
    ModelView const &view = m_state->FittedView(model);
    FitQuality quality;
    for (Unconverged const &one : view.Fit().notes.unconverged)
        quality.stopped.push_back({one.component, one.rounds, one.change, one.ofCompanion});
    quality.scarceObservations = view.Fit().notes.scarceRows;
    if (view.Fit().definition.evolution)
        quality.withoutMaturity = static_cast<int>((view.Fit().yObserved.array() == 0).count());
    for (auto const &[scales, columns] :
         {std::pair(&view.Fit().xScales, &view.XTerms()), std::pair(&view.Fit().yScales, &view.YTerms())})
        for (std::size_t term = 0; term < scales->size(); ++term)
            if ((*scales)[term].IsConstant())
                quality.constantTerms.push_back(columns->GetName(static_cast<int>(term) + 1));
    if (view.Fit().definition.q2 == Q2Form::Deflated)
        quality.q2 = ModelRequest::DeflatedMatrices;
    return quality;
}

Classification Project::ClassesOf(int model) const {
    ModelView const &view = m_state->FittedView(model);
    int const set = m_state->CurrentPredictionSet();
    bool const isPredicted = set != 0 && MatchVariables(model, set).found > 0;
    return ClassificationOf(view, isPredicted ? m_state->Predictions(model) : nullptr);
}

VariableMatch Project::MatchVariables(int model, ImportedTable const &table) const {
    ModelView const &view = m_state->FittedView(model);
    VariableMatch own = Match(view, table.observations, table.variables.front().texts);
    std::optional<Recipe> const &recipe = view.FittedData().MadeBy();
    if (!recipe)
        return own;
    if (recipe->DataSet() != 0)
        return MatchOfSource(view, m_state->Data(recipe->DataSet()), table);
    std::vector<VariableMatch> lower;
    for (int const below : recipe->Models())
        lower.push_back(MatchVariables(below, table));
    return recipe->As<BatchLevelRecipe>() ? *std::ranges::max_element(lower, {}, &VariableMatch::found)
                                          : Together(std::move(own), lower);
}

VariableMatch Project::MatchVariables(int model, int dataSet) const {
    ModelView const &view = m_state->FittedView(model);
    return m_state->MatchOf(view, m_state->RowsOn(view, dataSet)->GetNumber());
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
    info->hasLaggedVariables = definition.HasLags();
    info->isBatchLevel = m_state->Data(record->dataSets.front()).MadeAs<BatchLevelRecipe>() != nullptr;
    info->type = static_cast<ModelTypeE::Model>(definition.kind);
    if (definition.evolution) {
        info->isBatchModel = true;
        info->phaseGroup = definition.evolution->phaseGroup;
        if (!definition.evolution->phase.empty())
            info->classOrPhaseNames = {definition.evolution->phase};
    }
    if (std::vector<std::string> classes = definition.Classes(); !classes.empty())
        info->classOrPhaseNames = std::move(classes);
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
    boost::shared_ptr<ModelView const> view = m_state->View(model);
    if (view && view->Fit().definition.evolution)
        return boost::make_shared<BatchModel>(std::move(view));
    return view;
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
    bool const isPrediction = record->kind == DataSetKind::Prediction || record->kind == DataSetKind::DerivedPrediction;
    info->kind = isPrediction ? NCDataSetInfo::Secondary : NCDataSetInfo::Primary;
    info->phases = m_state->PhasesOf(number);
    if (IsDerived(record->kind)) {
        Recipe const recipe = *m_state->FindData(number)->MadeBy();
        if (auto const *const level = recipe.As<BatchLevelRecipe>()) {
            info->sourceDataSet = level->dataSet;
            info->sourceModels = recipe.Models();
        }
        if (auto const *const correction = recipe.As<CorrectionRecipe>())
            info->oscComponents = static_cast<int>(correction->correction.Size());
        if (auto const *const compression = recipe.As<CompressionRecipe>(); compression && !compression->denoised)
            info->kind = static_cast<NCDataSetInfo::Kind>(info->kind | NCDataSetInfo::WaveletCompressed);
    }
    info->observations = static_cast<std::uint32_t>(record->observations);
    info->variables = static_cast<std::uint32_t>(record->variables);
    return info;
}

int Project::GetFirstDataSet(int after) const {
    for (DataSetRecord const &record : m_state->DataSets())
        if (record.number > after && (record.kind == DataSetKind::Data || record.kind == DataSetKind::Derived))
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
    if (auto rows = m_state->PredictedOn(model))
        return boost::make_shared<Predictions>(GetModel(model), m_state->View(model), std::move(rows));
    if (required)
        throw NCError(ExceptionMessage::translate("There is no prediction set for model {1}.") % model, NCError::Error);
    return {};
}

int Project::GetActiveModelNumber() const {
    for (int index = GetNumberOfModels(); index >= 1; --index)
        if (int const model = GetModelNumberAt(index); IsModelFitted(model))
            return model;
    return -1;
}

bool Project::IsBatchProject() const {
    NCObservations const &observations = GetObservations();
    return observations.GetBatchID(AliasAccess(observations)) != 0;
}

} // namespace engine
