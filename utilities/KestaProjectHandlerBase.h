#pragma once

#include "platform/project/NCProjectHandler.h"

// The library's hold on the application: the project handler that also knows the active project. An application derives
// from it and makes one object, which stays for the life of the process.
class DATASERIES_API KestaProjectHandlerBase : public NCProjectHandler {
public:
    // Exception when there is none yet.
    static KestaProjectHandlerBase &Instance();

    KestaProjectHandlerBase();
    KestaProjectHandlerBase(KestaProjectHandlerBase const &) = default;
    KestaProjectHandlerBase &operator=(KestaProjectHandlerBase const &) = default;
    ~KestaProjectHandlerBase() override;

    // Empty when no project is open.
    virtual boost::shared_ptr<NCProject> GetActiveProject() const = 0;
};
