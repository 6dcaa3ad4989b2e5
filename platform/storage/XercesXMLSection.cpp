#include "platform/storage/XercesXMLSection.h"

#include "platform/containers/SharedStorage.h"
#include "platform/text/Exception.h"

#include <boost/locale/encoding_utf.hpp>
#include <boost/locale/utf.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

#include <charconv>
#include <map>
#include <new>

// The tree stands on its own: Xerces-C is at work only while a text is parsed, so that no section depends on a document
// or on the order in which libraries end.
struct XMLSectionNode {
    using Pointer = std::shared_ptr<XMLSectionNode>;

    std::map<std::string, std::string> keys;
    std::map<std::string, std::vector<Pointer>> children;
};

namespace {

constexpr char const *rootName = "configuration";
constexpr char const *sectionName = "section";
constexpr char const *keyName = "key";
constexpr char const *versionName = "version";
constexpr char const *nameName = "name";
constexpr char const *formVersion = "1";
constexpr std::size_t maxDepth = 1000;

// What XML cannot hold travels as \uXXXX, and so a backslash travels as two: control characters, which XML refuses or
// normalises, and the two code points that are no characters.
bool NeedsEscape(std::uint32_t code) {
    return code < 0x20 || code == 0xfffe || code == 0xffff;
}

void AppendEscape(std::string &xml, std::uint32_t code) {
    constexpr char digits[] = "0123456789ABCDEF";
    xml += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        xml += digits[code >> shift & 0xf];
}

void AppendEscaped(std::string &xml, std::string const &text) {
    using Utf = boost::locale::utf::utf_traits<char>;
    for (auto at = text.begin(); at != text.end();) {
        auto const first = at;
        std::uint32_t const code = Utf::decode(at, text.end());
        if (NeedsEscape(code))
            AppendEscape(xml, code);
        else if (code == '\\')
            xml += "\\\\";
        else if (code == '<')
            xml += "&lt;";
        else if (code == '>')
            xml += "&gt;";
        else if (code == '&')
            xml += "&amp;";
        else if (code == '"')
            xml += "&quot;";
        else
            xml.append(first, at);
    }
}

// Undoes the escapes in place; false when one of them is none of ours.
bool Unescape(std::string &text) {
    std::size_t to = text.find('\\');
    for (std::size_t at = to; at < text.size();) {
        if (text[at] != '\\') {
            text[to++] = text[at++];
            continue;
        }
        std::uint32_t code = 0;
        char const *const digits = text.data() + at + 2;
        if (text.compare(at, 2, "\\\\") == 0) {
            text[to++] = '\\';
            at += 2;
        } else if (text.compare(at, 2, "\\u") == 0 && text.size() - at >= 6 &&
                   std::from_chars(digits, digits + 4, code, 16).ptr == digits + 4 && NeedsEscape(code)) {
            to = static_cast<std::size_t>(boost::locale::utf::utf_traits<char>::encode(code, text.begin() + to) -
                                          text.begin());
            at += 6;
        } else {
            return false;
        }
    }
    if (to < text.size())
        text.resize(to);
    return true;
}

void CheckUtf8(std::string const &text) {
    using namespace boost::locale::utf;
    for (auto at = text.begin(); at != text.end();) {
        auto const offset = at - text.begin();
        if (!is_valid_codepoint(utf_traits<char>::decode(at, text.end())))
            throw NCInternalError("ConfigurationSection",
                                  ExceptionMessage::translate("Byte {1} of a key, name or text is not UTF-8.") %
                                      (offset + 1));
    }
}

void InitializeXerces() {
    static struct Platform {
        Platform() { xercesc::XMLPlatformUtils::Initialize(); }
        ~Platform() { xercesc::XMLPlatformUtils::Terminate(); }
    } const platform;
}

struct NotOurs {};

// Builds a tree from the events of the parser; throws NotOurs for XML that Flush does not make.
class SectionReader : public xercesc::DefaultHandler {
public:
    static XMLSectionNode::Pointer Read(std::string const &text) {
        SectionReader handler;
        std::unique_ptr<xercesc::SAX2XMLReader> const parser(xercesc::XMLReaderFactory::createXMLReader());
        parser->setFeature(xercesc::XMLUni::fgXercesLoadExternalDTD, false);
        parser->setFeature(xercesc::XMLUni::fgXercesDisableDefaultEntityResolution, true);
        parser->setFeature(xercesc::XMLUni::fgSAX2CoreValidation, false);
        parser->setContentHandler(&handler);
        parser->setErrorHandler(&handler);
        parser->setLexicalHandler(&handler);
        auto const *const bytes = reinterpret_cast<XMLByte const *>(text.data());
        parser->parse(xercesc::MemBufInputSource(bytes, text.size(), "section"));
        return handler.m_root;
    }

private:
    void startElement(XMLCh const *, XMLCh const *, XMLCh const *name, xercesc::Attributes const &attributes) override {
        std::string const element = Utf8(name);
        if (m_inKey || m_open.size() > maxDepth)
            throw NotOurs();
        if (m_open.empty())
            OpenRoot(element, attributes);
        else if (element == sectionName)
            m_open.push_back(AddChild(Text(attributes, nameName)));
        else if (element == keyName)
            OpenKey(Text(attributes, nameName));
        else
            throw NotOurs();
    }

