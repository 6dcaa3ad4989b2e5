#pragma once

#include "selection/SelectDataSeriesSubject.h"

class SelectDataSeriesData;

// A pointer to a selection that turns null when the selection dies. Keep copies short-lived: they are not registered and
// don't turn null.
class DATASERIES_API SelectDataSeriesPointer : public SelectDataSeriesListener {
public:
    SelectDataSeriesPointer() = default;
    SelectDataSeriesPointer(SelectDataSeriesData *target);
    SelectDataSeriesPointer(SelectDataSeriesPointer const &) = default;
    SelectDataSeriesPointer &operator=(SelectDataSeriesPointer const &other);
    SelectDataSeriesPointer &operator=(SelectDataSeriesData *target);

    operator SelectDataSeriesData *() { return m_target; }
    operator SelectDataSeriesData const *() const { return m_target; }
    SelectDataSeriesData *operator->() { return m_target; }
    SelectDataSeriesData const *operator->() const { return m_target; }
    SelectDataSeriesData *Get() { return m_target; }
    SelectDataSeriesData const *Get() const { return m_target; }

    void Disconnect() override;

private:
    SelectDataSeriesData *m_target = nullptr;
};
