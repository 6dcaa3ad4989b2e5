#include "platform/identity/ColumnIDs.h"

#include "platform/containers/ColumnPick_internal.h"
#include "platform/containers/runs_internal.h"
#include "platform/identity/AliasAccess.h"
#include "platform/identity/PlaceOfItem_internal.h"
#include "platform/identity/VarObs.h"
#include "platform/project/NCProject.h"
#include "platform/storage/VStreamableData.h"
#include "platform/storage/streaming_internal.h"
#include "platform/text/VqString.h"

#include <boost/format.hpp>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <locale>
#include <numeric>
#include <span>
#include <variant>

struct ColumnIDs::Content {
    using Items = std::variant<Numbers, IntegerList, NCStringVector, NCDataVector<float>, ColumnTerms>;

    Source kind = None;
    int owner = 0;
    std::string title;
    std::vector<int> aliases;
    BatchInfoVector batches;
    Items items;

    // The alias that the row-th label comes from.
    int Alias(int row) const {
        bool const chosen = row >= 1 && row <= static_cast<int>(aliases.size());
        return chosen ? aliases[static_cast<std::size_t>(row - 1)] : row;
    }
    // The same of other items.
    boost::shared_ptr<Content> With(Items others) const {
        return boost::make_shared<Content>(Content{kind, owner, title, aliases, batches, std::move(others)});
    }
};

