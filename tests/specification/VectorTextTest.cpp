#include "catalogue/ProjectVectorHandler.h"
#include "platform/text/Exception.h"
#include "tests/specification/World.h"
#include "tests/support/GroupingLocale.h"

#include <gtest/gtest.h>

namespace {

std::string Text(std::int64_t number) {
    return std::to_string(number);
}
std::string Text(double number, int digits) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*g", digits, number);
    return text;
}

// The argument text by its documented layout.
class ReferenceWriter {
public:
    ReferenceWriter(Plain const &plain, bool withDefaults)
        : m_plain(plain), m_vector(plain.vector), m_rest(plain.rest), m_withDefaults(withDefaults) {}

    std::string Line() {
        bool const ofModel = (m_vector.data & OfModel) != 0 && m_plain.IsOfModel();
        std::string const otherwise = m_plain.IsPredicted() ? " PS" : " DS" + Text(m_plain.dataSet);
        m_text = m_vector.name + (ofModel ? " M" + Text(m_plain.model) : otherwise);
        bool const several = m_vector.components == 3 || m_vector.components == 7 || m_vector.components == 15;
        for (std::size_t i = 0; i < 4; ++i) {
            int const component = m_plain.components[i];
            bool const last = i < 3 && (component == -1 || (several && component == -2));
            if ((m_vector.components & (1 << i)) != 0)
                Add(i < 3 && !m_plain.IsOfModel() ? 1 : last ? m_plain.Last(i) : component);
        }
        if (m_vector.components == 0)
            Add(0);
        Add(FirstNumber());
        Add(m_vector.Has('r') ? m_rest.selCV : 0);
        if (m_vector.Has('u'))
            Add(m_rest.unscaled), Add(m_rest.backTransformed);
        if (m_vector.contribution != 0)
            Contribution();
        int const xSide = std::string(m_vector.name).starts_with("T2Range") ? Count(2) : 0;
        if (m_plain.IsRange())
            Add(std::min(Unsigned(m_plain.number2), Unsigned(Count(m_vector.pairLimit) + xSide)));
        else if (m_vector.number == XY || m_vector.number == YPhase || m_vector.number == Phase)
            Add(Unsigned(m_plain.Second(m_withDefaults)));
        if (m_plain.UsesBatch())
            Add(m_rest.batchIx);
        if (m_vector.Has('l'))
            m_text += "," + Text(m_rest.startLag) + "-" + Text(m_rest.endLag);
        int const digits = m_vector.contribution >= 5 ? 8 : 6;
        if (m_vector.Has('m'))
            m_text += "," + Text(m_rest.multiplier1, digits) + "," + Text(m_rest.multiplier2, digits);
        if (m_vector.Has('c'))
            Add(m_rest.GetCoefficientStatus());
        return m_text;
    }

private:
    static std::int64_t Unsigned(int number) { return static_cast<std::uint32_t>(number); }

    int Count(int kind) const { return Plain::Count(m_plain.model, kind); }
    void Add(std::int64_t number) { m_text += ',' + Text(number); }
    void List(std::vector<int> const &values) {
        Add(static_cast<std::int64_t>(values.size()));
        for (int const value : values)
            Add(value);
    }

    std::int64_t FirstNumber() const {
        if (m_plain.IsRange() && m_plain.number != open)
            return Unsigned(m_plain.number) <= Unsigned(Count(1)) ? m_plain.number : -1;
        bool const ofItems = m_vector.type == Scores || m_vector.type == Loadings;
        return Unsigned(m_plain.First(m_withDefaults && (m_vector.number != ObsOrVar || ofItems)));
    }

