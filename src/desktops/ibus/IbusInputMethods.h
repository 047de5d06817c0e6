#pragma once

#include <functional>
#include <string>

#include "desktops/ibus/EngineSwitch.h"
#include "desktops/ibus/SourceList.h"
#include "desktops/inputmethod/InputMethods.h"
#include "platform/Clock.h"

namespace tessarok::ibus {

/// The corrector's two engines, as far as the person has chosen them. Main thread.
class IbusInputMethods final : public inputmethod::InputMethods {
 public:
  /// Seconds for which keys wait for another engine.
  static constexpr double kPatience = 2;
  /// Seconds for which no switch is asked for when one was refused.
  static constexpr double kDiscouraged = 30;

  /// All outlive this object.
  IbusInputMethods(EngineSwitch& engineSwitch, const SourceList& sources, platform::Clock& clock);

  std::vector<std::string> chosen() const override;
  std::string current(const inputmethod::Client*) const override { return current_; }
  std::optional<xkb::layoutNames::Layout> layoutOf(const std::string& inputMethod) const override;
  std::string identifierOf(const std::string& inputMethod) const override {
    return "ibus." + inputMethod;
  }
  bool select(inputmethod::Client& client, const std::string& inputMethod) override;
  std::optional<double> unsettledUntil(double now) override;

  /// IBus has given the keys to an engine; whether that was asked for.
  [[nodiscard]] bool enabled(const std::string& engine);
  /// Somebody may switch by now who did not before.
  void encourage() { discouragedUntil_ = 0; }
  /// An engine was asked for, and is not there yet.
  [[nodiscard]] bool isSwitching() const { return !wanted_.empty(); }
  /// Nobody switches: the person has to.
  std::function<void()> onInVain;
  /// The engine that was asked for is there, or is not waited for any more.
  std::function<void()> onSettled;

 private:
  void refused();
  void giveUp();

  EngineSwitch& switch_;
  const SourceList& sources_;
  platform::Clock& clock_;
  std::string current_;
  /// Empty when none is waited for.
  std::string wanted_;
  double deadline_ = 0;
  double discouragedUntil_ = 0;
};

}  // namespace tessarok::ibus
