#include "platform/storage/XercesXMLSection.h"
#include "platform/text/Exception.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cfloat>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <locale>
#include <new>

using testing::ElementsAre;
using testing::IsEmpty;

static std::size_t largestAllocation = SIZE_MAX; // what is larger finds no memory

void *operator new(std::size_t size, std::nothrow_t const &) noexcept {
    return size > largestAllocation ? nullptr : std::malloc(std::max<std::size_t>(size, 1));
}
void *operator new(std::size_t size) {
    if (void *const memory = operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}
// Not inlined, lest the compiler sees new freed by free.
[[gnu::noinline]] void operator delete(void *memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void *memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

std::string Text(XercesXMLSection const &section, bool withDeclaration = true, bool indented = false) {
    std::string text;
    section.Flush(text, withDeclaration, indented);
    return text;
}

// What `value` reads back as, by way of the XML text in all its forms.
template <typename Value, typename... Separator>
void ExpectReadsBack(Value const &value, Separator... separator) {
    XercesXMLSection section;
    section.WriteKey("key", value, separator...);
    for (auto const &[declaration, indented] : {std::pair{true, false}, {true, true}, {false, true}, {false, false}}) {
        auto const copy = XercesXMLSection::CreateXMLSectionFromString(Text(section, declaration, indented));
        ASSERT_TRUE(copy != nullptr);
        Value read{};
        EXPECT_TRUE(copy->ReadKey("key", read, separator...));
        EXPECT_EQ(read, value);
    }
}

} // namespace

TEST(ConfigurationSection, EveryValueReadsBackEqual) {
    std::string allBytes;
    for (char c = 0; c != 0x7f; ++c)
        allBytes += c;
    for (std::string const &text :
         {std::string(), allBytes, std::string("  \n blanks \t\r\n"), std::string("\\u0041 \\ \\\\u"),
          std::string("<&]]>\"'"),
          std::string("\xC2\x85 \xE2\x80\xA8 \xEF\xBF\xBE \xEF\xBF\xBF \xF0\x9F\x91\x8D \xC3\xA5"),
          std::string(70000, 'x')})
        ExpectReadsBack(text);
    for (int const value : {0, -1, INT_MAX, INT_MIN})
        ExpectReadsBack(value);
    for (double const value : {0.1, -0.0, DBL_MAX, DBL_TRUE_MIN, -99.0, 1 / 3.0, HUGE_VAL})
        ExpectReadsBack(value);
    for (float const value : {0.1f, FLT_MAX, FLT_TRUE_MIN, 16777217.0f})
        ExpectReadsBack(value);
    ExpectReadsBack(true);
    ExpectReadsBack(std::list<int>{});
    ExpectReadsBack(std::list<int>{3, -99, 0});
    ExpectReadsBack(std::vector<std::string>{}, ';');
    ExpectReadsBack(std::vector<std::string>{"b 1", "", "c"}, ';');
    ExpectReadsBack(std::vector<std::string>{"a;b", ""}, '|');
}

TEST(ConfigurationSection, ReadsOnlyWhatIsThereAndOfItsType) {
    XercesXMLSection section;
    for (char const *text : {"", "1x", " 1", "1,5", "2147483648000", "1e999", "1;", ";1", "1;x", "true"}) {
        section.WriteKey("key", text);
        int whole = 7;
        double real = 7;
        float narrow = 7;
        bool flag = true;
        std::list<int> list{7};
        EXPECT_FALSE(section.ReadKey("key", whole)) << text;
        EXPECT_FALSE(section.ReadKey("missing", real)) << text;
        EXPECT_EQ(section.ReadKey("key", real), std::string(text) == "2147483648000") << text;
        EXPECT_EQ(section.ReadKey("key", narrow), std::string(text) == "2147483648000") << text;
        EXPECT_FALSE(section.ReadKey("key", flag)) << text;
        EXPECT_EQ(section.ReadKey("key", list), *text == '\0') << text;
        EXPECT_EQ(whole, 7);
        EXPECT_TRUE(flag);
        EXPECT_EQ(list.empty(), *text == '\0');
    }
    for (std::string const wrong : {"\xff", "\xC3", "\xED\xA0\x80", "\xC0\x80", "\xF4\x90\x80\x80"}) {
        EXPECT_THROW(section.WriteKey("key", wrong), NCInternalError);
        EXPECT_THROW(section.WriteKey(wrong, 1), NCInternalError);
        EXPECT_THROW(section.CreateSubSection(wrong), NCInternalError);
    }
}

TEST(ConfigurationSection, KeepsChildrenByNameAndIndex) {
    auto root = std::make_unique<XercesXMLSection>();
    for (int i = 1; i <= 3; ++i)
        root->CreateSubSection("Series", i)->WriteKey("Number", i);
    EXPECT_THROW(root->CreateSubSection("Series", 5), NCInternalError);
    EXPECT_EQ(root->OpenSubSection("Series", 4), nullptr);
    EXPECT_EQ(root->OpenSubSection("Series", 0), nullptr);
    EXPECT_EQ(root->OpenSubSection("Other"), nullptr);
    auto const second = root->OpenSubSection("Series", 2);
    second->CreateSubSection("a\n\"<>")->WriteKey("deep \x01", "value");
    auto const clone = root->Clone();
    auto const copy = XercesXMLSection::CreateXMLSectionFromString(Text(*root));
    EXPECT_TRUE(root->DeleteSubSection("Series", 1));
    EXPECT_FALSE(root->DeleteSubSection("Series", 3));
    EXPECT_FALSE(root->DeleteKey("Number"));
    second->WriteKey("Number", 20);
    int number = 0;
    EXPECT_TRUE(root->OpenSubSection("Series", 1)->ReadKey("Number", number));
    EXPECT_EQ(number, 20);
    for (ConfigurationSection *const unchanged : {clone.get(), static_cast<ConfigurationSection *>(copy.get())}) {
        EXPECT_EQ(unchanged->CountSubSections("Series"), 3);
        EXPECT_TRUE(unchanged->OpenSubSection("Series", 2)->ReadKey("Number", number));
        EXPECT_EQ(number, 2);
        std::string value;
        EXPECT_TRUE(unchanged->OpenSubSection("Series", 2)->OpenSubSection("a\n\"<>")->ReadKey("deep \x01", value));
    }
    root.reset();
    second->Clear();
    EXPECT_FALSE(second->ReadKey("Number", number));
    EXPECT_EQ(second->CountSubSections("a\n\"<>"), 0);
}

TEST(XercesXMLSection, RefusesWhatItDidNotWrite) {
    std::string nested = "<configuration version=\"1\">";
    for (int i = 0; i < 100000; ++i)
        nested += "<section name=\"a\">";
    for (std::string const &text : std::initializer_list<std::string>{
             "", "text", "<configuration version=\"1\">", "<configuration/>", "<configuration version=\"2\"/>",
             "<other version=\"1\"/>", "<configuration version=\"1\"><key/></configuration>",
             "<configuration version=\"1\"><key name=\"a\"><key name=\"b\"/></key></configuration>",
             "<configuration version=\"1\"><other name=\"a\"/></configuration>",
             "<configuration version=\"1\">text</configuration>",
             "<configuration version=\"1\"><key name=\"a\">\\x</key></configuration>",
             "<configuration version=\"1\"><key name=\"a\">\\u0041</key></configuration>",
             "<configuration version=\"1\"><key name=\"a\">\\u00</key></configuration>",
             "<configuration version=\"1\"><key name=\"a\">\xff</key></configuration>",
             "<!DOCTYPE configuration [<!ENTITY a \"b\">]><configuration version=\"1\"/>", nested})
        EXPECT_EQ(XercesXMLSection::CreateXMLSectionFromString(text), nullptr) << text.substr(0, 100);
    XercesXMLSection section;
    section.CreateSubSection("a")->WriteKey("b", "c");
    std::string const whole = Text(section, false);
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(XercesXMLSection::CreateXMLSectionFromString(whole.substr(0, length)), nullptr) << length;
}

TEST(XercesXMLSection, TellsThatMemoryIsShort) {
    std::string const text =
        "<configuration version=\"1\"><key name=\"a\">" + std::string(1000000, 'b') + "</key></configuration>";
    ASSERT_TRUE(XercesXMLSection::CreateXMLSectionFromString(text));
    for (std::size_t const largest : {40000, 200000, 900000}) {
        largestAllocation = largest;
        EXPECT_THROW(XercesXMLSection::CreateXMLSectionFromString(text), std::bad_alloc) << largest;
        largestAllocation = SIZE_MAX;
    }
}
