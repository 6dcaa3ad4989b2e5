#include "app/browse/VectorList.h"

#include "catalogue/ProjectVectorHandler.h"
#include "navigation/ProjectVectorFilter.h"

#include <algorithm>
#include <cctype>

namespace {

std::vector<Source> SourcesOf(engine::Project const &project) {
    std::vector<Source> sources;
    for (int i = 1; i <= project.GetNumberOfModels(); ++i)
        if (int const model = project.GetModelNumberAt(i); project.IsModelFitted(model))
            sources.push_back(ReadSource(project, "M" + std::to_string(model)));
    for (int number = project.GetFirstDataSet(0); number > 0; number = project.GetFirstDataSet(number))
        sources.push_back(ReadSource(project, "DS" + std::to_string(number)));
    if (project.GetPredSet(-1))
        sources.push_back(ReadSource(project, "PS"));
    return sources;
}

// What it is: its long name or, where that is just its name, the first line of its help.
std::string PurposeOf(ProjectVector const &vector) {
    std::string const name = vector.GetName(), longName = vector.GetLongName();
    if (longName != name)
        return longName;
    std::string const help = vector.GetHelpString(), line = help.substr(0, help.find('\n'));
    return line.starts_with(name + ": ") ? line.substr(name.size() + 2) : line;
}

std::string Lowered(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char letter) { return std::tolower(letter); });
    return text;
}

} // namespace

VectorList::VectorList(engine::Project const &project) : m_project(project), m_sources(SourcesOf(project)) {
    Read();
    UseModel(project.GetActiveModelNumber());
}

void VectorList::ChangeSource(int by) {
    if (m_sources.empty())
        return;
    int const count = static_cast<int>(m_sources.size());
    m_source = static_cast<std::size_t>((static_cast<int>(m_source) + by % count + count) % count);
    Read();
}

void VectorList::UseModel(int model) {
    auto const found = std::ranges::find_if(
        m_sources, [model](Source const &source) { return source.model && source.model->number == model; });
    auto const index = static_cast<std::size_t>(found - m_sources.begin());
    if (found == m_sources.end() || index == m_source)
        return;
    m_source = index;
    Read();
}

// Where one name stands for several vectors of an axis, that which the source has.
void VectorList::Read() {
    m_vectors.clear();
    if (m_sources.empty())
        return;
    Source const &source = m_sources[m_source];
    // Without a prediction set nothing is predicted.
    DataSeriesUtilities::DefaultProjectFilter const filter(
        m_project, source.model ? source.model->number : 0, source.dataSet, source.data,
        m_project.GetPredSet(-1) ? ProjectVector::ObsAndPred : ProjectVector::Observed, false,
        ProjectVector::AllScoreLoading, DataSeriesUtilities::NoCorrCheck);
    for (int axis = 1; axis <= ProjectVector::VectorTypeBatch; ++axis)
        for (ProjectVector const *const vector : *ProjectVectorHandler::Instance())
            if (vector->GetType() == axis && vector->IsDisplayable() && filter(vector) &&
                Find(vector->GetName(), vector->GetType(), source) == vector)
                m_vectors.push_back(vector);
    Fill();
}

void VectorList::Search(std::string const &text) {
    m_searched = text;
    Fill();
}

// The vector that was highlighted stays so, if it is still there.
void VectorList::Fill() {
    ProjectVector const *const before = Vector();
    std::string const searched = Lowered(m_searched);
    m_rows.clear();
    ProjectVector::VectorTypeEnum axis = ProjectVector::VectorTypeNone;
    for (ProjectVector const *const vector : m_vectors) {
        std::string const text = std::string(vector->GetName()) + "  " + PurposeOf(*vector);
        if (Lowered(text).find(searched) == std::string::npos)
            continue;
        if (axis != vector->GetType())
            m_rows.push_back({nullptr, "for each " + ItemOf(vector->GetType())});
        axis = vector->GetType();
        m_rows.push_back({vector, text});
    }
    auto const found = std::ranges::find_if(m_rows, [&](Row const &row) { return row.vector && row.vector == before; });
    m_highlighted = found == m_rows.end() ? 1 : static_cast<int>(found - m_rows.begin());
}

ProjectVector const *VectorList::Vector() const {
    return m_highlighted < static_cast<int>(m_rows.size()) ? m_rows[static_cast<std::size_t>(m_highlighted)].vector
                                                           : nullptr;
}

void VectorList::Move(int by) {
    int const step = by < 0 ? -1 : 1;
    int left = std::abs(by);
    for (int row = m_highlighted + step; left > 0 && row > 0 && row < static_cast<int>(m_rows.size()); row += step)
        if (m_rows[static_cast<std::size_t>(row)].vector) {
            m_highlighted = row;
            --left;
        }
}

void VectorList::HighlightRow(int row) {
    if (row >= 0 && row < static_cast<int>(m_rows.size()) && m_rows[static_cast<std::size_t>(row)].vector)
        m_highlighted = row;
}
