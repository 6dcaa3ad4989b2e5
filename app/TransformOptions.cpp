#include "app/TransformOptions.h"

#include "app/Choice.h"
#include "app/Failure.h"
#include "app/SeriesSpecification.h"
#include "app/VariableOptions.h"
#include "utilities/DefaultSelection.h"

#include <cmath>

namespace {

using Type = TransformationData::TransformationType;

std::map<std::string, Type> const transformations{{"auto-correlation", TransformationData::AutoCorrelation},
                                                  {"cross-correlation", TransformationData::CrossCorrelation},
                                                  {"power-spectrum", TransformationData::PowerSpectrum},
                                                  {"wavelet-coefficients", TransformationData::WaveletCoefficients},
                                                  {"wavelet-structure", TransformationData::WaveletStructure},
                                                  {"subtract", TransformationData::SubtractVector},
                                                  {"subtract-divide", TransformationData::SubtractAndDivideVector},
                                                  {"ewma", TransformationData::EWMA},
                                                  {"histogram", TransformationData::Histogram},
                                                  {"r2x", TransformationData::R2X},
                                                  {"normalize", TransformationData::Normalize},
                                                  {"dot-plot", TransformationData::Dotplot}};

// "subtract:t:1": the name of a transformation, and what stands behind it.
std::pair<Type, std::string> ReadTransformation(std::string const &text) {
    std::size_t const colon = text.find(':');
    auto const found = transformations.find(text.substr(0, colon));
    if (found == transformations.end())
        throw UsageError("\"" + text +
                         "\" is no transformation: give auto-correlation, cross-correlation:VECTOR, power-spectrum, "
                         "wavelet-coefficients, wavelet-structure, subtract:VECTOR, subtract-divide:VECTOR,VECTOR, "
                         "ewma, histogram, dot-plot, r2x or normalize");
    return {found->second, colon == std::string::npos ? std::string() : text.substr(colon + 1)};
}

// "t:1", "Average:t:1": a vector along the items of the selection, or that of all aligned batches.
ProjectVectorData ReadOperand(boost::shared_ptr<engine::Project> const &project, std::string text,
                              SelectDataSeriesData const &selection) {
    ProjectUtilities::DefaultSelection const &defaults = *selection.GetDefaultSelection();
    for (auto const &[name, batch] : {std::pair("Average:", -1), std::pair("Std.Dev.:", 0)}) {
        if (!text.starts_with(name))
            continue;
        ProjectVectorData data = Specify(project, ReadVectorText(text.substr(std::string(name).size())),
                                         ProjectVector::VectorTypeAligned, defaults);
        data.batchIx = batch;
        return data;
    }
    return Specify(project, ReadVectorText(text), selection.GetVectorType(), defaults);
}

void Refuse(bool isGiven, char const *options, char const *where) {
    if (isGiven)
        throw UsageError(std::string(options) + " only with " + where);
}

void CheckPositive(std::optional<double> value, char const *option, double most = HUGE_VAL) {
    if (value && (!(*value > 0) || !(*value <= most) || !std::isfinite(*value)))
        throw UsageError(std::string(option) + " is no number above 0" + (most == 1 ? ", and 1 at most" : ""));
}

void CheckNumbers(TransformRequest const &request) {
    if (request.subgroup && *request.subgroup < 1)
        throw UsageError("--subgroup is no number of 1 or more");
    if (request.target && !std::isfinite(*request.target))
        throw UsageError("--target is no number");
    CheckPositive(request.stdDev, "--sd");
    CheckPositive(request.lambda, "--lambda", 1);
    CheckPositive(request.allowance, "--k");
    CheckPositive(request.interval, "--h");
}

bool IsCorrelation(Type type) {
    return type == TransformationData::AutoCorrelation || type == TransformationData::CrossCorrelation;
}
bool IsWavelet(Type type) {
    return type == TransformationData::WaveletCoefficients || type == TransformationData::WaveletStructure;
}

void CheckSpectralOptions(TransformRequest const &request, Type type) {
    bool const isSpectrum = type == TransformationData::PowerSpectrum;
    Refuse(request.detrend && !IsCorrelation(type) && !isSpectrum && !IsWavelet(type), "--detrend",
           "a correlation, a spectrum or wavelets");
    Refuse(request.lags && !IsCorrelation(type), "--lags", "a correlation");
    Refuse((request.segment || request.window || request.frequency || request.isOverlapping || request.isLinear ||
            request.isOfPeaks) &&
               !isSpectrum,
           "--segment, --window, --frequency, --overlap, --linear and --peaks", "--transform power-spectrum");
    Refuse((request.order || request.function || request.isUnpadded) && !IsWavelet(type),
           "--function, --order and --no-padding", "wavelets");
    Refuse(!request.scales.empty() && type != TransformationData::WaveletStructure, "--scales",
           "--transform wavelet-structure");
}

// Each option has something that reads it.
void CheckOptions(TransformRequest const &request, bool isEWMA) {
    using Chart = ControlChartData;
    bool const isShewhart = request.chart == Chart::Shewhart || request.chart == Chart::ShewhartAndEWMA;
    bool const isOfSpread = request.statistic && request.statistic != Chart::Mean;
    bool const averages = isEWMA || request.chart == Chart::EWMA || request.chart == Chart::ShewhartAndEWMA;
    Refuse(request.statistic && request.chart != Chart::Shewhart, "--statistic", "--chart shewhart");
    Refuse(request.spread && !isShewhart, "--spread", "--chart shewhart or shewhart-ewma");
    Refuse((request.allowance || request.interval) && request.chart != Chart::CUSUM, "--k and --h", "--chart cusum");
    Refuse(request.lambda && !averages, "--lambda", "an EWMA");
    Refuse(request.isForecast && (!averages || isEWMA), "--forecast", "--chart ewma or shewhart-ewma");
    Refuse(request.subgroup && request.chart == Chart::None && !isEWMA, "--subgroup", "--chart or --transform ewma");
    Refuse((request.target || request.stdDev) && (isOfSpread || (request.chart == Chart::None && !isEWMA)),
           "--target and --sd", "a chart of means, or --transform ewma");
}

// Charts and distributions show one row.
void CheckOneSeries(SelectDataSeriesData const &selection, char const *option) {
    if (selection.GetMode() != SelectDataSeriesData::Normal || selection.NumberOfSeries() != 1)
        throw UsageError(std::string(option) + " shows one series, without --x and --y");
}

ControlChartData ChartOf(TransformRequest const &request) {
    ControlChartData chart(request.isForecast ? ControlChart::Predictive : ControlChart::Filtered);
    chart.SetControlChartType(request.chart);
    chart.SetShewhartType(request.statistic.value_or(ControlChartData::Mean));
    bool const isOfRanges = request.statistic == ControlChartData::Range;
    chart.SetControlType(
        request.spread.value_or(isOfRanges ? ControlChart::MeanAndRange : ControlChart::MeanAndStdDev));
    chart.SetSubgroupSize(request.subgroup.value_or(1));
    chart.SetTarget(request.target.value_or(chart.GetTarget()));
    chart.SetStdDev(request.stdDev.value_or(chart.GetStdDev()));
    chart.SetLambda(request.lambda.value_or(chart.GetLambda()));
    chart.SetAllowance(request.allowance.value_or(chart.GetAllowance()));
    chart.SetDecisionInterval(request.interval.value_or(chart.GetDecisionInterval()));
    return chart;
}

void SetSpectral(TransformRequest const &request, SelectDataSeriesData const &selection, TransformationData &settings) {
    Type const type = settings.GetTransformationType();
    settings.SetDetrendMode(static_cast<FFT::DetrendMode>(request.detrend.value_or(settings.GetDetrendMode())));
    // As many as a quarter of the items has, unless told.
    int const items = selection.GetColumnIDs() ? selection.GetColumnIDs()->Size() : 0;
    settings.SetMaxLags(std::max(items, 1));
    settings.SetNumLags(request.lags.value_or(std::max(1, items / 4)));
    settings.SetSegmentSize(request.segment.value_or(settings.GetSegmentSize()));
    settings.SetWindowType(static_cast<FFT::DataWindowMode>(request.window.value_or(settings.GetWindowType())));
    settings.SetSamplingFrequency(request.frequency.value_or(settings.GetSamplingFrequency()));
    settings.SetOverlap(request.isOverlapping);
    settings.SetAmplitudeInDecibel(!request.isLinear);
    settings.SetScalingMode(request.isOfPeaks ? FFT::Peaks : FFT::Unbiased);
    WaveletOptions options = settings.GetWaveletOptions();
    options.SetWaveletFunction(request.function.value_or(options.GetWaveletFunction()));
    options.SetWaveletOrder(request.order.value_or(options.GetWaveletOrder()));
    if (IsWavelet(type) && request.detrend)
        options.SetDetrend(static_cast<Wavelet::DetrendMode>(*request.detrend));
    options.SetUsePadding(!request.isUnpadded);
    settings.SetWaveletOptions(options);
    constexpr int most = 32; // scales of a row of 2^31 values
    BoolVector scales(most);
    for (int scale = 1; scale <= most; ++scale)
        scales(scale) = request.scales.empty() || std::ranges::count(request.scales, scale) > 0;
    settings.SetWCEnergySelection(scales);
}

TransformationData TransformationOf(boost::shared_ptr<engine::Project> const &project, TransformRequest const &request,
                                    SelectDataSeriesData const &selection, Type type, std::string const &operands) {
    TransformationData settings;
    settings.SetTransformationType(type);
    settings.SetSampleSize(request.subgroup.value_or(1));
    settings.SetTarget(request.target.value_or(settings.GetTarget()));
    settings.SetStdDev(request.stdDev.value_or(settings.GetStdDev()));
    settings.SetLambda(request.lambda.value_or(settings.GetLambda()));
    SetSpectral(request, selection, settings);
    std::vector<std::string> const vectors = operands.empty() ? std::vector<std::string>() : NamesIn({operands});
    bool const hasOne = type == TransformationData::SubtractVector || type == TransformationData::CrossCorrelation;
    std::size_t const needed = hasOne ? 1 : type == TransformationData::SubtractAndDivideVector ? 2 : 0;
    if (vectors.size() != needed)
        throw UsageError("\"" + request.transformation + "\" names " + std::to_string(vectors.size()) +
                         " vectors in place of " + std::to_string(needed));
    // The same vector is correlated with.
    if (needed > 0)
        settings.GetSubtractVector() = ReadOperand(project, vectors[0], selection);
    if (needed > 1)
        settings.GetDivideVector() = ReadOperand(project, vectors[1], selection);
    return settings;
}

// An option that takes one of several words, by their places.
void AddWords(CLI::App &command, char const *name, std::optional<int> &value, std::vector<std::string> const &words,
              std::string const &help) {
    command
        .add_option_function<std::string>(
            name,
            [&value, words](std::string const &word) {
                value = static_cast<int>(std::ranges::find(words, word) - words.begin());
            },
            help)
        ->check(CLI::IsMember(words));
}

void AddSpectralOptions(CLI::App &command, TransformRequest &request) {
    AddWords(command, "--detrend", request.detrend, {"none", "mean", "linear"},
             "What is taken off a series before it is correlated, or made a\nspectrum or wavelets of (mean)");
    command.add_option("--lags", request.lags, "Lags of a correlation (a quarter of the items)")
        ->type_name("N")
        ->check(CLI::Range(0, 1000000));
    command.add_option("--segment", request.segment, "Values of a segment of a spectrum (16); 16 at least")
        ->type_name("N")
        ->check(CLI::Range(16, 100000000));
    command.add_flag("--overlap", request.isOverlapping, "Segments begin half a segment apart");
    AddWords(command, "--window", request.window, {"bartlett", "hanning", "welch"}, "Over each segment (hanning)");
    command.add_option("--frequency", request.frequency, "Values in a second (1); 0: frequencies have no unit")
        ->type_name("HZ")
        ->check(CLI::Range(0, 2000000000));
    command.add_flag("--linear", request.isLinear, "Powers of a spectrum as such, in place of decibels");
    command.add_flag("--peaks", request.isOfPeaks, "Powers that give a sine its a^2/2, in place of the variance");
    command
        .add_option_function<std::string>(
            "--function",
            [&request](std::string const &word) {
                request.function = word == "daubechies" ? Wavelet::Daubechies
                                   : word == "symmlet"  ? Wavelet::Symmlet
                                                        : Wavelet::Coiflet;
            },
            "Family of wavelets (daubechies)")
        ->check(CLI::IsMember(std::vector<std::string>{"daubechies", "symmlet", "coiflet"}));
    command.add_option("--order", request.order, "Of the family: 1 to 10, 4 to 9, or 1 to 2 (4)")
        ->type_name("N")
        ->check(CLI::Range(1, 10));
    command.add_flag("--no-padding", request.isUnpadded, "Wavelets of the items alone, not up to a power of two");
    command.add_option("--scales", request.scales, "Scales of a wavelet structure (all), the smooth part first")
        ->type_name("N,...")
        ->delimiter(',')
        ->check(CLI::Range(1, 32));
}

} // namespace

