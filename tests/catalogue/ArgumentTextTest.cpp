#include "catalogue/ProjectVector.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <sstream>

using testing::ElementsAre;

namespace {

constexpr unsigned long allOnes = 0xFFFFFFFF;

class Parsers final : public ProjectVector {
public:
    using ProjectVector::Parse;
    using ProjectVector::ParseALContribution;
    using ProjectVector::ParseBatchIx;
    using ProjectVector::ParseContribution;
    using ProjectVector::ParseIntegerList;
    using ProjectVector::ParseIntList;
    using ProjectVector::ParseScaleTransform;
    using ProjectVector::ParseSecondNumber;
};

struct CommonCase {
    char const *text;
    char const *source;
    int component;
    unsigned long number;
    int round;
    int rest;
};

TEST(ArgumentText, CommonFieldsWrapAroundInShortText) {
    CommonCase const cases[] = {
        {"M1,2,3,4", "M1", 2, 3, 4, -1},
        {"M1,2,3,4,1,0", "M1", 2, 3, 4, 9},
        {"M1", "M1", 0, 0, 0, -1},
        {"12", "12", 12, 12, 12, -1},
        {"M1,2,3", "M1", 2, 3, 0, 3},
        {"M1,5", "M1", 5, 0, 5, -1},
        {"", "", 0, 0, 0, -1},
        {"DS2,0,-1,0", "DS2", 0, allOnes, 0, -1},
        {"PS, 7x,+3, -2", "PS", 7, 3, -2, -1},
        {"M1,99999999999,99999999999,-99999999999", "M1", 2147483647, allOnes, -2147483647 - 1, -1},
        {"M1,,,", "M1", 0, 0, 0, -1}};
    for (CommonCase const &row : cases) {
        std::string source;
        int component = -7;
        unsigned long number = 7;
        int round = -7;
        EXPECT_EQ(Parsers().Parse(row.text, source, component, number, round), row.rest) << row.text;
        EXPECT_EQ(source, row.source) << row.text;
        EXPECT_EQ(component, row.component) << row.text;
        EXPECT_EQ(number, row.number) << row.text;
        EXPECT_EQ(round, row.round) << row.text;
    }
}

TEST(ArgumentText, ScaleFlagsAreTrueOnlyForOne) {
    struct {
        char const *text;
        bool unscaled, backTransformed;
        int rest;
    } const cases[] = {
        {"1,0", true, false, -1}, {"2,1", false, true, -1}, {"1", true, true, -1}, {"0,1,5", false, true, 4}};
    for (auto const &row : cases) {
        bool unscaled = false;
        bool backTransformed = false;
        EXPECT_EQ(Parsers().ParseScaleTransform(row.text, backTransformed, unscaled), row.rest) << row.text;
        EXPECT_EQ(unscaled, row.unscaled) << row.text;
        EXPECT_EQ(backTransformed, row.backTransformed) << row.text;
    }
}

// Fields of a text, which starts over behind its last one.
class Fields {
public:
    explicit Fields(std::string const &text) {
        std::istringstream stream(text + ',');
        for (std::string field; std::getline(stream, field, ',');)
            m_fields.push_back(field);
    }

    std::string Next() { return m_fields[HasMore() ? m_next++ : (m_next = 1, 0)]; }
    int Integer() { return static_cast<int>(std::clamp(std::strtoll(Next().c_str(), nullptr, 10), low, high)); }
    std::list<int> List(int count) {
        std::list<int> values;
        for (; count > 0; --count)
            values.push_back(Integer());
        return values;
    }
    bool HasMore() const { return m_next < m_fields.size(); }

private:
    static constexpr long long low = -2147483647LL - 1, high = 2147483647;

