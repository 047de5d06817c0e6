#include "desktops/freedesktop/AtSpiNewcomers.h"

#include <cstdint>
#include <utility>

namespace tessarok::freedesktop {

namespace {

constexpr const char* kArrivalRule =
    "type='signal',sender='org.a11y.atspi.Registry',path='/org/a11y/atspi/accessible/root',"
    "interface='org.a11y.atspi.Event.Object',member='ChildrenChanged',arg0='add'";
constexpr const char* kRoot = "/org/a11y/atspi/accessible/root";
/// ATSPI_STATE_FOCUSED, as a bit of the first word of a set of states.
constexpr std::int32_t kFocused = 1 << 12;
/// ATSPI_Collection_MATCH_ALL and ATSPI_Collection_SORT_ORDER_CANONICAL.
constexpr std::int32_t kAll = 1;
constexpr std::uint32_t kCanonical = 1;
/// Seconds after which a program is asked again. It learns a few milliseconds after it has come
/// that somebody listens, on a busy machine some hundred; what gets the focus in between is in the
/// second answer.
constexpr double kSecondLook = 0.5;
/// Microseconds that a program may take to look; one that starts has more to do.
constexpr std::uint64_t kPatience = 5'000'000;
/// A session that starts brings some dozen programs.
constexpr std::size_t kMostQuestions = 64;

/// Describes everything that has the focus.
void appendRule(sd_bus_message* message) {
  sd_bus_message_append(message, "(aiia{ss}iaiiasib)uib",  //
                        2, kFocused, 0, kAll,              // states
                        0, kAll,                           // attributes
                        0, kAll,                           // roles
                        0, kAll,                           // interfaces
                        0,                                 // nothing is turned round
                        kCanonical, 1, 1);                 // one is enough, at any depth
}

}  // namespace

AtSpiNewcomers::AtSpiNewcomers(Bus& bus, platform::RunLoop& loop, Answered answered)
    : bus_(bus), loop_(loop), answered_(std::move(answered)) {
  arrivals_ = bus_.match(kArrivalRule, [this](sd_bus_message& event) { came(event); });
}

void AtSpiNewcomers::came(sd_bus_message& event) {
  const char* program = nullptr;
  if (sd_bus_message_read(&event, "siiv", nullptr, nullptr, nullptr, "(so)", &program, nullptr) <
      0) {
    return;
  }
  ask(program);
  loop_.after(kSecondLook, [self = std::weak_ptr(self_), name = std::string(program)] {
    if (const auto held = self.lock()) (*held)->ask(name);
  });
}

void AtSpiNewcomers::ask(const std::string& program) {
  auto message = bus_.methodCall(program, kRoot, "org.a11y.atspi.Collection", "GetMatches");
  if (message) appendRule(message.get());
  if (questions_.size() == kMostQuestions) questions_.erase(questions_.begin());
  questions_.push_back(bus_.call(
      std::move(message),
      [this, program](sd_bus_message& reply) {
        const char* field = nullptr;
        if (sd_bus_message_is_method_error(&reply, nullptr) != 0) return;
        if (sd_bus_message_enter_container(&reply, 'a', "(so)") < 0) return;
        if (sd_bus_message_read(&reply, "(so)", nullptr, &field) < 0) return;
        answered_(program, field != nullptr ? field : "");
      },
      kPatience));
}

}  // namespace tessarok::freedesktop
