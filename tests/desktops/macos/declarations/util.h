#pragma once

#include <sys/types.h>

struct termios;
struct winsize;

#ifdef __cplusplus
extern "C" {
#endif

pid_t forkpty(int* master, char* name, struct termios* settings, struct winsize* size);

#ifdef __cplusplus
}
#endif
