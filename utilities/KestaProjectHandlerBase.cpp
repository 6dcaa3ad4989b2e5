#include "utilities/KestaProjectHandlerBase.h"

#include "platform/text/Exception.h"

namespace {

KestaProjectHandlerBase *instance = nullptr;

} // namespace

KestaProjectHandlerBase &KestaProjectHandlerBase::Instance() {
    if (!instance)
        throw Exception(ExceptionMessage::translate("{1}") % "KestaProjectHandler not initialized");
    return *instance;
}

KestaProjectHandlerBase::KestaProjectHandlerBase() {
    instance = this;
}

KestaProjectHandlerBase::~KestaProjectHandlerBase() = default;
