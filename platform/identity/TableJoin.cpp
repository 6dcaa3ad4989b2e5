#include "platform/identity/TableJoin_internal.h"

#include <algorithm>
#include <span>

namespace {

using Pick = std::optional<ColumnPick>;

Pick Compose(Pick inner, Pick const &outer) {
    return inner && outer ? inner->At(*outer) : inner ? std::move(inner) : outer;
}

} // namespace

bool TableJoin::Add(TablePtr table) {
    --m_toCome;
    ColumnIDs const &columns = table->GetColumnIDs();
    auto const alike =
        std::ranges::find_if(m_pieces, [&](Piece const &piece) { return piece.table->GetColumnIDs() == columns; });
    Piece piece{nullptr, static_cast<std::size_t>(alike - m_pieces.begin()), {}, {}};
    if (m_pieces.empty()) {
        m_columns = columns;
    } else if (alike == m_pieces.end() && m_columns.KeepCommon(columns, piece.here, piece.there) == 0) {
        return false;
    }
    m_columns.MergeBatches(columns);
    if (!m_pieces.empty() && m_pieces.back().columnsOf == piece.columnsOf) {
        ProjectData &before = *m_pieces.back().table;
        before.Reserve(before.Rows() + (m_toCome + 1) * table->Rows());
        before.m_matrix.AppendRows(table->m_matrix);
        before.AppendLabels(*table);
        return true;
    }
    piece.table = std::move(table);
    m_pieces.push_back(std::move(piece));
    return true;
}

// For each piece with columns of its own, where the columns of the result are. Backwards: each step leads from the
// columns common to the pieces up to there to those before it.
std::vector<TableJoin::Pick> TableJoin::PlacesOfColumns(Pick common) {
    std::vector<Pick> places(m_pieces.size());
    for (std::size_t at = m_pieces.size(); at-- > 0;) {
        Piece &piece = m_pieces[at];
        if (piece.columnsOf != at)
            continue;
        places[at] = Compose(std::move(piece.there), common);
        common = Compose(std::move(piece.here), common);
    }
    return places;
}

TablePtr TableJoin::Take(Pick const &kept) {
    if (m_pieces.empty())
        return nullptr;
    TablePtr joined = std::move(m_pieces.front().table);
    // With the batches of all tables.
    joined->m_columns = m_columns;
    if (m_pieces.size() == 1) {
        if (kept)
            joined->KeepColumns(*kept);
    } else {
        std::vector<Pick> const places = PlacesOfColumns(kept);
        if (kept)
            joined->m_columns.Reduce(*kept);
        if (places.front())
            joined->KeepMarks(*places.front());
        CopyRows(*joined, places);
    }
    m_pieces.clear();
    return joined;
}

// Of the first table all but its numbers and the labels of further rows is there already.
void TableJoin::CopyRows(ProjectData &joined, std::vector<Pick> const &places) {
    int rows = joined.Rows();
    for (Piece const &piece : std::span(m_pieces).subspan(1))
        rows += piece.table->Rows();
    NCDataMatrix<float> matrix(0, joined.m_columns.Size());
    matrix.reserve(rows);
    for (std::size_t at = 0; at < m_pieces.size(); ++at) {
        Piece &piece = m_pieces[at];
        NCDataMatrix<float> &from = at == 0 ? joined.m_matrix : piece.table->m_matrix;
        if (Pick const &pick = places[piece.columnsOf])
            matrix.AppendRows(from, *pick);
        else
            matrix.AppendRows(from);
        from.Clear();
        if (at > 0)
            joined.AppendLabels(*piece.table);
    }
    joined.m_matrix = std::move(matrix);
}
