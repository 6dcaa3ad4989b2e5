#include "platform/ColumnIDs.h"

#include "platform/AliasAccess.h"
#include "platform/NCProject.h"
#include "platform/VarObs.h"
#include "platform/VqString.h"

#include <boost/format.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <span>
#include <unordered_map>

struct ColumnIDs::Content {
    Source kind = None;
    int owner = 0;
    std::string title;
    std::vector<int> aliases;
    Numbers numbers;
    IntegerList integers;
    NCStringVector strings;
    NCDataVector<float> floats;
    ColumnTerms terms;
    BatchInfoVector batches;

    // Calls the visitor with the one list that the kind uses.
    template <typename Visitor>
    auto Visit(Visitor const &visitor) const {
        switch (kind) {
        case Terms:
            return visitor(terms);
        case Integers:
            return visitor(integers);
        case Strings:
        case Batches:
            return visitor(strings);
        case AlignedPoints:
        case Floats:
            return visitor(floats);
        default:
            return visitor(numbers);
        }
    }
};

namespace {

int SizeOf(auto const &list) {
    return static_cast<int>(std::distance(list.begin(), list.end()));
}

// Where each item of a list stands, 1-based; the first place of an item that stands there twice.
template <typename Item>
struct HashOf {
    std::size_t operator()(Item const &item) const { return std::hash<Item>()(item); }
};
template <>
struct HashOf<ColumnTerm> {
    std::size_t operator()(ColumnTerm const &term) const { return term.Hash(); }
};

template <typename Item>
class PlaceOfItem {
public:
    explicit PlaceOfItem(auto const &list) {
        m_places.reserve(static_cast<std::size_t>(SizeOf(list)));
        int place = 0;
        for (Item const &item : list)
            m_places.emplace(item, ++place);
    }

    int operator()(Item const &item) const {
        auto const found = m_places.find(item);
        return found == m_places.end() ? 0 : found->second;
    }

private:
    std::unordered_map<Item, int, HashOf<Item>> m_places;
};

// Item numbers are dense as a rule: then a table by number answers at once.
template <>
class PlaceOfItem<std::uint32_t> {
public:
    explicit PlaceOfItem(auto const &list) : m_size(static_cast<std::size_t>(SizeOf(list))) {
        std::uint32_t largest = 0;
        for (std::uint32_t const item : list)
            largest = std::max(largest, item);
        bool const dense = largest < 8 * m_size + 4096;
        if (dense)
            m_table.resize(std::size_t{largest} + 1);
        else
            m_places.reserve(m_size);
        int place = 0;
        for (std::uint32_t const item : list) {
            ++place;
            if (!dense)
                m_places.emplace(item, place);
            else if (m_table[item] == 0)
                m_table[item] = place;
        }
    }

    int operator()(std::uint32_t item) const {
        if (!m_table.empty())
            return item < m_table.size() ? m_table[item] : 0;
        auto const found = m_places.find(item);
        return found == m_places.end() ? 0 : found->second;
    }

private:
    std::size_t m_size;
    std::vector<int> m_table;
    std::unordered_map<std::uint32_t, int> m_places;
};

template <typename List>
using ItemOf = std::remove_cvref_t<decltype(*std::declval<List const &>().begin())>;

bool SameItems(auto const &one, auto const &other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end());
}

template <typename List>
List Picked(List const &list, std::vector<int> const &positions) {
    List picked;
    for (int const position : positions)
        picked.push_back(list.begin()[position - 1]);
    return picked;
}

template <>
ColumnTerms Picked(ColumnTerms const &list, std::vector<int> const &positions) {
    ColumnTerms picked;
    for (int const position : positions)
        picked.AppendTerm(list[position]);
    return picked;
}

ColumnIDs::Positions CountedTo(int size) {
    ColumnIDs::Positions positions;
    positions.reserve(size);
    for (int position = 1; position <= size; ++position)
        positions.push_back(position);
    return positions;
}

