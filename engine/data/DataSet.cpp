#include "engine/data/DataSet_internal.h"

#include "engine/data/QualitativeVariables_internal.h"

#include "platform/text/Exception.h"
#include "platform/text/VqString.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace engine {

namespace {

// Adds the items of data sets to a list, and the identifier columns that any of them has.
class ListBuilder {
public:
    explicit ListBuilder(VarObs &list) : m_list(list) {}

    // Columns of these headings tell the same: what one has is in the first of them too.
    void SetSynonyms(std::vector<std::string> const &headings) {
        for (std::string const &heading : headings)
            if (heading != headings.front())
                m_synonyms[heading] = headings.front();
    }

    // Entries that differ in the column of one of these headings are different items, though they have one primary
    // identifier: rows of batches often have but a number.
    void SetBatches(std::vector<std::string> const &headings) { m_batches = headings; }

    // Answers the item of each entry of a data set.
    std::vector<std::uint32_t> Add(std::vector<TextColumn> const &columns) {
        PackedTexts const &primary = columns.front().texts;
        auto const isBatch = [&](TextColumn const &column) { return std::ranges::count(m_batches, column.name) > 0; };
        auto const batches = std::find_if(columns.begin() + 1, columns.end(), isBatch);
        std::vector<std::uint32_t> items;
        items.reserve(primary.size());
        std::uint32_t const known = m_size;
        std::vector<bool> taken(known + 1);
        for (std::size_t i = 0; i < primary.size(); ++i) {
            std::string key(primary[i]);
            if (batches != columns.end() && batches->texts[i] != key)
                key.append(1, '\n').append(batches->texts[i]);
            auto const [at, isNew] = m_items.try_emplace(std::move(key), m_size + 1);
            // An item that the data set has already, or that it has just brought, is a further one.
            bool const repeated = !isNew && (at->second > known || taken[at->second]);
            if (isNew || repeated) {
                items.push_back(++m_size);
            } else {
                taken[at->second] = true;
                items.push_back(at->second);
            }
        }
        for (std::size_t column = 0; column < columns.size(); ++column) {
            AddTexts(AliasNumber(columns[column].name, column == 0), columns[column].texts, items);
            if (auto const first = m_synonyms.find(columns[column].name); first != m_synonyms.end())
                AddTexts(AliasNumber(first->second, false), columns[column].texts, items);
        }
        return items;
    }

    // An item that shares its identifier with no other one.
    std::uint32_t AddApart(std::string const &name) {
        m_list.AddText(AliasNumber(name, true), ++m_size, name);
        return m_size;
    }

    void SetRole(std::vector<std::string> const &headings, VarObs::Role role) {
        for (int alias = 1; alias <= m_list.SizeAliases(); ++alias)
            if (std::ranges::find(headings, m_list.GetAlias(alias)->name) != headings.end())
                m_list.SetRole(alias, role);
    }

private:
    int AliasNumber(std::string const &name, bool primary) {
        if (primary && m_list.SizeAliases() > 0)
            return 1;
        for (int alias = 1; alias <= m_list.SizeAliases(); ++alias)
            if (m_list.GetAlias(alias)->name == name)
                return alias;
        VarObs::Alias alias;
        alias.name = name;
        return m_list.AddAlias(std::move(alias));
    }

    // What an earlier data set says of an item stays.
    void AddTexts(int alias, PackedTexts const &texts, std::vector<std::uint32_t> const &items) {
        for (std::size_t i = 0; i < items.size(); ++i)
            m_list.AddText(alias, items[i], texts[i]);
    }

    VarObs &m_list;
    std::unordered_map<std::string, std::uint32_t> m_items;
    std::uint32_t m_size = 0;
    std::unordered_map<std::string, std::string> m_synonyms;
    std::vector<std::string> m_batches;
};

} // namespace

