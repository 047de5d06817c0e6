#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <systemd/sd-bus.h>

#include "desktops/freedesktop/BusMessage.h"
#include "desktops/freedesktop/BusSlot.h"
#include "desktops/posix/PollSource.h"
#include "platform/RunLoop.h"

namespace tessarok::freedesktop {

/// A connection to a message bus, served by the run loop. Main thread.
///
/// Nothing here waits for an answer: a bus or a program that hangs must not hold up the keys.
/// Once the connection is lost every operation does nothing.
class Bus final : public posix::PollSource {
 public:
  /// Microseconds that a call may take before it counts as failed.
  static constexpr std::uint64_t kPatience = 5'000'000;
  /// Seconds that a bus may take to let the program in.
  static constexpr double kConnectPatience = 10.0;

  /// Each is null when there is no such bus. `loop` outlives the bus.
  [[nodiscard]] static std::unique_ptr<Bus> openSession(platform::RunLoop& loop);
  [[nodiscard]] static std::unique_ptr<Bus> openSystem(platform::RunLoop& loop);
  /// Null with the reason in `reason`.
  [[nodiscard]] static std::unique_ptr<Bus> openAddress(platform::RunLoop& loop,
                                                        const std::string& address,
                                                        std::string& reason);
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;
  /// Closes at once. Not to be destroyed by a handler of its own; slots may outlive the bus.
  ~Bus() override;

  [[nodiscard]] bool isOpen() const { return error_ == 0; }
  /// Called once, on a later turn of the loop, when the connection is lost: the other end has
  /// closed it or never answered, or something could not be done on it.
  std::function<void(const std::string& reason)> onClosed;

  /// Calls `handler` for every signal that the match rule describes.
  [[nodiscard]] BusSlot match(const std::string& rule, BusSlot::Handler handler);
  /// Offers an interface of an object; `vtable` and `object` outlive the slot.
  [[nodiscard]] BusSlot addObject(const char* path, const char* interface,
                                  const sd_bus_vtable* vtable, void* object);
  /// Asks for a well-known name, which comes when nobody else has it any more. Being refused is no
  /// reason to stop: the connection's own name does as well for everything but being found by
  /// people.
  [[nodiscard]] BusSlot requestName(const std::string& name);

  /// Empty also where a name is not one.
  [[nodiscard]] BusMessage methodCall(const std::string& destination, const std::string& path,
                                      const char* interface, const char* member);
  [[nodiscard]] BusMessage signal(const char* path, const char* interface, const char* member);
  /// Sends a call; `handler` gets the reply or the error. The answer is ignored once the slot is
  /// gone. An empty slot when the call cannot be sent.
  [[nodiscard]] BusSlot call(BusMessage message, BusSlot::Handler handler,
                             std::uint64_t patience = kPatience);
  void send(BusMessage message);

  [[nodiscard]] int descriptor() const override;
  [[nodiscard]] short events() const override;
  void ready(short events) override;

 private:
  Bus(platform::RunLoop& loop, sd_bus* bus);
  /// The connection of which the library said `result`; null when that is an error.
  static std::unique_ptr<Bus> started(platform::RunLoop& loop, int result, sd_bus* bus);
  void process();
  /// The connection is of no use from now on. The library takes it down as one that the other end
  /// has closed, and answers every call that waits with an error.
  void lose(int error);
  /// Whether something is to be done though no descriptor says so: a broken connection is taken
  /// down in steps, one of which may begin with a write that fails.
  [[nodiscard]] bool hasWork() const;
  void processSoonIfNeeded();
  void later(double seconds, void (Bus::*work)());
  void giveUpIfNotReady();
  void close();

  platform::RunLoop& loop_;
  sd_bus* bus_;
  /// Why the connection is of no use; 0 while it is.
  int error_ = 0;
  /// Lets calls that wait in the loop see whether the bus still is.
  std::shared_ptr<Bus*> self_ = std::make_shared<Bus*>(this);
};

}  // namespace tessarok::freedesktop
