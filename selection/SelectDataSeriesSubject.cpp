#include "selection/SelectDataSeriesSubject.h"

#include <boost/signals2/signal.hpp>

#include <algorithm>

struct SelectDataSeriesSubject::Signals {
    boost::signals2::signal<void()> projectData;
    boost::signals2::signal<void()> options;
};

SelectDataSeriesSubject::SelectDataSeriesSubject() : m_signals(std::make_unique<Signals>()) {}

SelectDataSeriesSubject::SelectDataSeriesSubject(SelectDataSeriesSubject const &) : SelectDataSeriesSubject() {}

SelectDataSeriesSubject &SelectDataSeriesSubject::operator=(SelectDataSeriesSubject const &) { return *this; }

SelectDataSeriesSubject::~SelectDataSeriesSubject() { DisconnectListeners(); }

void SelectDataSeriesSubject::AddListener(SelectDataSeriesListener *listener) {
    if (std::find(m_listeners.begin(), m_listeners.end(), listener) == m_listeners.end())
        m_listeners.push_back(listener);
    if (listener->m_subject && listener->m_subject != this)
        listener->m_subject->RemoveListener(listener);
    // Behind the farewell to the old subject, which clears it.
    listener->m_subject = this;
}

void SelectDataSeriesSubject::RemoveListener(SelectDataSeriesListener *listener) {
    m_listeners.remove(listener);
    listener->Disconnect();
}

void SelectDataSeriesSubject::UpdateListeners(ProjectVector::VectorTypeEnum type) {
    for (SelectDataSeriesListener *listener : m_listeners)
        listener->OnChangedVectorType(type);
}

void SelectDataSeriesSubject::UpdateProjectData() {
    for (SelectDataSeriesListener *listener : m_listeners)
        listener->OnChangedProjectData();
    m_signals->projectData();
}

void SelectDataSeriesSubject::UpdateTransformationTypeChanged(TransformationData::TransformationType type) {
    for (SelectDataSeriesListener *listener : m_listeners)
        listener->OnTransformationTypeChanged(type);
}

void SelectDataSeriesSubject::UpdateWaveletOptionsChanged(WaveletOptions const &options) {
    for (SelectDataSeriesListener *listener : m_listeners)
        listener->OnWaveletOptionsChanged(options);
}

void SelectDataSeriesSubject::UpdateAddSeries(ProjectVectorData const &series) {
    for (SelectDataSeriesListener *listener : m_listeners)
        listener->OnAddSeries(series);
}

void SelectDataSeriesSubject::UpdateControlChartTypeChanged(ControlChartData::ControlChartType chart,
                                                            ControlChart::ControlType control) {
    for (SelectDataSeriesListener *listener : m_listeners)
        listener->OnControlChartTypeChanged(chart, control);
}

void SelectDataSeriesSubject::DisconnectListeners() {
    for (SelectDataSeriesListener *listener : m_listeners)
        listener->Disconnect();
    m_listeners.clear();
}

SelectDataSeriesSubject::Connection
SelectDataSeriesSubject::ConnectProjectData(std::function<void()> const &function) {
    return m_signals->projectData.connect(function);
}

SelectDataSeriesSubject::Connection SelectDataSeriesSubject::ConnectOptions(std::function<void()> const &function) {
    return m_signals->options.connect(function);
}

void SelectDataSeriesSubject::FireOptions() { m_signals->options(); }

SelectDataSeriesListener::~SelectDataSeriesListener() {
    if (m_subject)
        m_subject->RemoveListener(this);
}

void SelectDataSeriesListener::Disconnect() { m_subject = nullptr; }
