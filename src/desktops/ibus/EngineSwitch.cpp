#include "desktops/ibus/EngineSwitch.h"

#include <utility>

namespace tessarok::ibus {

namespace {

using State = ShellExtension::State;

/// Milliseconds for an answer.
constexpr int kPatience = 2000;

}  // namespace

void EngineSwitch::to(const std::string& engine) {
  switch (extension_.state()) {
    case State::noShell:
      return byIbus(engine);
    case State::off:
      // The list of sources in the settings would do it too, but the shell loses keys while it
      // reads that.
      if (onRefused) onRefused();
      return;
    case State::unknown:
    case State::on:
      return byShell(engine);
  }
}

void EngineSwitch::byShell(const std::string& engine) {
  auto message = extension_.call("Activate");
  if (!message) return byIbus(engine);
  sd_bus_message_append(message.get(), "ss", "ibus", engine.c_str());
  call_ = session_->call(std::move(message),
                         [this, engine](sd_bus_message& reply) { answered(reply, engine); });
  if (!call_) byIbus(engine);
}

void EngineSwitch::answered(sd_bus_message& reply, const std::string& engine) {
  int isDone = 0;
  if (sd_bus_message_read(&reply, "b", &isDone) >= 0 && isDone != 0) return;
  if (extension_.state() == State::noShell) return byIbus(engine);
  if (onRefused) onRefused();
}

void EngineSwitch::byIbus(const std::string& engine) {
  ibus_bus_set_global_engine_async(&bus_, engine.c_str(), kPatience, nullptr, nullptr, nullptr);
}

}  // namespace tessarok::ibus
