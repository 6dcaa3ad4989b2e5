#include "navigation/ProjectVectorFilter.h"
#include "navigation/Transformations.h"
#include "platform/project/ModelAndDatsetMemoryLock.h"
#include "platform/project/NCProject.h"
#include "platform/storage/XercesXMLSection.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "selection/SelectionSections_internal.h"
#include "utilities/DefaultSelection.h"

#include <boost/archive/polymorphic_iarchive.hpp>
#include <boost/archive/polymorphic_oarchive.hpp>
#include <boost/serialization/nvp.hpp>
#include <boost/serialization/string.hpp>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <sstream>

// A selection in a section of settings, and in an archive.

namespace {

using boost::serialization::make_nvp;
using ProjectUtilities::DefaultSelection;
using Selection = SelectDataSeriesData;

std::unique_ptr<ConfigurationSection> Cleared(ConfigurationSection &section, char const *name, int index = 1) {
    auto child = section.CreateSubSection(name, index);
    child->Clear();
    return child;
}

void WriteAxis(ConfigurationSection &section, char const *name, ProjectVectorData const &axis, bool isUsed) {
    auto const child = Cleared(section, name);
    if (isUsed)
        axis.WriteSection(child.get());
}

void WriteSortings(ConfigurationSection &section, std::vector<Selection::SortInfo> const &sortings) {
    section.DeleteKey("SortType"); // the single key of older files
    section.DeleteKey("SortSeries");
    auto const list = Cleared(section, "SortInfo");
    for (int index = 1; Selection::SortInfo const &sorting : sortings) {
        auto const child = list->CreateSubSection("SortInfo", index++);
        child->WriteKey("SortOrder", sorting.sortOrder);
        child->WriteKey("SortType", sorting.sortType);
        child->WriteKey("SortIndex", sorting.sortIndex);
        child->WriteKey("StartPos", sorting.startPos);
        child->WriteKey("Length", sorting.length);
    }
}

void WriteLimits(ConfigurationSection &section, Selection::SDLimits const &limits) {
    auto const list = Cleared(section, "SDLimits");
    for (int index = 1; auto const &[multiplier, isVisible] : limits) {
        auto const child = list->CreateSubSection("SDLimits", index++);
        child->WriteKey("Multiplier", static_cast<double>(multiplier));
        child->WriteKey("Visible", isVisible);
    }
}

// Calls `read` with each child of that name, in their order.
template <typename Read>
void ForEachChild(ConfigurationSection &section, char const *name, Read read) {
    for (int index = 1, count = section.CountSubSections(name); index <= count; ++index)
        if (auto const child = section.OpenSubSection(name, index))
            read(*child);
}

void ReadSortings(ConfigurationSection &section, std::vector<Selection::SortInfo> &sortings) {
    Selection::SortInfo single;
    if (section.ReadKey("SortSeries", single.sortIndex) && single.sortIndex > 0) {
        if (!section.ReadKey("SortType", single.sortOrder))
            single.sortOrder = Selection::SortAscending;
        sortings = {single};
    } else if (auto const list = section.OpenSubSection("SortInfo")) {
        sortings.clear();
        ForEachChild(*list, "SortInfo", [&sortings](ConfigurationSection const &child) {
            Selection::SortInfo sorting;
            if (child.ReadKey("SortOrder", sorting.sortOrder) && child.ReadKey("SortType", sorting.sortType) &&
                child.ReadKey("SortIndex", sorting.sortIndex) && child.ReadKey("StartPos", sorting.startPos) &&
                child.ReadKey("Length", sorting.length))
                sortings.push_back(sorting);
        });
    }
}

void ReadLimits(ConfigurationSection &section, Selection::SDLimits &limits) {
    auto const list = section.OpenSubSection("SDLimits");
    if (!list || list->CountSubSections("SDLimits") == 0)
        return;
    limits.clear();
    ForEachChild(*list, "SDLimits", [&limits](ConfigurationSection const &child) {
        double multiplier = 0;
        bool isVisible = false;
        if (child.ReadKey("Multiplier", multiplier) && child.ReadKey("Visible", isVisible))
            limits.emplace_back(static_cast<float>(multiplier), isVisible);
    });
}

// A format goes to printf with one double. No other text may get there.
bool IsFormatOfNumber(std::string const &text) {
    static std::regex const one(R"(([^%]|%%)*%[-+ #0]*[0-9]{0,2}(\.[0-9]{0,2})?[aAeEfFgG]([^%]|%%)*)");
    constexpr std::size_t longest = 64;
    return text.size() <= longest && std::regex_match(text, one);
}

bool ReadFlag(ConfigurationSection const &section, char const *key, bool &flag) {
    int value = 0;
    if (!section.ReadKey(key, value))
        return false;
    flag = value == 1;
    return true;
}

} // namespace

