#include "platform/Desktop.h"

#include <cstdlib>

namespace tessarok::platform {

namespace {

Desktop* current = nullptr;

}  // namespace

Desktop& desktop() {
  if (current == nullptr) std::abort();
  return *current;
}

void setDesktop(Desktop& desktop) {
  current = &desktop;
}

}  // namespace tessarok::platform
