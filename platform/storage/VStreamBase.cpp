#include "platform/storage/VStreamBase.h"

#include <istream>
#include <ostream>

VStreamBase::~VStreamBase() = default;

bool VStreamBase::VStreamableStartWrite(std::ostream &stream) {
    return stream.good();
}

bool VStreamBase::VStreamableStartRead(std::istream &stream) {
    return stream.good();
}

void VStreamBase::VStreamableReset() {}

std::ostream &operator<<(std::ostream &stream, VStreamBase &object) {
    object.VStreamableReset();
    if (!object.VStreamableStartWrite(stream))
        stream.setstate(std::ios::failbit);
    return stream;
}

std::istream &operator>>(std::istream &stream, VStreamBase &object) {
    object.VStreamableReset();
    if (!object.VStreamableStartRead(stream))
        stream.setstate(std::ios::failbit);
    return stream;
}
