#include "utilities/MarkedColumnIDsManager.h"
#include "platform/containers/StreamBytes.h"
#include "platform/storage/OutputStreamDirectory.h"
#include "platform/text/Exception.h"
#include "tests/support/RecordingProject.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Information = MarkedColumnIDsManager::AdditionalInformation;

Information Told(bool first) {
    Information information;
    information.FirstInfo = first;
    return information;
}

// Observations 1 to 9, of which 1 to 3 are of batch A, 4 to 6 of B, and the others of none.
boost::shared_ptr<RecordingProject> MakeProject() {
    auto const project = MakeRecordingProject();
    VarObs::Alias const names{"id", "", VarObs::Role::Plain, {"1", "2", "3", "4", "5", "6", "7", "8", "9"}};
    project->observations.AddAlias(names);
    project->variables.AddAlias(names);
    project->observations.AddAlias({"batch", "", VarObs::Role::Batch, {"A", "A", "A", "B", "B", "B"}});
    return project;
}

// A manager that does what a text says. Each word is an action and its items, one digit each.
struct Marker : MarkedColumnIDsManager {
    boost::shared_ptr<RecordingProject> project = MakeProject(), other = MakeProject();
    int changes = 0;

    Marker() {
        ConnectChanged([this](MarkedColumnIDsManager *manager) { changes += manager == this ? 1 : 1000; });
    }

    ColumnIDs Columns(ColumnIDs::Source kind, std::string const &items) const {
        ColumnIDs::Numbers numbers;
        NCDataVector<float> points;
        for (char const item : items) {
            numbers.push_back(static_cast<unsigned>(item - '0'));
            points.push_back(static_cast<float>(item - '0'));
        }
        if (kind != ColumnIDs::AlignedPoints)
            return ColumnIDs(kind, numbers, project, 1);
        ColumnIDs columns(points, "time", project, kind, 1);
        columns.SetBatches(BatchInfoVector({{"B", 3}, {"C", 3}}));
        return columns;
    }

    void Mark(MarkMode mode, std::string const &items, ColumnIDs::Source kind = ColumnIDs::Observations) {
        ColumnIDs const columns = Columns(kind, items);
        UpdateSelected(project, &columns, nullptr, mode, Told(items.size() > 2));
    }
    void MarkOf(ColumnIDs const &columns, std::list<int> const &listed) {
        UpdateSelected(project, &columns, &listed, MarkReplace, {});
    }

    void Do(std::string const &word) {
        std::string const items = word.substr(1);
        NCSignals::Numbers const n = *Columns(ColumnIDs::Observations, items).GetColumnIDs();
        ColumnIDs::Positions const at(std::vector<int>(n.begin(), n.end()));
        std::map<char, std::function<void()>> const actions{
            {'=', [&] { Mark(MarkReplace, items); }},
            {'&', [&] { Mark(MarkIntersect, items); }},
            {'^', [&] { Mark(MarkToggle, items); }},
            {'v', [&] { Mark(MarkReplace, items, ColumnIDs::Variables); }},
            {'a', [&] { Mark(MarkToggle, items, ColumnIDs::AlignedPoints); }},
            {'l', [&] { MarkOf(Columns(ColumnIDs::Observations, "987654321"), std::list(at.begin(), at.end())); }},
            {'0', [&] { UpdateSelected(project, nullptr, nullptr, MarkToggle, {}); }},
            {'x', [&] { std::swap(project, other); }},
            {'c', [&] { ClearMarkedIDs(false); }},
            {'C', [&] { ClearMarkedIDs(true); }},
            {'-', [&] { RemoveMarked(at); }},
            {'o', [&] { RemoveOldMarked(at[1], {at[2]}); }},
            {'{', [&] { BlockUpdates(); }},
            {'}', [&] { EndBlockUpdate(); }},
            {'b', [&] { SetIsBatchMode(true); }},
            {'P', [&] { NCSignals::FireObservationsPurged(*project, n); }},
            {'V', [&] { NCSignals::FireVariablesPurged(*project, n); }},
            {'M', [&] { NCSignals::FireModelDestroying(*project, at[1]); }},
            {'A', [&] { NCSignals::FireActiveProjectChanged(project.get()); }},
            {'N', [&] { NCSignals::FireActiveProjectChanged(nullptr); }},
            {'D', [&] { NCSignals::FireVarObsDeleted(1); }},
            {'G', [&] { project.reset(), NCSignals::FireProjectDestroying(); }},
            {'g', [&] { other.reset(), NCSignals::FireProjectDestroying(); }}};
        actions.at(word[0])();
    }

