#include "desktops/freedesktop/NameWatch.h"

#include <utility>

namespace tessarok::freedesktop {

namespace {

constexpr const char* kBus = "org.freedesktop.DBus";
constexpr const char* kBusPath = "/org/freedesktop/DBus";

}  // namespace

NameWatch::NameWatch(Bus& bus, const std::string& name, std::function<void()> onChange)
    : onChange_(std::move(onChange)) {
  changes_ = bus.match(std::string("type='signal',sender='") + kBus + "',interface='" + kBus +
                           "',member='NameOwnerChanged',arg0='" + name + "'",
                       [this](sd_bus_message& message) {
                         const char* owner = nullptr;
                         if (sd_bus_message_read(&message, "sss", nullptr, nullptr, &owner) < 0)
                           return;
                         set(*owner != '\0');
                       });
  // The bus takes the match before it answers this, so no change is missed between them.
  auto question = bus.methodCall(kBus, kBusPath, kBus, "NameHasOwner");
  if (!question) return;
  sd_bus_message_append(question.get(), "s", name.c_str());
  question_ = bus.call(std::move(question), [this](sd_bus_message& reply) {
    int isOwned = 0;
    if (sd_bus_message_read(&reply, "b", &isOwned) >= 0) set(isOwned != 0);
  });
}

void NameWatch::set(bool isOwned) {
  if (std::exchange(isOwned_, isOwned) != isOwned) onChange_();
}

}  // namespace tessarok::freedesktop
