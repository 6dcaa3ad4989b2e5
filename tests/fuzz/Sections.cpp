#include "platform/storage/XercesXMLSection.h"
#include "tests/fuzz/Fuzz.h"

namespace {

std::string Text(XercesXMLSection const &section, bool indented) {
    std::string text;
    section.Flush(text, true, indented);
    return text;
}

void ReadAs(ConfigurationSection const &section, char const *key) {
    std::string text;
    int whole = 0;
    double real = 0;
    float narrow = 0;
    bool flag = false;
    std::list<int> numbers;
    std::vector<std::string> texts;
    bool const there = section.ReadKey(key, text);
    Require(section.ReadKey(key, texts, ';') == there);
    Require(!section.ReadKey(key, whole) || section.ReadKey(key, real));
    section.ReadKey(key, narrow);
    section.ReadKey(key, flag);
    section.ReadKey(key, numbers);
}

} // namespace

// A section that can be read writes a text that reads back the same, in lines or without.
int LLVMFuzzerTestOneInput(std::uint8_t const *data, std::size_t size) {
    auto const section =
        XercesXMLSection::CreateXMLSectionFromString(std::string(reinterpret_cast<char const *>(data), size));
    if (!section)
        return 0;
    std::string const text = Text(*section, false);
    auto const again = XercesXMLSection::CreateXMLSectionFromString(Text(*section, true));
    Require(again && Text(*again, false) == text);
    ReadAs(*section, "k");
    if (auto const child = section->OpenSubSection("s"))
        ReadAs(*child->Clone(), "k");
    return 0;
}
