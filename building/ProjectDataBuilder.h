#pragma once

#include "platform/containers/NCDataVector.h"
#include "platform/export.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/identity/ProjectData.h"
#include "platform/text/Exception.h"
#include "specification/ProjectVectorData.h"

#include <memory>
#include <vector>

class SelectDataSeriesData;
class TableJoin;

namespace ProjectDataUtilities {

// Makes one table of a selection: a row for each axis and series, a column for each item that they have in common. The
// steps: one table for each text of the selection; all joined; the columns written back into the selection; the items
// that are not selected left out; transformation, scaling and control chart.
//
// The X axis is kept between builds, so that a change of a series does not read it again; a builder does not notice
// that the project behind an unchanged axis has changed. Not for several threads: a build changes what is kept.
class DATASERIES_API ProjectDataBuilder {
public:
    // A build that can't be completed.
    class DATASERIES_API ProjectDataBuilderError : public NCError {
    public:
        using NCError::NCError;
    };

    // The selection is borrowed; a build writes its columns, and hides the constant of a regression in it.
    explicit ProjectDataBuilder(SelectDataSeriesData const *selection);
    ProjectDataBuilder(ProjectDataBuilder const &) = delete;
    ProjectDataBuilder &operator=(ProjectDataBuilder const &) = delete;

    void SetDataSeriesData(SelectDataSeriesData *selection) { m_selection = selection; }
    // A list shows the constant of a regression, a plot does not.
    void SetIsList(bool isList) { m_isList = isList; }
    void SetTransformData(bool transform) { m_transformData = transform; }
    bool IsTransformData() const { return m_transformData; }

    // The caller owns the table. Null when nothing could be read. ProjectDataBuilderError when the vectors have no item
    // in common, when none is selected, and when the X axis alone is left.
    ProjectData *Build() const;
    // The columns of that table, without reading numbers and whatever is selected.
    // Transformations and control charts are not available: asking for one is a ProjectDataBuilderError everywhere.
    ColumnIDs BuildColumnIDs() const;
    // Transformation and control chart as a new table that the caller owns, or null when there are none; scaling
    // changes the given table where there is no transformation.
    ProjectData *Transform(ProjectData *data) const;

private:
    // Nothing is added where the X axis is kept and gives nothing.
    void Read(std::list<std::string> const &texts, TableJoin &join) const;
    void HideConstant(ColumnIDs const &columns) const;
    void RefuseTransformation() const;
    void Scale(ProjectData &data) const;
    void ScaleBySpecifications(ProjectData &data) const;
    void ScaleToSpan(ProjectData &data) const;
    ProjectVectorData const *SpecificationOf(int row) const;

    SelectDataSeriesData const *m_selection;
    mutable ProjectVectorData m_cachedAxis;
    mutable TablePtr m_cachedAxisData;
    bool m_isList = false;
    bool m_transformData = true;
};

} // namespace ProjectDataUtilities
