#include "platform/numerics/ControlChartData.h"

std::unique_ptr<ControlChart> ControlChartData::CreateControlChart(NCDataVector<float> const &values) const {
    ControlChart::ControlType const type = m_chartType == EWMA    ? ControlChart::EWMA
                                           : m_chartType == CUSUM ? ControlChart::CUSUM
                                                                  : m_controlType;
    auto chart = std::make_unique<ControlChart>(type, values, m_subgroupSize, m_ewmaType);
    if (!IsControlChart() || chart->Points() == 0)
        return nullptr;
    chart->SetTarget(m_target);
    chart->SetStdDevSubgroup(m_stdDev);
    chart->SetEWMALambda(m_lambda);
    chart->SetCuSumLimits(m_allowance, m_decisionInterval);
    return chart;
}