namespace {

VStreamableData Header() {
    return {1, "ColumnIDs"};
}

// Calls the visitor with both lists, where they are of one type.
template <typename Items, typename Visitor>
void VisitAlike(Items const &one, Items const &other, Visitor const &visitor) {
    std::visit(
        [&]<typename List>(List const &list) {
            if (List const *const same = std::get_if<List>(&other))
                visitor(list, *same);
        },
        one);
}

template <typename List>
List Picked(List const &list, ColumnPick const &pick) {
    if constexpr (std::is_arithmetic_v<ItemOf<List>>) {
        List picked(static_cast<int>(pick.Size()));
        pick.Copy(list.Values().data(), picked.MutableValues().data());
        return picked;
    } else {
        std::vector<ItemOf<List>> picked;
        picked.reserve(pick.Size());
        for (int const position : pick.ToPositions())
            picked.push_back(list[position]);
        return List(std::move(picked));
    }
}

template <typename List>
void AppendItems(List &list, List const &added) {
    for (auto const &item : added)
        if constexpr (std::is_same_v<List, ColumnTerms>)
            list.AppendTerm(item);
        else
            list.push_back(item);
}

ColumnIDs::Positions CountedTo(int size) {
    ColumnIDs::Positions positions(size);
    std::span<int> const values = positions.MutableValues();
    std::iota(values.begin(), values.end(), 1);
    return positions;
}

// The 1-based positions for which `keep` holds.
template <typename Predicate>
ColumnIDs::Positions PositionsWhere(int size, Predicate const &keep) {
    ColumnIDs::Positions positions(size);
    int *end = positions.MutableValues().data();
    int const *const begin = end;
    for (int position = 1; position <= size; ++position) {
        *end = position;
        end += keep(position) ? 1 : 0;
    }
    positions.resize(static_cast<int>(end - begin));
    return positions;
}

// Each item is greater than the one before it.
template <typename Item>
bool IsRising(std::span<Item const> items) {
    std::size_t falls = 0;
    for (std::size_t at = 1; at < items.size(); ++at)
        falls += items[at] <= items[at - 1];
    return falls == 0;
}

// The first place from `at` on where the item is `item` or greater, by steps that double.
template <typename Item>
std::size_t SkipBelow(std::span<Item const> items, std::size_t at, Item item) {
    std::size_t step = 1;
    while (at + step < items.size() && items[at + step] < item)
        step *= 2;
    auto const from = items.begin() + static_cast<std::ptrdiff_t>(at + step / 2);
    auto const to = items.begin() + static_cast<std::ptrdiff_t>(std::min(at + step + 1, items.size()));
    return static_cast<std::size_t>(std::lower_bound(from, to, item) - items.begin());
}

// The places of the items that two lists have in common, here and there, in the order of the first.
using Places = std::pair<ColumnPick, ColumnPick>;

// They come in runs as a rule.
template <typename Item>
Places MatchRising(std::span<Item const> mine, std::span<Item const> others) {
    ColumnPick::Runs here, there;
    std::size_t at = 0, otherAt = 0;
    while (at < mine.size() && otherAt < others.size()) {
        if (mine[at] < others[otherAt]) {
            at = SkipBelow(mine, at, others[otherAt]);
        } else if (others[otherAt] < mine[at]) {
            otherAt = SkipBelow(others, otherAt, mine[at]);
        } else {
            std::size_t const run = CommonLength(mine.subspan(at), others.subspan(otherAt));
            ColumnPick::Append(here, {at, run});
            ColumnPick::Append(there, {otherAt, run});
            at += run;
            otherAt += run;
        }
    }
    return {ColumnPick(std::move(here)), ColumnPick(std::move(there))};
}

template <typename List>
Places MatchItems(List const &mine, List const &others) {
    if constexpr (std::is_integral_v<ItemOf<List>>)
        if (IsRising(mine.Values()) && IsRising(others.Values()))
            return MatchRising(mine.Values(), others.Values());
    PlaceOfItem<List> const place(others);
    ColumnIDs::Positions there(mine.Size());
    int *match = there.MutableValues().data();
    auto const items = mine.begin();
    ColumnIDs::Positions here = PositionsWhere(mine.Size(), [&](int position) {
        *match = place(items[position - 1]);
        bool const common = *match != 0;
        match += common ? 1 : 0;
        return common;
    });
    there.resize(here.Size());
    return {ColumnPick(std::move(here)), ColumnPick(std::move(there))};
}

std::string NumberText(double value) {
    return (boost::format("%1$.6g", std::locale::classic()) % value).str();
}

VarObs const &IdentifiersOf(ColumnIDs::Source kind, NCProject const &project) {
    if (kind == ColumnIDs::Observations)
        return project.GetObservations();
    return project.GetVariables();
}

// The kind can be kept as such items.
template <typename Items>
bool Fits(ColumnIDs::Source kind, Items const &items) {
    switch (kind) {
    case ColumnIDs::None:
    case ColumnIDs::Variables:
    case ColumnIDs::Observations:
        return std::holds_alternative<ColumnIDs::Numbers>(items);
    case ColumnIDs::Terms:
        return std::holds_alternative<ColumnTerms>(items);
    case ColumnIDs::Integers:
        return std::holds_alternative<ColumnIDs::IntegerList>(items);
    case ColumnIDs::Strings:
    case ColumnIDs::AlignedPoints:
    case ColumnIDs::Batches:
    case ColumnIDs::Floats:
        return std::holds_alternative<NCStringVector>(items) || std::holds_alternative<NCDataVector<float>>(items);
    }
    return false;
}

bool HasIdentifiers(ColumnIDs::Source kind) {
    return kind == ColumnIDs::Variables || kind == ColumnIDs::Terms || kind == ColumnIDs::Observations;
}

// The label of one column.
class Label {
public:
    Label(ColumnIDs::Source kind, int column, int alias, ProjectPtr const &project)
        : m_kind(kind), m_column(column), m_alias(alias), m_project(project) {}

    std::string operator()(ColumnIDs::Numbers const &numbers) const {
        if (m_project && HasIdentifiers(m_kind))
            return IdentifiersOf(m_kind, *m_project).GetText(numbers[m_column], m_alias);
        return std::to_string(numbers[m_column]);
    }
    std::string operator()(ColumnTerms const &terms) const {
        if (!m_project)
            return std::to_string(terms[m_column].GetMotherVariable(1));
        NCVariables const &variables = m_project->GetVariables();
        return terms[m_column].GetName(variables, m_alias, AliasAccess(variables));
    }
    std::string operator()(ColumnIDs::IntegerList const &integers) const { return std::to_string(integers[m_column]); }
    std::string operator()(NCDataVector<float> const &floats) const { return NumberText(floats[m_column]); }
    std::string operator()(NCStringVector const &strings) const { return strings[m_column]; }

private:
    ColumnIDs::Source m_kind;
    int m_column;
    int m_alias;
    ProjectPtr const &m_project;
};

} // namespace

