#include "platform/numerics/ControlChartData.h"

#include "platform/storage/ConfigurationSection.h"

namespace {

template <typename Value>
bool ReadValue(ConfigurationSection const &section, char const *key, Value first, Value last, Value &value) {
    int read = 0;
    if (!section.ReadKey(key, read) || read < first || read > last)
        return false;
    value = static_cast<Value>(read);
    return true;
}

} // namespace

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

void ControlChartData::WriteSection(ConfigurationSection *section) const {
    section->WriteKey("ChartType", static_cast<int>(m_chartType));
    section->WriteKey("ShewhartType", static_cast<int>(m_shewhartType));
    section->WriteKey("ControlType", static_cast<int>(m_controlType));
    section->WriteKey("EWMAType", static_cast<int>(m_ewmaType));
    section->WriteKey("SubgroupSize", m_subgroupSize);
    section->WriteKey("Target", m_target);
    section->WriteKey("StdDev", m_stdDev);
    section->WriteKey("Lambda", m_lambda);
    section->WriteKey("Allowance", m_allowance);
    section->WriteKey("DecisionInterval", m_decisionInterval);
}

bool ControlChartData::ReadSection(ConfigurationSection const *section) {
    ControlChartData read;
    if (!ReadValue(*section, "ChartType", None, ShewhartAndEWMA, read.m_chartType) ||
        !ReadValue(*section, "ShewhartType", Mean, StdDev, read.m_shewhartType) ||
        !ReadValue(*section, "ControlType", ControlChart::Individual, ControlChart::EWMA, read.m_controlType) ||
        !ReadValue(*section, "EWMAType", ControlChart::Filtered, ControlChart::Predictive, read.m_ewmaType) ||
        !section->ReadKey("SubgroupSize", read.m_subgroupSize) || !section->ReadKey("Target", read.m_target) ||
        !section->ReadKey("StdDev", read.m_stdDev) || !section->ReadKey("Lambda", read.m_lambda) ||
        !section->ReadKey("Allowance", read.m_allowance) ||
        !section->ReadKey("DecisionInterval", read.m_decisionInterval))
        return false;
    *this = read;
    return true;
}
