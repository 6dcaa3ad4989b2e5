#pragma once

#include "app/VectorSearch.h"

#include <string>
#include <vector>

// The vectors of the catalogue that have something to show for a source, by what they have one value for. One of them
// is highlighted.
class VectorList {
public:
    struct Row {
        ProjectVector const *vector; // null for a heading
        std::string text;
    };

    // On the newest fitted model, or else on the first source that there is.
    explicit VectorList(engine::Project const &project);

    // Null without any source.
    Source const *GetSource() const { return m_sources.empty() ? nullptr : &m_sources[m_source]; }
    // The next one by so many, round and round.
    void ChangeSource(int by);
    // Nothing happens for a model that is not there.
    void UseModel(int model);

    // Only those whose name or purpose holds the text, in whatever case.
    void Search(std::string const &text);
    std::string const &SearchedText() const { return m_searched; }

    std::vector<Row> const &Rows() const { return m_rows; }
    int Highlighted() const { return m_highlighted; }
    // Null when the list is empty.
    ProjectVector const *Vector() const;
    // By so many vectors, as far as there are any; to the row, where that is a vector.
    void Move(int by);
    void HighlightRow(int row);

private:
    void Read();
    void Fill();

    engine::Project const &m_project;
    std::vector<Source> m_sources;
    std::size_t m_source = 0;
    std::vector<ProjectVector const *> m_vectors; // of the source, by axis
    std::string m_searched;
    std::vector<Row> m_rows;
    int m_highlighted = 0;
};
