#pragma once

#include "engine/Project.h"
#include "selection/SelectDataSeriesData.h"

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

// The control chart or the transformation of a selection, as a person asks for it.
struct TransformRequest {
    ControlChartData::ControlChartType chart = ControlChartData::None;
    std::optional<ControlChartData::ShewhartType> statistic;
    std::optional<ControlChart::ControlType> spread;
    std::string transformation; // "subtract:t:1"
    std::optional<int> subgroup;
    std::optional<double> target, stdDev, lambda, allowance, interval;
    bool isForecast = false;
    // Of correlations, spectra and wavelets.
    std::optional<int> detrend, lags, segment, window, frequency, order;
    std::optional<Wavelet::WaveletFunctionType> function;
    bool isOverlapping = false, isLinear = false, isOfPeaks = false, isUnpadded = false;
    std::vector<int> scales;

    bool IsAsked() const { return chart != ControlChartData::None || !transformation.empty(); }
};

// Adds --chart, --transform and their settings.
void AddTransformOptions(CLI::App &command, TransformRequest &request);

// Puts them into a selection that has its series. UsageError for settings that the chart or the transformation does not
// read, and for axes or several series where it shows one; NCError for vectors that are not there.
void SetTransform(boost::shared_ptr<engine::Project> const &project, TransformRequest const &request,
                  SelectDataSeriesData &selection);

// Why a selection has given no table of its transformation or chart.
NCError NothingTransformed(SelectDataSeriesData const &selection);
