#include "app/SavedPlot.h"

#include "app/Failure.h"
#include "app/Summary.h"
#include "platform/storage/XercesXMLSection.h"
#include "selection/SavedSelection.h"

#include <algorithm>

namespace {

constexpr char const *selectionSection = "DataSeries";
constexpr char const *pictureSection = "Picture";

// Names hold any character: each is a section of its own.
void WriteNames(ConfigurationSection &section, char const *kind, std::vector<std::string> const &names) {
    int index = 0;
    for (std::string const &name : names)
        section.CreateSubSection(kind, ++index)->WriteKey("Name", name);
}

std::vector<std::string> ReadNames(ConfigurationSection &section, char const *kind) {
    std::vector<std::string> names;
    for (int index = 1; index <= section.CountSubSections(kind); ++index)
        section.OpenSubSection(kind, index)->ReadKey("Name", names.emplace_back());
    return names;
}

PictureSettings ReadSettings(ConfigurationSection const &section) {
    PictureSettings settings;
    section.ReadKey("Title", settings.style.title);
    section.ReadKey("Width", settings.style.width);
    section.ReadKey("Height", settings.style.height);
    section.ReadKey("Color", settings.color);
    section.ReadKey("Probability", settings.isProbability);
    settings.style.width = std::clamp(settings.style.width, PlotStyle::smallest, PlotStyle::largest);
    settings.style.height = std::clamp(settings.style.height, PlotStyle::smallest, PlotStyle::largest);
    return settings;
}

// Null for a text that is no plot.
std::unique_ptr<XercesXMLSection> SectionOf(std::string const &text) {
    std::unique_ptr<XercesXMLSection> section = XercesXMLSection::CreateXMLSectionFromString(text);
    bool const isPlot =
        section && section->CountSubSections(selectionSection) == 1 && section->CountSubSections(pictureSection) == 1;
    return isPlot ? std::move(section) : nullptr;
}

NCError NothingLeft(std::vector<std::string> const &losses) {
    std::string reasons;
    for (std::string const &loss : losses)
        reasons += " " + loss;
    return Problem(ExceptionMessage::translate("Nothing of the plot can be shown.{1}") % reasons);
}

} // namespace

std::string SavedPlot::Script(BuiltPlot const &built) {
    try {
        return built.Script(settings);
    } catch (NCError const &error) {
        if (settings.color.empty())
            throw;
        settings.color = "none";
        std::string script = built.Script(settings);
        losses.push_back(error.what());
        return script;
    }
}

std::string PlotText(SelectDataSeriesData const &selection, ShownItems const &items, PictureSettings const &settings) {
    XercesXMLSection section;
    SavedSelection::Write(selection, *section.CreateSubSection(selectionSection), false);
    auto const picture = section.CreateSubSection(pictureSection);
    picture->WriteKey("Title", settings.style.title);
    picture->WriteKey("Width", settings.style.width);
    picture->WriteKey("Height", settings.style.height);
    picture->WriteKey("Color", settings.color);
    picture->WriteKey("Probability", settings.isProbability);
    WriteNames(*picture, "Batch", items.batches);
    WriteNames(*picture, "Only", items.only);
    WriteNames(*picture, "Without", items.without);
    std::string text;
    section.Flush(text);
    return text;
}

std::optional<std::string> InLines(std::string const &text) {
    std::unique_ptr<XercesXMLSection> const section = SectionOf(text);
    if (!section)
        return {};
    std::string lines;
    section->Flush(lines, true, true);
    return lines;
}

SavedPlot ReadPlot(boost::shared_ptr<engine::Project> const &project, std::string const &text,
                   std::optional<int> model) {
    std::unique_ptr<XercesXMLSection> const section = SectionOf(text);
    if (!section)
        throw Problem(ExceptionMessage::translate("The plot is damaged: it can't be read."));
    auto const picture = section->OpenSubSection(pictureSection);
    SavedPlot plot{std::make_unique<SelectDataSeriesData>(project, SelectDataSeriesData::Normal,
                                                          ProjectVector::VectorTypeVariablesScores, -1,
                                                          ProjectVector::ObsAndPred),
                   ReadSettings(*picture),
                   {}};
    if (!SavedSelection::Read(*section->OpenSubSection(selectionSection), model, *plot.selection, plot.losses))
        throw NothingLeft(plot.losses);
    ShownItems const items{ReadNames(*picture, "Batch"), ReadNames(*picture, "Only"), ReadNames(*picture, "Without")};
    for (ExceptionMessage const &unknown : Show(*plot.selection, items))
        plot.losses.push_back(unknown.Text());
    if (plot.selection->NumSelectObjects() == 0)
        throw NothingLeft(plot.losses);
    return plot;
}