void AddTransformOptions(CLI::App &command, TransformRequest &request) {
    CLI::Option *const chart =
        AddChoice<ControlChartData::ControlChartType>(command, "--chart", request.chart,
                                                      {{"shewhart", ControlChartData::Shewhart},
                                                       {"ewma", ControlChartData::EWMA},
                                                       {"cusum", ControlChartData::CUSUM},
                                                       {"shewhart-ewma", ControlChartData::ShewhartAndEWMA}},
                                                      "The control chart of a series");
    command
        .add_option(
            "--transform", request.transformation,
            "auto-correlation, cross-correlation:VECTOR, power-spectrum,\nwavelet-coefficients, "
            "wavelet-structure, subtract:VECTOR,\nsubtract-divide:VECTOR,VECTOR, ewma, histogram, dot-plot, r2x\n"
            "or normalize")
        ->type_name("HOW")
        ->excludes(chart);
    command.add_option("--subgroup", request.subgroup, "Successive values that make a point of a chart or an EWMA (1)")
        ->type_name("N");
    command
        .add_option_function<std::string>(
            "--statistic",
            [&request](std::string const &word) {
                request.statistic = word == "mean"    ? ControlChartData::Mean
                                    : word == "range" ? ControlChartData::Range
                                                      : ControlChartData::StdDev;
            },
            "What a Shewhart chart shows of a subgroup (mean)")
        ->check(CLI::IsMember(std::vector<std::string>{"mean", "range", "sd"}));
    command
        .add_option_function<std::string>(
            "--spread",
            [&request](std::string const &word) {
                request.spread = word == "range" ? ControlChart::MeanAndRange : ControlChart::MeanAndStdDev;
            },
            "What the limits are estimated from (sd)")
        ->check(CLI::IsMember(std::vector<std::string>{"range", "sd"}));
    command.add_option("--target", request.target, "The centre of a chart (the mean)");
    command.add_option("--sd", request.stdDev, "The standard deviation within subgroups (estimated)");
    command.add_option("--lambda", request.lambda, "Weight of a new point in an EWMA (that with the best forecasts)");
    command.add_flag("--forecast", request.isForecast, "The EWMA before a point, in place of the one with it");
    command.add_option("--k", request.allowance, "Allowance of a CUSUM, in standard deviations of a point (0.5)");
    command.add_option("--h", request.interval, "Its decision interval, likewise (5)");
    AddSpectralOptions(command, request);
}

