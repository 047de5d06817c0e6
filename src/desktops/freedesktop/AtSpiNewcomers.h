#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "desktops/freedesktop/Bus.h"
#include "platform/RunLoop.h"

namespace tessarok::freedesktop {

/// Asks programs that have just come to the accessibility bus which of their fields has the focus:
/// a program tells of a focus only once it has heard that somebody listens, and a dialog that asks
/// for a password has often got it by then. Main thread.
class AtSpiNewcomers final {
 public:
  /// `field` is empty when nothing in `program` has the focus. Not called for a program that does
  /// not answer the question.
  using Answered = std::function<void(const std::string& program, const std::string& field)>;

  /// `bus` is the accessibility bus; it and `loop` outlive the object.
  AtSpiNewcomers(Bus& bus, platform::RunLoop& loop, Answered answered);

 private:
  void came(sd_bus_message& event);
  void ask(const std::string& program);

  Bus& bus_;
  platform::RunLoop& loop_;
  Answered answered_;
  BusSlot arrivals_;
  /// The last questions, whose answers are waited for.
  std::vector<BusSlot> questions_;
  /// Lets what waits in the loop see whether the object still is.
  std::shared_ptr<AtSpiNewcomers*> self_ = std::make_shared<AtSpiNewcomers*>(this);
};

}  // namespace tessarok::freedesktop
