#include "engine/data/DataSet_internal.h"

#include <algorithm>
#include <string_view>

namespace engine {

namespace {

// Collects the items of one list, data set by data set, and the identifier columns that any of them has.
class ListBuilder {
public:
    // Columns of these headings tell the same: what one has is in the first of them too.
    void SetSynonyms(std::vector<std::string> const &headings) {
        for (std::string const &heading : headings)
            if (heading != headings.front())
                m_synonyms[heading] = headings.front();
    }

    // Answers the item of each entry of a data set.
    std::vector<std::uint32_t> Add(std::vector<TextColumn> const &columns) {
        PackedTexts const &primary = columns.front().texts;
        std::vector<std::uint32_t> items;
        items.reserve(primary.size());
        std::uint32_t const known = m_size;
        std::vector<bool> taken(known + 1);
        for (std::size_t i = 0; i < primary.size(); ++i) {
            auto const [at, isNew] = m_items.try_emplace(std::string(primary[i]), m_size + 1);
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

    void SetRole(std::vector<std::string> const &headings, VarObs::Role role) {
        for (VarObs::Alias &alias : m_aliases)
            if (std::find(headings.begin(), headings.end(), alias.name) != headings.end())
                alias.role = role;
    }

    void MoveInto(VarObs &list) {
        for (VarObs::Alias &alias : m_aliases) {
            alias.texts.resize(m_size);
            list.AddAlias(std::move(alias));
        }
    }

private:
    std::size_t AliasNumber(std::string const &name, bool primary) {
        if (primary && !m_aliases.empty())
            return 0;
        auto const found = std::find_if(m_aliases.begin(), m_aliases.end(),
                                        [&name](VarObs::Alias const &alias) { return alias.name == name; });
        if (found != m_aliases.end())
            return static_cast<std::size_t>(found - m_aliases.begin());
        m_aliases.push_back({name, {}, VarObs::Role::Plain, {}, false});
        return m_aliases.size() - 1;
    }

    // What an earlier data set says of an item stays.
    void AddTexts(std::size_t alias, PackedTexts const &texts, std::vector<std::uint32_t> const &items) {
        std::vector<std::string> &all = m_aliases[alias].texts;
        all.resize(m_size);
        for (std::size_t i = 0; i < items.size(); ++i)
            if (all[items[i] - 1].empty())
                all[items[i] - 1] = texts[i];
    }

    std::unordered_map<std::string, std::uint32_t> m_items;
    std::uint32_t m_size = 0;
    std::vector<VarObs::Alias> m_aliases;
    std::unordered_map<std::string, std::string> m_synonyms;
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

ItemLists::ItemLists(ProjectFile const &file) {
    Refresh(file);
}

void ItemLists::Refresh(ProjectFile const &file) {
    variables = NCVariables();
    observations = NCObservations();
    variablesOf.clear();
    observationsOf.clear();
    ListBuilder variableList;
    ListBuilder observationList;
    std::unique_ptr<XercesXMLSection> const roles = ReadRoles(file);
    for (char const *role : {batchRole, phaseRole})
        observationList.SetSynonyms(HeadingsOf(*roles, role));
    for (DataSetRecord const &record : file.DataSets()) {
        variablesOf[record.number] = variableList.Add(file.VariableIdentifiers(record.number));
        observationsOf[record.number] = observationList.Add(file.ObservationIdentifiers(record.number));
    }
    observationList.SetRole(HeadingsOf(*roles, batchRole), VarObs::Role::Batch);
    observationList.SetRole(HeadingsOf(*roles, phaseRole), VarObs::Role::Phase);
    variableList.MoveInto(variables);
    observationList.MoveInto(observations);
    MarkDates(HeadingsOf(*roles, dateTimeRole));
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

std::span<float const> DataSet::Values(int column) const {
    std::lock_guard const reading(m_reading);
    auto const [at, isNew] = m_values.try_emplace(column);
    if (isNew)
        at->second = m_file.Column(m_record.number, column + 1);
    return at->second;
}

std::string DataSet::Name(int column) const {
    return m_items.variables.GetText(m_variables[static_cast<std::size_t>(column)], 1);
}

NCDataVector<float> DataSet::GetVariable(std::uint32_t variable) const {
    std::optional<int> const column = ColumnOf(variable);
    return column ? NCDataVector<float>(Values(*column)) : NCDataVector<float>();
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
