#pragma once

#include "platform/containers/NCDataVector.h"
#include "platform/containers/NCIntegralVector.h"
#include "platform/containers/NCStringVector.h"
#include "platform/forward.h"
#include "platform/identity/BatchUtilities.h"
#include "platform/identity/ColumnTerm.h"

#include <iosfwd>
#include <list>
#include <optional>
#include <string>
#include <vector>

class ColumnPick;

// Identity of the columns of a table: which items they are, not how they are called. Columns count from 1.
//
// A copy shares its storage until one of both is changed, and two objects that share storage are equal without a walk.
// Labels are made when they are asked for, from the project's identifiers; the project is held weakly, and without it
// an item is labelled by its number.
class DATASERIES_API ColumnIDs {
public:
    enum Source : int {
        None = 0,
        Variables = 1,
        Terms = 2,
        Observations = 4,
        Integers = 8, // lags
        Strings = 32,
        AlignedPoints = 64, // maturities
        Batches = 256,      // by name
        Floats = 512        // bins
    };

    using Numbers = NCIntegralVector<unsigned long, 0>;
    using IntegerList = NCIntegralVector<int, -99>;
    using Positions = NCIntegralVector<int, -99>;

    ColumnIDs() = default;
    // No columns.
    explicit ColumnIDs(ProjectPtr const &project);
    // Variables or observations by number. `owner` is the model or data set that they come from, 0 for none; `aliases`
    // the identifier columns that label them, the preferred one first (empty: all of the project, the primary first).
    ColumnIDs(Source kind, Numbers numbers, ProjectPtr const &project, int owner, std::vector<int> aliases = {});
    ColumnIDs(IntegerList integers, ProjectPtr const &project, int owner);
    // `title` names what the columns are.
    ColumnIDs(NCStringVector strings, std::string title, ProjectPtr const &project, Source kind, int owner);
    ColumnIDs(NCDataVector<float> floats, std::string title, ProjectPtr const &project, Source kind, int owner);
    ColumnIDs(ColumnTerms terms, ProjectPtr const &project, int owner);

    Source GetSource() const;
    int GetOwner() const;
    std::string const &GetTitle() const;
    int Size() const;
    void Clear();

    // Label of a column in the row-th of its identifier columns (1 is the preferred one; for other kinds than
    // variables, terms and observations there is only one). Empty outside.
    std::string GetName(int column, int row = 1) const;
    // How many identifier columns label the columns, and what the row-th is called.
    int SizeRows() const;
    std::string GetRowTitle(int row) const;

    // The number of a variable or observation; of a term with one factor its mother; of an integer column that integer;
    // the position for other kinds. 0 outside.
    std::uint32_t GetColumnID(int column) const;
    std::unique_ptr<Numbers> GetColumnIDs() const;
    ColumnTerm GetColumnTerm(int column) const;
    std::unique_ptr<ColumnTerms> GetColumnTerms() const;
    // The maturity of an aligned point, the value of a bin or an integer; for variables and observations their row-th
    // label as a number. -99.0 when there is none.
    float GetFloatValue(int column, int row = 1) const;

    ProjectPtr GetProject() const { return m_project.lock(); }
    void SetProject(ProjectPtr const &project) { m_project = project; }

    // Takes out, or keeps, the columns at these 1-based positions.
    void Remove(Positions const &positions);
    void Reduce(Positions const &positions);

    BatchInfoVector const &GetBatches() const;
    void SetBatches(BatchInfoVector batches);
    // Appends the batches that the other knows and this one doesn't.
    void MergeBatches(ColumnIDs const &other);

    // Adds the columns of `ids`, or those at the listed 1-based positions of it, that are missing here. Columns of
    // another kind take the place of all that were here, since one object holds one kind.
    void UpdateSelected(ColumnIDs const &ids, std::list<int> const *selected = nullptr);

    // Positions, here and there, of the columns that the other list lacks, and of those that are only there.
    void Difference(ColumnIDs const &other, Positions &here, Positions &there) const;

    // 0 when nothing is common (also for different kinds), 2 when the columns are the same in the same order, else 1.
    // `here` and `there` get the matching positions, in the order of this list. Linear in the columns. Where a flag of
    // 1 is given the positions are left out when the columns are the same.
    int InterSection(ColumnIDs const &other, Positions &here, Positions &there, int flag = 0) const;

    // The same kind of columns, the same items in the same order.
    bool operator==(ColumnIDs const &other) const;

    // Binary form, without the project: the reader sets it. Reading throws VqStreamError when the stream is damaged,
    // and then leaves the columns as they were.
    friend DATASERIES_API std::ostream &operator<<(std::ostream &stream, ColumnIDs const &columns);
    friend DATASERIES_API std::istream &operator>>(std::istream &stream, ColumnIDs &columns);

private:
    friend class ProjectData;
    friend class TableJoin;

    struct Content;
    using Pick = std::optional<ColumnPick>; // nothing: all, in their order

    ColumnIDs(ProjectPtr const &project, Content content);
    Content const &Read() const;
    Content &Write();

    // InterSection by picks.
    int Match(ColumnIDs const &other, Pick &here, Pick &there) const;
    // Keeps the columns that the other list has too, if there are any. Answers and picks are those of Match.
    int KeepCommon(ColumnIDs const &other, Pick &here, Pick &there);
    void Reduce(ColumnPick const &pick);

    boost::shared_ptr<Content> m_content; // null stands for none
    boost::weak_ptr<NCProject const> m_project;
};
