#pragma once

#include "platform/text/Exception.h"

#include <functional>

namespace engine {

// Thrown out of long work that its caller wants no more. Whatever the work had changed is as it was before.
class DATASERIES_API Cancelled : public NCError {
public:
    Cancelled();
};

// How long work tells how far it is, and learns that it is no longer wanted.
class DATASERIES_API Progress {
public:
    // Gets the done fraction, 0 to 1; answers false to cancel.
    using Listener = std::function<bool(double)>;

    // Tells nobody and is never cancelled.
    Progress() = default;
    explicit Progress(Listener listener);

    // Throws Cancelled when the listener answers false.
    void Report(double fraction) const;

private:
    Listener m_listener;
};

} // namespace engine
