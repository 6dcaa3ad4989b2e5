#include "building/CreateProjectData.h"
#include "platform/identity/BatchUtilities.h"
#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"
#include "selection/SelectDataSeriesData.h"
#include "utilities/BatchConverter.h"
#include "utilities/DefaultSelection.h"

#include <algorithm>
#include <set>
#include <unordered_set>

// The items that the vectors of a selection have in common, and which of them are selected.

namespace {

constexpr int mostDefaultLags = 30;

using Positions = NCIntegralVector<int, -99>;

// Rows that belong together, from a first to a last one, 1-based; empty when last is before first.
struct Range {
    int first = 1;
    int last = 0;
};

// The rows between the beginning of one group and the next.
Range RangeOf(Positions const &beginnings, int group, int rows) {
    int const last = group < beginnings.Size() ? beginnings[group + 1] - 1 : rows;
    return {beginnings[group], last};
}

void Select(BoolVector &objects, Range const &range) {
    if (range.first <= range.last)
        objects.SetRange(range.first, range.last, true);
}

bool IsWholeSelected(BoolVector const &objects, Range const &range) {
    auto const flags = objects.Values();
    return range.last <= objects.Size() &&
           std::all_of(flags.begin() + (range.first - 1), flags.begin() + range.last, [](bool flag) { return flag; });
}

// The part of a batch that belongs to a phase. Nothing when the batch has no such phase; a batch that does not begin
// with a phase is told by `phased` false.
Range PhaseOf(Range const &batch, std::string const &phase, Positions const &phaseBeginnings,
              ObservationInfos const &rows, NCObservations const &list, bool &phased) {
    int group = phaseBeginnings.Find(batch.first, SortKind::Ascending);
    phased = group >= 1;
    for (; group >= 1 && group <= phaseBeginnings.Size() && phaseBeginnings[group] <= batch.last; ++group)
        if (rows[static_cast<std::size_t>(phaseBeginnings[group] - 1)].GetPhaseName(list) == phase)
            return RangeOf(phaseBeginnings, group, static_cast<int>(rows.size()));
    return {};
}

// The data behind the rows may have no phases though others of the project do.
bool HavePhases(ObservationInfos const &rows, NCObservations const &list) {
    return std::ranges::any_of(rows, [&](ObservationInfo const &row) { return !row.GetPhaseName(list).empty(); });
}

bool UsesBatch(ProjectVectorData const &data) {
    return data.GetProjectVector() && data.GetProjectVector()->UseBatchIx();
}

} // namespace

ColumnIDs const &SelectDataSeriesData::Columns() const {
    static ColumnIDs const none;
    ColumnIDs const *const columns = GetColumnIDs();
    return columns && !m_project.expired() ? *columns : none;
}

ObservationInfos SelectDataSeriesData::Rows() const {
    ColumnIDs const &columns = Columns();
    ObservationInfos rows;
    rows.reserve(static_cast<std::size_t>(columns.Size()));
    auto const numbers = columns.GetColumnIDs();
    for (std::uint32_t const number : *numbers)
        rows.emplace_back(number);
    return rows;
}

std::span<bool const> SelectDataSeriesData::FlagsOf(ObservationInfos const &rows) const {
    return m_selectObjects.Values().first(std::min(m_selectObjects.size(), rows.size()));
}

void SelectDataSeriesData::SelectAll() const {
    m_selectObjects = BoolVector(m_columns->Size(), true);
}

void SelectDataSeriesData::SetDefaultLags(TransformationData &transformation) const {
    int const items = m_columns->Size();
    transformation.SetMaxLags(items);
    transformation.SetNumLags(std::min(items / 4, mostDefaultLags));
}