std::string NumberText(double value) {
    return (boost::format("%1$.6g") % value).str();
}

} // namespace

ColumnIDs::ColumnIDs(ProjectPtr const &project) : m_project(project) {}

ColumnIDs::ColumnIDs(Source kind, Numbers numbers, ProjectPtr const &project, int owner, std::vector<int> aliases)
    : m_project(project) {
    Content content;
    content.kind = kind;
    content.owner = owner;
    content.numbers = std::move(numbers);
    content.aliases = std::move(aliases);
    SetContent(std::move(content));
}

ColumnIDs::ColumnIDs(IntegerList integers, ProjectPtr const &project, int owner) : m_project(project) {
    Content content;
    content.kind = Integers;
    content.owner = owner;
    content.integers = std::move(integers);
    SetContent(std::move(content));
}

ColumnIDs::ColumnIDs(NCStringVector strings, std::string title, ProjectPtr const &project, Source kind, int owner)
    : m_project(project) {
    Content content;
    content.kind = kind;
    content.owner = owner;
    content.title = std::move(title);
    content.strings = std::move(strings);
    SetContent(std::move(content));
}

ColumnIDs::ColumnIDs(NCDataVector<float> floats, std::string title, ProjectPtr const &project, Source kind, int owner)
    : m_project(project) {
    Content content;
    content.kind = kind;
    content.owner = owner;
    content.title = std::move(title);
    content.floats = std::move(floats);
    SetContent(std::move(content));
}

ColumnIDs::ColumnIDs(ColumnTerms terms, ProjectPtr const &project, int owner) : m_project(project) {
    Content content;
    content.kind = Terms;
    content.owner = owner;
    content.terms = std::move(terms);
    SetContent(std::move(content));
}

ColumnIDs::Content const &ColumnIDs::Read() const {
    static Content const none;
    return m_content ? *m_content : none;
}

ColumnIDs::Content &ColumnIDs::Write() {
    boost::shared_ptr<Content> const own = boost::make_shared<Content>(Read());
    m_content = own;
    return *own;
}

void ColumnIDs::SetContent(Content content) {
    m_content = boost::make_shared<Content const>(std::move(content));
}

ColumnIDs::Source ColumnIDs::GetSource() const {
    return Read().kind;
}
int ColumnIDs::GetOwner() const {
    return Read().owner;
}
std::string const &ColumnIDs::GetTitle() const {
    return Read().title;
}
BatchInfoVector const &ColumnIDs::GetBatches() const {
    return Read().batches;
}
void ColumnIDs::Clear() {
    m_content.reset();
}

int ColumnIDs::Size() const {
    return Read().Visit([](auto const &list) { return SizeOf(list); });
}

std::string ColumnIDs::GetName(int column, int row) const {
    if (column < 1 || column > Size())
        return {};
    Content const &content = Read();
    ProjectPtr const project = GetProject();
    int const alias = row >= 1 && row <= static_cast<int>(content.aliases.size())
                          ? content.aliases[static_cast<std::size_t>(row - 1)]
                          : row;
    switch (content.kind) {
    case Terms:
        if (project)
            return content.terms[column].GetName(project->GetVariables(), alias, AliasAccess(project->GetVariables()));
        return std::to_string(content.terms[column].GetMotherVariable(1));
    case Variables:
    case Observations: {
        std::uint32_t const item = content.numbers[column];
        if (!project)
            return std::to_string(item);
        return content.kind == Variables ? project->GetVariables().GetText(item, alias)
                                         : project->GetObservations().GetText(item, alias);
    }
    case Integers:
        return std::to_string(content.integers[column]);
    case AlignedPoints:
    case Floats:
        return NumberText(content.floats(column, -99.0f));
    default:
        return content.strings[column];
    }
}