    void endElement(XMLCh const *, XMLCh const *, XMLCh const *) override {
        if (m_inKey)
            m_open.back()->keys[m_key] = Unescaped(Utf8(m_value));
        else
            m_open.pop_back();
        m_inKey = false;
    }

    void characters(XMLCh const *text, XMLSize_t length) override {
        std::u16string_view const piece(text, length);
        if (m_inKey)
            m_value += piece;
        else if (piece.find_first_not_of(u" \t\r\n") != std::u16string_view::npos)
            throw NotOurs();
    }

    void startDTD(XMLCh const *, XMLCh const *, XMLCh const *) override { throw NotOurs(); }

    void OpenRoot(std::string const &element, xercesc::Attributes const &attributes) {
        if (element != rootName || Text(attributes, versionName) != formVersion)
            throw NotOurs();
        m_open.push_back(m_root.get());
    }

    XMLSectionNode *AddChild(std::string const &name) {
        return m_open.back()->children[name].emplace_back(std::make_shared<XMLSectionNode>()).get();
    }

    void OpenKey(std::string key) {
        m_inKey = true;
        m_key = std::move(key);
        m_value.clear();
    }

    static std::string Utf8(std::u16string_view text) {
        return boost::locale::conv::utf_to_utf<char>(text.data(), text.data() + text.size());
    }

    static std::string Unescaped(std::string text) {
        if (!Unescape(text))
            throw NotOurs();
        return text;
    }

    static std::string Text(xercesc::Attributes const &attributes, std::string const &name) {
        std::u16string const wide(name.begin(), name.end());
        XMLCh const *const value = attributes.getValue(wide.c_str());
        if (value == nullptr)
            throw NotOurs();
        return Unescaped(Utf8(value));
    }

    XMLSectionNode::Pointer const m_root = std::make_shared<XMLSectionNode>();
    std::vector<XMLSectionNode *> m_open;
    bool m_inKey = false;
    std::string m_key;
    std::u16string m_value;
};

// Writes a tree as XML.
class SectionWriter {
public:
    SectionWriter(std::string &xml, bool indented) : m_xml(xml), m_indented(indented) {}

    void Write(XMLSectionNode const &node, std::string const &element, char const *attribute,
               std::string const &value) {
        Open(element, attribute, value);
        EndLine();
        ++m_depth;
        for (auto const &[key, text] : node.keys) {
            Open(keyName, nameName, key);
            AppendEscaped(m_xml, text);
            Close(keyName);
        }
        for (auto const &[name, children] : node.children)
            for (auto const &child : children)
                Write(*child, sectionName, nameName, name);
        --m_depth;
        Indent();
        Close(element);
    }

private:
    void Open(std::string const &element, char const *attribute, std::string const &value) {
        Indent();
        m_xml.append("<").append(element).append(" ").append(attribute).append("=\"");
        AppendEscaped(m_xml, value);
        m_xml += "\">";
    }

    void Close(std::string const &element) {
        m_xml.append("</").append(element).append(">");
        EndLine();
    }