void SelectDataSeriesData::AddProjectData(ProjectVectorData const &data, bool intersect) {
    if (m_vectorType == ProjectVector::VectorTypeNone)
        return;
    ProjectVector const *const vector = data.GetProjectVector();
    if (!vector)
        throw NCError(ExceptionMessage::translate("Unknown vector type in project data."), NCError::Error);
    if (vector->IsNumVector() || (m_columns && !intersect))
        return;
    std::string const text = data.ToStdString(Defaults());
    boost::shared_ptr<NCProject> const project = GetProject();
    if (text.empty() || !project)
        return;
    ColumnIDs const columns = ProjectDataUtilities::CreateProjectData(*project).GetColumnIDs(text, m_vectorType);
    if (!m_columns) {
        m_columns = std::make_unique<ColumnIDs>(columns);
        if (m_selectObjects.Size() != columns.Size())
            SelectAll();
        return;
    }
    Positions kept;
    Positions keptThere;
    switch (m_columns->InterSection(columns, kept, keptThere, 0)) {
    case 0:
        m_columns->Reduce(kept);
        m_selectObjects.clear();
        break;
    case 1:
        m_columns->Reduce(kept);
        m_columns->MergeBatches(columns);
        m_selectObjects.Reduce(kept);
        break;
    default:
        m_columns->MergeBatches(columns);
    }
}

void SelectDataSeriesData::InitializeColumnIDs() const {
    std::list<std::string> texts;
    ToStdVectorString(texts);
    boost::shared_ptr<NCProject> const project = GetProject();
    if (texts.empty() || !project)
        return;
    std::unique_ptr<ColumnIDs> columns =
        ProjectDataUtilities::CreateProjectData(*project).GetColumnIDs(texts, m_vectorType);
    if (!columns) {
        m_columns.reset();
    } else if (!m_columns) {
        m_columns = std::move(columns);
        if (m_selectObjects.Size() != m_columns->Size())
            SelectAll();
    } else {
        Positions here;
        Positions there;
        // Equal columns leave the selected items alone.
        if (m_columns->InterSection(*columns, here, there, 1) != 2) {
            m_columns = std::move(columns);
            SelectAll();
        }
    }
    if (!m_columns) {
        m_transformation.ClearLags();
        m_transformation.SetMaxLags(0);
    } else if (m_transformation.GetMaxLags() == 0 || !m_transformation.IsNumLagsInitialised()) {
        SetDefaultLags(m_transformation);
    }
}

ColumnIDs const *SelectDataSeriesData::GetColumnIDs() const {
    if (m_dirty || !m_columns) {
        InitializeColumnIDs();
        m_dirty = false;
    }
    return m_columns.get();
}

BoolVector const &SelectDataSeriesData::GetSelectObjects() const {
    GetColumnIDs();
    return m_selectObjects;
}

void SelectDataSeriesData::SetColumnIDs(ColumnIDs const *columns) {
    m_dirty = false;
    if (!columns) {
        m_columns.reset();
        m_transformation.ClearLags();
        m_transformation.SetMaxLags(0);
        return;
    }
    m_columns = std::make_unique<ColumnIDs>(*columns);
    if (m_transformation.GetMaxLags() == 0)
        SetDefaultLags(m_transformation);
    if (m_selectObjects.Size() != m_columns->Size())
        SelectAll();
}

void SelectDataSeriesData::ClearColumnIDs() {
    m_columns.reset();
    m_selectObjects.clear();
}

int SelectDataSeriesData::NumSelectObjects() const {
    auto const flags = GetSelectObjects().Values();
    return static_cast<int>(std::count(flags.begin(), flags.end(), true));
}

void SelectDataSeriesData::SelectBatches(std::vector<int> const &batches, bool keepPhase) {
    if (Columns().GetSource() != ColumnIDs::Observations)
        return;
    boost::shared_ptr<NCProject> const project = GetProject();
    NCObservations const &list = project->GetObservations();
    ObservationInfos const rows = Rows();
    Positions const beginnings = BatchUtilities::GetBatchBeginnings(list, rows);
    Positions phaseBeginnings;
    std::string phase;
    if (keepPhase) {
        auto const flags = FlagsOf(rows);
        auto const first = std::find(flags.begin(), flags.end(), true);
        if (first != flags.end())
            phase = rows[static_cast<std::size_t>(first - flags.begin())].GetPhaseName(list);
        phaseBeginnings = BatchUtilities::GetPhaseBeginnings(list, rows);
    }
    m_selectObjects.SetAllValues(false);
    for (int const batch : batches) {
        if (batch < 1 || batch > beginnings.Size())
            continue;
        Range range = RangeOf(beginnings, batch, static_cast<int>(rows.size()));
        if (keepPhase) {
            bool phased = false;
            range = PhaseOf(range, phase, phaseBeginnings, rows, list, phased);
            if (!phased)
                return;
        }
        Select(m_selectObjects, range);
    }
}