    std::vector<std::string> m_fields;
    std::size_t m_next = 0;
};

TEST(ArgumentText, ReadsAnyTextAsTheReferenceDoes) {
    constexpr char const *fields[] = {"M1", "", "0", "2", "-1", " 3", "3x", "+4", "99999999999", "-99999999999", "a$"};
    std::mt19937 generator(5);
    for (int i = 0; i < 20000; ++i) {
        // Counts come from texts, too: large ones only where nothing is counted.
        bool const counts = i % 2 == 0;
        std::string text = fields[generator() % 8];
        for (unsigned left = generator() % 12; left > 0; --left)
            text += std::string(",") + fields[generator() % (counts ? 8 : 11)];
        Fields common(text);
        std::string source, expectedSource = common.Next();
        int component = 0, round = 0;
        unsigned long number = 0;
        int const rest = Parsers().Parse(text.c_str(), source, component, number, round);
        EXPECT_EQ(source, expectedSource) << text;
        EXPECT_EQ(component, common.Integer()) << text;
        common.Next();
        EXPECT_EQ(round, common.Integer()) << text;
        EXPECT_EQ(rest == -1, !common.HasMore()) << text;
        // Never more than there is: no fault, whatever stands where a name should end.
        std::vector<WeightTypeE::WeightType> weights;
        std::vector<std::pair<std::string, float>> points1, points2;
        std::list<int> group1, group2, components;
        int yVariable = 0;
        if (!counts)
            continue;
        Parsers().ParseALContribution((text + ",a$").c_str(), weights, points1, points2, yVariable, components);
        weights.clear(), components.clear();
        Parsers().ParseContribution(text.c_str(), weights, group1, group2, yVariable, components);
        Fields tail(text);
        std::list<int> const expectedWeights = tail.List(tail.Integer());
        tail.Next();
        EXPECT_TRUE(std::equal(weights.begin(), weights.end(), expectedWeights.begin(), expectedWeights.end())) << text;
        EXPECT_EQ(group1, tail.List(tail.Integer())) << text;
        EXPECT_EQ(group2, tail.List(tail.Integer())) << text;
        EXPECT_EQ(yVariable, tail.Integer()) << text;
        std::list<int> expected;
        do
            expected.push_back(tail.Integer());
        while (tail.HasMore());
        EXPECT_EQ(components, expected) << text;
    }
}

TEST(ArgumentText, SingleFieldsAndLists) {
    int batch = 0;
    EXPECT_EQ(Parsers().ParseBatchIx("7", batch), -1);
    EXPECT_EQ(Parsers().ParseBatchIx("7,8", batch), 2);
    EXPECT_EQ(batch, 7);
    unsigned long number = 0;
    EXPECT_EQ(Parsers().ParseSecondNumber("-2,1", number), 3);
    EXPECT_EQ(number, 0xFFFFFFFEul);
    std::list<int> values{9};
    Parsers::ParseIntegerList("3,x,-5", values);
    Parsers::ParseIntegerList("", values);
    EXPECT_THAT(values, ElementsAre(9, 3, 0, -5, 0));
    std::list<unsigned long> numbers;
    Parsers::ParseIntList("3,4;5", numbers);
    EXPECT_THAT(numbers, ElementsAre(3, 4));
}

TEST(ArgumentText, ContributionTail) {
    struct {
        char const *text;
        std::vector<int> weights, group1, group2;
        int yVariable;
        std::vector<int> components;
    } const cases[] = {{"1,2,0,0,0,0", {2}, {}, {}, 0, {1, 2, 0, 0, 0, 0}},
                       {"1,2,0,0,0,0,5", {2}, {}, {}, 0, {5}},
                       {"2,1,9,7,2,3,4,1,8,6,1,2", {1, 9}, {3, 4}, {8}, 6, {1, 2}},
                       {"-1,3,0,0,4,1", {}, {}, {}, 4, {1}}};
    for (auto const &row : cases) {
        std::vector<WeightTypeE::WeightType> weights;
        std::list<int> group1{99};
        std::list<int> group2{99};
        std::list<int> components;
        int yVariable = 0;
        EXPECT_EQ(Parsers().ParseContribution(row.text, weights, group1, group2, yVariable, components), -1);
        EXPECT_THAT(weights, testing::ElementsAreArray(row.weights)) << row.text;
        EXPECT_THAT(group1, testing::ElementsAreArray(row.group1)) << row.text;
        EXPECT_THAT(group2, testing::ElementsAreArray(row.group2)) << row.text;
        EXPECT_EQ(yVariable, row.yVariable) << row.text;
        EXPECT_THAT(components, testing::ElementsAreArray(row.components)) << row.text;
    }
}

TEST(ArgumentText, AlignedContributionTail) {
    std::vector<WeightTypeE::WeightType> weights;
    std::vector<std::pair<std::string, float>> group1;
    std::vector<std::pair<std::string, float>> group2;
    std::list<int> components;
    int yVariable = 0;
    Parsers().ParseALContribution("1,2,3,2,B,1$,1.5,$,-2e1,1,C$,7,4,5", weights, group1, group2, yVariable, components);
    EXPECT_THAT(group1,
                ElementsAre(std::pair<std::string, float>("B,1", 1.5f), std::pair<std::string, float>("", -20.0f)));
    EXPECT_THAT(group2, ElementsAre(std::pair<std::string, float>("C", 7.0f)));
    EXPECT_EQ(yVariable, 3);
    EXPECT_THAT(components, ElementsAre(4, 5));
    Parsers().ParseALContribution("1,2,0,0,0", weights, group1, group2, yVariable, components);
    EXPECT_THAT(components, ElementsAre(4, 5));
    EXPECT_THAT(weights, ElementsAre(WeightTypeE::WStar, WeightTypeE::WStar));
    // Text that ends with or just behind a name has a value of 0, and starts over.
    for (char const *const text : {"0,0,1,a$", "0,0,1,a$,", "0,0,1,a$1"}) {
        group1.clear();
        Parsers().ParseALContribution(text, weights, group1, group2, yVariable, components);
        EXPECT_THAT(group1, ElementsAre(std::pair<std::string, float>("a", 0.0f))) << text;
    }
}

} // namespace