int ColumnIDs::SizeRows() const {
    Content const &content = Read();
    ProjectPtr const project = GetProject();
    if (!content.aliases.empty())
        return static_cast<int>(content.aliases.size());
    if (project && (content.kind == Variables || content.kind == Terms))
        return std::max(1, project->GetVariables().SizeAliases());
    if (project && content.kind == Observations)
        return std::max(1, project->GetObservations().SizeAliases());
    return 1;
}

std::string ColumnIDs::GetRowTitle(int row) const {
    Content const &content = Read();
    ProjectPtr const project = GetProject();
    int const alias = row >= 1 && row <= static_cast<int>(content.aliases.size())
                          ? content.aliases[static_cast<std::size_t>(row - 1)]
                          : row;
    if (project && (content.kind == Variables || content.kind == Terms))
        return AliasAccess(project->GetVariables()).GetAliasNameWithDescription(alias);
    if (project && content.kind == Observations)
        return AliasAccess(project->GetObservations()).GetAliasNameWithDescription(alias);
    return content.title;
}

std::uint32_t ColumnIDs::GetColumnID(int column) const {
    if (column < 1 || column > Size())
        return 0;
    Content const &content = Read();
    switch (content.kind) {
    case Terms:
        return content.terms[column].GetMotherVariable(1);
    case Integers:
        return static_cast<std::uint32_t>(content.integers[column]);
    case Variables:
    case Observations:
        return content.numbers[column];
    default:
        return static_cast<std::uint32_t>(column);
    }
}

std::unique_ptr<ColumnIDs::Numbers> ColumnIDs::GetColumnIDs() const {
    Content const &content = Read();
    if (content.kind == Variables || content.kind == Observations)
        return std::make_unique<Numbers>(content.numbers);
    auto numbers = std::make_unique<Numbers>();
    for (int column = 1; column <= Size(); ++column)
        numbers->push_back(GetColumnID(column));
    return numbers;
}

ColumnTerm ColumnIDs::GetColumnTerm(int column) const {
    Content const &content = Read();
    if (column < 1 || column > Size())
        return ColumnTerm();
    if (content.kind == Terms)
        return content.terms[column];
    return content.kind == Variables ? ColumnTerm(content.numbers[column]) : ColumnTerm();
}

std::unique_ptr<ColumnTerms> ColumnIDs::GetColumnTerms() const {
    Content const &content = Read();
    if (content.kind == Terms)
        return std::make_unique<ColumnTerms>(content.terms);
    auto terms = std::make_unique<ColumnTerms>();
    for (int column = 1; column <= Size(); ++column)
        terms->AppendTerm(GetColumnTerm(column));
    return terms;
}

float ColumnIDs::GetFloatValue(int column, int row) const {
    Content const &content = Read();
    if (column < 1 || column > Size())
        return -99.0f;
    switch (content.kind) {
    case AlignedPoints:
    case Floats:
        return content.floats(column, -99.0f);
    case Integers:
        return static_cast<float>(content.integers[column]);
    default: {
        float value;
        return VqString::ToFloat(GetName(column, row), value) ? value : -99.0f;
    }
    }
}

void ColumnIDs::Remove(Positions const &positions) {
    std::vector<bool> removed(static_cast<std::size_t>(Size()) + 1);
    for (int const position : positions)
        if (position >= 1 && position <= Size())
            removed[static_cast<std::size_t>(position)] = true;
    Positions kept;
    for (int position = 1; position <= Size(); ++position)
        if (!removed[static_cast<std::size_t>(position)])
            kept.push_back(position);
    Reduce(kept);
}

void ColumnIDs::Reduce(Positions const &positions) {
    int const size = Size();
    std::vector<int> kept;
    kept.reserve(positions.size());
    std::copy_if(positions.begin(), positions.end(), std::back_inserter(kept),
                 [size](int position) { return position >= 1 && position <= size; });
    Content const &old = Read();
    Content content;
    content.kind = old.kind;
    content.owner = old.owner;
    content.title = old.title;
    content.aliases = old.aliases;
    content.batches = old.batches;
    switch (old.kind) {
    case Terms:
        content.terms = Picked(old.terms, kept);
        break;
    case Integers:
        content.integers = Picked(old.integers, kept);
        break;
    case Strings:
    case Batches:
        content.strings = Picked(old.strings, kept);
        break;
    case AlignedPoints:
    case Floats:
        content.floats = Picked(old.floats, kept);
        break;
    default:
        content.numbers = Picked(old.numbers, kept);
    }
    SetContent(std::move(content));
}

