#pragma once

#include "platform/export.h"

#include <list>
#include <memory>
#include <string>
#include <vector>

// A node in a tree of settings: keys with values, and children with names. Several children may bear one name; they are
// told apart by their index, from 1.
//
// Keys, names and texts are UTF-8; other bytes are misuse (NCInternalError). A name is of any length and content.
//
// Reading answers true when the key is there and reads as the type asked for. Otherwise it answers false and leaves the
// target as it was. A value is kept as text, so that a number may be read as text, or an int as a double.
class DATASERIES_API ConfigurationSection {
public:
    ConfigurationSection() = default;
    ConfigurationSection(ConfigurationSection const &) = delete;
    ConfigurationSection &operator=(ConfigurationSection const &) = delete;
    virtual ~ConfigurationSection();

    virtual bool ReadKey(std::string const &key, std::string &value) const = 0;
    virtual bool ReadKey(std::string const &key, int &value) const;
    virtual bool ReadKey(std::string const &key, double &value) const;
    virtual bool ReadKey(std::string const &key, float &value) const;
    virtual bool ReadKey(std::string const &key, bool &value) const;
    virtual bool ReadKey(std::string const &key, std::list<int> &values) const;
    // An entry that holds the separator was written as several, and reads back so; an empty text is an empty list, and
    // so a list of one empty entry reads back as empty.
    virtual bool ReadKey(std::string const &key, std::vector<std::string> &values, char separator) const;

    // Numbers are written so that they read back exactly, in the classic locale; bool as 1 or 0; lists of ints
    // separated by ";". An existing value of the key is replaced.
    virtual void WriteKey(std::string const &key, std::string const &value) = 0;
    virtual void WriteKey(std::string const &key, int value);
    virtual void WriteKey(std::string const &key, double value);
    virtual void WriteKey(std::string const &key, float value);
    virtual void WriteKey(std::string const &key, bool value);
    virtual void WriteKey(std::string const &key, std::list<int> const &values);
    virtual void WriteKey(std::string const &key, std::vector<std::string> const &values, char separator);
    void WriteKey(std::string const &key, char const *value) { WriteKey(key, std::string(value)); }
    // A pointer is no flag.
    template <typename T>
    void WriteKey(std::string const &key, T const *value) = delete;

    // Whether the key was there.
    virtual bool DeleteKey(std::string const &key) = 0;

    virtual int CountSubSections(std::string const &name) const = 0;
    // The child in place: what is written to it is written to this tree, and it outlives its parent. Empty when there
    // is no such child.
    virtual std::unique_ptr<ConfigurationSection> OpenSubSection(std::string const &name, int index = 1) = 0;
    // The same, made when `index` is the number of children of that name plus one; NCInternalError beyond.
    virtual std::unique_ptr<ConfigurationSection> CreateSubSection(std::string const &name, int index = 1) = 0;
    // Takes the child out of the tree; those behind it move up by one. Whether it was there.
    virtual bool DeleteSubSection(std::string const &name, int index = 1) = 0;

    // Removes all keys and children.
    virtual void Clear() = 0;
    // A copy of this section and all below it, as a tree of its own.
    virtual std::unique_ptr<ConfigurationSection> Clone() const = 0;
};