ColumnIDs::ColumnIDs(ProjectPtr const &project) : m_project(project) {}

ColumnIDs::ColumnIDs(ProjectPtr const &project, Content content)
    : m_content(boost::make_shared<Content>(std::move(content))), m_project(project) {}

ColumnIDs::ColumnIDs(Source kind, Numbers numbers, ProjectPtr const &project, int owner, std::vector<int> aliases)
    : ColumnIDs(project, Content{kind, owner, {}, std::move(aliases), {}, std::move(numbers)}) {}

ColumnIDs::ColumnIDs(IntegerList integers, ProjectPtr const &project, int owner)
    : ColumnIDs(project, Content{Integers, owner, {}, {}, {}, std::move(integers)}) {}

ColumnIDs::ColumnIDs(NCStringVector strings, std::string title, ProjectPtr const &project, Source kind, int owner)
    : ColumnIDs(project, Content{kind, owner, std::move(title), {}, {}, std::move(strings)}) {}

ColumnIDs::ColumnIDs(NCDataVector<float> floats, std::string title, ProjectPtr const &project, Source kind, int owner)
    : ColumnIDs(project, Content{kind, owner, std::move(title), {}, {}, std::move(floats)}) {}

ColumnIDs::ColumnIDs(ColumnTerms terms, ProjectPtr const &project, int owner)
    : ColumnIDs(project, Content{Terms, owner, {}, {}, {}, std::move(terms)}) {}

ColumnIDs::Content const &ColumnIDs::Read() const {
    static Content const none;
    return m_content ? *m_content : none;
}

ColumnIDs::Content &ColumnIDs::Write() {
    if (m_content.use_count() != 1)
        m_content = boost::make_shared<Content>(Read());
    return *m_content;
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
    return std::visit([](auto const &list) { return list.Size(); }, Read().items);
}

std::string ColumnIDs::GetName(int column, int row) const {
    if (column < 1 || column > Size())
        return {};
    Content const &content = Read();
    ProjectPtr const project = GetProject();
    return std::visit(Label(content.kind, column, content.Alias(row), project), content.items);
}

int ColumnIDs::SizeRows() const {
    Content const &content = Read();
    if (!content.aliases.empty())
        return static_cast<int>(content.aliases.size());
    ProjectPtr const project = GetProject();
    return project && HasIdentifiers(content.kind) ? std::max(1, IdentifiersOf(content.kind, *project).SizeAliases())
                                                   : 1;
}

std::string ColumnIDs::GetRowTitle(int row) const {
    Content const &content = Read();
    ProjectPtr const project = GetProject();
    if (!project || !HasIdentifiers(content.kind))
        return content.title;
    return AliasAccess(IdentifiersOf(content.kind, *project)).GetAliasNameWithDescription(content.Alias(row));
}

std::uint32_t ColumnIDs::GetColumnID(int column) const {
    if (column < 1 || column > Size())
        return 0;
    return std::visit(
        [column]<typename List>(List const &list) {
            if constexpr (std::is_same_v<List, ColumnTerms>)
                return list[column].GetMotherVariable(1);
            else if constexpr (std::is_integral_v<ItemOf<List>>)
                return static_cast<std::uint32_t>(list[column]);
            else
                return static_cast<std::uint32_t>(column);
        },
        Read().items);
}

