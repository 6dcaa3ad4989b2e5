#include "platform/identity/RowIDs.h"

#include "platform/identity/VarObs.h"
#include "platform/project/NCProject.h"
#include "platform/storage/VStreamableData.h"
#include "platform/storage/streaming_internal.h"

namespace {

VStreamableData Header() {
    return {1, "RowIDs"};
}

} // namespace

RowIDs::RowIDs(std::string name, ProjectPtr const &project)
    : m_rows{{std::move(name), Plain, 0, nullptr}}, m_project(project) {}

RowIDs::RowIDs(NCStringVector const &names, ProjectPtr const &project, FurtherLabels const *further)
    : m_project(project) {
    m_rows.reserve(names.size());
    for (std::string const &name : names)
        m_rows.push_back({name, Plain, 0, nullptr});
    if (further)
        m_further = *further;
}

RowIDs::RowIDs(NCIntegralVector<unsigned long, 0> const &numbers, Type type, ProjectPtr const &project,
               std::vector<int> aliases, std::string const &name, BoolVector const &flags)
    : m_project(project) {
    std::shared_ptr<std::vector<int> const> const shared =
        aliases.empty() ? nullptr : std::make_shared<std::vector<int> const>(std::move(aliases));
    m_rows.reserve(numbers.size());
    for (std::uint32_t const number : numbers) {
        bool const labelled = flags.empty() || flags[Size() + 1];
        m_rows.push_back({name, labelled ? type : Plain, number, shared});
    }
}

RowIDs::RowIDs(RowIDs const &other, int row)
    : m_rows{other.m_rows[CheckedOffset("RowIDs", row, other.m_rows.size())]}, m_project(other.m_project) {
    if (auto const further = other.m_further.find(row); further != other.m_further.end())
        m_further[1] = further->second;
}

void RowIDs::Append(RowIDs const &other) {
    if (&other == this)
        return Append(RowIDs(other));
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
        if (column <= 1)
            return entry.name;
        auto const further = m_further.find(row);
        bool const known = further != m_further.end() && column - 2 < static_cast<int>(further->second.size());
        return known ? further->second[static_cast<std::size_t>(column - 2)] : std::string();
    }
    bool const chosen = entry.aliases && column >= 1 && column <= static_cast<int>(entry.aliases->size());
    int const alias = chosen ? (*entry.aliases)[static_cast<std::size_t>(column - 1)] : column;
    std::string label = std::to_string(entry.item);
    if (ProjectPtr const project = m_project.lock())
        label = entry.type == Variables ? project->GetVariables().GetText(entry.item, alias)
                                        : project->GetObservations().GetText(entry.item, alias);
    return entry.name.empty() ? label : entry.name + "(" + label + ")";
}

void RowIDs::SetName(int row, std::string name) {
    m_rows[CheckedOffset("RowIDs", row, m_rows.size())] = {std::move(name), Plain, 0, nullptr};
}

std::ostream &operator<<(std::ostream &stream, RowIDs const &rows) {
    Header().Write(stream);
    FieldWriter write(stream);
    write(rows.m_further, rows.m_rows.size());
    for (RowIDs::Row const &row : rows.m_rows)
        write(row.name, row.type, row.item, row.aliases ? *row.aliases : std::vector<int>());
    return stream;
}

std::istream &operator>>(std::istream &stream, RowIDs &rows) {
    Header().Check(stream);
    FieldReader read(stream);
    RowIDs whole;
    std::uint32_t size = 0;
    read(whole.m_further, size);
    for (; size > 0; --size) {
        RowIDs::Row &row = whole.m_rows.emplace_back();
        std::vector<int> aliases;
        read(row.name, row.type, row.item, aliases);
        FieldReader::Require(row.type >= RowIDs::Plain && row.type <= RowIDs::Observations);
        if (!aliases.empty())
            row.aliases = std::make_shared<std::vector<int> const>(std::move(aliases));
    }
    whole.m_project = rows.m_project;
    rows = std::move(whole);
    return stream;
}
