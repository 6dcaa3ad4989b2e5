#pragma once

#include "platform/containers/ColumnPick_internal.h"
#include "platform/identity/ProjectData.h"

#include <cstddef>
#include <optional>
#include <vector>

// Joins tables on the columns that all of them have, in the order of the first one. As the tables come only the
// identities of their columns are joined; the numbers are copied once, when all is known. A table whose columns are
// those of the table before it is appended to it at once, and holds no memory of its own.
class TableJoin {
public:
    // At most so many tables are to come.
    explicit TableJoin(int tables) : m_toCome(tables) {}

    // False when it has no column in common with all before; the table is then left out.
    bool Add(TablePtr table);

    bool IsEmpty() const { return m_pieces.empty(); }
    // The columns that all tables have.
    ColumnIDs const &Columns() const { return m_columns; }

    // The rows of all tables, in their order, with the common columns at these rising places, or all of them. The
    // join is empty afterwards.
    TablePtr Take(std::optional<ColumnPick> const &kept = {});

private:
    using Pick = std::optional<ColumnPick>; // nothing: all, in their order

    struct Piece {
        TablePtr table;
        std::size_t columnsOf; // the first piece that has the same columns
        // The columns that were found in common, as positions among those common to the pieces before, and in here.
        Pick here, there;
    };

    std::vector<Pick> PlacesOfColumns(Pick common);
    void CopyRows(ProjectData &joined, std::vector<Pick> const &places);

    std::vector<Piece> m_pieces;
    ColumnIDs m_columns;
    int m_toCome;
};
