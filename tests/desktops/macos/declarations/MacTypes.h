#pragma once

// Stands in for the system's header of this name where the compiler brings none.

#include <stdint.h>

typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef uint16_t UInt16;
typedef int16_t SInt16;
typedef uint32_t UInt32;
typedef int32_t SInt32;
typedef UInt16 UniChar;
typedef unsigned long UniCharCount;
typedef UInt32 OptionBits;
typedef SInt32 OSStatus;