bool SelectionSections::ReadSeries(Selection const &selection, ConfigurationSection &section, bool activeModel,
                                   ProjectVectorData &series) {
    ProjectPtr const project = selection.GetProject();
    if (!series.ReadSection(project, &section, activeModel))
        return false;
    ProjectVector const &vector = *series.GetProjectVector();
    ModelInfo const *const model = series.GetModelInfo();
    return DataSeriesUtilities::DefaultProjectFilter(*project, model ? model->number : -1, series.GetDataSet(),
                                                     vector.GetDataType(), vector.GetObsPredType(), false,
                                                     ProjectVector::AllScoreLoading, DataSeriesUtilities::NoCorrCheck)
        .UseProjectVector(&vector);
}

void SelectDataSeriesData::WriteSection(ConfigurationSection *section, bool activeModel) const {
    section->WriteKey("Mode", FromMode(m_mode));
    section->WriteKey("GlobalType", static_cast<int>(m_globalType));
    section->WriteKey("ActiveModel", activeModel ? 1 : 0);
    WriteAxis(*section, SelectionSections::xAxis, m_xAxis, UsesX());
    WriteAxis(*section, SelectionSections::yAxis, m_yAxis, UsesY());
    for (int index = section->CountSubSections(SelectionSections::series); index >= 1; --index)
        section->DeleteSubSection(SelectionSections::series, index);
    for (int index = 1; ProjectVectorData const &series : m_series)
        series.WriteSection(section->CreateSubSection(SelectionSections::series, index++).get());
    section->WriteKey("VectorType", ProjectVector::FromVectorTypeEnum(m_vectorType));
    section->WriteKey("MaxNumSeries", m_maxSeries);
    section->WriteKey("ScoreLoadingType", ProjectVector::FromScoreLoadingType(m_scoreLoadingType));
    section->WriteKey("ScaleZeroOne", static_cast<int>(m_scaleType));
    section->WriteKey("ObsPredType", ProjectVector::FromObsOrPredType(m_obsPredType));
    section->WriteKey("FormattedHeader", m_rawHeader);
    section->WriteKey("UseFormattedDefault", m_useFormattedDefault);
    m_transformation.WriteSection(section->CreateSubSection(SelectionSections::transformation).get());
    section->WriteKey("SupportTransformation", m_supportsTransformation ? 1 : 0);
    m_controlChart.WriteSection(section->CreateSubSection("ControlChart").get());
    section->WriteKey("InvertData", m_invertData ? 1 : 0);
    WriteSortings(*section, m_sortings);
    section->WriteKey("Format", m_numberFormat);
    section->WriteKey("UseConfidenceInterval", m_useConfidenceInterval ? 1 : 0);
    std::string batch, phase;
    bool const isOfOneBatch = HasSingleBatchAndPhase(batch, phase);
    section->WriteKey("Batch", isOfOneBatch ? batch : "");
    section->WriteKey("Phase", isOfOneBatch ? phase : "");
    section->WriteKey("AspectRatioType", static_cast<int>(m_aspectRatio));
    section->WriteKey("XScale", m_xScale);
    section->WriteKey("YScale", m_yScale);
    section->WriteKey("ZScale", m_zScale);
    section->WriteKey("UseDefaultSelectObjects", m_useDefaultSelectObjects);
    section->WriteKey("ShowLimits", m_showLimits);
    WriteLimits(*section, m_sdLimits);
}

