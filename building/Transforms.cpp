#include "building/Transforms_internal.h"

#include "building/CreateProjectData.h"
#include "building/ProjectDataBuilder.h"
#include "catalogue/ProjectVectorHandler.h"
#include "platform/text/Translate.h"
#include "selection/SelectDataSeriesData.h"
#include "utilities/DefaultSelection.h"

#include <boost/format.hpp>

namespace ProjectDataUtilities {

namespace {

bool HasAxis(SelectDataSeriesData const &selection, TransformationData::TransformationType type) {
    if ((selection.GetMode() & SelectDataSeriesData::AxisX) == 0)
        return false;
    ProjectVector const *const vector = selection.GetXAxis().GetProjectVector();
    return (vector && vector->IsNumVectorLike()) || type == TransformationData::SubtractVector ||
           type == TransformationData::SubtractAndDivideVector;
}

// The first series once more, for what its columns alone do not tell; null when there is none.
TablePtr FirstSeries(SelectDataSeriesData const &selection) {
    return selection.NumberOfSeries() > 0 ? ReadVector(selection, selection.GetSeries(1), selection.GetVectorType())
                                          : nullptr;
}

} // namespace

TablePtr Transformed(SelectDataSeriesData const &selection, ProjectData const &data,
                     std::unique_ptr<NCDataVector<float>> &energy) {
    TransformationData const &settings = selection.GetTransformationData();
    TransformationData::TransformationType const type = settings.GetTransformationType();
    TransformInput const input{selection, data, HasAxis(selection, type)};
    switch (type) {
    case TransformationData::AutoCorrelation:
        return AutoCorrelationOf(input, settings);
    case TransformationData::CrossCorrelation:
        return CrossCorrelationOf(input, settings);
    case TransformationData::PowerSpectrum:
        return PowerSpectrumOf(input, settings);
    case TransformationData::WaveletCoefficients:
        return WaveletCoefficientsOf(input, settings);
    case TransformationData::WaveletStructure:
        energy = std::make_unique<NCDataVector<float>>();
        return WaveletStructureOf(input, settings, *energy);
    case TransformationData::SubtractVector:
        return SubtractVector(input, settings);
    case TransformationData::SubtractAndDivideVector:
        return SubtractAndDivideVector(input, settings);
    case TransformationData::EWMA:
        return EWMAOf(input, settings);
    case TransformationData::Histogram:
        return HistogramOf(data, input.hasAxis);
    case TransformationData::R2X:
        return ScaledByR2X(input);
    case TransformationData::Normalize:
        return Normalized(input);
    case TransformationData::Dotplot: {
        float lo, hi;
        return DotPlotOf(data, input.hasAxis, lo, hi);
    }
    default:
        return nullptr;
    }
}

ColumnIDs TransformedColumns(SelectDataSeriesData const &selection, ColumnIDs const &columns) {
    TransformationData const &settings = selection.GetTransformationData();
    switch (settings.GetTransformationType()) {
    case TransformationData::AutoCorrelation:
        return AutoCorrelationColumns(columns, settings);
    case TransformationData::CrossCorrelation:
        return CrossCorrelationColumns(columns, settings);
    case TransformationData::PowerSpectrum:
        return PowerSpectrumColumns(columns, settings);
    case TransformationData::WaveletCoefficients:
    case TransformationData::WaveletStructure: {
        TablePtr const table = FirstSeries(selection);
        return table ? WaveletCoefficientColumns(*table, settings) : ColumnIDs(selection.GetProject());
    }
    case TransformationData::EWMA:
        return EWMAColumns(columns, settings);
    case TransformationData::Histogram: {
        TablePtr const table = FirstSeries(selection);
        return table ? HistogramColumns(*table) : ColumnIDs(selection.GetProject());
    }
    default:
        return columns;
    }
}

TablePtr ReadVector(SelectDataSeriesData const &selection, ProjectVectorData const &data,
                    ProjectVector::VectorTypeEnum type) {
    return CreateProjectData(*selection.GetProject())
        .GetProjectData(data.ToStdString(selection.GetDefaultSelection().get()), type);
}

ProjectVectorData WithVector(ProjectVectorData data, char const *name, ProjectVector::VectorTypeEnum type) {
    ProjectVectorHandler const &handler = *ProjectVectorHandler::Instance();
    auto const found = handler.Find(name, type, ProjectVector::DataTypeModel, data.GetModelInfo());
    if (found != handler.end())
        data.SetProjectVector(*found);
    return data;
}

RowIDs Labels(std::vector<std::string> const &labels, ProjectPtr const &project) {
    NCStringVector names;
    for (std::string const &label : labels)
        names.push_back(label);
    return RowIDs(names, project);
}

TablePtr BelowCount(std::string const &title, ProjectData const &table, double start, double step) {
    NCDataMatrix<float> matrix(1, table.Columns());
    double count = start;
    for (float &value : matrix.MutableRow(1)) {
        value = static_cast<float>(count);
        count += step;
    }
    auto counted =
        std::make_unique<ProjectData>(RowIDs(title, table.GetProject()), table.GetColumnIDs(), std::move(matrix));
    counted->InterSection(table);
    return counted;
}

ColumnIDs SubgroupColumns(int number, ProjectPtr const &project) {
    NCStringVector labels;
    for (int subgroup = 1; subgroup <= number; ++subgroup)
        labels.push_back((boost::format(translate("Subgroup %1%"), std::locale::classic()) % subgroup).str());
    return ColumnIDs(std::move(labels), translate("Subgroups"), project, ColumnIDs::Strings, 0);
}

std::vector<std::vector<int>> SubgroupsOf(int columns, int size) {
    std::vector<std::vector<int>> groups(1);
    for (int column = 1; column <= columns; ++column) {
        groups.back().push_back(column);
        if (column % size == 0)
            groups.emplace_back();
    }
    return groups;
}

TablePtr OverSubgroups(TransformInput const &input, RowIDs labels, NCDataMatrix<float> matrix, int size) {
    ProjectData const &data = input.data;
    if (size < 2) {
        if (input.hasAxis) {
            RowIDs all(data.GetRowIDs(), 1);
            all.Append(labels);
            labels = std::move(all);
            matrix.InsertRow(1, data.GetMatrix().Row(1));
        }
        return std::make_unique<ProjectData>(std::move(labels), data.GetColumnIDs(), std::move(matrix));
    }
    auto table = std::make_unique<ProjectData>(std::move(labels), SubgroupColumns(matrix.Columns(), data.GetProject()),
                                               std::move(matrix));
    if (input.hasAxis)
        table = BelowCount(translate("Subgroups"), *table, 1.0, 1.0);
    table->AddOriginalColumnIDs(data.GetColumnIDs(), SubgroupsOf(data.Columns(), size));
    return table;
}

} // namespace ProjectDataUtilities
