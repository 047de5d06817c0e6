#pragma once

#include <memory>
#include <string>

#include "desktops/freedesktop/AtSpiNewcomers.h"
#include "desktops/freedesktop/Bus.h"
#include "platform/RunLoop.h"
#include "platform/SecureInput.h"
#include "platform/SystemLog.h"

namespace tessarok::freedesktop {

/// Knows that a password is being typed from the accessibility bus: programs tell there which of
/// their fields has the focus, and a field says that it is for passwords. Main thread.
///
/// Programs that are not on that bus are never seen. Without the bus nothing is ever secure.
class AtSpiSecureInput final : public platform::SecureInput {
 public:
  /// `session` is null when there is no session bus; everything outlives the object. `log` is told
  /// when the accessibility bus is lost.
  AtSpiSecureInput(Bus* session, platform::RunLoop& loop, platform::SystemLog& log);

  /// Also on for the moment in which a field that has just got the focus is asked what it is for:
  /// a lost correction is repaired by hand, a corrected password is not.
  bool isEnabled() override { return state_ != State::open; }
  /// Whether the field that has the focus has said what it is for.
  [[nodiscard]] bool isSettled() const { return state_ != State::asking; }
  /// Whether focus changes are being heard.
  [[nodiscard]] bool isListening() const { return listening_; }

 private:
  enum class State { open, asking, secret };

  void findBus(const std::string& address);
  void busLost(const std::string& reason);
  void listen();
  void focusChanged(sd_bus_message& event);
  void newcomerHas(const std::string& program, const std::string& field);
  void take(const std::string& program, const std::string& field);
  void ask();
  void forget();

  Bus* session_;
  platform::RunLoop& loop_;
  platform::SystemLog& log_;
  std::unique_ptr<Bus> bus_;
  std::unique_ptr<AtSpiNewcomers> newcomers_;
  bool listening_ = false;
  State state_ = State::open;
  /// The field that has the focus: its program's name on the bus and its path there.
  std::string program_;
  std::string field_;
  BusSlot address_;
  BusSlot registration_;
  BusSlot focus_;
  BusSlot departures_;
  BusSlot role_;
};

}  // namespace tessarok::freedesktop
