#include "engine/ProjectState_internal.h"

#include "engine/import/Cell_internal.h"
#include "platform/storage/XercesXMLSection.h"

#include <algorithm>

// What a project keeps beside its data and models.

namespace engine {

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

namespace {

constexpr char const *optionsSection = "ProjectOptions";

// The settings of one axis: a key for each member.
struct LabelKeys {
    char const *identifier;
    char const *start;
    char const *length;
    char const *title;
};

constexpr LabelKeys observationKeys{"ObservationIdentifier", "ObservationStart", "ObservationLength",
                                    "ObservationTitle"};
constexpr LabelKeys variableKeys{"VariableIdentifier", "VariableStart", "VariableLength", "VariableTitle"};

void ReadLabels(ConfigurationSection const &section, LabelKeys const &keys, NCProjectOptions::LabelSettings &labels) {
    section.ReadKey(keys.identifier, labels.identifier);
    section.ReadKey(keys.start, labels.start);
    section.ReadKey(keys.length, labels.length);
    section.ReadKey(keys.title, labels.title);
}

void WriteLabels(ConfigurationSection &section, LabelKeys const &keys, NCProjectOptions::LabelSettings const &labels) {
    section.WriteKey(keys.identifier, labels.identifier);
    section.WriteKey(keys.start, labels.start);
    section.WriteKey(keys.length, labels.length);
    section.WriteKey(keys.title, labels.title);
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

namespace {

void CheckPlotName(std::string const &name) {
    if (name.empty() || !IsUtf8Text(name))
        throw NCError(ExceptionMessage::translate("The name of a plot is a text of UTF-8 that is not empty."),
                      NCError::Error);
}

} // namespace

std::vector<std::string> Project::PlotNames() const {
    return m_state->File().PlotNames();
}

bool Project::HasPlot(std::string const &name) const {
    return std::ranges::count(PlotNames(), name) > 0;
}

std::string Project::Plot(std::string const &name) const {
    return m_state->File().Plot(name);
}

void Project::SavePlot(std::string const &name, std::string const &text) {
    CheckPlotName(name);
    m_state->File().SetPlot(name, text);
}

void Project::RenamePlot(std::string const &name, std::string const &newName) {
    CheckPlotName(newName);
    m_state->File().RenamePlot(name, newName);
}

void Project::DeletePlot(std::string const &name) {
    m_state->File().DeletePlot(name);
}

} // namespace engine