    void Indent() { m_xml.append(m_indented ? 2 * m_depth : 0, ' '); }
    void EndLine() { m_xml.append(m_indented ? 1 : 0, '\n'); }

    std::string &m_xml;
    bool const m_indented;
    std::size_t m_depth = 0;
};

// The children of that name, null when there are none or fewer than `index`.
std::vector<XMLSectionNode::Pointer> *Siblings(XMLSectionNode &node, std::string const &name, int index) {
    auto const found = node.children.find(name);
    bool const present =
        found != node.children.end() && index >= 1 && static_cast<std::size_t>(index) <= found->second.size();
    return present ? &found->second : nullptr;
}

XMLSectionNode::Pointer DeepCopy(XMLSectionNode const &node) {
    auto const copy = std::make_shared<XMLSectionNode>();
    copy->keys = node.keys;
    for (auto const &[name, children] : node.children)
        for (auto const &child : children)
            copy->children[name].push_back(DeepCopy(*child));
    return copy;
}

} // namespace

XercesXMLSection::XercesXMLSection() : m_node(std::make_shared<XMLSectionNode>()) {}

XercesXMLSection::XercesXMLSection(std::shared_ptr<XMLSectionNode> node) : m_node(std::move(node)) {}

XercesXMLSection::~XercesXMLSection() = default;

std::unique_ptr<XercesXMLSection> XercesXMLSection::CreateXMLSectionFromString(std::string const &text) {
    try {
        InitializeXerces();
        return std::unique_ptr<XercesXMLSection>(new XercesXMLSection(SectionReader::Read(text)));
    } catch (NotOurs const &) {
    } catch (xercesc::SAXException const &) {
    } catch (xercesc::XMLException const &) {
    } catch (xercesc::OutOfMemoryException const &) { // derives from nothing
        throw std::bad_alloc();
    }
    return nullptr;
}

void XercesXMLSection::Flush(std::string &text, bool withDeclaration, bool indented) const {
    text = withDeclaration ? "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" : "";
    SectionWriter(text, indented).Write(*m_node, rootName, versionName, formVersion);
}

bool XercesXMLSection::ReadKey(std::string const &key, std::string &value) const {
    auto const found = m_node->keys.find(key);
    if (found == m_node->keys.end())
        return false;
    value = found->second;
    return true;
}

void XercesXMLSection::WriteKey(std::string const &key, std::string const &value) {
    CheckUtf8(key);
    CheckUtf8(value);
    m_node->keys[key] = value;
}

bool XercesXMLSection::DeleteKey(std::string const &key) {
    return m_node->keys.erase(key) > 0;
}

int XercesXMLSection::CountSubSections(std::string const &name) const {
    auto const found = m_node->children.find(name);
    return found != m_node->children.end() ? static_cast<int>(found->second.size()) : 0;
}

std::unique_ptr<ConfigurationSection> XercesXMLSection::OpenSubSection(std::string const &name, int index) {
    auto const *const siblings = Siblings(*m_node, name, index);
    if (siblings == nullptr)
        return nullptr;
    return std::unique_ptr<ConfigurationSection>(
        new XercesXMLSection((*siblings)[static_cast<std::size_t>(index) - 1]));
}

std::unique_ptr<ConfigurationSection> XercesXMLSection::CreateSubSection(std::string const &name, int index) {
    CheckUtf8(name);
    int const count = CountSubSections(name);
    if (index < 1 || index > count + 1)
        ThrowOutOfRange("ConfigurationSection", index, 1, count + 1);
    if (index == count + 1)
        m_node->children[name].push_back(std::make_shared<XMLSectionNode>());
    return OpenSubSection(name, index);
}

bool XercesXMLSection::DeleteSubSection(std::string const &name, int index) {
    auto *const siblings = Siblings(*m_node, name, index);
    if (siblings == nullptr)
        return false;
    siblings->erase(siblings->begin() + (index - 1));
    return true;
}

void XercesXMLSection::Clear() {
    m_node->keys.clear();
    m_node->children.clear();
}

std::unique_ptr<ConfigurationSection> XercesXMLSection::Clone() const {
    return std::unique_ptr<ConfigurationSection>(new XercesXMLSection(DeepCopy(*m_node)));
}