bool SelectDataSeriesData::ReadSection(ConfigurationSection *section) {
    bool isRead = false;
    try {
        isRead = ReadContents(*section);
    } catch (...) {
        Clear();
        throw;
    }
    if (!isRead)
        Clear();
    return isRead;
}

bool SelectDataSeriesData::ReadContents(ConfigurationSection &section) {
    boost::shared_ptr<NCProject> const project = GetProject();
    bool activeModel = false;
    if (!project || !ReadKind(section, activeModel))
        return false;
    Clear();
    ModelAndDatsetMemoryLock const lock(*project);
    if (!ReadAxis(section, SelectionSections::xAxis, UsesX(), activeModel, m_xAxis) ||
        !ReadAxis(section, SelectionSections::yAxis, UsesY(), activeModel, m_yAxis) ||
        !ReadAllSeries(section, activeModel))
        return false;
    CorrectNumVectors();
    if (!ReadTransformation(section, activeModel))
        return false;
    auto const chart = section.OpenSubSection("ControlChart");
    if (!chart || !m_controlChart.ReadSection(chart.get()))
        return false;
    ReadDisplay(section);
    return true;
}

bool SelectDataSeriesData::ReadKind(ConfigurationSection const &section, bool &activeModel) {
    std::string mode, vectorType, scoreLoading, obsPred;
    int globalType = GlobalTypeUndecided, maxSeries = 0, scale = 0;
    section.ReadKey("GlobalType", globalType);
    ReadFlag(section, "ActiveModel", activeModel);
    if (!section.ReadKey("Mode", mode) || !section.ReadKey("VectorType", vectorType) ||
        !section.ReadKey("MaxNumSeries", maxSeries) || !section.ReadKey("ScoreLoadingType", scoreLoading) ||
        !section.ReadKey("ScaleZeroOne", scale) || !section.ReadKey("ObsPredType", obsPred))
        return false;
    m_mode = ToMode(mode.c_str());
    m_globalType = static_cast<DataSeriesGlobalType>(globalType);
    m_vectorType = ProjectVector::ToVectorTypeEnum(vectorType.c_str());
    m_maxSeries = maxSeries;
    m_scoreLoadingType = ProjectVector::ToScoreLoadingType(scoreLoading.c_str());
    m_scaleType = static_cast<ScaleType>(scale);
    m_obsPredType = ProjectVector::ToObsOrPredType(obsPred.c_str());
    return true;
}

bool SelectDataSeriesData::ReadAxis(ConfigurationSection &section, char const *name, bool isUsed, bool activeModel,
                                    ProjectVectorData &axis) const {
    if (!isUsed)
        return true;
    auto const stored = section.OpenSubSection(name);
    if (!stored)
        return false;
    axis.ReadSection(GetProject(), stored.get(), activeModel);
    return true;
}

bool SelectDataSeriesData::ReadAllSeries(ConfigurationSection &section, bool activeModel) {
    ForEachChild(section, SelectionSections::series, [&](ConfigurationSection &child) {
        try {
            ProjectVectorData series;
            if (SelectionSections::ReadSeries(*this, child, activeModel, series))
                AddSeries(series, true);
        } catch (NCError const &) {
            // What this project cannot show is left out.
        }
    });
    return !m_series.empty() || section.CountSubSections(SelectionSections::series) == 0;
}

bool SelectDataSeriesData::ReadTransformation(ConfigurationSection &section, bool activeModel) {
    auto const stored = section.OpenSubSection(SelectionSections::transformation);
    if (!ReadFlag(section, "SupportTransformation", m_supportsTransformation) || !stored)
        return true;
    if (!m_transformation.ReadSection(GetProject(), stored.get(), activeModel))
        return false;
    DataSeriesUtilities::ValidateTransformationType(this, m_transformation);
    return true;
}