SelectDataSeriesData::SelectedType SelectDataSeriesData::SelectBatches(std::vector<std::string> const &names) {
    ColumnIDs const &columns = Columns();
    std::unordered_set<std::string> const wanted(names.begin(), names.end());
    bool any = false;
    if (columns.GetSource() == ColumnIDs::Batches) {
        m_selectObjects.SetAllValues(false);
        for (int item = 1; item <= columns.Size(); ++item)
            if (wanted.contains(columns.GetName(item, 1))) {
                m_selectObjects(item) = true;
                any = true;
            }
        return any ? ItemsSelected : NothingSelected;
    }
    if (columns.GetSource() != ColumnIDs::Observations)
        return NothingSelected;
    // The X axis speaks for both axes.
    if ((m_mode != Normal && UsesBatch(m_xAxis)) || std::any_of(m_series.begin(), m_series.end(), UsesBatch))
        return SeriesHaveBatches;
    boost::shared_ptr<NCProject> const project = GetProject();
    NCObservations const &list = project->GetObservations();
    ObservationInfos const rows = Rows();
    Positions const beginnings = BatchUtilities::GetBatchBeginnings(list, rows);
    m_selectObjects.SetAllValues(false);
    for (int batch = 1; batch <= beginnings.Size(); ++batch)
        if (wanted.contains(rows[static_cast<std::size_t>(beginnings[batch] - 1)].GetBatchName(list))) {
            Select(m_selectObjects, RangeOf(beginnings, batch, static_cast<int>(rows.size())));
            any = true;
        }
    return any ? ItemsSelected : NothingSelected;
}

void SelectDataSeriesData::SetSelectedBatchAndPhase(char const *batch, char const *phase) {
    if (Columns().GetSource() != ColumnIDs::Observations)
        return;
    boost::shared_ptr<NCProject> const project = GetProject();
    NCObservations const &list = project->GetObservations();
    ObservationInfos const rows = Rows();
    m_selectObjects.SetAllValues(false);
    Positions const beginnings = BatchUtilities::GetBatchBeginnings(list, rows);
    std::string wanted = batch ? batch : "";
    for (int group = 1; group <= beginnings.Size(); ++group) {
        ObservationInfo const &first = rows[static_cast<std::size_t>(beginnings[group] - 1)];
        if (wanted.empty())
            wanted = first.GetBatchName(list);
        if (first.GetBatchName(list) != wanted)
            continue;
        Range range = RangeOf(beginnings, group, static_cast<int>(rows.size()));
        if (phase && *phase != '\0' && HavePhases(rows, list)) {
            bool phased = false;
            range = PhaseOf(range, phase, BatchUtilities::GetPhaseBeginnings(list, rows), rows, list, phased);
        }
        Select(m_selectObjects, range);
        return;
    }
}