    // The explicit list, or what stands for the kind of weight.
    std::vector<int> Weights() const {
        static std::vector<int> const lists[] = {{0}, {1}, {9}, {1, 1}, {1, 9}, {9, 9}, {2}, {2, 2},
                                                 {5}, {7}, {3}, {4},    {6},    {},     {},  {8}};
        int const kind = m_rest.GetWeightType();
        std::vector<int> list(m_rest.GetWeightTypeVec().begin(), m_rest.GetWeightTypeVec().end());
        if (list.empty() && kind == Weight::PRange && m_plain.IsOfModel() && Count(2) > 0) {
            list.resize(static_cast<std::size_t>(Count(1)), 1);
            list.resize(static_cast<std::size_t>(Count(1) + Count(2)), 9);
        } else if (list.empty() && (kind == Weight::PRange || kind == Weight::WStarRange)) {
            list.resize(m_rest.GetWeightComp().size(), kind == Weight::PRange ? 1 : 2);
        } else if (list.empty()) {
            list = lists[kind];
        }
        return list;
    }

    void Contribution() {
        List(Weights());
        Add(m_plain.yVar);
        if (m_vector.contribution < 5)
            List(m_rest.obs1), List(m_rest.obs2), Add(m_plain.yVar);
        for (BatchPoints const *points : {&m_rest.contRef, &m_rest.contGroup})
            if (m_vector.contribution >= 5) {
                Add(static_cast<std::int64_t>(points->size()));
                for (auto const &[batch, maturity] : *points)
                    m_text += ',' + batch + "$," + Text(static_cast<double>(maturity), 8);
            }
        for (int const component : m_rest.GetWeightComp())
            Add(component);
    }

    Plain const &m_plain;
    VectorTraits const &m_vector;
    ProjectVectorData const &m_rest;
    bool m_withDefaults;
    std::string m_text;
};

// The label, piece by piece.
class ReferenceLabel {
public:
    ReferenceLabel(Plain const &plain, int alias, bool compact)
        : m_plain(plain), m_vector(plain.vector), m_rest(plain.rest), m_alias(alias), m_compact(compact),
          m_model(plain.IsOfModel() ? static_cast<std::size_t>(plain.model) : 0), m_name(plain.vector.name) {}

    std::string Line() const {
        std::string text = m_vector.data == OfPredSet ? "PS."
                           : m_plain.dataSet != 0     ? "DS" + Text(m_plain.dataSet) + "."
                                                      : (m_plain.model != 0 ? "M" + Text(m_plain.model) : "") + ".";
        bool const raw = m_vector.contribution != 0 && m_rest.GetWeightType() == Weight::CoeffCSRaw;
        if (m_vector.data == OfSet || m_vector.data == OfPredSet)
            text += m_vector.number == Identifier ? AliasName()
                    : m_vector.number == ObsOrVar ? "long " + m_name + "(" + Item(m_plain.First(true)) + ")"
                                                  : "";
        else
            text += (raw                     ? "YPred Contrib"
                     : m_name == "Date/Time" ? Name('v', 2)
                                             : "long " + m_name) +
                    Component() + Distance() + (m_vector.Has('r') ? "[CV. " + Text(m_rest.selCV) + "]" : "") +
                    (m_vector.contribution != 0 ? Groups() + Weights() : "") + Numbers() +
                    (m_name.starts_with("YVar") && m_model == 4 ? "(Normalized)" : "") + Lags();
        text += m_plain.UsesBatch() ? ", Batch: " + BatchName() : "";
        return text + (!m_vector.Has('u') || m_rest.backTransformed ? "" : m_rest.unscaled ? "(trans)" : "(as WS)");
    }

private:
    // "o3" or "s3", "v3" or "w3".
    static std::string Name(char kind, int number, int alias) {
        bool const known = number >= 1 && number <= (kind == 'v' ? 5 : 6);
        char const prefix = alias == 1 ? kind : kind == 'v' ? 'w' : 's';
        return known ? prefix + Text(number) : "";
    }
    std::string Name(char kind, int number) const { return Name(kind, number, m_alias); }
    std::string Item(int number) const { return Name(m_vector.type == Scores ? 'v' : 'o', number); }
    std::string AliasName() const {
        bool const ofData = m_vector.data == OfPredSet || m_plain.dataSet != 0 || m_plain.model != 0;
        return m_alias == 2 ? "second (other)" : m_vector.type == Loadings && ofData ? "name" : "id";
    }
    std::string Obs() const { return m_alias == 1 ? "(Obs " : "("; }
    std::string Lags() const {
        return !m_vector.Has('l') ? "" : ", Start Lag=" + Text(m_rest.startLag) + ", End Lag=" + Text(m_rest.endLag);
    }