std::unique_ptr<XercesXMLSection> ReadRoles(ProjectFile const &file) {
    std::optional<std::string> const text = file.Section(roleSection);
    auto section = text ? XercesXMLSection::CreateXMLSectionFromString(*text) : nullptr;
    return section ? std::move(section) : std::make_unique<XercesXMLSection>();
}

std::vector<std::string> HeadingsOf(ConfigurationSection const &roles, char const *role) {
    std::vector<std::string> headings;
    roles.ReadKey(role, headings, '\n');
    return headings;
}

void AddRole(ConfigurationSection &roles, char const *role, std::string const &heading) {
    std::vector<std::string> headings = HeadingsOf(roles, role);
    if (heading.empty() || std::find(headings.begin(), headings.end(), heading) != headings.end())
        return;
    headings.push_back(heading);
    roles.WriteKey(role, headings, '\n');
}

Recipe RecipeOf(ProjectFile const &file, int dataSet) {
    std::vector<std::byte> const bytes = file.Recipe(dataSet);
    return Recipe::Load({reinterpret_cast<char const *>(bytes.data()), bytes.size()});
}

std::string RunningSection(int dataSet) {
    return "RunningBatches" + std::to_string(dataSet);
}

void ItemLists::MarkDates(std::vector<std::string> const &names) {
    for (std::uint32_t item = 1; item <= variables.Size(); ++item) {
        if (std::find(names.begin(), names.end(), variables.GetText(item, 1)) == names.end())
            continue;
        VariableInfo info(item);
        info.dateTime = true;
        variables.SetInfo(info);
        if (!variables.GetDefaultTimeVariable())
            variables.SetDefaultTimeVariable(item);
    }
}

void ItemLists::MarkSources(Recipe const &recipe, std::vector<TextColumn> const &columns,
                            std::vector<std::uint32_t> const &items) {
    if (auto const *const hierarchy = recipe.As<HierarchyRecipe>())
        MarkResults(hierarchy->results, items);
    if (recipe.As<BatchLevelRecipe>())
        MarkBatchLevel(columns, items);
}

void ItemLists::MarkResults(std::vector<HierarchyRecipe::Result> const &results,
                            std::vector<std::uint32_t> const &items) {
    for (std::size_t i = 0; i < results.size(); ++i) {
        VariableInfo info(items.at(i));
        info.kind = results[i].kind;
        info.lowerModel = results[i].model;
        bool const isScore = info.kind == VariableInfo::Score || info.kind == VariableInfo::OrthogonalScore;
        info.lowerComponent = isScore ? results[i].place : 0;
        variables.SetInfo(info);
    }
}

void ItemLists::MarkBatchLevel(std::vector<TextColumn> const &columns, std::vector<std::uint32_t> const &items) {
    auto const textsOf = [&](char const *heading) -> PackedTexts const & {
        auto const column = std::ranges::find(columns, heading, &TextColumn::name);
        if (column == columns.end())
            throw NCError(ExceptionMessage::translate("A batch-level data set is damaged: it does not tell the {1} of "
                                                      "its variables.") %
                              heading,
                          NCError::Error);
        return column->texts;
    };
    for (std::size_t i = 0; i < items.size(); ++i) {
        VariableInfo info(items[i]);
        info.sourceName = textsOf(sourceHeading)[i];
        if (std::string const maturity(textsOf(maturityHeading)[i]);
            !VqString::ToFloat(maturity.c_str(), info.maturity))
            continue; // an initial condition is itself
        variables.SetInfo(info);
    }
}

// Headings of the same role decide where texts of all data sets stand, so that new ones make the lists again.
class ItemLists::Growth {
public:
    std::array<std::vector<std::string>, 2> const headings; // of batches and phases

    Growth(ItemLists &lists, std::array<std::vector<std::string>, 2> of)
        : headings(std::move(of)), m_lists(lists), m_variables(lists.variables), m_observations(lists.observations) {
        for (std::vector<std::string> const &ofRole : headings)
            m_observations.SetSynonyms(ofRole);
        m_observations.SetBatches(headings[0]);
    }

