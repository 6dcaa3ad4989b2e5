#pragma once

#include "platform/forward.h"
#include "platform/numerics/ControlChart.h"

#include <memory>

// The settings of the control chart of a selection. -99.0 in a number means that it is taken from the values.
class DATASERIES_API ControlChartData {
public:
    enum ControlChartType : int { None = 0, Shewhart = 1, EWMA = 2, CUSUM = 3, ShewhartAndEWMA = 4 };
    enum ShewhartType : int { Mean = 1, Range = 2, StdDev = 3 };

    explicit ControlChartData(ControlChart::EWMAType type = ControlChart::Filtered) : m_ewmaType(type) {}

    bool IsControlChart() const { return m_chartType != None; }
    ControlChartType GetControlChartType() const { return m_chartType; }
    void SetControlChartType(ControlChartType type) { m_chartType = type; }
    ShewhartType GetShewhartType() const { return m_shewhartType; }
    void SetShewhartType(ShewhartType type) { m_shewhartType = type; }
    ControlChart::ControlType GetControlType() const { return m_controlType; }
    void SetControlType(ControlChart::ControlType type) { m_controlType = type; }
    ControlChart::EWMAType GetEWMAType() const { return m_ewmaType; }
    void SetEWMAType(ControlChart::EWMAType type) { m_ewmaType = type; }
    // Successive values that make one point of the chart.
    int GetSubgroupSize() const { return m_subgroupSize; }
    void SetSubgroupSize(int size) { m_subgroupSize = size; }
    double GetTarget() const { return m_target; }
    void SetTarget(double target) { m_target = target; }
    // Of single values within a subgroup.
    double GetStdDev() const { return m_stdDev; }
    void SetStdDev(double stdDev) { m_stdDev = stdDev; }
    double GetLambda() const { return m_lambda; }
    void SetLambda(double lambda) { m_lambda = lambda; }
    // Allowance and decision interval of the CUSUM, in standard deviations of a point.
    double GetAllowance() const { return m_allowance; }
    void SetAllowance(double allowance) { m_allowance = allowance; }
    double GetDecisionInterval() const { return m_decisionInterval; }
    void SetDecisionInterval(double interval) { m_decisionInterval = interval; }

    // The chart of these values; null without a kind of chart, and when the values do not fill one subgroup.
    std::unique_ptr<ControlChart> CreateControlChart(NCDataVector<float> const &values) const;

    bool operator==(ControlChartData const &) const = default;

    // The settings in a section of saved settings, all of which are needed. Reading answers false, and leaves this as
    // it was, when one is missing or is none that there is.
    void WriteSection(ConfigurationSection *section) const;
    bool ReadSection(ConfigurationSection const *section);

private:
    ControlChartType m_chartType = None;
    ShewhartType m_shewhartType = Mean;
    ControlChart::ControlType m_controlType = ControlChart::Individual;
    ControlChart::EWMAType m_ewmaType;
    int m_subgroupSize = 1;
    double m_target = -99.0;
    double m_stdDev = -99.0;
    double m_lambda = -99.0;
    double m_allowance = 0.5;
    double m_decisionInterval = 5.0;
};
