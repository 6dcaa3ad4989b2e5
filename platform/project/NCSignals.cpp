#include "platform/project/NCSignals.h"

#include <boost/signals2/signal.hpp>

struct NCSignals::Signals {
    template <typename Signature>
    using Signal = boost::signals2::signal<Signature>;

    Signal<void()> projectDestroying;
    Signal<void(NCProject const &, int)> modelDestroying;
    Signal<void(NCProject const *)> activeProjectChanged;
    Signal<void(int)> varObsDeleted;
    Signal<void(NCProject const &, int)> datasetDeleted;
    Signal<void(NCProject const &, Numbers const &)> variablesPurged;
    Signal<void(NCProject const &, Numbers const &)> observationsPurged;
};

// Never destroyed: listeners that live as long as the process disconnect at its very end.
NCSignals::Signals &NCSignals::All() {
    static Signals &signals = *new Signals;
    return signals;
}

NCSignals::Connection NCSignals::ConnectProjectDestroying(std::function<void()> const &function) {
    return All().projectDestroying.connect(function);
}
NCSignals::Connection NCSignals::ConnectModelDestroying(std::function<void(NCProject const &, int)> const &function) {
    return All().modelDestroying.connect(function);
}
NCSignals::Connection NCSignals::ConnectActiveProjectChanged(std::function<void(NCProject const *)> const &function) {
    return All().activeProjectChanged.connect(function);
}
NCSignals::Connection NCSignals::ConnectVarObsDeleted(std::function<void(int)> const &function, Position position) {
    return All().varObsDeleted.connect(function,
                                       position == AtFront ? boost::signals2::at_front : boost::signals2::at_back);
}
NCSignals::Connection NCSignals::ConnectDatasetDeleted(std::function<void(NCProject const &, int)> const &function) {
    return All().datasetDeleted.connect(function);
}
NCSignals::Connection
NCSignals::ConnectVariablesPurged(std::function<void(NCProject const &, Numbers const &)> const &function) {
    return All().variablesPurged.connect(function);
}
NCSignals::Connection
NCSignals::ConnectObservationsPurged(std::function<void(NCProject const &, Numbers const &)> const &function) {
    return All().observationsPurged.connect(function);
}

void NCSignals::FireProjectDestroying() {
    All().projectDestroying();
}
void NCSignals::FireModelDestroying(NCProject const &project, int model) {
    All().modelDestroying(project, model);
}
void NCSignals::FireActiveProjectChanged(NCProject const *project) {
    All().activeProjectChanged(project);
}
void NCSignals::FireVarObsDeleted(int dataSet) {
    All().varObsDeleted(dataSet);
}
void NCSignals::FireDatasetDeleted(NCProject const &project, int dataSet) {
    All().datasetDeleted(project, dataSet);
}
void NCSignals::FireVariablesPurged(NCProject const &project, Numbers const &variables) {
    All().variablesPurged(project, variables);
}
void NCSignals::FireObservationsPurged(NCProject const &project, Numbers const &observations) {
    All().observationsPurged(project, observations);
}
