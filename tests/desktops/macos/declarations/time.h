#pragma once

// Adds what the system's header of this name has and others have not.

#include <stdint.h>
#include_next <time.h>

#ifdef __cplusplus
extern "C" {
#endif

enum { CLOCK_UPTIME_RAW = 8 };
uint64_t clock_gettime_nsec_np(clockid_t clock);

#ifdef __cplusplus
}
#endif
