#include "desktops/macos/MacEventTaps.h"

#include "desktops/macos/MacEventTap.h"

namespace tessarok::macos {

std::unique_ptr<platform::EventTap> MacEventTaps::create(std::uint64_t mask,
                                                         platform::EventTapCallback callback,
                                                         void* userData) {
  return MacEventTap::create(mask, callback, userData);
}

bool MacEventTaps::preflightPostAccess() {
  return CGPreflightPostEventAccess();
}

}  // namespace tessarok::macos
