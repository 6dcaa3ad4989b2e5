#include "engine/data/QualitativeVariables_internal.h"

#include "platform/storage/XercesXMLSection.h"

#include <algorithm>

namespace engine {

namespace {

constexpr char const *settings = "QualitativeVariables";
constexpr char const *variableSection = "Variable";
constexpr char const *headingKey = "Heading";
constexpr char const *dataSetKey = "DataSet";

std::string LevelKey(std::size_t number) {
    return "Level" + std::to_string(number);
}

} // namespace

std::vector<QualitativeVariable> ReadQualitativeVariables(ProjectFile const &file) {
    std::optional<std::string> const text = file.Section(settings);
    auto const section = text ? XercesXMLSection::CreateXMLSectionFromString(*text) : nullptr;
    std::vector<QualitativeVariable> variables(
        section ? static_cast<std::size_t>(section->CountSubSections(variableSection)) : 0);
    for (std::size_t i = 0; i < variables.size(); ++i) {
        auto const stored = section->OpenSubSection(variableSection, static_cast<int>(i) + 1);
        stored->ReadKey(headingKey, variables[i].heading);
        stored->ReadKey(dataSetKey, variables[i].dataSet);
        for (std::string level; stored->ReadKey(LevelKey(variables[i].levels.size() + 1), level);)
            variables[i].levels.push_back(level);
    }
    return variables;
}

void AddQualitativeVariables(ProjectFile &file, std::vector<Level> const &levels) {
    if (levels.empty())
        return;
    std::vector<QualitativeVariable> variables = ReadQualitativeVariables(file);
    for (Level const &level : levels) {
        auto known = std::ranges::find(variables, level.variable, &QualitativeVariable::heading);
        if (known == variables.end())
            known = variables.insert(known, {level.variable, file.DataSets().back().number, {}});
        if (std::ranges::find(known->levels, level.text) == known->levels.end())
            known->levels.push_back(level.text);
    }
    XercesXMLSection section;
    for (std::size_t i = 0; i < variables.size(); ++i) {
        auto const stored = section.CreateSubSection(variableSection, static_cast<int>(i) + 1);
        stored->WriteKey(headingKey, variables[i].heading);
        stored->WriteKey(dataSetKey, variables[i].dataSet);
        for (std::size_t level = 0; level < variables[i].levels.size(); ++level)
            stored->WriteKey(LevelKey(level + 1), variables[i].levels[level]);
    }
    std::string text;
    section.Flush(text);
    file.SetSection(settings, text);
}

} // namespace engine
