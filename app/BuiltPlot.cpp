#include "app/BuiltPlot.h"

#include "app/ControlChartScript.h"
#include "app/Decorations.h"
#include "app/DistributionScript.h"
#include "app/Failure.h"
#include "app/Gnuplot.h"
#include "app/Marks.h"
#include "app/Reason.h"
#include "app/SpectralScript.h"
#include "app/TableWriter.h"
#include "app/TransformOptions.h"
#include "building/CreateProjectData.h"
#include "utilities/DefaultSelection.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace {

using Axis = ProjectVector::VectorTypeEnum;
using ProjectDataUtilities::CreateProjectData;

// Which of the series the builder left out.
NCError MissingSeries(engine::Project const &project, SelectDataSeriesData const &selection, ProjectData const *table) {
    ProjectUtilities::DefaultSelection const &defaults = *selection.GetDefaultSelection();
    for (ProjectVectorData const *const data : selection.VectorsInUse()) {
        std::string const text = data->ToStdString(&defaults);
        if (!data->GetProjectVector()->IsNumVector() &&
            !CreateProjectData(project).GetProjectData(text, selection.GetVectorType()))
            return GivesNothing(project, text, *data, defaults);
    }
    return Problem(ExceptionMessage::translate("Of {1} series {2} have an item in common.") %
                   static_cast<int>(selection.VectorsInUse().size()) % (table ? table->Rows() : 0));
}

// With those labels in place of those of the statistics.
TablePtr Labelled(ProjectData const &table, SelectDataSeriesData const &selection) {
    return std::make_unique<ProjectData>(RowIDs(NCStringVector(LabelsOf(selection)), table.GetProject()),
                                         table.GetColumnIDs(), table.GetMatrix());
}

// By what each row of the table is asked.
std::vector<DrawnSeries> RowsOf(SelectDataSeriesData const &selection) {
    std::vector<DrawnSeries> rows;
    for (ProjectVectorData const *const data : selection.VectorsInUse()) {
        std::string const text = data->ToStdString(selection.GetDefaultSelection().get());
        rows.push_back({data->GetProjectVector(), text.substr(std::min(text.find(' '), text.size() - 1) + 1)});
    }
    return rows;
}

bool IsTransformed(SelectDataSeriesData const &selection) {
    return selection.GetControlChartData().IsControlChart() ||
           selection.GetTransformationData().GetTransformationType() != TransformationData::NoTransformation;
}

} // namespace

void AddPictureSettings(CLI::App &command, PictureSettings &settings) {
    command.add_flag("--probability", settings.isProbability,
                     "The picture of a series against normal probabilities, such as of residuals");
    AddColourOption(command, settings.color);
    AddPictureOptions(command, settings.style);
}

void CheckPicture(PictureSettings const &settings, SelectDataSeriesData const &selection, bool isDrawn) {
    if (settings.isProbability &&
        (!isDrawn || selection.GetMode() != SelectDataSeriesData::Normal || selection.NumberOfSeries() != 1))
        throw UsageError("--probability shows one series, without --x and --y, in a picture: --plot FILE");
    if (!settings.color.empty() && (settings.isProbability || IsTransformed(selection)))
        throw UsageError("--color is for pictures without --chart, --transform and --probability");
}

std::vector<std::string> LabelsOf(SelectDataSeriesData const &selection) {
    int const alias = selection.GetPreferredTitleID(false);
    std::vector<std::string> labels;
    ProjectUtilities::DefaultSelection const *const defaults = selection.GetDefaultSelection().get();
    for (ProjectVectorData const *data : selection.VectorsInUse()) {
        // An identifier is named by its own heading.
        bool const isIdentifier = data->GetProjectVector()->GetNumberType() == ProjectVector::NumberIdentifier;
        labels.push_back(data->GetProjectVectorName(
            defaults, false, "", isIdentifier ? static_cast<int>(data->GetNumber(defaults)) : alias, false));
    }
    return labels;
}

