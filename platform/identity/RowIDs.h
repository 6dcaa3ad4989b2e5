#pragma once

#include "platform/containers/BoolVector.h"
#include "platform/containers/NCIntegralVector.h"
#include "platform/containers/NCStringVector.h"
#include "platform/export.h"
#include "platform/forward.h"

#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

// Labels of the rows of a table. Rows count from 1. A label is put together when it is asked for.
class DATASERIES_API RowIDs {
public:
    enum Type : int { Plain, Variables, Observations };

    // Further labels of some rows, by row: those of the columns 2, 3, ...
    using FurtherLabels = std::map<int, std::vector<std::string>>;

    RowIDs() = default;
    // One row.
    RowIDs(std::string name, ProjectPtr const &project);
    RowIDs(NCStringVector const &names, ProjectPtr const &project, FurtherLabels const *further = nullptr);
    // One row for each variable or observation: "name(label)", and the label alone where `name` is empty. `aliases` are
    // the identifier columns that give the label (empty: all, the primary one first). With `flags`, one for each row,
    // a row whose flag is not set has the name alone.
    RowIDs(NCIntegralVector<unsigned long, 0> const &numbers, Type type, ProjectPtr const &project,
           std::vector<int> aliases, std::string const &name, BoolVector const &flags = {});
    // One row of another object.
    RowIDs(RowIDs const &other, int row);

    int Size() const { return static_cast<int>(m_rows.size()); }
    void Append(RowIDs const &other);
    void Reserve(int rows) { m_rows.reserve(static_cast<std::size_t>(rows)); }

    // Empty outside. `column` chooses among several labels of a row, 1 the preferred one.
    std::string GetName(int row, int column = 1) const;
    void SetName(int row, std::string name);

    // Binary form, without the project. Reading throws VqStreamError when the stream is damaged, and then leaves the
    // rows as they were. `project` gives the labels of rows that have been read.
    friend DATASERIES_API std::ostream &operator<<(std::ostream &stream, RowIDs const &rows);
    friend DATASERIES_API std::istream &operator>>(std::istream &stream, RowIDs &rows);
    void SetProject(ProjectPtr const &project) { m_project = project; }

private:
    struct Row {
        std::string name;
        Type type = Plain;
        std::uint32_t item = 0;
        std::shared_ptr<std::vector<int> const> aliases; // null: all of the project
    };

    std::vector<Row> m_rows;
    FurtherLabels m_further;
    boost::weak_ptr<NCProject const> m_project;
};
