#pragma once

#include "platform/storage/ConfigurationSection.h"

struct XMLSectionNode;

// A section whose tree becomes XML text and comes back from it. Each part of the tree lives as long as a section of it.
class DATASERIES_API XercesXMLSection final : public ConfigurationSection {
public:
    // The root of a new, empty tree.
    XercesXMLSection();
    ~XercesXMLSection() override;

    // The section from a text that Flush made. Empty for text that is none: not well-formed, another root, another
    // version, a document type, or sections more than 1000 deep.
    static std::unique_ptr<XercesXMLSection> CreateXMLSectionFromString(std::string const &text);

    // Makes `text` this section and all below it, as XML in UTF-8: with the XML declaration in front or without, in
    // indented lines or without any blank. All forms read back the same.
    void Flush(std::string &text, bool withDeclaration = true, bool indented = false) const;

    using ConfigurationSection::ReadKey;
    using ConfigurationSection::WriteKey;
    bool ReadKey(std::string const &key, std::string &value) const override;
    void WriteKey(std::string const &key, std::string const &value) override;
    bool DeleteKey(std::string const &key) override;
    int CountSubSections(std::string const &name) const override;
    std::unique_ptr<ConfigurationSection> OpenSubSection(std::string const &name, int index = 1) override;
    std::unique_ptr<ConfigurationSection> CreateSubSection(std::string const &name, int index = 1) override;
    bool DeleteSubSection(std::string const &name, int index = 1) override;
    void Clear() override;
    std::unique_ptr<ConfigurationSection> Clone() const override;

private:
    explicit XercesXMLSection(std::shared_ptr<XMLSectionNode> node);

    std::shared_ptr<XMLSectionNode> m_node;
};