BuiltPlot::BuiltPlot(boost::shared_ptr<engine::Project> project, SelectDataSeriesData const &selection, bool isDrawn)
    : m_project(std::move(project)), m_selection(selection), m_builder(&selection) {
    m_builder.SetIsList(!isDrawn || selection.GetControlChartData().IsControlChart());
    m_builder.SetTransformData(false);
    TablePtr const table(m_builder.Build());
    if (!table || table->Rows() != static_cast<int>(selection.VectorsInUse().size()))
        throw MissingSeries(*m_project, selection, table.get());
    m_plain = Labelled(*table, selection);
    m_transformed.reset(m_builder.Transform(m_plain.get()));
    if (IsTransformed(selection) && !m_transformed)
        throw NothingTransformed(selection);
    // What is stretched or transformed is no date any more.
    if (selection.GetScaleType() == SelectDataSeriesData::ScaleNone && !m_transformed)
        m_dates = TableDates(*m_project, RowsOf(selection), *m_plain);
}

std::string BuiltPlot::Script(PictureSettings const &settings) const {
    Axis const axis = m_selection.GetVectorType();
    PlotStyle style = settings.style;
    style.dates = m_dates;
    std::string const name = m_plain->GetRowName(1);
    if (settings.isProbability)
        return ProbabilityScript(m_transformed ? *m_transformed : *m_plain, name, style);
    if (ControlChart const *const chart = m_builder.GetControlChart()) {
        style.marked = MarkedAmong(m_transformed->GetColumnIDs());
        return ControlChartScript(*chart, m_selection.GetControlChartData(), m_transformed->GetColumnIDs(), axis, name,
                                  style);
    }
    TransformationData const &transformation = m_selection.GetTransformationData();
    if (transformation.GetTransformationType() == TransformationData::Histogram)
        return HistogramScript(m_plain->GetMatrix()[1], name, style);
    if (transformation.GetTransformationType() == TransformationData::Dotplot) {
        float lo = 0, hi = 0;
        TablePtr const dots(m_builder.ToDotplotProjectData(false, m_plain.get(), transformation, lo, hi));
        return DotPlotScript(*dots, lo, hi, name, style);
    }
    switch (transformation.GetTransformationType()) {
    case TransformationData::AutoCorrelation:
    case TransformationData::CrossCorrelation:
        return CorrelationScript(*m_transformed, m_plain->Columns(), style);
    case TransformationData::PowerSpectrum:
        return SpectrumScript(*m_transformed, transformation.HasAmplitudeInDecibel(), style);
    case TransformationData::WaveletCoefficients:
        return CoefficientScript(*m_transformed, style);
    case TransformationData::WaveletStructure:
        return StructureScript(*m_transformed, *m_builder.GetWCEnergy(), axis, style);
    default:
        break;
    }
    std::vector<DrawnSeries> const rows = RowsOf(m_selection);
    ProjectData const &built = m_transformed ? *m_transformed : *m_plain;
    style.isScatter = m_selection.GetMode() != SelectDataSeriesData::Normal && built.Rows() == 2;
    TablePtr const ordered = style.isScatter || m_transformed ? nullptr : InDrawnOrder(*m_project, rows, axis, built);
    ProjectData const &table = ordered ? *ordered : built;
    style.marked = MarkedAmong(table.GetColumnIDs());
    if (m_transformed)
        return PlotScript(table, axis, style);
    style.colouring = ReadColouring(m_project, settings.color, rows, axis, table.GetColumnIDs());
    Decorate(*m_project, rows, axis, m_selection.GetExtraOptions().significance, table, style);
    return PlotScript(table, axis, style);
}

void AddPlotOutput(CLI::App &command, PlotOutput &output) {
    AddFormatOption(command, output.format);
    command.add_option("-o,--output", output.file, "The file for the table, instead of standard output");
    command.add_option("--plot", output.picture, "Draw into a file named .svg or .png");
}

void CheckPlotOutput(PlotOutput const &output, std::filesystem::path const &project) {
    if (output.IsDrawn())
        IsPng(output.picture);
    if (!output.file.empty())
        CheckApart(output.file, project);
}

void WriteTable(BuiltPlot const &plot, PlotOutput const &output, std::filesystem::path const &project) {
    Output file(output.file, project);
    WriteTable(plot.Table(), plot.Dates(), output.format, file);
    file.Finish();
}
