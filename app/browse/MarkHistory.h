#pragma once

#include "platform/forward.h"
#include "utilities/MarkedColumnIDsManager.h"

#include <vector>

// The marks of the process for one project, with what they were before.
class MarkHistory {
public:
    explicit MarkHistory(ProjectPtr project) : m_project(std::move(project)) {}

    // The items at these 1-based positions of the columns.
    void Mark(ColumnIDs const &columns, std::vector<int> const &items, MarkedColumnIDsManager::MarkMode mode);
    // False when there is nothing before, or behind.
    bool Undo() { return Move(m_undone, m_done); }
    bool Redo() { return Move(m_done, m_undone); }

    // The group that is marked, and the one that was before: null for none.
    boost::shared_ptr<ColumnIDs const> Marked() const;
    boost::shared_ptr<ColumnIDs const> MarkedBefore() const;

private:
    struct State {
        ColumnIDs marked, before;
    };

    State Now() const;
    bool Move(std::vector<State> &to, std::vector<State> &from);
    void Restore(State const &state) const;

    ProjectPtr m_project;
    std::vector<State> m_done, m_undone;
};
