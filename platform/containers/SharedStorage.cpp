#include "platform/containers/SharedStorage.h"

#include "platform/text/Exception.h"

void ThrowOutOfRange(char const *container, long long position, long long first, long long last) {
    throw NCInternalError(container, ExceptionMessage::translate("{1} is given where {2} to {3} is expected.") %
                                         position % first % last);
}
