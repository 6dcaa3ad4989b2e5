#pragma once

#include "platform/containers/NCDataVector.h"
#include "platform/export.h"
#include "platform/identity/ColumnIDs.h"
#include "platform/identity/ProjectData.h"
#include "platform/text/Exception.h"
#include "specification/ProjectVectorData.h"

#include <memory>
#include <vector>

class ControlChart;
class SelectDataSeriesData;
class TableJoin;
class TransformationData;

namespace ProjectDataUtilities {

// Makes one table of a selection: a row for each axis and series, a column for each item that they have in common. The
// steps: one table for each text of the selection; all joined; the columns written back into the selection; the items
// that are not selected left out; transformation, scaling and control chart.
//
// The X axis is kept between builds, so that a change of a series does not read it again; a builder does not notice
// that the project behind an unchanged axis has changed. A control chart is kept until there is another selection or
// chart: its limits stay in force. Not for several threads: a build changes what is kept.
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
    ~ProjectDataBuilder();

    // Forgets the control chart.
    void SetDataSeriesData(SelectDataSeriesData *selection);
    // Keeps a copy; null forgets the one that is kept.
    void SetControlChartData(ControlChart const *chart);
    // The one that the last build has shown; null when there is none.
    ControlChart const *GetControlChart() const { return m_controlChart.get(); }
    // A list shows the constant of a regression, a plot does not.
    void SetIsList(bool isList) { m_isList = isList; }
    void SetTransformData(bool transform) { m_transformData = transform; }
    bool IsTransformData() const { return m_transformData; }

    // The caller owns the table. Null when nothing could be read. ProjectDataBuilderError when the vectors have no item
    // in common, when none is selected, and when the X axis alone is left.
    ProjectData *Build() const;
    // The columns of that table, without reading numbers and whatever is selected. A chart of single values is told by
    // its subgroups of one, except the plain one of Shewhart, though its table keeps the items.
    // NCInternalError for a spectrum over fewer than 16 items.
    ColumnIDs BuildColumnIDs() const;
    // Transformation and control chart as a new table that the caller owns, or null when there are none, or none that
    // the data allow; scaling changes the given table where there is no transformation. The plot of a chart has row 1
    // of the data as its first row, an axis or not, and shows the row behind it, if there is one; a list has the rows
    // of the chart alone. NCError for an EWMA of subgroups of more than half of the items.
    ProjectData *Transform(ProjectData *data) const;

    // How much of the last wavelet structure each scale has, in percent; null when there was none.
    NCDataVector<float> const *GetWCEnergy() const { return m_energy.get(); }

    // A histogram, and a dot plot with the ends of its dots, of the first row of a table, or of the second one with
    // `axis`, whatever the selection and the settings. Null when the row has no value, or is not there. The caller owns
    // the table.
    ProjectData *ToHistogramProjectData(bool axis, ProjectData const *data, TransformationData const &settings) const;
    ProjectData *ToDotplotProjectData(bool axis, ProjectData const *data, TransformationData const &settings, float &lo,
                                      float &hi) const;

private:
    // Nothing is added where the X axis is kept and gives nothing.
    void Read(std::list<std::string> const &texts, TableJoin &join) const;
    void HideConstant(ColumnIDs const &columns) const;
    std::unique_ptr<ProjectData> ChartOf(ProjectData const &data) const;
    void Scale(ProjectData &data) const;
    void ScaleBySpecifications(ProjectData &data) const;
    void ScaleToSpan(ProjectData &data) const;
    ProjectVectorData const *SpecificationOf(int row) const;

    SelectDataSeriesData const *m_selection;
    mutable ProjectVectorData m_cachedAxis;
    mutable TablePtr m_cachedAxisData;
    mutable std::unique_ptr<ControlChart> m_controlChart;
    mutable std::unique_ptr<NCDataVector<float>> m_energy;
    bool m_isList = false;
    bool m_transformData = true;
};

} // namespace ProjectDataUtilities
