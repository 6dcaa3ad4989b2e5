#pragma once

#include "building/TransformationData.h"
#include "catalogue/ProjectVector.h"
#include "platform/export.h"
#include "platform/numerics/ControlChartData.h"

#include <boost/signals2/connection.hpp>

#include <functional>
#include <list>
#include <memory>

class SelectDataSeriesListener;

// What a window watches: the base of a selection. Listeners are told one by one, in the order in which they came, on
// the calling thread; they are not owned. Two signals are a second channel. Neither travels with a copy.
//
// A listener must not remove itself from inside one of its On operations.
class DATASERIES_API SelectDataSeriesSubject {
public:
    using Connection = boost::signals2::connection;

    SelectDataSeriesSubject();
    SelectDataSeriesSubject(SelectDataSeriesSubject const &);
    // Listeners and connections of this object stay.
    SelectDataSeriesSubject &operator=(SelectDataSeriesSubject const &);

    // Disconnects all listeners.
    virtual ~SelectDataSeriesSubject();
    // A listener is here once, and leaves the subject where it was before.
    virtual void AddListener(SelectDataSeriesListener *listener);
    // The listener is disconnected, whether it was here or not.
    virtual void RemoveListener(SelectDataSeriesListener *listener);
    virtual void UpdateListeners(ProjectVector::VectorTypeEnum type);
    // Tells the listeners, then fires the project data signal.
    virtual void UpdateProjectData();
    virtual void UpdateTransformationTypeChanged(TransformationData::TransformationType type);
    virtual void UpdateWaveletOptionsChanged(WaveletOptions const &options);
    virtual void UpdateAddSeries(ProjectVectorData const &series);
    virtual void UpdateControlChartTypeChanged(ControlChartData::ControlChartType chart,
                                               ControlChart::ControlType control);

    void DisconnectListeners();

    Connection ConnectProjectData(std::function<void()> const &function);
    // Fired when a display option changes.
    Connection ConnectOptions(std::function<void()> const &function);

protected:
    void FireOptions();

private:
    struct Signals;

    std::unique_ptr<Signals> m_signals;
    std::list<SelectDataSeriesListener *> m_listeners;
};

// Hears of the changes of one selection. A copy knows the subject and hears nothing, but removes itself from it at its
// end.
class DATASERIES_API SelectDataSeriesListener {
public:
    SelectDataSeriesListener() = default;
    SelectDataSeriesListener(SelectDataSeriesListener const &) = default;
    SelectDataSeriesListener &operator=(SelectDataSeriesListener const &) = default;

    virtual ~SelectDataSeriesListener();
    virtual void OnChangedVectorType(ProjectVector::VectorTypeEnum) {}
    virtual void OnChangedProjectData() {}
    virtual void OnAddSeries(ProjectVectorData const &) {}
    virtual void OnTransformationTypeChanged(TransformationData::TransformationType) {}
    virtual void OnWaveletOptionsChanged(WaveletOptions const &) {}
    virtual void OnControlChartTypeChanged(ControlChartData::ControlChartType, ControlChart::ControlType) {}
    // The subject lets go.
    virtual void Disconnect();

private:
    friend class SelectDataSeriesSubject;

    SelectDataSeriesSubject *m_subject = nullptr;
};
