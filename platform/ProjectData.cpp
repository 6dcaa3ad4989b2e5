#include "platform/ProjectData.h"

#include "platform/Exception.h"
#include "platform/Missing.h"

#include <boost/format.hpp>

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
    m_matrix.reserve(rows);
}

void ProjectData::KeepColumns(ColumnIDs::Positions const &positions) {
    NCDataMatrix<float> kept(m_matrix.Rows(), positions.Size());
    for (int row = 1; row <= m_matrix.Rows(); ++row) {
        std::span<float const> const from = m_matrix.Row(row);
        auto to = kept.MutableRow(row).begin();
        for (int const position : positions)
            *to++ = from[static_cast<std::size_t>(position - 1)];
    }
    m_matrix = std::move(kept);
    if (!m_classes.empty()) {
        std::vector<int> classes;
        for (int const position : positions)
            classes.push_back(GetColumnClass(position));
        m_classes = std::move(classes);
    }
    m_columns.Reduce(positions);
}

bool ProjectData::InterSection(ProjectData const &other) {
    ColumnIDs::Positions here;
    ColumnIDs::Positions there;
    switch (m_columns.InterSection(other.m_columns, here, there, 1)) {
    case 0:
        return false;
    case 2:
        m_matrix.AppendRows(other.m_matrix);
        break;
    default: {
        if (here.Size() < Columns())
            KeepColumns(here);
        ProjectData common(other);
        common.KeepColumns(there);
        m_matrix.AppendRows(common.m_matrix);
    }
    }
    m_columns.MergeBatches(other.m_columns);
    m_rows.Append(other.m_rows);
    return true;
}

std::unique_ptr<ProjectData> ProjectData::UseOnly(ColumnIDs const &ids) const {
    ColumnIDs::Positions wanted;
    ColumnIDs::Positions here;
    int const common = ids.InterSection(m_columns, wanted, here, 1);
    if (common == 0)
        return nullptr;
    auto reduced = std::make_unique<ProjectData>(*this);
    if (common == 1)
        reduced->KeepColumns(here);
    return reduced;
}

void ProjectData::AdjustRows(std::vector<float> const &multipliers, std::vector<float> const &offsets, bool label) {
    int const rows = std::min({Rows(), static_cast<int>(multipliers.size()), static_cast<int>(offsets.size())});
    for (int row = 1; row <= rows; ++row) {
        float const multiplier = multipliers[static_cast<std::size_t>(row - 1)];
        float const offset = offsets[static_cast<std::size_t>(row - 1)];
        if (multiplier == 1.0f && offset == 0.0f)
            continue;
        for (float &value : m_matrix.MutableRow(row))
            if (!IsMissing(value))
                value = ToStored(static_cast<double>(value) * multiplier + offset);
        if (label)
            m_rows.SetName(row, (boost::format("%1% * %2% %3% %4%") % m_rows.GetName(row) % multiplier %
                                 (offset < 0.0f ? "-" : "+") % std::abs(offset))
                                    .str());
    }
}

void ProjectData::AppendNumRow(NCDataVector<float> const &values, std::string const &name) {
    m_matrix.AppendRow(values.Values());
    m_rows.Append(RowIDs(name, GetProject()));
}

void ProjectData::AddOriginalColumnIDs(ColumnIDs const &ids, std::vector<std::set<int>> const &groups) {
    m_original = ids;
    m_groups = groups;
}
