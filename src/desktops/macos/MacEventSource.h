#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <utility>

#include "desktops/macos/CfRef.h"
#include "platform/EventSource.h"

namespace tessarok::macos {

/// A Quartz event source. Main thread.
class MacEventSource final : public platform::EventSource {
 public:
  explicit MacEventSource(CfRef<CGEventSourceRef> source) : source_(std::move(source)) {}

  [[nodiscard]] CGEventSourceRef get() const { return source_.get(); }

 private:
  CfRef<CGEventSourceRef> source_;
};

}  // namespace tessarok::macos
