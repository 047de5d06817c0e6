#include "desktops/freedesktop/AtSpiSecureInput.h"

#include <system_error>

#include "desktops/posix/Translation.h"

namespace tessarok::freedesktop {

namespace {

constexpr const char* kLauncher = "org.a11y.Bus";
constexpr const char* kRegistry = "org.a11y.atspi.Registry";
constexpr const char* kFocusRule =
    "type='signal',interface='org.a11y.atspi.Event.Object',member='StateChanged',arg0='focused'";
constexpr const char* kDepartureRule =
    "type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
    "member='NameOwnerChanged',arg2=''";
constexpr std::uint32_t kPasswordText = 40;
/// Microseconds that a program may take to say what its field is for. One that hangs gets no keys
/// anyway.
constexpr std::uint64_t kRolePatience = 1'000'000;

}  // namespace

AtSpiSecureInput::AtSpiSecureInput(Bus* session, platform::RunLoop& loop, platform::SystemLog& log)
    : session_(session), loop_(loop), log_(log) {
  if (session_ == nullptr) return;
  address_ =
      session_->call(session_->methodCall(kLauncher, "/org/a11y/bus", kLauncher, "GetAddress"),
                     [this](sd_bus_message& reply) {
                       const char* address = nullptr;
                       if (sd_bus_message_is_method_error(&reply, nullptr) != 0) return;
                       const int read = sd_bus_message_read(&reply, "s", &address);
                       if (read < 0) return busLost(std::generic_category().message(-read));
                       findBus(address);
                     });
}

void AtSpiSecureInput::findBus(const std::string& address) {
  std::string reason;
  bus_ = Bus::openAddress(loop_, address, reason);
  if (!bus_) return busLost(reason);
  bus_->onClosed = [this](const std::string& why) { busLost(why); };
  listen();
}

void AtSpiSecureInput::busLost(const std::string& reason) {
  listening_ = false;
  forget();
  log_.write("Tessarok: " +
             posix::translated("the accessibility bus is lost ({1}); password entries are not "
                               "recognised any more",
                               {reason}));
}

void AtSpiSecureInput::listen() {
  focus_ = bus_->match(kFocusRule, [this](sd_bus_message& event) { focusChanged(event); });
  departures_ = bus_->match(kDepartureRule, [this](sd_bus_message& message) {
    const char* name = nullptr;
    if (sd_bus_message_read(&message, "s", &name) >= 0 && program_ == name) forget();
  });
  newcomers_ = std::make_unique<AtSpiNewcomers>(
      *bus_, loop_, [this](const std::string& program, const std::string& field) {
        newcomerHas(program, field);
      });
  // Programs send only the events that somebody has asked for.
  auto message =
      bus_->methodCall(kRegistry, "/org/a11y/atspi/registry", kRegistry, "RegisterEvent");
  if (message) sd_bus_message_append(message.get(), "s", "object:state-changed:focused");
  registration_ = bus_->call(std::move(message), [this](sd_bus_message& reply) {
    const auto* error = sd_bus_message_get_error(&reply);
    listening_ = error == nullptr;
    if (!listening_ && bus_->isOpen()) busLost(textOf(*error));
  });
}

void AtSpiSecureInput::focusChanged(sd_bus_message& event) {
  std::int32_t gained = 0;
  const char* sender = sd_bus_message_get_sender(&event);
  const char* path = sd_bus_message_get_path(&event);
  if (sender == nullptr || path == nullptr) return;
  if (sd_bus_message_read(&event, "si", nullptr, &gained) < 0) return;
  const bool known = program_ == sender && field_ == path;
  if (gained == 0) {
    if (known) forget();
    return;
  }
  if (!known) take(sender, path);
}

void AtSpiSecureInput::newcomerHas(const std::string& program, const std::string& field) {
  const bool known = program_ == program;
  if (field.empty()) {
    if (known) forget();
    return;
  }
  if (!known || field_ != field) take(program, field);
}

void AtSpiSecureInput::take(const std::string& program, const std::string& field) {
  program_ = program;
  field_ = field;
  ask();
}

void AtSpiSecureInput::ask() {
  state_ = State::asking;
  role_ = bus_->call(
      bus_->methodCall(program_, field_, "org.a11y.atspi.Accessible", "GetRole"),
      [this](sd_bus_message& reply) {
        std::uint32_t role = 0;
        if (sd_bus_message_is_method_error(&reply, nullptr) == 0) {
          sd_bus_message_read(&reply, "u", &role);
        }
        state_ = role == kPasswordText ? State::secret : State::open;
      },
      kRolePatience);
  if (!role_) state_ = State::open;
}

void AtSpiSecureInput::forget() {
  state_ = State::open;
  program_.clear();
  field_.clear();
  role_ = {};
}

}  // namespace tessarok::freedesktop
