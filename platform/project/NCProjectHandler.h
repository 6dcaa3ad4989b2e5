#pragma once

#include "platform/export.h"
#include "platform/forward.h"
#include "platform/numerics/ControlChart.h"

// Settings of the whole program.
class DATASERIES_API NCGeneralOptions {
public:
    virtual ~NCGeneralOptions();

    // What new control charts and EWMA transformations show.
    virtual ControlChart::EWMAType GetEWMAType() const { return ControlChart::Filtered; }
};

// The application's hold on its open projects. An application derives from it and makes one object, which stays for the
// life of the process; the last one made counts.
class DATASERIES_API NCProjectHandler {
public:
    // Exception when there is none yet.
    static NCProjectHandler &Instance();

    NCProjectHandler();
    NCProjectHandler(NCProjectHandler const &) = default;
    NCProjectHandler &operator=(NCProjectHandler const &) = default;
    virtual ~NCProjectHandler();

    virtual NCGeneralOptions const &GetGeneralOptions() const;
    // Those of the application, or the defaults while there is none.
    static NCGeneralOptions const &CurrentGeneralOptions();
    // The open project with this number, empty when there is none.
    virtual boost::shared_ptr<NCProject> NCGetProject(int id) const = 0;
};