    bool Begins(std::vector<DataSetRecord> const &records) const {
        return m_added.size() <= records.size() &&
               std::ranges::equal(m_added, std::span(records).first(m_added.size()), {}, {}, &DataSetRecord::number);
    }

    void AddNew(ProjectFile const &file, std::vector<DataSetRecord> const &records) {
        std::vector<QualitativeVariable> const qualitative = ReadQualitativeVariables(file);
        for (DataSetRecord const &record : std::span(records).subspan(m_added.size())) {
            AddQualitative(qualitative, record.number);
            std::vector<TextColumn> const variables = file.VariableIdentifiers(record.number);
            std::vector<std::uint32_t> &items = m_lists.variablesOf[record.number] = m_variables.Add(variables);
            if (IsDerived(record.kind))
                m_lists.MarkSources(RecipeOf(file, record.number), variables, items);
            m_lists.observationsOf[record.number] = m_observations.Add(file.ObservationIdentifiers(record.number));
            m_added.push_back(record.number);
        }
        AddQualitative(qualitative, std::numeric_limits<int>::max());
        for (QualitativeVariable const &variable : qualitative) {
            VariableInfo info(m_lists.m_qualitative.at(variable.heading));
            info.levels = variable.levels;
            m_lists.variables.SetInfo(info);
        }
        m_variables.SetRole({sourceHeading}, VarObs::Role::Source);
        m_variables.SetRole({maturityHeading}, VarObs::Role::Maturity);
        m_variables.SetRole({variablePhaseHeading}, VarObs::Role::Phase);
        m_observations.SetRole(headings[0], VarObs::Role::Batch);
        m_observations.SetRole(headings[1], VarObs::Role::Phase);
    }

private:
    // Those that stand before the variables of a data set, and are not there yet.
    void AddQualitative(std::vector<QualitativeVariable> const &variables, int dataSet) {
        for (QualitativeVariable const &variable : variables)
            if (variable.dataSet < dataSet && !m_lists.m_qualitative.contains(variable.heading))
                m_lists.m_qualitative[variable.heading] = m_variables.AddApart(variable.heading);
    }

    ItemLists &m_lists;
    ListBuilder m_variables, m_observations;
    std::vector<int> m_added; // numbers of data sets
};

ItemLists::ItemLists(ProjectFile const &file) {
    Refresh(file);
}

ItemLists::~ItemLists() = default;

void ItemLists::StartAnew() {
    m_growth.reset();
}

void ItemLists::Refresh(ProjectFile const &file) {
    std::unique_ptr<XercesXMLSection> const roles = ReadRoles(file);
    std::array const headings{HeadingsOf(*roles, batchRole), HeadingsOf(*roles, phaseRole)};
    std::vector<DataSetRecord> const records = file.DataSets();
    if (!m_growth || m_growth->headings != headings || !m_growth->Begins(records)) {
        variables = NCVariables();
        observations = NCObservations();
        variablesOf.clear();
        observationsOf.clear();
        m_qualitative.clear();
        m_growth = std::make_unique<Growth>(*this, headings);
    }
    // What fails in between leaves no half of it.
    std::unique_ptr<Growth> growth = std::move(m_growth);
    growth->AddNew(file, records);
    MarkDates(HeadingsOf(*roles, dateTimeRole));
    if (file.IsWritable())
        m_growth = std::move(growth);
}

ColumnTerm ItemLists::TermOf(Level const &level) const {
    auto const item = m_qualitative.find(level.variable);
    std::vector<std::string> const levels =
        item == m_qualitative.end() ? std::vector<std::string>() : variables[item->second].levels;
    auto const found = std::ranges::find(levels, level.text);
    if (found == levels.end())
        throw NCError(
            ExceptionMessage::translate("The project is damaged: a model has \"{1}\", which is no level of the "
                                        "project's qualitative variables.") %
                level.Name(),
            NCError::Error);
    return ColumnTerm({item->second}, {}, {static_cast<int>(found - levels.begin()) + 1});
}

