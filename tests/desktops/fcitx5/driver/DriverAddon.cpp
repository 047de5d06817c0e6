// An addon of Fcitx that types a script into a text field of its own and ends Fcitx. What came of
// it goes into a file.
//
// TESSAROK_DRIVER_SCRIPT names the script, a JSON object:
//   "client": {"reports": "nothing" | "empty" | "all", "keyDelay": ms, "resets", "ordersEvents",
//     "resetsAlways", "deletesBytes", "readsShiftLate", "frontend": a name}
//   "steps": a list of objects with one action each, and what must be there in the end of it:
//     "text", "caret", "source" (the input method) and "page" (the corrector's configuration). A
//     step lasts until it is.
// TESSAROK_DRIVER_RESULT names the result: an empty file when all steps came out.

#include <cstdlib>
#include <ctime>
#include <fcitx-config/rawconfig.h>
#include <fcitx/action.h>
#include <fcitx/addonfactory.h>
#include <fcitx/addoninstance.h>
#include <fcitx/addonmanager.h>
#include <fcitx/inputmethodgroup.h>
#include <fcitx/inputmethodmanager.h>
#include <fcitx/statusarea.h>
#include <fcitx/userinterfacemanager.h>
#include <fstream>
#include <functional>
#include <nlohmann/json.hpp>

#include "tests/desktops/fcitx5/driver/LoginManager.h"
#include "tests/desktops/fcitx5/driver/TextClient.h"

namespace tessarok::testing {

namespace {

using nlohmann::json;

/// How long a slow machine may take for one step, seconds.
constexpr double kPatience = 10;
/// For so long the outcome of a step must not change, seconds: nothing is to come behind it.
constexpr double kQuiet = 0.05;
constexpr std::uint64_t kPollInterval = 2000;

double seconds() {
  return static_cast<double>(fcitx::now(CLOCK_MONOTONIC)) / 1e6;
}

TextClient::Habits habitsOf(const json& client) {
  using Reports = TextClient::Reports;
  TextClient::Habits habits;
  const auto reports = client.value("reports", "nothing");
  if (reports == "empty") habits.reports = Reports::emptyText;
  if (reports == "all") habits.reports = Reports::all;
  habits.keyDelay = client.value("keyDelay", 0u);
  habits.deletesBytes = client.value("deletesBytes", false);
  habits.readsShiftLate = client.value("readsShiftLate", false);
  habits.frontend = client.value("frontend", habits.frontend);
  habits.resets = client.value("resets", false);
  habits.resetsAlways = client.value("resetsAlways", false);
  habits.ordersEvents = client.value("ordersEvents", false);
  return habits;
}

TextClient::Stroke strokeOf(const json& value) {
  const fcitx::KeyStates states(value.value("states", 0u));
  return {static_cast<fcitx::KeySym>(value.at("symbol").get<unsigned>()), states,
          value.at("key").get<int>()};
}

}  // namespace

class DriverAddon final : public fcitx::AddonInstance {
 public:
  explicit DriverAddon(fcitx::Instance& instance) : instance_(instance) {
    std::ifstream(std::getenv("TESSAROK_DRIVER_SCRIPT")) >> script_;
    login_ = LoginManager::onSystemBus(instance_.eventLoop());
    timer_ =
        instance_.eventLoop().addTimeEvent(CLOCK_MONOTONIC, fcitx::now(CLOCK_MONOTONIC), 1,
                                           [this](fcitx::EventSourceTime* timer, std::uint64_t) {
                                             try {
                                               timer->setNextInterval(advance());
                                               timer->setOneShot();
                                             } catch (const std::exception& error) {
                                               finish(error.what());
                                             }
                                             return true;
                                           });
  }

 private:
  /// Microseconds until it is to be called again.
  std::uint64_t advance() {
    if (!client_) return begin();
    if (nextStroke_ < strokes_.size()) {
      type();
      // One key a turn of the loop, the next one at once.
      return interval_;
    }
    const auto fault = stepFault();
    if (!fault.empty()) {
      doneAt_ = 0;
      if (seconds() > startedAt_ + kPatience) finish(fault);
      return kPollInterval;
    }
    if (doneAt_ == 0) doneAt_ = seconds();
    if (seconds() < doneAt_ + kQuiet) return kPollInterval;
    startStep();
    return 0;
  }

  std::uint64_t begin() {
    client_ = std::make_unique<TextClient>(instance_, habitsOf(script_.at("client")));
    client_->focusIn();
    interval_ = script_.value("interval", 0u);
    startedAt_ = seconds();
    return kPollInterval;
  }

