#include "app/Marks.h"

#include "app/Failure.h"
#include "app/Output.h"
#include "platform/project/NCSignals.h"
#include "platform/storage/ConfigurationSection.h"
#include "utilities/MarkedColumnIDsManager.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <string_view>
#include <unordered_map>

namespace {

constexpr char const *marksSection = "Marks";
constexpr char const *streamKey = "Stream";
constexpr char const *itemsKey = "Items"; // what the marked items are called
constexpr std::string_view digits = "0123456789abcdef";

std::string HexOf(std::string const &bytes) {
    std::string text;
    for (char const byte : bytes) {
        text += digits[static_cast<unsigned char>(byte) / 16];
        text += digits[static_cast<unsigned char>(byte) % 16];
    }
    return text;
}

// Nothing for what is no row of bytes.
std::optional<std::string> BytesOf(std::string const &text) {
    if (text.size() % 2 != 0 || text.find_first_not_of(digits) != std::string::npos)
        return {};
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); at += 2)
        bytes += static_cast<char>(16 * digits.find(text[at]) + digits.find(text[at + 1]));
    return bytes;
}

std::string Written(MarkedColumnIDsManager &manager) {
    std::ostringstream stream;
    stream << manager;
    return stream.str();
}

bool Read(MarkedColumnIDsManager &manager, std::string const &bytes) {
    std::istringstream stream(bytes);
    try {
        return static_cast<bool>(stream >> manager);
    } catch (VqStreamError const &) {
        return false;
    }
}

// Both as hexadecimal digits; empty where nothing was ever marked.
struct Kept {
    std::string stream, items;
    bool operator==(Kept const &) const = default;
};

Kept ReadKept(engine::Project &project) {
    auto const section = project.GetSettingsSection(marksSection);
    Kept kept;
    section->ReadKey(streamKey, kept.stream);
    section->ReadKey(itemsKey, kept.items);
    return kept;
}

// Where numbers are given anew, since the prediction set that had the items before them was replaced, an item is found
// again by what tells it from all others of its kind.
std::string Identity(VarObs const &list, std::uint32_t item) {
    return list.GetText(item, 1) + '\n' + list.GetText(item, list.GetBatchID());
}

VarObs const &ListOf(NCProject const &project, ColumnIDs::Source kind) {
    if (kind == ColumnIDs::Observations)
        return project.GetObservations();
    return project.GetVariables();
}

std::string Identity(NCProject const &project, ColumnIDs const &marks, int column) {
    if (marks.GetSource() == ColumnIDs::Observations || marks.GetSource() == ColumnIDs::Variables)
        return Identity(ListOf(project, marks.GetSource()), marks.GetColumnID(column));
    if (marks.GetSource() == ColumnIDs::Terms)
        return marks.GetColumnTerm(column).GetPrimaryName(project.GetVariables());
    return marks.GetName(column);
}

// Of the marks, then of the old ones; each ends with a null.
std::string Identities(NCProject const &project, MarkedColumnIDsManager const &manager) {
    std::string text;
    for (int index = 0; index <= manager.NumberOfOldMarkedIDs(); ++index) {
        boost::shared_ptr<ColumnIDs const> const marks = manager.GetMarkedIDs(index);
        for (int column = 1; marks && column <= marks->Size(); ++column)
            text += Identity(project, *marks, column) + '\0';
    }
    return text;
}

// The marks as they are now, of which these are the identities; without those that are not there any more.
ColumnIDs FoundAgain(boost::shared_ptr<engine::Project> const &project, ColumnIDs marks,
                     std::string const &identities) {
    std::istringstream stream(identities);
    std::vector<std::string> wanted(static_cast<std::size_t>(marks.Size()));
    for (std::string &each : wanted)
        std::getline(stream, each, '\0');
    ColumnIDs::Source const kind = marks.GetSource();
    if (kind != ColumnIDs::Observations && kind != ColumnIDs::Variables) {
        ColumnIDs::Positions same;
        for (int column = 1; column <= marks.Size(); ++column)
            if (Identity(*project, marks, column) == wanted[static_cast<std::size_t>(column) - 1])
                same.push_back(column);
        marks.Reduce(same);
        return marks;
    }
    VarObs const &list = ListOf(*project, kind);
    std::unordered_map<std::string, std::uint32_t> numberOf;
    for (std::uint32_t item = 1; item <= list.Size(); ++item)
        numberOf.emplace(Identity(list, item), item);
    ColumnIDs::Numbers numbers;
    for (std::string const &each : wanted)
        if (auto const found = numberOf.find(each); found != numberOf.end())
            numbers.push_back(found->second);
    return ColumnIDs(kind, std::move(numbers), project, 0);
}

