#include "platform/project/ProjectDataWavelet.h"

#include "platform/project/NCProject.h"
#include "platform/text/Exception.h"

#include <algorithm>

namespace {

// The row that is left when all other scales are 0.
std::vector<float> RowOfScale(NCDataVector<float> const &coefficients, Wavelet::Filter const &filter, int scale,
                              int width, long double lo, long double hi) {
    auto const [first, end] = Wavelet::RangeOfScale(coefficients.Size(), scale);
    std::vector<float> alone(coefficients.size());
    std::copy(coefficients.begin() + first, coefficients.begin() + end, alone.begin() + first);
    std::vector<double> const values = Wavelet::InverseTransform(alone, filter);
    std::vector<float> row(static_cast<std::size_t>(width));
    for (int i = 0; i < width; ++i) {
        double const line = scale == 1 ? Wavelet::LineAt(lo, hi, i, width) : 0;
        row[static_cast<std::size_t>(i)] = ToStored(values[static_cast<std::size_t>(i)] + line);
    }
    return row;
}

} // namespace

TablePtr ProjectDataWavelet::GetWaveletStructure(NCDataVector<float> const &coefficients, WaveletOptions const *options,
                                                 bool const *selection, NCDataVector<float> const &energy,
                                                 ColumnIDs const *columns, long double lo, long double hi) const {
    int const scales = Wavelet::Scales(coefficients.Size());
    if (energy.Size() != scales || columns->Size() > coefficients.Size())
        throw NCInternalError("ProjectDataWavelet::GetWaveletStructure");
    Wavelet::Filter const filter =
        Wavelet::GetDecompositionFilter(options->GetWaveletFunction(), options->GetWaveletOrder());
    NCDataMatrix<float> rows;
    NCStringVector labels;
    for (int scale = 1; scale <= scales; ++scale)
        if (selection[scale - 1]) {
            rows.AppendRow(RowOfScale(coefficients, filter, scale, columns->Size(), lo, hi));
            labels.push_back("Scale " + std::to_string(scale));
        }
    if (rows.Rows() == 0)
        return nullptr;
    ProjectPtr const project = m_project.shared_from_this();
    ColumnIDs ids = *columns;
    ids.SetProject(project);
    return std::make_unique<ProjectData>(RowIDs(labels, project), std::move(ids), std::move(rows));
}