    // The marks, * where their information is set, and behind bars the old ones, the newest first.
    std::string State() const {
        std::string text;
        for (int index = 0; index <= NumberOfOldMarkedIDs(); ++index) {
            auto const ids = GetMarkedIDs(index);
            text += index > 0 ? "|" : "";
            text += ids ? "" : "none";
            for (int column = 1; ids && column <= ids->Size(); ++column)
                text += ids->GetName(column);
            text +=
                (index == 0 ? GetAdditionalInformation() : GetOldAdditionalInformation(index - 1)).FirstInfo ? "*" : "";
        }
        return text;
    }
};

std::string After(Marker &marker, std::string const &words) {
    std::istringstream stream(words);
    for (std::string word; stream >> word;)
        marker.Do(word);
    return marker.State();
}

// As an application of any version would write them.
std::string Bytes(std::uint32_t version, std::vector<std::string> const &entries) {
    std::ostringstream stream;
    VStreamableData(version, "MarkedColumnIDsManager").Write(stream);
    OutputStreamDirectory directory(stream, static_cast<int>(entries.size()));
    for (std::size_t entry = 0; entry < entries.size(); ++entry)
        directory.GetOutput(static_cast<int>(entry)) << entries[entry];
    directory.Close();
    return stream.str();
}

} // namespace

TEST(MarkedColumnIDsManager, MarksRemembersAndFollowsTheProject) {
    struct {
        char const *words, *state;
        int changes;
    } const cases[] = {{"=12", "12", 1},
                       {"=12 =34 =56", "56|34", 3},

                       {"{ =12 =34 =56 } =78", "78|56|34", 4},
                       {"{ =123 =34", "34|12*", 2},
                       {"{ =12 =34 =21", "21|34", 3},
                       {"=12 ^23", "13", 2},

                       {"=12 ^21", "none|12", 2},
                       {"=12 ^321", "3*", 2},
                       {"=123 &32", "23", 2},

                       {"=12 &34", "none|12", 2},
                       {"=12 &", "none|12", 2},
                       {"&12", "12", 1},
                       {"=12 0", "12", 2},
                       {"=12 v12", "12|12", 2},
                       {"=12 l189", "921", 2},

                       {"=12 x ^12", "12|12", 2},
                       {"=123 c", "none|123*", 2},
                       {"=12 =34 C", "none", 3},
                       {"=12 c C", "none|12", 2},

                       {"=12 -12 =34", "34", 3},
                       {"c -1 o01", "none", 0},
                       {"{ =12 =34 =56 o12 o05", "56|34|1", 5},
                       {"=12 =34 o91", "34|12", 2},

                       {"b =14 ^7", "AB", 2},
                       {"b =17 ^2", "none|A", 2},
                       {"b l19", "A", 1},
                       {"b ^1 a19", "ABC", 2},

                       {"=12 =34 P12", "34|12", 2},
                       {"=12 =34 P31", "4", 3},

                       {"=12 =34 P1345", "none", 3},
                       {"=12 V12", "12", 1},
                       {"v12 V13", "2", 2},
                       {"=12 x P12", "12", 1},
                       {"{ =12 =34 M2", "34|12", 2},
                       {"{ =12 =34 M1", "none", 4},
                       {"{ =12 x =34 M1", "none|12", 4},

                       {"=12 =34 A", "none|34", 3},
                       {"=12 A =34", "34|12", 3},

                       {"b A =1", "1", 1},
                       {"=12 =34 D", "none", 3},
                       {"=12 c D", "none|12", 2},

                       {"=12 =34 g", "34", 3},

                       {"=12 =34 G", "none", 2},
                       {"=12 x =34 g", "34", 3}};
    for (auto const &[words, state, changes] : cases) {
        Marker marker;
        EXPECT_EQ(After(marker, words), state) << words;
        EXPECT_EQ(marker.changes, changes) << words;
        EXPECT_EQ(marker.HasMarkedIDs(), std::string(state).find_first_of("1234567ABC") != std::string::npos) << words;
    }
    Marker marker;
    for (auto const &[action, before, after] : {std::tuple("A", false, true), {"=1", true, true}, {"N", true, false}}) {
        EXPECT_EQ(marker.GetProject() == marker.project, before);
        marker.Do(action);
        EXPECT_EQ(marker.GetProject() == marker.project, after);
    }
    EXPECT_EQ(MarkedColumnIDsManager::Instance(), MarkedColumnIDsManager::Instance());
}

