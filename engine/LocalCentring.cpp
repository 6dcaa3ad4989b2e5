#include "engine/LocalCentring.h"

#include "engine/TableReader.h"
#include "engine/data/DataSet_internal.h"
#include "engine/models/Definition_internal.h"
#include "platform/containers/Missing.h"
#include "platform/text/Exception.h"

#include <algorithm>

namespace engine {

namespace {

constexpr char const *centringSection = "LocalCentering";

// Calls read(section) for each child of that name.
template <typename Read>
void ForEach(ConfigurationSection &section, char const *name, Read read) {
    for (int index = 1; index <= section.CountSubSections(name); ++index)
        read(*section.OpenSubSection(name, index));
}

std::string const name = "Name";

void Write(ConfigurationSection &section, LocalCentring::Variable const &variable) {
    section.WriteKey(name, variable.name);
    section.WriteKey("Transformation", static_cast<int>(variable.transformation.kind));
    section.WriteKey("C1", variable.transformation.c1);
    section.WriteKey("C2", variable.transformation.c2);
    section.WriteKey("C3", variable.transformation.c3);
    for (std::size_t group = 0; group < variable.centres.size(); ++group)
        section.WriteKey("Group" + std::to_string(group + 1), variable.centres[group]);
}

LocalCentring::Variable Read(ConfigurationSection const &section, std::size_t groups) {
    LocalCentring::Variable variable;
    section.ReadKey(name, variable.name);
    int kind = 0;
    section.ReadKey("Transformation", kind);
    variable.transformation.kind = static_cast<VariableTransformation::Kind>(kind);
    section.ReadKey("C1", variable.transformation.c1);
    section.ReadKey("C2", variable.transformation.c2);
    section.ReadKey("C3", variable.transformation.c3);
    variable.centres.assign(groups, missingValue);
    for (std::size_t group = 0; group < groups; ++group)
        section.ReadKey("Group" + std::to_string(group + 1), variable.centres[group]);
    return variable;
}

// Which variables have a mean taken, from 0.
std::vector<int> ChosenColumns(ProjectFile const &file, DataSetRecord const &record, PackedTexts const &names,
                               std::vector<std::string> const &chosen) {
    std::vector<std::string> const dates = HeadingsOf(*ReadRoles(file), dateTimeRole);
    std::vector<int> columns;
    if (chosen.empty())
        for (std::size_t column = 0; column < names.size(); ++column)
            if (std::ranges::find(dates, names[column]) == dates.end())
                columns.push_back(static_cast<int>(column));
    NameList const places(names);
    for (std::string const &variable : chosen) {
        std::vector<int> const *const found = places.Find(variable);
        if (!found)
            throw NCError(ExceptionMessage::translate("There is no variable \"{1}\" in data set {2} ({3}).") %
                              variable % record.number % record.name,
                          NCError::Error);
        columns.push_back(found->front());
    }
    return columns;
}

// The mean in each group of what can be transformed, -99 where there is nothing.
std::vector<double> Means(std::vector<float> const &values, std::vector<int> const &groupOf, std::size_t groups,
                          Transformation const &transformation) {
    std::vector<double> means(groups);
    std::vector<int> counts(groups);
    // The second pass takes away what rounding has left of the sums, so that the mean of equal values is that value.
    for (int pass = 0; pass < 2; ++pass) {
        std::vector<double> sums(groups);
        counts.assign(groups, 0);
        for (std::size_t row = 0; row < values.size(); ++row) {
            double const transformed = transformation.Apply(values[row]);
            if (groupOf[row] < 0 || IsMissing(values[row]) || !std::isfinite(transformed))
                continue;
            auto const group = static_cast<std::size_t>(groupOf[row]);
            sums[group] += transformed - means[group];
            ++counts[group];
        }
        for (std::size_t group = 0; group < groups; ++group)
            means[group] += sums[group] / counts[group];
    }
    for (std::size_t group = 0; group < groups; ++group)
        means[group] = counts[group] > 0 ? KeepOffMissing(means[group]) : missingValue;
    return means;
}

} // namespace

LocalCentring ReadCentring(ProjectFile const &file) {
    LocalCentring centring;
    std::optional<std::string> const text = file.Section(centringSection);
    auto const section = text ? XercesXMLSection::CreateXMLSectionFromString(*text) : nullptr;
    if (!section)
        return centring;
    section->ReadKey("Identifier", centring.identifier);
    ForEach(*section, "Group",
            [&](ConfigurationSection const &group) { group.ReadKey(name, centring.groups.emplace_back()); });
    ForEach(*section, "Variable", [&](ConfigurationSection const &variable) {
        centring.variables.push_back(Read(variable, centring.groups.size()));
    });
    return centring;
}

void StoreCentring(ProjectFile &file, LocalCentring const &centring) {
    if (centring.variables.empty())
        return file.DeleteSection(centringSection);
    XercesXMLSection section;
    section.WriteKey("Identifier", centring.identifier);
    int index = 0;
    for (std::string const &group : centring.groups)
        section.CreateSubSection("Group", ++index)->WriteKey(name, group);
    index = 0;
    for (LocalCentring::Variable const &variable : centring.variables)
        Write(*section.CreateSubSection("Variable", ++index), variable);
    std::string text;
    section.Flush(text);
    file.SetSection(centringSection, text);
}

LocalCentring GroupMeans(ProjectFile const &file, GroupMeansRequest const &request) {
    DataSetRecord const record = file.DataSet(request.dataSet);
    PackedTexts const texts = IdentifierNamed(file, record, request.identifier).texts;
    LocalCentring centring{request.identifier, {}, {}};
    std::unordered_map<std::string, int> groups;
    std::vector<int> groupOf;
    for (std::size_t row = 0; row < texts.size(); ++row) {
        std::string const text(texts[row]);
        if (!text.empty() && groups.try_emplace(text, static_cast<int>(groups.size())).second)
            centring.groups.push_back(text);
        groupOf.push_back(text.empty() ? -1 : groups[text]);
    }
    if (groups.empty())
        throw NCError(ExceptionMessage::translate("No observation of data set {1} ({2}) has a text in \"{3}\".") %
                          record.number % record.name % request.identifier,
                      NCError::Error);
    PackedTexts const names = file.VariableIdentifiers(record.number).front().texts;
    std::vector<int> const columns = ChosenColumns(file, record, names, request.variables);
    for (auto const &[variable, transformation] : request.transformations)
        if (std::ranges::none_of(columns,
                                 [&, &name = variable](int at) { return names[static_cast<std::size_t>(at)] == name; }))
            throw NCError(ExceptionMessage::translate("The variable \"{1}\" to be transformed is not among those that "
                                                      "are centred.") %
                              variable,
                          NCError::Error);
    for (int const column : columns) {
        std::string const variable(names[static_cast<std::size_t>(column)]);
        auto const found = request.transformations.find(variable);
        auto const transformation = found == request.transformations.end() ? VariableTransformation() : found->second;
        centring.variables.push_back(
            {variable, Means(file.Column(record, column + 1), groupOf, groups.size(), TransformationOf(transformation)),
             transformation});
    }
    return centring;
}

LocalCentring CentresInTable(ImportedTable const &table, std::string const &identifier) {
    LocalCentring centring{identifier, {}, {}};
    PackedTexts const &groups = table.observations.front().texts;
    for (std::size_t row = 0; row < groups.size(); ++row) {
        if (std::ranges::find(centring.groups, groups[row]) != centring.groups.end())
            throw NCError(ExceptionMessage::translate("The group \"{1}\" stands twice in the table of centre values.") %
                              std::string(groups[row]),
                          NCError::Error);
        centring.groups.emplace_back(groups[row]);
    }
    PackedTexts const &names = table.variables.front().texts;
    for (std::size_t column = 0; column < names.size(); ++column)
        centring.variables.push_back(
            {std::string(names[column]), {table.columns[column].begin(), table.columns[column].end()}, {}});
    return centring;
}

} // namespace engine
