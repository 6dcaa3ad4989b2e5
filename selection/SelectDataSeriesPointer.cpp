#include "selection/SelectDataSeriesPointer.h"

#include "selection/SelectDataSeriesData.h"

SelectDataSeriesPointer::SelectDataSeriesPointer(SelectDataSeriesData *target) : m_target(target) {
    if (m_target)
        m_target->AddListener(this);
}

SelectDataSeriesPointer &SelectDataSeriesPointer::operator=(SelectDataSeriesPointer const &other) {
    return *this = other.m_target;
}

SelectDataSeriesPointer &SelectDataSeriesPointer::operator=(SelectDataSeriesData *target) {
    if (m_target)
        m_target->RemoveListener(this);
    m_target = target;
    if (m_target)
        m_target->AddListener(this);
    return *this;
}

void SelectDataSeriesPointer::Disconnect() {
    SelectDataSeriesListener::Disconnect();
    m_target = nullptr;
}