void SetTransform(boost::shared_ptr<engine::Project> const &project, TransformRequest const &request,
                  SelectDataSeriesData &selection) {
    auto const [type, operands] = request.transformation.empty()
                                      ? std::pair(TransformationData::NoTransformation, std::string())
                                      : ReadTransformation(request.transformation);
    CheckOptions(request, type == TransformationData::EWMA);
    CheckSpectralOptions(request, type);
    CheckNumbers(request);
    if (request.chart != ControlChartData::None) {
        CheckOneSeries(selection, "--chart");
        selection.SetControlChartData(ChartOf(request));
    } else if (type != TransformationData::NoTransformation) {
        if ((IsCorrelation(type) || IsWavelet(type) || type == TransformationData::PowerSpectrum) &&
            selection.GetMode() != SelectDataSeriesData::Normal)
            throw UsageError("--transform " + request.transformation + " shows series without --x and --y");
        if (type == TransformationData::Histogram || type == TransformationData::Dotplot)
            CheckOneSeries(selection, ("--transform " + request.transformation).c_str());
        selection.SetTransformationData(TransformationOf(project, request, selection, type, operands));
    }
}

NCError NothingTransformed(SelectDataSeriesData const &selection) {
    ControlChartData const &chart = selection.GetControlChartData();
    if (chart.IsControlChart())
        return Problem(ExceptionMessage::translate("The series does not fill one subgroup of {1} values.") %
                       chart.GetSubgroupSize());
    Type const type = selection.GetTransformationData().GetTransformationType();
    if (type == TransformationData::Histogram)
        return Problem(ExceptionMessage::translate("There is nothing to count: all values are missing."));
    if (type == TransformationData::PowerSpectrum)
        return Problem(ExceptionMessage::translate("The series has fewer than 16 {1}s, which a spectrum needs.") %
                       ItemOf(selection.GetVectorType()));
    if (type == TransformationData::WaveletStructure)
        return Problem(ExceptionMessage::translate("The wavelet structure has none of the scales that are asked for."));
    return Problem(ExceptionMessage::translate("The vector to subtract, or to divide by, has no value for some {1}s of "
                                               "the series.") %
                   ItemOf(selection.GetVectorType()));
}
