#include "building/ProjectDataBuilder.h"
#include "building/Transforms_internal.h"
#include "platform/containers/Missing.h"
#include "platform/project/NCProject.h"
#include "platform/project/ProjectDataWavelet.h"
#include "platform/text/Translate.h"
#include "selection/SelectDataSeriesData.h"

#include <boost/format.hpp>

#include <algorithm>
#include <cmath>

// Transforms that replace the items along the axis: by lags, by frequencies, by wavelet coefficients.

namespace ProjectDataUtilities {

namespace {

std::string Labelled(char const *format, std::string const &row) {
    return (boost::format(format) % row).str();
}

// A row for each signal, by transform(values, result), and the count of its columns above them.
template <typename Transform>
TablePtr OfEachSignal(TransformInput const &input, ColumnIDs columns, char const *label, std::string const &axisTitle,
                      double start, double step, Transform transform) {
    NCDataMatrix<float> matrix;
    std::vector<std::string> labels;
    for (int row = input.FirstRow(); row <= input.data.Rows(); ++row) {
        NCDataVector<float> result;
        transform(input.data.GetMatrix().Row(row), result);
        matrix.AppendRow(result.Values());
        labels.push_back(Labelled(label, input.data.GetRowName(row, 1)));
    }
    auto table =
        std::make_unique<ProjectData>(Labels(labels, input.data.GetProject()), std::move(columns), std::move(matrix));
    return input.hasAxis ? BelowCount(axisTitle, *table, start, step) : std::move(table);
}

int LagsOf(TransformationData const &settings, int columns) {
    return std::min(columns, settings.GetNumLags());
}

ColumnIDs LagColumns(int first, int last, ProjectPtr const &project) {
    ColumnIDs::IntegerList lags(last - first + 1);
    std::ranges::generate(lags.MutableValues(), [lag = first]() mutable { return lag++; });
    return ColumnIDs(std::move(lags), project, 0);
}

double FrequencyStep(TransformationData const &settings, int segment) {
    int const sampling = settings.GetSamplingFrequency();
    return sampling == 0 ? 1.0 : static_cast<double>(sampling) / segment;
}

std::string FrequencyTitle(TransformationData const &settings) {
    return settings.GetSamplingFrequency() == 0 ? translate("Frequency") : translate("Frequency (Hz)");
}

ColumnIDs FrequencyColumns(TransformationData const &settings, int segment, ProjectPtr const &project) {
    NCStringVector labels;
    for (int k = 0; k <= segment / 2; ++k) {
        char label[32];
        std::snprintf(label, sizeof(label), "%g", k * FrequencyStep(settings, segment));
        labels.push_back(label);
    }
    return ColumnIDs(std::move(labels), FrequencyTitle(settings), project, ColumnIDs::Strings, 0);
}

void ToDecibel(NCDataVector<float> &powers) {
    for (float &power : powers.MutableValues())
        power = power > 0 ? static_cast<float>(10.0 * std::log10(power)) : missingValue;
}

ColumnIDs CoefficientColumns(int number, ProjectPtr const &project) {
    NCStringVector labels;
    for (int coefficient = 1; coefficient <= number; ++coefficient)
        labels.push_back((boost::format("WC_%1%", std::locale::classic()) % coefficient).str());
    return ColumnIDs(std::move(labels), translate("Wavelet Coefficient"), project, ColumnIDs::Strings, 0);
}

// Of rows, one after the other, whose line is told.
class RowTransformer {
public:
    RowTransformer(WaveletOptions const &options, long double &lo, long double &hi)
        : m_options(options),
          m_filter(Wavelet::GetDecompositionFilter(options.GetWaveletFunction(), options.GetWaveletOrder())), m_lo(lo),
          m_hi(hi) {}
    ~RowTransformer() { Wavelet::WaveletFilters::CleanUp(); }
    RowTransformer(RowTransformer const &) = delete;
    RowTransformer &operator=(RowTransformer const &) = delete;