TEST(MarkedColumnIDsManager, TellsWhatIsNotThere) {
    Marker marker;
    EXPECT_THROW(marker.GetOldAdditionalInformation(0), Exception);
    After(marker, "{ =123 =4 =567");
    for (int const outside : {-1, 2})
        EXPECT_EQ(marker.GetOldMarkedIDs(outside), nullptr);
    EXPECT_EQ(marker.GetMarkedIDs(-1), nullptr);
    EXPECT_TRUE(marker.GetOldAdditionalInformation(1).FirstInfo);
    EXPECT_FALSE(marker.GetOldAdditionalInformation(-1).FirstInfo);
    EXPECT_THROW(marker.GetOldAdditionalInformation(2), Exception);
}

TEST(MarkedColumnIDsManager, ReadsWhatWasWritten) {
    for (char const *const words : {"", "{ =123 v45 =67 x =89", "=123 c", "b =14", "=123 -123"}) {
        Marker out, in;
        std::string const state = After(out, words);
        bool const batchMode = out.IsBatchMode();
        std::stringstream stream;
        stream << out << out;
        for (bool const wasMarked : {false, true}) {
            After(in, wasMarked ? "=89" : "A");
            in.changes = 0;
            EXPECT_TRUE(stream >> in) << words;
            EXPECT_EQ(in.State(), state) << words;
            EXPECT_EQ(in.IsBatchMode(), batchMode) << words;
            EXPECT_EQ(in.changes, 1);
        }
    }
}

TEST(MarkedColumnIDsManager, RefusesDamage) {
    auto const written = [](auto &&object) {
        std::ostringstream stream;
        stream << object;
        return stream.str();
    };
    Marker some;
    After(some, "=12");
    std::string const ids = written(some.Columns(ColumnIDs::Observations, "34"));
    std::string const info = written(Told(true)), none(4, '\0'), zero(1, '\0'), one(1, '\1');
    std::string const old = one + none.substr(1) + one + ids + info;
    struct {
        std::uint32_t version;
        std::vector<std::string> entries;
        char const *state; // of marks that were 12
        bool accepted;
    } const cases[] = {{1, {old, ids, info, one}, "34*|34*", true},
                       {1, {one + none.substr(1) + zero + info, "", info, one}, "none*|none*", true},
                       {0, {old, ids, info, one}, "12", false},

                       {1, {std::string("\xff\xff\xff\xff") + old.substr(4), ids, info, one}, "12|34*", false},
                       {1, {none, ids.substr(0, 30), info, one}, "12", false},
                       {1, {old, ids, "", one}, "34|34*", false},

                       {1, {none, ids, info, ""}, "34*", false},
                       {1, {none}, "none", false}};
    for (auto const &[version, entries, state, accepted] : cases) {
        Marker marker;
        After(marker, "=12");
        std::istringstream stream(Bytes(version, entries));
        EXPECT_EQ(static_cast<bool>(stream >> marker), accepted) << state;
        EXPECT_EQ(marker.State(), state);
        EXPECT_EQ(marker.changes, accepted ? 2 : 1) << state;
    }
    std::istringstream newer(Bytes(2, {}));
    EXPECT_THROW(newer >> some, VqStreamError);
    std::istringstream unbound(Bytes(1, {old, ids, info, one}));
    After(some, "N");
    EXPECT_FALSE(unbound >> some);
    EXPECT_EQ(some.State(), "none|12");
}