bool SelectDataSeriesData::GetSelectedBatches(std::vector<int> &batches) const {
    batches.clear();
    if (m_vectorType == ProjectVector::VectorTypeAligned) {
        for (ProjectVectorData const &series : m_series)
            if (UsesBatch(series) && series.batchIx > 0)
                batches.push_back(series.batchIx);
        return false;
    }
    if (Columns().GetSource() != ColumnIDs::Observations)
        return false;
    boost::shared_ptr<NCProject> const project = GetProject();
    NCObservations const &list = project->GetObservations();
    ObservationInfos const rows = Rows();
    int const size = static_cast<int>(rows.size());
    Positions const beginnings = BatchUtilities::GetBatchBeginnings(list, rows);
    for (int batch = 1; batch <= beginnings.Size(); ++batch)
        if (IsWholeSelected(m_selectObjects, RangeOf(beginnings, batch, size)))
            batches.push_back(batch);
    if (!batches.empty() || list.GetPhaseID(AliasAccess(list)) == 0)
        return false;
    Positions const phases = BatchUtilities::GetPhaseBeginnings(list, rows);
    std::vector<int> wholePhases;
    for (int phase = 1; phase <= phases.Size(); ++phase)
        if (IsWholeSelected(m_selectObjects, RangeOf(phases, phase, size)))
            wholePhases.push_back(phases[phase]);
    if (wholePhases.size() != 1)
        return false;
    auto const next = std::upper_bound(beginnings.begin(), beginnings.end(), wholePhases.front());
    batches.push_back(static_cast<int>(next - beginnings.begin()));
    return true;
}

void SelectDataSeriesData::GetSelectedBatches(std::vector<std::string> &names) const {
    names.clear();
    boost::shared_ptr<NCProject> const project = GetProject();
    if (m_series.empty() || !project)
        return;
    if (m_vectorType == ProjectVector::VectorTypeAligned) {
        std::set<int> batches;
        for (ProjectVectorData const &series : m_series)
            if (series.batchIx > 0)
                batches.insert(series.batchIx);
        if (ModelInfo const *const model = m_series.front().GetModelInfo())
            ProjectUtilities::BatchConverter(*project, model->number, false)
                .FromIndexToBatch({batches.begin(), batches.end()}, names);
        return;
    }
    ColumnIDs const &columns = Columns();
    if (columns.GetSource() == ColumnIDs::Batches) {
        for (int item = 1; item <= columns.Size(); ++item)
            if (m_selectObjects[item])
                names.push_back(columns.GetName(item, 1));
        return;
    }
    NCObservations const &list = project->GetObservations();
    if (columns.GetSource() != ColumnIDs::Observations || list.GetBatchID(AliasAccess(list)) == 0)
        return;
    ObservationInfos const rows = Rows();
    Positions const beginnings = BatchUtilities::GetBatchBeginnings(list, rows);
    for (int batch = 1; batch <= beginnings.Size(); ++batch)
        if (IsWholeSelected(m_selectObjects, RangeOf(beginnings, batch, static_cast<int>(rows.size()))))
            names.push_back(rows[static_cast<std::size_t>(beginnings[batch] - 1)].GetBatchName(list));
}

bool SelectDataSeriesData::HasSingleBatchAndPhase(std::string &batch, std::string &phase) const {
    boost::shared_ptr<NCProject> const project = GetProject();
    if (!project || m_vectorType != ProjectVector::VectorTypeVariablesScores ||
        Columns().GetSource() != ColumnIDs::Observations)
        return false;
    NCObservations const &list = project->GetObservations();
    AliasAccess const aliases(list);
    int const batchAlias = list.GetBatchID(aliases);
    int const phaseAlias = list.GetPhaseID(aliases);
    if (batchAlias == 0)
        return false;
    ObservationInfos const rows = Rows();
    auto const flags = FlagsOf(rows);
    auto const first = std::find(flags.begin(), flags.end(), true);
    if (first == flags.end())
        return false;
    std::size_t const from = static_cast<std::size_t>(first - flags.begin());
    auto const isSame = [&](std::size_t row) {
        auto const textIs = [&](int alias) {
            return list.GetText(rows[row].GetUniqueID(), alias) == list.GetText(rows[from].GetUniqueID(), alias);
        };
        return textIs(batchAlias) && textIs(phaseAlias);
    };
    std::size_t to = from;
    for (std::size_t row = from; row < flags.size(); ++row)
        if (flags[row]) {
            if (!isSame(row))
                return false;
            to = row;
        }
    if ((from > 0 && isSame(from - 1)) || (to + 1 < rows.size() && isSame(to + 1)))
        return false;
    batch = list.GetText(rows[from].GetUniqueID(), batchAlias);
    phase = list.GetText(rows[from].GetUniqueID(), phaseAlias);
    return true;
}
