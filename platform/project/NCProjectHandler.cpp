#include "platform/project/NCProjectHandler.h"

#include "platform/text/Exception.h"

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

namespace {

NCGeneralOptions const &DefaultOptions() {
    static NCGeneralOptions const defaults;
    return defaults;
}

} // namespace

NCGeneralOptions const &NCProjectHandler::GetGeneralOptions() const {
    return DefaultOptions();
}

NCGeneralOptions const &NCProjectHandler::CurrentGeneralOptions() {
    return instance ? instance->GetGeneralOptions() : DefaultOptions();
}
