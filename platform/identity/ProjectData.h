#pragma once

#include "platform/containers/NCDataMatrix.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/identity/RowIDs.h"

#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

// The table in which a statistic or a whole selection arrives: one row for each series, one column for each item, -99.0
// where a value is missing. Rows and columns count from 1.
class DATASERIES_API ProjectData {
public:
    // Whether regression coefficients of a hierarchical model are shown for the model's own terms or resolved to the
    // variables of its base models.
    enum CoefficientStatus : int { Default = 0, Unresolved = 1, Resolved = 2 };

    // The three have one number of rows and one number of columns; otherwise NCInternalError.
    ProjectData(RowIDs rows, ColumnIDs columns, NCDataMatrix<float> matrix);

    NCDataMatrix<float> const &GetMatrix() const { return m_matrix; }
    NCDataMatrix<float> &GetMatrix() { return m_matrix; }
    RowIDs const &GetRowIDs() const { return m_rows; }
    ColumnIDs const &GetColumnIDs() const { return m_columns; }
    ColumnIDs &GetColumnIDs() { return m_columns; }
    ProjectPtr GetProject() const { return m_columns.GetProject(); }
    int Rows() const { return m_rows.Size(); }
    int Columns() const { return m_columns.Size(); }

    std::string GetRowName(int row, int column = 1) const { return m_rows.GetName(row, column); }
    std::string GetColumnName(int column, int row = 1) const { return m_columns.GetName(column, row); }

    // The class that the item of a column belongs to, 0 for none.
    int GetColumnClass(int column) const;
    void SetColumnClasses(std::vector<int> classes) { m_classes = std::move(classes); }

    // Room for so many rows, so that appending does not move them.
    void Reserve(int rows);

    // Keeps the columns that both have, in the order of this table, and appends the rows of the other. False, and no
    // change, when nothing is common.
    bool InterSection(ProjectData const &other);

    // A copy with the columns of `ids` that this table has, in their order; nothing when there are none.
    std::unique_ptr<ProjectData> UseOnly(ColumnIDs const &ids) const;

    // Each row becomes value times multiplier plus offset, in double; missing values stay missing. With `label` set the
    // label of a row whose numbers changed tells factor and offset.
    void AdjustRows(std::vector<float> const &multipliers, std::vector<float> const &offsets, bool label);
    void AdjustRow(int row, float multiplier, float offset, bool label);

    // Appends a row "Num" of one value for each column: numbers that no project holds. `format` is how they are to be
    // shown, in the manner of printf ("%.3g").
    void AppendNumRow(NCDataVector<float> const &values, std::string const &format);
    // The format of such a row, empty for any other.
    std::string GetRowFormat(int row) const;

    // Where each column stands for several of an earlier table (a bin of a histogram): that table's columns, and for
    // each column here the 1-based positions there, rising.
    void AddOriginalColumnIDs(ColumnIDs const &ids, std::vector<std::vector<int>> groups);
    ColumnIDs const &GetOriginalColumnIDs() const { return m_original; }
    std::vector<std::vector<int>> const &GetOriginalGroups() const { return m_groups; }

    // Binary form, without the project. Reading throws VqStreamError when the stream is damaged, and then leaves the
    // table as it was.
    friend DATASERIES_API std::ostream &operator<<(std::ostream &stream, ProjectData const &data);
    friend DATASERIES_API std::istream &operator>>(std::istream &stream, ProjectData &data);

private:
    friend class TableJoin;

    void KeepColumns(ColumnPick const &pick);
    // Cuts down what is told of columns beside their identity.
    void KeepMarks(ColumnPick const &pick);
    void AppendLabels(ProjectData const &other);

    RowIDs m_rows;
    ColumnIDs m_columns;
    NCDataMatrix<float> m_matrix;
    std::vector<int> m_classes;
    std::map<int, std::string> m_formats; // of rows of numbers, by row
    ColumnIDs m_original;
    std::vector<std::vector<int>> m_groups;
};