    std::string Component() const {
        static std::map<int, std::pair<std::size_t, char const *>> const words = {
            {1, {0, "[Comp. "}}, {2, {1, "[XSide Comp. "}}, {4, {2, "[YSide Comp. "}}, {8, {3, "[Comp. "}}};
        if (!words.contains(m_vector.components))
            return "";
        auto const &[place, word] = words.at(m_vector.components);
        int const stored = m_model == 0 && place < 3 ? 1 : m_plain.components[place];
        int const last = place < 3 ? m_plain.Last(place) : -1;
        return m_compact ? "[" + Text(stored == -1 ? last : stored) + "]"
                         : (stored == -1 ? "[Last comp.]" : word + Text(stored) + "]");
    }

    // Models 2 and 4 are weighted, 1 and 2 normalised.
    std::string Distance() const {
        static char const *const ofX[] = {"", "(Normalized)", "(Weighted and Normalized)", "(Abs)",
                                          "(Weighted residuals)"};
        static char const *const ofY[] = {"", "(Normalized)", "(Normalized)", "(Abs)", "(Abs)"};
        return m_name.starts_with("DModX") ? ofX[m_model] : m_name == "DModY" ? ofY[m_model] : "";
    }

    static std::string Braced(std::vector<std::string> const &names) {
        std::string text;
        for (std::string const &name : names)
            text += (&name == names.data() ? "" : ", ") + name;
        return names.size() > 1 ? "{" + text + "}" : text;
    }
    std::string Group(std::vector<int> const &group, int alias) const {
        std::string const source = (m_vector.obsPred == V::Observed ? "M" : "P") + Text(m_plain.model);
        std::vector<std::string> names;
        for (int const index : group) {
            std::size_t const row = static_cast<std::size_t>(index - 1);
            bool const known = m_model != 0 && row < itemsOf.at(source).observations.size();
            names.push_back(known ? Name('o', static_cast<int>(itemsOf.at(source).observations[row]), alias)
                                  : Text(index));
        }
        return Braced(names);
    }
    static std::string Points(BatchPoints const &points) {
        std::vector<std::string> names;
        for (auto const &[batch, maturity] : points)
            names.push_back((batch.empty() ? "Average" : batch) + " at " + Text(static_cast<double>(maturity), 6));
        return points.empty() ? "Average" : Braced(names);
    }
    std::string Groups() const {
        int const kind = m_vector.contribution;
        bool const large1 = m_rest.obs1.size() >= 4, large2 = m_rest.obs2.size() >= 4;
        bool const aligned = m_rest.alignedMaturity1 && (kind != 5 || m_rest.alignedMaturity2);
        if (kind >= 5)
            return (aligned ? " Aligned(" : "(") + Points(m_rest.contGroup) + " - " + Points(m_rest.contRef) + ")";
        if (kind >= 3)
            return Obs() + (large1 ? "Group" : Group(m_rest.obs1, m_alias)) + ")";
        std::string const from = large1 ? std::string("Group") + (large2 ? " 1" : "") : "Obs " + Group(m_rest.obs1, 2);
        return (large2 ? std::string("(Group") + (large1 ? " 2" : "") : Obs() + Group(m_rest.obs2, 2)) + " - " +
               (m_rest.obs1.empty() ? "Average" : from) + ")";
    }