    void operator()(std::span<float const> row, NCDataVector<float> &result) const {
        Wavelet::ForwardTransform(row, m_filter, m_options.GetDetrend(), m_lo, m_hi, result, m_options.GetUsePadding());
    }

private:
    WaveletOptions const &m_options;
    Wavelet::Filter m_filter;
    long double &m_lo;
    long double &m_hi;
};

TablePtr CoefficientsOf(TransformInput const &input, TransformationData const &settings, long double &lo,
                        long double &hi) {
    WaveletOptions const &options = settings.GetWaveletOptions();
    RowTransformer const transformer(options, lo, hi);
    int const length = Wavelet::TransformedLength(input.data.Columns(), options.GetUsePadding());
    return OfEachSignal(input, CoefficientColumns(length, input.data.GetProject()),
                        translate("Wavelet Coefficient(%1%)").c_str(), "Num", 0.0, 1.0, std::cref(transformer));
}

} // namespace

int SegmentOf(TransformationData const &settings, int columns) {
    constexpr int least = 16;
    int segment = settings.GetSegmentSize();
    while (columns < segment)
        segment /= 2;
    return segment < least ? 0 : segment;
}

TablePtr AutoCorrelationOf(TransformInput const &input, TransformationData const &settings) {
    int const lags = LagsOf(settings, input.data.Columns());
    return OfEachSignal(input, LagColumns(0, lags, input.data.GetProject()), "AutoCorrelation(%1%)", "Lag", 0.0, 1.0,
                        [&](std::span<float const> row, NCDataVector<float> &result) {
                            FFT::AutoCorrelation(row, settings.GetDetrendMode(), lags, result);
                        });
}

ColumnIDs AutoCorrelationColumns(ColumnIDs const &columns, TransformationData const &settings) {
    return LagColumns(0, LagsOf(settings, columns.Size()), columns.GetProject());
}

TablePtr CrossCorrelationOf(TransformInput const &input, TransformationData const &settings) {
    ProjectVectorData const &cross = settings.GetCrossVector();
    ProjectVector const *const vector = cross.GetProjectVector();
    TablePtr const read = vector ? ReadVector(input.selection, cross, vector->GetType()) : nullptr;
    TablePtr const other = read ? read->UseOnly(input.data.GetColumnIDs()) : nullptr;
    if (!other || other->Columns() != input.data.Columns())
        throw ProjectDataBuilder::ProjectDataBuilderError(
            ExceptionMessage::translate("{1} can not be used for cross correlation with current data.") %
                cross.GetFormattedName(input.selection.GetDefaultSelection().get(),
                                       input.selection.GetPreferredTitleID(false), false),
            NCError::Error);
    int const lags = LagsOf(settings, input.data.Columns());
    return OfEachSignal(input, LagColumns(-lags, lags, input.data.GetProject()), "CrossCorrelation(%1%)", "Lag", -lags,
                        1.0, [&](std::span<float const> row, NCDataVector<float> &result) {
                            FFT::CrossCorrelation(other->GetMatrix().Row(1), row, settings.GetDetrendMode(), lags,
                                                  result);
                        });
}

ColumnIDs CrossCorrelationColumns(ColumnIDs const &columns, TransformationData const &settings) {
    int const lags = LagsOf(settings, columns.Size());
    return LagColumns(-lags, lags, columns.GetProject());
}

TablePtr PowerSpectrumOf(TransformInput const &input, TransformationData const &settings) {
    int const segment = SegmentOf(settings, input.data.Columns());
    if (segment == 0)
        return nullptr;
    bool const inDecibel = settings.HasAmplitudeInDecibel();
    return OfEachSignal(input, FrequencyColumns(settings, segment, input.data.GetProject()),
                        inDecibel ? "PowerSpectrum(%1%) (dB)" : "PowerSpectrum(%s)", FrequencyTitle(settings), 0.0,
                        FrequencyStep(settings, segment), [&](std::span<float const> row, NCDataVector<float> &result) {
                            FFT::PowerSpectrum(row, segment, settings.IsOverlap(), settings.GetDetrendMode(),
                                               settings.GetScalingMode(), settings.GetWindowType(), result);
                            if (inDecibel)
                                ToDecibel(result);
                        });
}

ColumnIDs PowerSpectrumColumns(ColumnIDs const &columns, TransformationData const &settings) {
    int const segment = SegmentOf(settings, columns.Size());
    if (segment == 0)
        throw NCInternalError("ProjectDataBuilder::ToPowerSpectrumColumnIDs");
    return FrequencyColumns(settings, segment, columns.GetProject());
}

TablePtr WaveletCoefficientsOf(TransformInput const &input, TransformationData const &settings) {
    long double lo = 0, hi = 0;
    return CoefficientsOf(input, settings, lo, hi);
}

ColumnIDs WaveletCoefficientColumns(ProjectData const &data, TransformationData const &settings) {
    return CoefficientColumns(Wavelet::TransformedLength(data.Columns(), settings.GetWaveletOptions().GetUsePadding()),
                              data.GetProject());
}

TablePtr WaveletStructureOf(TransformInput const &input, TransformationData const &settings,
                            NCDataVector<float> &energy) {
    long double lo = 0, hi = 0;
    TablePtr const coefficients = CoefficientsOf(input, settings, lo, hi);
    energy = Wavelet::CalcWCEnergy(coefficients->GetMatrix());
    BoolVector const &selected = settings.GetWCEnergySelection();
    if (selected.Size() == 0)
        return nullptr;
    // An entry for each scale.
    auto const scales = std::make_unique<bool[]>(static_cast<std::size_t>(energy.Size()));
    for (int scale = 1; scale <= std::min(energy.Size(), selected.Size()); ++scale)
        scales[static_cast<std::size_t>(scale - 1)] = selected[scale];
    return ProjectDataWavelet(*input.data.GetProject())
        .GetWaveletStructure(coefficients->GetMatrix()[1], &settings.GetWaveletOptions(), scales.get(), energy,
                             &input.data.GetColumnIDs(), lo, hi);
}

} // namespace ProjectDataUtilities