void SelectDataSeriesData::ReadDisplay(ConfigurationSection &section) {
    ReadFlag(section, "InvertData", m_invertData);
    ReadSortings(section, m_sortings);
    if (std::string format; section.ReadKey("Format", format) && IsFormatOfNumber(format)) {
        std::free(m_numberFormat);
        m_numberFormat = ::strdup(format.c_str());
    }
    ReadFlag(section, "UseConfidenceInterval", m_useConfidenceInterval);
    std::string batch, phase;
    if (section.ReadKey("Batch", batch) && !batch.empty()) {
        section.ReadKey("Phase", phase);
        SetSelectedBatchAndPhase(batch.c_str(), phase.c_str());
    }
    section.ReadKey("FormattedHeader", m_rawHeader);
    section.ReadKey("UseFormattedDefault", m_useFormattedDefault);
    int aspectRatio = m_aspectRatio;
    section.ReadKey("AspectRatioType", aspectRatio);
    m_aspectRatio = static_cast<AspectRatioType>(aspectRatio);
    section.ReadKey("XScale", m_xScale);
    section.ReadKey("YScale", m_yScale);
    section.ReadKey("ZScale", m_zScale);
    section.ReadKey("UseDefaultSelectObjects", m_useDefaultSelectObjects);
    section.ReadKey("ShowLimits", m_showLimits);
    ReadLimits(section, m_sdLimits);
}

template <typename Archive>
void SelectDataSeriesData::save(Archive &archive, unsigned int version) const {
    XercesXMLSection root;
    WriteSection(root.CreateSubSection(SelectionSections::selection).get(), false);
    std::string text;
    root.Flush(text);
    BoolVector const &objects = GetSelectObjects();
    int const size = objects.Size();
    bool const hasUnselected = std::ranges::count(objects.Values(), false) > 0;
    archive << make_nvp("Section", text) << make_nvp("SizeSelectObjects", size)
            << make_nvp("HasUnselected", hasUnselected);
    if (hasUnselected) {
        std::ostringstream flags;
        flags << objects;
        std::string const saved = flags.str();
        archive << make_nvp("SelectObjects", saved);
    }
    (m_defaults ? *m_defaults : DefaultSelection(GetProject())).save(archive, version);
}

template <typename Archive>
void SelectDataSeriesData::load(Archive &archive, unsigned int version) {
    std::string text;
    int size = 0;
    unsigned char hasUnselected = 0; // written as a bool, which must not be read from a damaged archive
    archive >> make_nvp("Section", text) >> make_nvp("SizeSelectObjects", size) >>
        make_nvp("HasUnselected", hasUnselected);
    constexpr int mostItems = 100'000'000;
    if (size < 0 || size > mostItems)
        throw boost::archive::archive_exception(boost::archive::archive_exception::input_stream_error);
    auto const root = XercesXMLSection::CreateXMLSectionFromString(text);
    auto const section = root ? root->OpenSubSection(SelectionSections::selection) : nullptr;
    try {
        if (!section || !ReadSection(section.get()))
            Clear();
    } catch (NCError const &) {
        Clear();
    }
    // The columns first: finding them selects all.
    GetColumnIDs();
    if (hasUnselected != 0) {
        std::string saved;
        archive >> make_nvp("SelectObjects", saved);
        std::istringstream flags(saved);
        flags >> m_selectObjects;
    } else {
        m_selectObjects.resize(size);
        m_selectObjects.SetAllValues(true);
    }
    DefaultSelection unbound(GetProject());
    (m_defaults ? *m_defaults : unbound).load(archive, version);
}

template DATASERIES_API void SelectDataSeriesData::save(boost::archive::polymorphic_oarchive &, unsigned int) const;
template DATASERIES_API void SelectDataSeriesData::load(boost::archive::polymorphic_iarchive &, unsigned int);
