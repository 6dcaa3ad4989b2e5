#include "engine/Progress.h"

#include <utility>

namespace engine {

Cancelled::Cancelled() : NCError(ExceptionMessage::translate("The work was cancelled."), NCError::Information) {}

Progress::Progress(Listener listener) : m_listener(std::move(listener)) {}

void Progress::Report(double fraction) const {
    if (m_listener && !m_listener(fraction))
        throw Cancelled();
}

} // namespace engine
