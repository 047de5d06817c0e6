#include "desktops/macos/MacDesktop.h"

#include <utility>

namespace tessarok::macos {

MacDesktop::MacDesktop(ObjectiveCServices services)
    : services_(std::move(services)),
      files_(std::make_unique<posix::PosixFiles>(services_.homeDirectory,
                                                 services_.applicationSupport)) {}

MacDesktop::MacDesktop(ObjectiveCServices services, std::unique_ptr<platform::Files> files)
    : services_(std::move(services)), files_(std::move(files)) {}

}  // namespace tessarok::macos