    // By kind of weight; + each component follows, - the first and the last one.
    std::string Weights() const {
        static std::string const kinds[] = {"Normalized", "p+",   "po+", "p+",  "ppo+",        "popo+", "w*+", "w*+",
                                            "CoeffCS+",   "VIP+", "RX+", "RY+", "CoeffCSRaw+", "p-",    "w*-", "Raw"};
        int const weight = m_rest.GetWeightType(), ofKind = m_vector.contribution;
        std::vector<int> const &components = m_rest.GetWeightComp();
        if (weight == 0 && (ofKind == 3 || ofKind == 4 || ofKind == 6 || ofKind == 7))
            return ", Comp: " + (components.empty() ? "" : Text(components.front()));
        bool const ofY = weight == Weight::CoeffCS || weight == Weight::CoeffCSRaw;
        int const y = m_plain.yVar == open ? m_plain.YTerm() : m_plain.yVar;
        std::string name = kinds[weight], text = (ofY ? "(YVar " + YName(y) + ")" : "") + ", Weight=";
        char const how = name.back();
        if (how != '+' && how != '-')
            return text + name;
        name.back() = '[';
        for (int const &component : components)
            if (how == '+' || &component == &components.front())
                text += name + Text(component) + "]";
        return how == '+' || components.empty() ? text : text + "-" + name + Text(components.back()) + "]";
    }

    std::string YName(int index) const { return index >= 1 && index <= m_plain.YTerms() ? Name('v', index + 3) : ""; }
    // Model 2 has v2.L1, v2.L2 and v3.L1 behind v1 to v3: a lag plot is about v2 and v3.
    std::string XName(int index) const {
        if (m_vector.type == Lag)
            return m_model == 2 && (index == 1 || index == 2) ? Name('v', index + 1) : "";
        bool const lag = m_model == 2 && index > 3;
        return m_model == 0 || (index > 3 && !lag) ? ""
               : lag                               ? Name('v', 2) + ".L" + Text(index - 3)
                                                   : Name('v', index);
    }
    // Model 1 has no phases, model 2 a single one, of a data set.
    std::string PhaseName() const {
        static std::vector<std::string> const names[] = {{}, {}, {}, {"early", "late"}, {"start", "end"}};
        bool const known = m_plain.number2 >= 1 && m_plain.number2 <= static_cast<int>(names[m_model].size());
        bool const always = m_model == 1 || m_model == 4;
        return known || always
                   ? ", Phase " + (known ? names[m_model][static_cast<std::size_t>(m_plain.number2 - 1)] : "")
                   : "";
    }
    std::string RangeName() const {
        int const a = m_plain.number, b = m_plain.number2;
        bool const o2pls = m_model == 3, noA = o2pls ? a == -1 : a < 0, noB = o2pls ? b == -1 : b < 0;
        if (!noA && !noB)
            return "[Comp. " + Text(std::min(a, b)) + " - " + Text(std::max(a, b)) + "]";
        if (noA && a == b)
            return "[Last comp. - Last comp.]";
        std::string const xSide = o2pls ? " - Last comp., XSide comp. " + Text(a) : "";
        return "[Comp. " + Text(noA ? b : a) + xSide + " - Last comp.]";
    }
    std::string Numbers() const {
        int const number = m_plain.First(true);
        std::string const x = "(" + XName(number) + ")", y = "(" + YName(number) + ")";
        std::string const item = m_vector.type == Scores ? "(Var " + Item(m_plain.number) : Obs() + Item(number);
        std::string const both = "(XVar " + XName(number) + ")(YVar " + YName(m_plain.Second(true)) + ")";
        std::string const texts[] = {"", item + ")",      y,           x,  both, RangeName(), "",         x,
                                     y,  y + PhaseName(), RangeName(), "", "",   "",          PhaseName()};
        return texts[m_vector.number];
    }

    std::string BatchName() const {
        std::string names; // a letter for each batch of the rows, in their order
        for (std::uint32_t const row : itemsOf.at(m_plain.Source()).observations)
            if (char const name = "AABBCC"[row - 1]; !names.ends_with(name))
                names += name;
        auto const index = static_cast<std::size_t>(m_rest.batchIx - 1);
        bool const known = m_rest.batchIx >= 1 && index < names.size();
        return m_rest.batchIx == 0 ? "Std.Dev." : m_rest.batchIx < 0 ? "Average" : known ? names.substr(index, 1) : "";
    }

    Plain const &m_plain;
    VectorTraits const &m_vector;
    ProjectVectorData const &m_rest;
    int m_alias;
    bool m_compact;
    std::size_t m_model;
    std::string m_name;
};

} // namespace

