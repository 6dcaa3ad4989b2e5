#pragma once

#include "platform/export.h"

#include <iosfwd>

// Base of classes that are written to binary streams and read from them.
//
// The pass rule: each class in a hierarchy holds a guard, a bool that is false at first, and overrides all three
// operations. StartWrite and StartRead give true at once when the guard is set; otherwise they set it, write or check
// the header of the class (VStreamableData), call the same operation of the next base, and move the members of the
// class. Reset clears the guard and calls the next base. So a base that is reached twice is written once in a pass.
class DATASERIES_API VStreamBase {
public:
    virtual ~VStreamBase();

    // Each answers whether the stream is good afterwards; damage is a VqStreamError.
    virtual bool VStreamableStartWrite(std::ostream &stream);
    virtual bool VStreamableStartRead(std::istream &stream);
    virtual void VStreamableReset();
};

// One pass over `object`: Reset and StartWrite, or Reset and StartRead. An answer of false sets the stream's failbit.
DATASERIES_API std::ostream &operator<<(std::ostream &stream, VStreamBase &object);
DATASERIES_API std::istream &operator>>(std::istream &stream, VStreamBase &object);
