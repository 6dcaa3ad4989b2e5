#include "platform/identity/ProjectData.h"

#include "platform/containers/ColumnPick_internal.h"
#include "platform/containers/Missing.h"
#include "platform/containers/vectorised_internal.h"
#include "platform/storage/VStreamableData.h"
#include "platform/storage/streaming_internal.h"
#include "platform/text/Exception.h"

#include <boost/format.hpp>

#include <cmath>
#include <limits>

namespace {

VStreamableData Header() {
    return {1, "ProjectData"};
}

// ToStored of each observed value times `multiplier` plus `offset`, without branches.
DATASERIES_VECTORISED void Stretch(std::span<float> values, double multiplier, double offset) {
    constexpr float largest = std::numeric_limits<float>::max();
    float const besideMark = ToStored(missingValue);
    for (float &value : values) {
        float const stored = static_cast<float>(value * multiplier + offset);
        float const genuine = stored == missingValue ? besideMark : stored;
        float const finite = std::abs(genuine) <= largest ? genuine : missingValue;
        value = value == missingValue ? missingValue : finite;
    }
}

// Of a list that tells something of each column, or is shorter.
template <typename Item>
std::vector<Item> Picked(std::vector<Item> const &list, ColumnPick const &pick) {
    std::vector<Item> picked;
    if (list.empty())
        return picked;
    picked.reserve(pick.Size());
    for (int const position : pick.ToPositions())
        picked.push_back(position <= static_cast<int>(list.size()) ? list[static_cast<std::size_t>(position - 1)]
                                                                   : Item());
    return picked;
}

} // namespace

ProjectData::ProjectData(RowIDs rows, ColumnIDs columns, NCDataMatrix<float> matrix)
    : m_rows(std::move(rows)), m_columns(std::move(columns)), m_matrix(std::move(matrix)) {
    if (m_rows.Size() != m_matrix.Rows() || (m_matrix.Rows() > 0 && m_columns.Size() != m_matrix.Columns()))
        throw NCInternalError("ProjectData::ProjectData");
}

int ProjectData::GetColumnClass(int column) const {
    bool const known = column >= 1 && column <= static_cast<int>(m_classes.size());
    return known ? m_classes[static_cast<std::size_t>(column - 1)] : 0;
}

void ProjectData::Reserve(int rows) {
    m_rows.Reserve(rows);
    // What has the rows already stays shared with copies.
    if (rows > Rows())
        m_matrix.reserve(rows);
}

void ProjectData::KeepColumns(ColumnPick const &pick) {
    m_matrix.KeepColumns(pick);
    m_columns.Reduce(pick);
    KeepMarks(pick);
}

void ProjectData::KeepMarks(ColumnPick const &pick) {
    m_classes = Picked(m_classes, pick);
    m_groups = Picked(m_groups, pick);
}

void ProjectData::AppendLabels(ProjectData const &other) {
    for (auto const &[row, format] : std::map<int, std::string>(other.m_formats))
        m_formats[Rows() + row] = format;
    m_rows.Append(other.m_rows);
}

bool ProjectData::InterSection(ProjectData const &other) {
    ColumnIDs::Pick here, there;
    if (m_columns.KeepCommon(other.m_columns, here, there) == 0)
        return false;
    if (here) {
        m_matrix.KeepColumns(*here);
        KeepMarks(*here);
    }
    if (there)
        m_matrix.AppendRows(other.m_matrix, *there);
    else
        m_matrix.AppendRows(other.m_matrix);
    m_columns.MergeBatches(other.m_columns);
    AppendLabels(other);
    return true;
}

std::unique_ptr<ProjectData> ProjectData::UseOnly(ColumnIDs const &ids) const {
    ColumnIDs::Pick wanted, here;
    if (ids.Match(m_columns, wanted, here) == 0)
        return nullptr;
    auto reduced = std::make_unique<ProjectData>(*this);
    if (here)
        reduced->KeepColumns(*here);
    return reduced;
}

void ProjectData::AdjustRow(int row, float multiplier, float offset, bool label) {
    if (multiplier == 1.0f && offset == 0.0f)
        return;
    Stretch(m_matrix.MutableRow(row), multiplier, offset);
    if (label)
        m_rows.SetName(row, (boost::format("%1% * %2% %3% %4%") % m_rows.GetName(row) % multiplier %
                             (offset < 0.0f ? "-" : "+") % std::abs(offset))
                                .str());
}

void ProjectData::AdjustRows(std::vector<float> const &multipliers, std::vector<float> const &offsets, bool label) {
    int const rows = std::min({Rows(), static_cast<int>(multipliers.size()), static_cast<int>(offsets.size())});
    for (int row = 1; row <= rows; ++row)
        AdjustRow(row, multipliers[static_cast<std::size_t>(row - 1)], offsets[static_cast<std::size_t>(row - 1)],
                  label);
}

void ProjectData::AppendNumRow(NCDataVector<float> const &values, std::string const &format) {
    m_matrix.AppendRow(values.Values());
    m_rows.Append(RowIDs("Num", GetProject()));
    m_formats[Rows()] = format;
}

std::string ProjectData::GetRowFormat(int row) const {
    auto const found = m_formats.find(row);
    return found == m_formats.end() ? std::string() : found->second;
}

void ProjectData::AddOriginalColumnIDs(ColumnIDs const &ids, std::vector<std::vector<int>> groups) {
    m_original = ids;
    m_groups = std::move(groups);
}

std::ostream &operator<<(std::ostream &stream, ProjectData const &data) {
    Header().Write(stream);
    stream << data.m_rows << data.m_columns << data.m_original;
    FieldWriter{stream}(data.m_matrix, data.m_classes, data.m_formats, data.m_groups);
    return stream;
}

std::istream &operator>>(std::istream &stream, ProjectData &data) {
    Header().Check(stream);
    ProjectData whole(RowIDs(), ColumnIDs(data.GetProject()), NCDataMatrix<float>());
    whole.m_rows.SetProject(data.GetProject());
    whole.m_original.SetProject(data.GetProject());
    stream >> whole.m_rows >> whole.m_columns >> whole.m_original;
    FieldReader{stream}(whole.m_matrix, whole.m_classes, whole.m_formats, whole.m_groups);
    FieldReader::Require(whole.Rows() == whole.m_matrix.Rows() &&
                         (whole.Rows() == 0 || whole.Columns() == whole.m_matrix.Columns()));
    data = std::move(whole);
    return stream;
}