TEST(VectorText, WritesWhatTheCatalogueReads) {
    World world;
    world.SetDefaults();
    Dice dice(1);
    for (int i = 0; i < 5000; ++i) {
        Plain const plain = Plain::Random(dice);
        VectorProbe const vector(plain.vector);
        ProjectVectorData const data = plain.Record(world, &vector);
        world.defaults.clear();
        GroupingLocale const grouping;
        EXPECT_EQ(data.ToStdString(nullptr), ReferenceWriter(plain, false).Line());
        EXPECT_EQ(data.ToStdString(&world.defaults), ReferenceWriter(plain, true).Line());
    }
    EXPECT_EQ(ProjectVectorData().ToStdString(&world.defaults), "");
}

TEST(VectorText, LabelsSeries) {
    World world;
    world.SetDefaults();
    RecordingProject &project = *world.project;
    project.variables.SetInfo(VariableInfo(2));
    project.variables.SetDefaultTimeVariable(2);
    project.preferredObservationAlias = 2;
    project.Model(2).isWeighted = project.Model(4).isWeighted = true;
    project.Model(3).isNormalized = project.Model(4).isNormalized = false;
    project.Model(4).treatment = 2;
    for (ColumnTerm const &term : {ColumnTerm(2, 1), ColumnTerm(2, 2), ColumnTerm(3, 1)})
        project.Model(2).x.AppendTerm(term);
    Dice dice(5);
    for (int i = 0; i < 20000; ++i) {
        Plain const plain = Plain::Random(dice);
        VectorProbe const vector(plain.vector);
        ProjectVectorData const data = plain.Record(world, &vector);
        int const alias = dice(1, 2), compact = dice(0, 1);
        world.defaults.clear();
        EXPECT_EQ(data.GetFormattedName(&world.defaults, alias, compact), ReferenceLabel(plain, alias, compact).Line());
    }
    VectorProbe const batch({"b", Scores, Batch, 0, OfSet}), other({"DModX2"});
    auto const label = [&](ProjectVectorData const &data) { return data.GetFormattedName(&world.defaults, 1, false); };
    EXPECT_EQ(label(world.Data(batch, "DS-1", Number(1, 1, 3))), "DS-1., Batch: ");
    EXPECT_THROW(label(world.Data(batch, "DS9", Number(1, 1, 1))), NCError);
    EXPECT_EQ(label(world.Data(other, "M1")), "M1.long DModX2");
    project.AddModel(ModelTypeE::O2PLS, 2); // without orthogonal components it is like any other
    VectorProbe const range({"r", Scores, Range});
    EXPECT_EQ(label(world.Data(range, "M5", Number(2, open))), "M5.long r[Comp. 2 - Last comp.]");
}

TEST(VectorText, NamesSeriesWithoutPrefixAndWithTheirScale) {
    World const world;
    VectorProbe const vector({"t"});
    ProjectVector const &num = *ProjectVectorHandler::Instance()->GetNumVector(Scores);
    struct {
        ProjectVector const &vector;
        double scaling, offset;
        std::string prefix; // "-" stays
        char const *expected;
    } const cases[] = {{vector, 1, 0, "-", "M1.long t"},           {vector, 1, 0, "M1", "long t"},
                       {vector, 1, 0, "M2", "M1.long t"},          {vector, 2, -0.5, "-", "2 * M1.long t - 0.5"},
                       {vector, 1, 0.5, "M1", "long t + 0.5"},     {vector, 1.0000001, 1e-7, "M1", "long t"},
                       {vector, 1.0000002, 0, "M1", "1 * long t"}, {num, 2, 1, "N", "2 * Num + 1"}};
    for (auto const &[vector, scaling, offset, prefix, expected] : cases) {
        ProjectVectorData data = world.Data(vector, "M1");
        data.scaling = scaling;
        data.offset = offset;
        std::string const removed = prefix == "-" ? "M1" : prefix;
        EXPECT_EQ(data.GetProjectVectorName(&world.defaults, prefix != "-", removed, 1, false), expected);
    }
    EXPECT_EQ(world.Data(num, "").GetFormattedName(nullptr, 1, false), "Num");
}