std::unique_ptr<ColumnIDs::Numbers> ColumnIDs::GetColumnIDs() const {
    if (Numbers const *const numbers = std::get_if<Numbers>(&Read().items))
        return std::make_unique<Numbers>(*numbers);
    auto numbers = std::make_unique<Numbers>(Size());
    int column = 0;
    for (std::uint32_t &number : numbers->MutableValues())
        number = GetColumnID(++column);
    return numbers;
}

ColumnTerm ColumnIDs::GetColumnTerm(int column) const {
    Content const &content = Read();
    if (column < 1 || column > Size())
        return ColumnTerm();
    if (ColumnTerms const *const terms = std::get_if<ColumnTerms>(&content.items))
        return (*terms)[column];
    return content.kind == Variables ? ColumnTerm(GetColumnID(column)) : ColumnTerm();
}

std::unique_ptr<ColumnTerms> ColumnIDs::GetColumnTerms() const {
    if (ColumnTerms const *const terms = std::get_if<ColumnTerms>(&Read().items))
        return std::make_unique<ColumnTerms>(*terms);
    std::vector<ColumnTerm> terms(static_cast<std::size_t>(Size()));
    int column = 0;
    for (ColumnTerm &term : terms)
        term = GetColumnTerm(++column);
    return std::make_unique<ColumnTerms>(std::move(terms));
}

float ColumnIDs::GetFloatValue(int column, int row) const {
    if (column < 1 || column > Size())
        return missingValue;
    Content const &content = Read();
    if (auto const *const floats = std::get_if<NCDataVector<float>>(&content.items))
        return (*floats)[column];
    if (auto const *const integers = std::get_if<IntegerList>(&content.items))
        return static_cast<float>((*integers)[column]);
    float value;
    return VqString::ToFloat(GetName(column, row), value) ? value : missingValue;
}

void ColumnIDs::Remove(Positions const &positions) {
    int const size = Size();
    std::vector<bool> removed(static_cast<std::size_t>(size) + 1);
    for (int const position : positions)
        if (position >= 1 && position <= size)
            removed[static_cast<std::size_t>(position)] = true;
    Reduce(PositionsWhere(size, [&](int position) { return !removed[static_cast<std::size_t>(position)]; }));
}

void ColumnIDs::Reduce(Positions const &positions) {
    int const size = Size();
    auto const within = [size](int position) { return position >= 1 && position <= size; };
    Positions kept = positions;
    // Counted, which is faster than to stop at the first.
    if (std::ranges::count_if(positions, within) != positions.Size())
        kept.Reduce(PositionsWhere(positions.Size(), [&](int at) { return within(positions[at]); }));
    Reduce(ColumnPick(std::move(kept)));
}

void ColumnIDs::Reduce(ColumnPick const &pick) {
    Content const &old = Read();
    m_content = old.With(std::visit([&](auto const &list) { return Content::Items(Picked(list, pick)); }, old.items));
}

void ColumnIDs::SetBatches(BatchInfoVector batches) {
    Write().batches = std::move(batches);
}

void ColumnIDs::MergeBatches(ColumnIDs const &other) {
    if (!other.GetBatches().Empty() && !(GetBatches() == other.GetBatches()))
        Write().batches.Merge(other.GetBatches());
}

void ColumnIDs::UpdateSelected(ColumnIDs const &ids, std::list<int> const *selected) {
    ColumnIDs chosen(ids);
    if (selected)
        chosen.Reduce(Positions(std::vector<int>(selected->begin(), selected->end())));
    if (Size() == 0 || GetSource() != ids.GetSource()) {
        m_content = chosen.m_content;
        return;
    }
    Positions added;
    Positions here;
    chosen.Difference(*this, added, here);
    if (added.Size() == 0)
        return;
    chosen.Reduce(added);
    std::visit(
        [&chosen]<typename List>(List &list) {
            if (List const *const items = std::get_if<List>(&chosen.Read().items))
                AppendItems(list, *items);
        },
        Write().items);
}

