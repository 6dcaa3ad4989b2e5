#pragma once

#include "platform/containers/NCIntegralVector.h"
#include "platform/export.h"
#include "platform/forward.h"

#include <boost/signals2/connection.hpp>

#include <functional>

// What happens to projects, told to whoever listens. A function is called on the thread that fires, in the order of
// connection, until its connection is disconnected; an exception from it ends the firing and reaches the one who fires.
class DATASERIES_API NCSignals {
public:
    using Connection = boost::signals2::connection;
    using Numbers = NCIntegralVector<unsigned long, 0>;
    enum Position : int { AtBack = 0, AtFront = 1 };

    // A project is going; pointers to it have expired.
    static Connection ConnectProjectDestroying(std::function<void()> const &function);
    // The number of the model that is going.
    static Connection ConnectModelDestroying(std::function<void(NCProject const &, int)> const &function);
    // Null when no project is active any more.
    static Connection ConnectActiveProjectChanged(std::function<void(NCProject const *)> const &function);
    // A data set lost variables or observations.
    static Connection ConnectVarObsDeleted(std::function<void(int dataSet)> const &function,
                                           Position position = AtBack);
    static Connection ConnectDatasetDeleted(std::function<void(NCProject const &, int dataSet)> const &function);
    // Variables or observations, by number, that the project has no more.
    static Connection ConnectVariablesPurged(std::function<void(NCProject const &, Numbers const &)> const &function);
    static Connection
    ConnectObservationsPurged(std::function<void(NCProject const &, Numbers const &)> const &function);

    // For the layer that keeps the projects: each calls the functions that are connected above.
    static void FireProjectDestroying();
    static void FireModelDestroying(NCProject const &project, int model);
    static void FireActiveProjectChanged(NCProject const *project);
    static void FireVarObsDeleted(int dataSet);
    static void FireDatasetDeleted(NCProject const &project, int dataSet);
    static void FireVariablesPurged(NCProject const &project, Numbers const &variables);
    static void FireObservationsPurged(NCProject const &project, Numbers const &observations);

private:
    struct Signals;
    static Signals &All();
};
