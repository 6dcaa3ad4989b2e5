#include "platform/RowIDs.h"

#include "platform/NCProject.h"
#include "platform/VarObs.h"

RowIDs::RowIDs(std::string name, ProjectPtr const &project) : m_rows{{std::move(name), Plain, 0}}, m_project(project) {}

RowIDs::RowIDs(NCStringVector const &names, ProjectPtr const &project, FurtherLabels const *further)
    : m_project(project) {
    for (std::string const &name : names)
        m_rows.push_back({name, Plain, 0});
    if (further)
        m_further = *further;
}

RowIDs::RowIDs(NCIntegralVector<unsigned long, 0> const &numbers, Type type, ProjectPtr const &project,
               std::vector<int> aliases, std::string const &name)
    : m_aliases(std::move(aliases)), m_project(project) {
    m_rows.reserve(numbers.size());
    for (std::uint32_t const number : numbers)
        m_rows.push_back({name, type, number});
}

RowIDs::RowIDs(RowIDs const &other, int row)
    : m_rows{other.m_rows.at(static_cast<std::size_t>(row - 1))}, m_aliases(other.m_aliases),
      m_project(other.m_project) {
    if (auto const further = other.m_further.find(row); further != other.m_further.end())
        m_further[1] = further->second;
}

void RowIDs::Append(RowIDs const &other) {
    int const size = Size();
    m_rows.insert(m_rows.end(), other.m_rows.begin(), other.m_rows.end());
    for (auto const &[row, labels] : other.m_further)
        m_further[size + row] = labels;
    if (m_project.expired())
        m_project = other.m_project;
}

std::string RowIDs::GetName(int row, int column) const {
    if (row < 1 || row > Size())
        return {};
    Row const &entry = m_rows[static_cast<std::size_t>(row - 1)];
    if (entry.type == Plain) {
        auto const further = m_further.find(row);
        if (column <= 1)
            return entry.name;
        bool const known = further != m_further.end() && column - 2 < static_cast<int>(further->second.size());
        return known ? further->second[static_cast<std::size_t>(column - 2)] : std::string();
    }
    int const alias = column >= 1 && column <= static_cast<int>(m_aliases.size())
                          ? m_aliases[static_cast<std::size_t>(column - 1)]
                          : column;
    ProjectPtr const project = m_project.lock();
    std::string label = std::to_string(entry.item);
    if (project && entry.type == Variables)
        label = project->GetVariables().GetText(entry.item, alias);
    else if (project)
        label = project->GetObservations().GetText(entry.item, alias);
    return entry.name.empty() ? label : entry.name + "(" + label + ")";
}

void RowIDs::SetName(int row, std::string name) {
    m_rows.at(static_cast<std::size_t>(row - 1)) = {std::move(name), Plain, 0};
}