void ColumnIDs::Difference(ColumnIDs const &other, Positions &here, Positions &there) const {
    if (m_content == other.m_content) {
        here.clear();
        there.clear();
        return;
    }
    Positions onlyHere = CountedTo(Size());
    Positions onlyThere = CountedTo(other.Size());
    if (GetSource() == other.GetSource())
        VisitAlike(Read().items, other.Read().items, [&]<typename List>(List const &mine, List const &others) {
            auto const lacks = [](List const &list, PlaceOfItem<List> const &place) {
                auto const items = list.begin();
                return PositionsWhere(list.Size(), [&](int position) { return place(items[position - 1]) == 0; });
            };
            onlyHere = lacks(mine, PlaceOfItem(others));
            onlyThere = lacks(others, PlaceOfItem(mine));
        });
    here = std::move(onlyHere);
    there = std::move(onlyThere);
}

int ColumnIDs::InterSection(ColumnIDs const &other, Positions &here, Positions &there, int flag) const {
    here.clear();
    there.clear();
    Pick mine, others;
    int const common = Match(other, mine, others);
    if (common == 2 && flag == 0) {
        here = there = CountedTo(Size());
    } else if (common == 1) {
        here = mine ? mine->ToPositions() : CountedTo(Size());
        there = others ? others->ToPositions() : CountedTo(other.Size());
    }
    return common;
}

int ColumnIDs::Match(ColumnIDs const &other, Pick &here, Pick &there) const {
    here = there = std::nullopt;
    if (Size() > 0 && *this == other)
        return 2;
    if (GetSource() != other.GetSource())
        return 0;
    std::size_t common = 0;
    VisitAlike(Read().items, other.Read().items, [&]<typename List>(List const &mine, List const &others) {
        Places places = MatchItems(mine, others);
        common = places.first.Size();
        if (!places.first.IsAll(SizeOf(mine)))
            here = std::move(places.first);
        if (!places.second.IsAll(SizeOf(others)))
            there = std::move(places.second);
    });
    return common > 0 ? 1 : 0;
}

int ColumnIDs::KeepCommon(ColumnIDs const &other, Pick &here, Pick &there) {
    int const common = Match(other, here, there);
    if (common == 0 || !here)
        return common;
    // Where all of the other list are kept its numbers are those that stay, and are shared.
    auto const kept = [&]<typename List>(List const &list) -> Content::Items {
        if constexpr (std::is_integral_v<ItemOf<List>>)
            if (!there)
                return other.Read().items;
        return Picked(list, *here);
    };
    m_content = Read().With(std::visit(kept, Read().items));
    return common;
}

bool ColumnIDs::operator==(ColumnIDs const &other) const {
    return m_content == other.m_content || (Read().kind == other.Read().kind && Read().items == other.Read().items);
}

std::ostream &operator<<(std::ostream &stream, ColumnIDs const &columns) {
    ColumnIDs::Content const &content = columns.Read();
    Header().Write(stream);
    FieldWriter write(stream);
    write(content.kind, content.owner, content.title, content.aliases, content.batches, content.items.index());
    std::visit(write, content.items);
    return stream;
}

std::istream &operator>>(std::istream &stream, ColumnIDs &columns) {
    Header().Check(stream);
    FieldReader read(stream);
    ColumnIDs::Content content;
    std::vector<BatchInfo> batches;
    std::size_t index = 0;
    read(content.kind, content.owner, content.title, content.aliases, batches, index);
    content.batches = BatchInfoVector(std::move(batches));
    ColumnIDs::Content::Items const forms[] = {ColumnIDs::Numbers(), ColumnIDs::IntegerList(), NCStringVector(),
                                               NCDataVector<float>(), ColumnTerms()};
    static_assert(std::size(forms) == std::variant_size_v<ColumnIDs::Content::Items>);
    FieldReader::Require(index < std::size(forms) && Fits(content.kind, forms[index]));
    content.items = forms[index];
    std::visit(read, content.items);
    columns.m_content = boost::make_shared<ColumnIDs::Content>(std::move(content));
    return stream;
}
