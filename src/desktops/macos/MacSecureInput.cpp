#include "desktops/macos/MacSecureInput.h"

#include <Carbon/Carbon.h>

namespace tessarok::macos {

bool MacSecureInput::isEnabled() {
  return IsSecureEventInputEnabled();
}

}  // namespace tessarok::macos
