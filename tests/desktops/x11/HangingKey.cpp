// A library to be loaded before the program (LD_PRELOAD): it makes the program hang, busy with
// nothing, when it is to press a certain key (TESSAROK_HANGING_KEY, an X key code).

#include <X11/Xlib.h>
#include <cstdlib>
#include <dlfcn.h>

extern "C" int XTestFakeKeyEvent(Display* display, unsigned key, Bool isDown, unsigned long delay) {
  static const auto next =
      reinterpret_cast<decltype(&XTestFakeKeyEvent)>(dlsym(RTLD_NEXT, "XTestFakeKeyEvent"));
  const char* hanging = std::getenv("TESSAROK_HANGING_KEY");
  volatile bool hangs =
      isDown != 0 && hanging != nullptr && std::strtoul(hanging, nullptr, 10) == key;
  while (hangs) {
  }
  return next(display, key, isDown, delay);
}
