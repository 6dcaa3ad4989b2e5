#include "app/browse/MarkHistory.h"

namespace {

MarkedColumnIDsManager &Manager() {
    return *MarkedColumnIDsManager::Instance();
}

ColumnIDs CopyOf(boost::shared_ptr<ColumnIDs const> const &columns) {
    return columns ? *columns : ColumnIDs();
}

} // namespace

void MarkHistory::Mark(ColumnIDs const &columns, std::vector<int> const &items, MarkedColumnIDsManager::MarkMode mode) {
    m_done.push_back(Now());
    m_undone.clear();
    std::list<int> const listed(items.begin(), items.end());
    Manager().UpdateSelected(m_project, &columns, &listed, mode, {});
}

boost::shared_ptr<ColumnIDs const> MarkHistory::Marked() const {
    return Manager().GetMarkedIDs(0);
}

boost::shared_ptr<ColumnIDs const> MarkHistory::MarkedBefore() const {
    return Manager().GetMarkedIDs(1);
}

MarkHistory::State MarkHistory::Now() const {
    return {CopyOf(Marked()), CopyOf(MarkedBefore())};
}

bool MarkHistory::Move(std::vector<State> &to, std::vector<State> &from) {
    if (from.empty())
        return false;
    to.push_back(Now());
    Restore(from.back());
    from.pop_back();
    return true;
}

// Whoever marks anew makes what was marked the group before.
void MarkHistory::Restore(State const &state) const {
    MarkedColumnIDsManager &manager = Manager();
    auto const mark = [&](ColumnIDs const *columns) {
        manager.UpdateSelected(m_project, columns, nullptr, MarkedColumnIDsManager::MarkReplace, {});
    };
    mark(nullptr); // old marks can be cleared only where there are current ones
    manager.ClearMarkedIDs(true);
    if (state.before.Size() > 0) {
        mark(&state.before);
        manager.ClearMarkedIDs(false);
    }
    if (state.marked.Size() > 0)
        mark(&state.marked);
}