void ColumnIDs::SetBatches(BatchInfoVector batches) {
    Write().batches = std::move(batches);
}

void ColumnIDs::MergeBatches(ColumnIDs const &other) {
    if (!other.GetBatches().Empty() && m_content != other.m_content)
        Write().batches.Merge(other.GetBatches());
}

void ColumnIDs::UpdateSelected(ColumnIDs const &ids, std::list<int> const &selected) {
    ColumnIDs chosen(ids);
    Positions positions;
    for (int const position : selected)
        positions.push_back(position);
    chosen.Reduce(positions);
    if (Size() == 0) {
        *this = chosen;
        return;
    }
    // What `ids` shows and does not mark goes; what it marks and was not here comes.
    Positions here;
    Positions there;
    InterSection(ids, here, there, 0);
    Remove(here);
    if (Size() == 0) {
        *this = chosen;
        return;
    }
    Content &content = Write();
    Content const &added = chosen.Read();
    for (std::uint32_t const number : added.numbers)
        content.numbers.push_back(number);
    for (int const integer : added.integers)
        content.integers.push_back(integer);
    for (std::string const &text : added.strings)
        content.strings.push_back(text);
    for (float const value : added.floats)
        content.floats.push_back(value);
    for (ColumnTerm const &term : added.terms)
        content.terms.AppendTerm(term);
}

void ColumnIDs::Difference(ColumnIDs const &other, Positions &here, Positions &there) const {
    auto const missing = [](ColumnIDs const &list, ColumnIDs const &from) {
        if (list.GetSource() != from.GetSource())
            return CountedTo(list.Size());
        return list.Read().Visit([&from]<typename List>(List const &items) {
            Positions positions;
            from.Read().Visit([&]<typename Other>(Other const &others) {
                if constexpr (std::is_same_v<List, Other>) {
                    PlaceOfItem<ItemOf<List>> const place(others);
                    int position = 0;
                    for (auto const &item : items) {
                        ++position;
                        if (place(item) == 0)
                            positions.push_back(position);
                    }
                }
            });
            return positions;
        });
    };
    here = missing(*this, other);
    there = missing(other, *this);
}

int ColumnIDs::InterSection(ColumnIDs const &other, Positions &here, Positions &there, int flag) const {
    here.clear();
    there.clear();
    if (*this == other && Size() > 0) {
        if (flag == 0) {
            here = CountedTo(Size());
            there = here;
        }
        return 2;
    }
    if (GetSource() != other.GetSource())
        return 0;
    Read().Visit([&]<typename List>(List const &items) {
        other.Read().Visit([&]<typename Other>(Other const &others) {
            if constexpr (std::is_same_v<List, Other>) {
                PlaceOfItem<ItemOf<List>> const place(others);
                int position = 0;
                for (auto const &item : items) {
                    ++position;
                    if (int const match = place(item)) {
                        here.push_back(position);
                        there.push_back(match);
                    }
                }
            }
        });
    });
    return here.size() == 0 ? 0 : 1;
}

bool ColumnIDs::operator==(ColumnIDs const &other) const {
    if (m_content == other.m_content)
        return true;
    if (GetSource() != other.GetSource() || Size() != other.Size())
        return false;
    return Read().Visit([&other]<typename List>(List const &items) {
        return other.Read().Visit([&items]<typename Other>(Other const &others) {
            if constexpr (std::is_same_v<List, Other>)
                return SameItems(items, others);
            else
                return false;
        });
    });
}
