#pragma once

#include "platform/text/Exception.h"

// A stored specification is whole, but this project or model cannot show it. Who reads several goes on with the next.
class DATASERIES_API ReadVectorException : public NCError {
public:
    explicit ReadVectorException(ExceptionMessage const &message) : NCError(message, Error) {}
};