DataSet::DataSet(ProjectFile const &file, DataSetRecord record, ItemLists const &items, ProjectPtr const &project)
    : m_file(file), m_record(std::move(record)), m_items(items), m_project(project),
      m_observations(items.observations.GetInfoVector(items.observationsOf.at(m_record.number))),
      m_observationColumns(ColumnIDs::Observations, ColumnIDs::Numbers(items.observationsOf.at(m_record.number)),
                           project, m_record.number),
      m_variables(items.variablesOf.at(m_record.number)) {
    for (std::size_t column = 0; column < m_variables.size(); ++column)
        m_columns.emplace(m_variables[column], static_cast<int>(column));
}

std::optional<int> DataSet::ColumnOf(std::uint32_t variable) const {
    auto const found = m_columns.find(variable);
    return found == m_columns.end() ? std::nullopt : std::optional(found->second);
}

NCDataVector<float> const &DataSet::Stored(int column) const {
    std::lock_guard const reading(m_reading);
    auto found = m_values.find(column);
    if (found == m_values.end())
        found = m_values.emplace(column, NCDataVector<float>(m_file.Column(m_record, column + 1))).first;
    return found->second;
}

std::string DataSet::Name(int column) const {
    return m_items.variables.GetText(m_variables[static_cast<std::size_t>(column)], 1);
}

NCDataVector<float> DataSet::GetVariable(std::uint32_t variable) const {
    std::optional<int> const column = ColumnOf(variable);
    return column ? Stored(*column) : NCDataVector<float>();
}

std::optional<Recipe> const &DataSet::MadeBy() const {
    std::lock_guard const reading(m_reading);
    if (!m_recipe && IsDerived(m_record.kind))
        m_recipe = RecipeOf(m_file, m_record.number);
    return m_recipe;
}

std::optional<TextColumn> DataSet::Identifier(std::string const &heading) const {
    std::vector<TextColumn> columns = m_file.ObservationIdentifiers(m_record.number);
    auto found = std::ranges::find(columns, heading, &TextColumn::name);
    for (char const *const role : {batchRole, phaseRole})
        if (std::vector<std::string> const synonyms = HeadingsOf(*ReadRoles(m_file), role);
            found == columns.end() && std::ranges::count(synonyms, heading) > 0)
            found = std::ranges::find_if(
                columns, [&](TextColumn const &column) { return std::ranges::count(synonyms, column.name) > 0; });
    return found == columns.end() ? std::nullopt : std::optional(std::move(*found));
}

std::vector<std::string> const &DataSet::Running() const {
    std::lock_guard const reading(m_reading);
    if (!m_running) {
        m_running.emplace();
        if (auto const text = m_file.Section(RunningSection(m_record.number)))
            if (auto const section = XercesXMLSection::CreateXMLSectionFromString(*text))
                section->ReadKey(runningKey, *m_running, '\n');
    }
    return *m_running;
}

std::vector<DateColumn> const &DataSet::Dates() const {
    std::lock_guard const reading(m_reading);
    if (!m_dates)
        m_dates = m_file.Dates(m_record.number);
    return *m_dates;
}

std::span<double const> DataSet::GetDates(std::uint32_t variable) const {
    std::optional<int> const column = ColumnOf(variable);
    for (DateColumn const &dates : Dates())
        if (dates.variable - 1 == column)
            return dates.days;
    return {};
}

NCDataVector<float> DataSet::GetObservation(std::uint32_t observation) const {
    auto const row = std::find(m_observations.begin(), m_observations.end(), ObservationInfo(observation));
    NCDataVector<float> values;
    if (row != m_observations.end())
        for (int column = 0; column < static_cast<int>(m_variables.size()); ++column)
            values.push_back(Values(column)[static_cast<std::size_t>(row - m_observations.begin())]);
    return values;
}

} // namespace engine
