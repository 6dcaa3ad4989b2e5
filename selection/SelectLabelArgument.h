#pragma once

#include "catalogue/ProjectVector.h"
#include "platform/forward.h"

#include <string>

struct NCProjectOptions;

// How the items along one axis of a plot or list are labelled: by which identifier, and by which piece of its text.
class DATASERIES_API SelectLabelArgument {
public:
    bool IsDisplayAll() const { return m_displayAll; }
    void SetDisplayAll(bool all) { m_displayAll = all; }
    bool IsNoneAvailable() const { return m_noneAvailable; }
    void SetNoneAvailable(bool available) { m_noneAvailable = available; }
    bool IsDisplayAllAvailable() const { return m_displayAllAvailable; }
    void SetDisplayAllAvailable(bool available) { m_displayAllAvailable = available; }
    ProjectVector::VectorTypeEnum GetType() const { return m_type; }
    // The standard label of that axis, which no longer follows the project's options.
    void SetType(ProjectVector::VectorTypeEnum type);

    // The identifier column, -1 for none of them; the first character, from 1, and how many, -1 for all to the end.
    // Characters are grapheme clusters.
    int GetSelID() const { return m_selID; }
    void SetSelID(int id) { m_selID = id; }
    int GetStartPos() const { return m_startPos; }
    void SetStartPos(int position) { m_startPos = position; }
    int GetLength() const { return m_length; }
    void SetLength(int length) { m_length = length; }

    // The settings follow the options of the project.
    bool FromOptions() const { return m_fromOptions; }
    void SetFromOptions(bool fromOptions) { m_fromOptions = fromOptions; }
    // Takes over what the options say for that axis; nothing changes for one that they say nothing about.
    void SetFromOptions(ProjectVector::VectorTypeEnum type, NCProjectOptions const *options);

    // The piece of a label.
    std::string GetColumnName(std::string const &label) const;

    void WriteSection(ConfigurationSection *section) const;
    // False when a key is missing; what was read up to there stays. With options followed the piece is not read.
    bool ReadSection(ConfigurationSection *section);

    // For archives of Boost.Serialization, for reading and for writing.
    template <typename Archive>
    void serialize(Archive &archive, unsigned int);

    bool operator==(SelectLabelArgument const &) const = default;

private:
    bool m_displayAll = false;
    bool m_noneAvailable = true;
    ProjectVector::VectorTypeEnum m_type = ProjectVector::VectorTypeVariablesScores;
    int m_selID = -1;
    int m_startPos = 1;
    int m_length = 10;
    int m_rotation = -1;
    int m_displayInterval = 1;
    bool m_fromOptions = false;
    bool m_displayAllAvailable = true;
};
