#include "desktops/ibus/IbusInputMethods.h"

#include "desktops/ibus/Engine.h"

namespace tessarok::ibus {

namespace {

using xkb::layoutNames::Layout;

bool isOurs(const std::string& engine) {
  return engine == engine::kEnglish || engine == engine::kRussian;
}

}  // namespace

IbusInputMethods::IbusInputMethods(EngineSwitch& engineSwitch, const SourceList& sources,
                                   platform::Clock& clock)
    : switch_(engineSwitch), sources_(sources), clock_(clock) {
  switch_.onRefused = [this] { refused(); };
}

std::vector<std::string> IbusInputMethods::chosen() const {
  std::vector<std::string> ours;
  for (const auto& [kind, name] : sources_.sources()) {
    if (kind == "ibus" && isOurs(name)) ours.push_back(name);
  }
  // Elsewhere than in GNOME that list is not what counts.
  if (ours.empty()) return {engine::kEnglish, engine::kRussian};
  return ours;
}

std::optional<Layout> IbusInputMethods::layoutOf(const std::string& inputMethod) const {
  if (inputMethod == engine::kEnglish) return Layout{"us", ""};
  if (inputMethod == engine::kRussian) return Layout{"ru", ""};
  return std::nullopt;
}

bool IbusInputMethods::select(inputmethod::Client&, const std::string& inputMethod) {
  if (inputMethod == current_) return true;
  const auto now = clock_.uptime();
  if (now < discouragedUntil_) return false;
  wanted_ = inputMethod;
  deadline_ = now + kPatience;
  switch_.to(inputMethod);
  return isSwitching();
}

std::optional<double> IbusInputMethods::unsettledUntil(double now) {
  if (!isSwitching()) return std::nullopt;
  if (now < deadline_) return deadline_;
  giveUp();
  return std::nullopt;
}

void IbusInputMethods::refused() {
  discouragedUntil_ = clock_.uptime() + kDiscouraged;
  if (onInVain) onInVain();
  giveUp();
}

void IbusInputMethods::giveUp() {
  if (!isSwitching()) return;
  wanted_.clear();
  if (onSettled) onSettled();
}

bool IbusInputMethods::enabled(const std::string& engine) {
  current_ = engine;
  if (wanted_ != engine) return false;
  wanted_.clear();
  discouragedUntil_ = 0;
  if (onSettled) onSettled();
  return true;
}

}  // namespace tessarok::ibus