  [[nodiscard]] std::string stepFault() {
    // The corrector is there when its item is.
    if (client_->statusArea().actions(fcitx::StatusGroup::AfterInputMethod).empty()) {
      return "the corrector does not show up";
    }
    if (step_ == 0) return loginFault();
    const auto& step = script_["steps"][step_ - 1];
    const auto wrong = [&](const char* what, const json& found) {
      if (!step.contains(what) || step[what] == found) return std::string();
      return "step " + step.dump() + ": the " + what + " is " + found.dump();
    };
    if (auto fault = wrong("text", client_->text()); !fault.empty()) return fault;
    if (auto fault = wrong("caret", client_->caret()); !fault.empty()) return fault;
    if (!client_->isIdle()) return "step " + step.dump() + ": keys are on their way";
    if (step.contains("page")) {
      if (auto fault = wrong("page", page()); !fault.empty()) return fault;
    }
    if (auto fault = wrong("source", instance_.inputMethod(client_.get())); !fault.empty()) {
      return fault;
    }
    return seconds() < startedAt_ + step.value("wait", 0.0) ? "too early" : "";
  }

  void startStep() {
    if (step_ == script_["steps"].size()) return finish("");
    const auto& step = script_["steps"][step_++];
    startedAt_ = seconds();
    doneAt_ = 0;
    strokes_ = json::array();
    nextStroke_ = 0;
    if (step.contains("strokes")) strokes_ = step["strokes"];
    if (step.contains("click")) client_->click();
    if (step.contains("login")) login_->tell(step["login"].get<std::string>());
    if (step.contains("select")) {
      instance_.setCurrentInputMethod(client_.get(), step["select"].get<std::string>(), true);
    }
    if (step.contains("password")) setPassword(step["password"].get<bool>());
    if (step.contains("refocus")) {
      client_->focusOut();
      client_->focusIn();
    }
    if (step.contains("choose")) choose(step["choose"].get<std::string>());
    if (step.contains("enable")) enable(step["enable"]);
    if (step.contains("configure")) configure(step["configure"]);
    if (step.contains("reload")) {
      std::ofstream(std::getenv("TESSAROK_DRIVER_SETTINGS")) << step["reload"].dump();
      corrector().reloadConfig();
    }
  }

  /// The corrector asks for its session, and only then hears of it.
  [[nodiscard]] std::string loginFault() const {
    if (!login_ || login_->isAsked()) return {};
    return "nobody watches the session";
  }

  void type() {
    const auto& stroke = strokes_[nextStroke_++];
    if (stroke.value("up", false)) {
      client_->release(strokeOf(stroke));
    } else {
      client_->press(strokeOf(stroke));
    }
  }

  void setPassword(bool isPassword) {
    auto flags = client_->capabilityFlags();
    client_->setCapabilityFlags(isPassword ? flags | fcitx::CapabilityFlag::Password
                                           : flags.unset(fcitx::CapabilityFlag::Password));
  }

  void choose(const std::string& title) {
    for (int i = 1;; ++i) {
      auto* action = instance_.userInterfaceManager().lookupAction("tessarok-" + std::to_string(i));
      if (action == nullptr) throw std::runtime_error("there is no menu item " + title);
      if (action->shortText(client_.get()) == title) return action->activate(client_.get());
    }
  }

  void enable(const json& names) {
    auto& manager = instance_.inputMethodManager();
    auto group = manager.currentGroup();
    group.inputMethodList().clear();
    for (const auto& name : names)
      group.inputMethodList().emplace_back(name.get<std::string>());
    manager.setGroup(std::move(group));
  }

  [[nodiscard]] fcitx::AddonInstance& corrector() {
    auto* addon = instance_.addonManager().addon("tessarok");
    if (addon == nullptr) throw std::runtime_error("there is no corrector");
    return *addon;
  }

  /// What the configuration page of the corrector shows.
  [[nodiscard]] json page() {
    fcitx::RawConfig raw;
    corrector().getConfig()->save(raw);
    auto shown = json::object();
    for (const auto& name : raw.subItems())
      shown[name] = *raw.valueByPath(name);
    return shown;
  }

  /// As a person who changes values on the page.
  void configure(const json& values) {
    fcitx::RawConfig raw;
    for (const auto& [name, value] : values.items())
      raw.setValueByPath(name, value.get<std::string>());
    corrector().setConfig(raw);
  }

  void finish(const std::string& fault) {
    if (isFinished_) return;
    isFinished_ = true;
    std::ofstream(std::getenv("TESSAROK_DRIVER_RESULT")) << fault;
    client_.reset();
    timer_->setEnabled(false);
    instance_.exit();
  }

  fcitx::Instance& instance_;
  json script_;
  std::unique_ptr<TextClient> client_;
  /// Null when there is no bus for it.
  std::unique_ptr<LoginManager> login_;
  std::unique_ptr<fcitx::EventSourceTime> timer_;
  std::size_t step_ = 0;
  json strokes_ = json::array();
  std::size_t nextStroke_ = 0;
  unsigned interval_ = 0;
  double startedAt_ = 0;
  double doneAt_ = 0;
  bool isFinished_ = false;
};

class DriverFactory final : public fcitx::AddonFactory {
 public:
  fcitx::AddonInstance* create(fcitx::AddonManager* manager) override {
    return new DriverAddon(*manager->instance());
  }
};

}  // namespace tessarok::testing

FCITX_ADDON_FACTORY(tessarok::testing::DriverFactory)