void FindAgain(boost::shared_ptr<engine::Project> const &project, std::string const &identities) {
    MarkedColumnIDsManager &manager = *MarkedColumnIDsManager::Instance();
    boost::shared_ptr<ColumnIDs const> const marks = manager.GetMarkedIDs(0);
    if (!marks || Identities(*project, manager) == identities)
        return;
    ColumnIDs const found = FoundAgain(project, *marks, identities);
    manager.ClearMarkedIDs(true);
    manager.UpdateSelected(project, &found, nullptr, MarkedColumnIDsManager::MarkReplace, {});
}

// By the mothers of a factor of terms, from 1.
ColumnIDs AsVariables(ColumnIDs const &terms, int factor) {
    ColumnIDs::Numbers mothers(terms.Size());
    for (int column = 1; column <= terms.Size(); ++column)
        mothers(column) = terms.GetColumnTerm(column).GetMotherVariable(factor);
    return ColumnIDs(ColumnIDs::Variables, std::move(mothers), terms.GetProject(), terms.GetOwner());
}

ColumnIDs AsBatches(ColumnIDs const &observations) {
    std::vector<std::string> batches;
    for (int column = 1; column <= observations.Size(); ++column)
        batches.push_back(ObservationInfo(observations.GetColumnID(column))
                              .GetBatchName(observations.GetProject()->GetObservations()));
    return ColumnIDs(NCStringVector(std::move(batches)), "Batch", observations.GetProject(), ColumnIDs::Batches,
                     observations.GetOwner());
}

// The items as marks of another kind know them; there are several of terms that have several factors.
std::vector<ColumnIDs> AsKind(ColumnIDs const &items, ColumnIDs::Source kind) {
    if (items.GetSource() == ColumnIDs::Observations && kind == ColumnIDs::Batches)
        return {AsBatches(items)};
    if (items.GetSource() != ColumnIDs::Terms || kind != ColumnIDs::Variables)
        return {items};
    int factors = 0;
    for (int column = 1; column <= items.Size(); ++column)
        factors = std::max(factors, items.GetColumnTerm(column).Size());
    std::vector<ColumnIDs> views;
    for (int factor = 1; factor <= factors; ++factor)
        views.push_back(AsVariables(items, factor));
    return views;
}

} // namespace

void ReadMarks(boost::shared_ptr<engine::Project> const &project) {
    MarkedColumnIDsManager &manager = *MarkedColumnIDsManager::Instance();
    NCSignals::FireActiveProjectChanged(project.get());
    std::string const none = Written(manager);
    try {
        Kept const kept = ReadKept(*project);
        if (kept == Kept())
            return;
        std::optional<std::string> const bytes = BytesOf(kept.stream), items = BytesOf(kept.items);
        if (bytes && items && Read(manager, *bytes))
            return FindAgain(project, *items);
        Tell("The marks of the project are damaged: nothing is marked.");
    } catch (NCError const &error) {
        Tell(error.what());
    }
    Read(manager, none);
}

// A section tells no failure: what it keeps is read again.
void WriteMarks(boost::shared_ptr<engine::Project> const &project) {
    MarkedColumnIDsManager &manager = *MarkedColumnIDsManager::Instance();
    Kept const kept{HexOf(Written(manager)), HexOf(Identities(*project, manager))};
    auto section = project->GetSettingsSection(marksSection);
    section->WriteKey(streamKey, kept.stream);
    section->WriteKey(itemsKey, kept.items);
    section.reset();
    if (ReadKept(*project) != kept)
        throw Problem(ExceptionMessage::translate("The marks can't be written into the project."));
}

std::vector<bool> MarkedAmong(ColumnIDs const &items) {
    boost::shared_ptr<ColumnIDs const> const held = MarkedColumnIDsManager::Instance()->GetMarkedIDs(0);
    if (!held || held->Size() == 0)
        return {};
    // Terms of a model are marked as variables where the items are those of data.
    bool const asVariables = held->GetSource() == ColumnIDs::Terms && items.GetSource() == ColumnIDs::Variables;
    ColumnIDs const marks = asVariables ? AsVariables(*held, 1) : *held;
    std::vector<bool> isMarked;
    for (ColumnIDs const &each : AsKind(items, marks.GetSource())) {
        ColumnIDs::Positions here, there;
        if (each.InterSection(marks, here, there) != 0)
            isMarked.resize(static_cast<std::size_t>(items.Size()));
        for (int const position : here)
            isMarked[static_cast<std::size_t>(position) - 1] = true;
    }
    return isMarked;
}
