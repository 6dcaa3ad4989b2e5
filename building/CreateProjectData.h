#pragma once

#include "catalogue/ProjectVector.h"
#include "platform/containers/NCStringVector.h"
#include "platform/forward.h"

#include <list>
#include <memory>
#include <string>

namespace ProjectDataUtilities {

// From the text of a vector to its numbers: "t M1,1,0,0" is the vector `t` with the arguments "M1,1,0,0", whose first
// one is the source: a model "M1", a data set "DS1" or the prediction set "PS". "Num" and "Missing", followed by a
// blank, are rows that no project holds: a count and missing values over the columns of the other vectors of a list.
//
// Made on the stack for each use; the project must live longer.
class DATASERIES_API CreateProjectData {
public:
    explicit CreateProjectData(NCProject const &project) : m_project(&project) {}

    // The table of one vector. Null when the text has no blank or the vector gives nothing. NCError when there is no
    // such vector on that axis for that source.
    TablePtr GetProjectData(char const *text, ProjectVector::VectorTypeEnum type) const;
    TablePtr GetProjectData(std::string const &text, ProjectVector::VectorTypeEnum type) const;
    // All vectors joined on the columns that they have in common. A vector that gives nothing is left out, and so is
    // one that has no column in common with those before it. Null when none gave data.
    TablePtr GetProjectData(std::list<std::string> const &texts, ProjectVector::VectorTypeEnum type) const;

    // The columns of one vector. NCInternalError for a text without a blank, NCError for an unknown vector.
    ColumnIDs GetColumnIDs(char const *text, ProjectVector::VectorTypeEnum type) const;
    ColumnIDs GetColumnIDs(std::string const &text, ProjectVector::VectorTypeEnum type) const;
    // The columns that all vectors have in common. Null when there are none, and after any NCError.
    std::unique_ptr<ColumnIDs> GetColumnIDs(std::list<std::string> const &texts,
                                            ProjectVector::VectorTypeEnum type) const;

    // One row "Num" that counts 1, 2, 3, ..., or "Lag" with the lags, over the columns that the vectors of the list
    // have in common. Null when there are none.
    TablePtr CreateNumProjectData(std::list<std::string> const &texts, ProjectVector::VectorTypeEnum type) const;
    // One row "Missing" of -99.0 over the same columns.
    TablePtr CreateMissingProjectData(std::list<std::string> const &texts, ProjectVector::VectorTypeEnum type) const;

    // A row that no vector stands for, by the text before the first blank: "Num" or "Missing".
    static bool IsNum(std::string const &text);
    static bool IsMissing(std::string const &text);

private:
    ProjectVector const *GetProjectVector(std::string const &source, std::string const &name,
                                          ProjectVector::VectorTypeEnum type) const;
    bool Parse(char const *text, std::string &source, std::string &name, int &first, unsigned long &second) const;

    NCProject const *m_project;
};

} // namespace ProjectDataUtilities
