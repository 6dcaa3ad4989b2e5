#include "platform/text/VqStdString.h"
#include "platform/text/VqString.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

TEST(VqStdString, CutsByGraphemeClusters) {
    std::string const accent = "e\xCC\x81";                                    // e, combining acute
    std::string const family = "\xF0\x9F\x91\xA9\xE2\x80\x8D\xF0\x9F\x91\xA7"; // woman, joiner, girl
    std::string const flags = "\xF0\x9F\x87\xB8\xF0\x9F\x87\xAA";              // regional S, regional E
    std::string const thumb = "\xF0\x9F\x91\x8D\xF0\x9F\x8F\xBD";              // thumb up, skin tone
    std::string const marked = "a" + accent + family + flags + thumb + "z";
    struct {
        std::string text;
        int start, length;
        std::string expected;
    } const cases[] = {{"abcdef", 1, 3, "bcd"},       {"abcdef", 4, 9, "ef"}, {"abcdef", 6, 1, ""},
                       {"abcdef", 2, -1, "cdef"},     {"abc", -1, 2, "ab"},   {"", 0, -1, ""},
                       {marked, 0, 2, "a" + accent},  {marked, 1, 1, accent}, {marked, 2, 1, family},
                       {marked, 3, 2, flags + thumb}, {marked, 5, -1, "z"},   {marked, 6, -1, ""},
                       {"a\r\nb", 1, 1, "\r\n"},      {"abc", 0, 0, ""},      {marked, 0, -1, marked}};
    for (auto const &c : cases)
        EXPECT_EQ(VqStdString::GraphemeClusterSubString(c.text, c.start, c.length, std::locale::classic()), c.expected)
            << c.text << " from " << c.start << ", " << c.length;
}

TEST(VqStdString, ComparesNamesWithNumbers) {
    struct {
        std::string before, after;
        int expected;
    } const cases[] = {{"Batch 9", "batch 10", -1},
                       {"x2", "X02", 0},
                       {"a", "a1", -1},
                       {"1", "a", -1},
                       {"", "0", -1},
                       {"", "", 0},
                       {"abc", "ABD", -1},
                       {"v1.9", "v1.10", -1},
                       {"12345678901234567890123", "12345678901234567890124", -1},
                       {"\xC3\x85ngstr 2", "\xC3\xA5NGSTR 2", 0},
                       {"M1.t[2]", "M1.T[10]", -1}};
    for (auto const &c : cases) {
        EXPECT_EQ(VqStdString::CompareNumberNoCase(c.before, c.after, std::locale::classic()), c.expected) << c.before;
        EXPECT_EQ(VqStdString::CompareNumberNoCase(c.after, c.before, std::locale::classic()), -c.expected) << c.before;
    }
}

TEST(VqString, ReadsNumbersInTheClassicLocale) {
    struct {
        char const *text;
        bool whole;
        float value;
        double leading;
        int length;
    } const cases[] = {{"1.5", true, 1.5f, 1.5, 3},
                       {" -2e3 ", true, -2e3f, -2e3, 5},
                       {"+0.1", true, 0.1f, 0.1, 4},
                       {"1,5", false, 0, 1, 1},
                       {"", false, 0, 0, 0},
                       {"  ", false, 0, 0, 0},
                       {"x1", false, 0, 0, 0},
                       {"1 2", false, 0, 1, 1},
                       {"1e39", false, 0, 1e39, 4},
                       {"1e-60", true, 0, 1e-60, 5},
                       {"nan", false, 0, NAN, 3},
                       {"inf", false, 0, HUGE_VAL, 3},
                       {"16777217", true, 16777216, 16777217, 8}};
    for (auto const &c : cases) {
        float value = 7;
        EXPECT_EQ(VqString::ToFloat(c.text, value), c.whole) << c.text;
        EXPECT_EQ(value, c.whole ? c.value : 7) << c.text;
        char *end = nullptr;
        EXPECT_THAT(VqString::vqstrtod(c.text, &end), testing::NanSensitiveDoubleEq(c.leading)) << c.text;
        EXPECT_EQ(end - c.text, c.length) << c.text;
    }
}
