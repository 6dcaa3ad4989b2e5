#include "platform/NCProjectHandler.h"

#include "platform/Exception.h"

namespace {

NCProjectHandler *instance = nullptr;

} // namespace

NCGeneralOptions::~NCGeneralOptions() = default;

NCProjectHandler &NCProjectHandler::Instance() {
    if (!instance)
        throw Exception(ExceptionMessage::translate("{1}") % "NCProjectHandler not initialized");
    return *instance;
}

NCProjectHandler::NCProjectHandler() {
    instance = this;
}

NCProjectHandler::~NCProjectHandler() {
    if (instance == this)
        instance = nullptr;
}

NCGeneralOptions const &NCProjectHandler::GetGeneralOptions() const {
    static NCGeneralOptions const defaults;
    return defaults;
}
