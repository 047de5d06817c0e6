#include "tests/desktops/inputmethod/SimulatedSession.h"

#include <algorithm>
#include <utility>

#include "desktops/inputmethod/KeyNames.h"
#include "desktops/layouts/KeyTable.h"
#include "desktops/xkb/HardwareKeys.h"
#include "platform/Desktop.h"
#include "typing/DiagnosticLog.h"
#include "words/IgnoreList.h"

namespace tessarok::testing {

namespace {

using inputmethod::Key;
using inputmethod::KeyAnswer;
using inputmethod::KeyEvent;
using inputmethod::KeyFlow;
using inputmethod::XkbLayout;
using virtualdesktop::VirtualDesktop;
using xkb::layoutNames::Layout;
namespace keyStates = inputmethod::keyStates;

constexpr std::uint32_t kShiftKey = 50;
/// Seconds at most that a key takes to the input method.
constexpr double kWayThere = 0.004;
/// What the desktop takes to switch its layout.
constexpr double kSwitchLeast = 0.005;
constexpr double kSwitchMost = 0.06;
/// For so long nothing more may happen.
constexpr double kQuiet = 3;

Layout layoutNamed(const std::string& name) {
  return {name, ""};
}

}  // namespace

/// Two input methods, "us" and "ru".
class SimulatedSession::Methods final : public inputmethod::InputMethods {
 public:
  explicit Methods(Layouts layouts) : layouts_(layouts) {}

  std::vector<std::string> chosen() const override { return {"us", "ru"}; }
  std::string current(const inputmethod::Client*) const override { return current_; }
  std::optional<Layout> layoutOf(const std::string& inputMethod) const override {
    return layoutNamed(inputMethod);
  }
  std::string identifierOf(const std::string& inputMethod) const override { return inputMethod; }
  bool select(inputmethod::Client&, const std::string& inputMethod) override {
    if (layouts_ == Layouts::frameworks) {
      current_ = inputMethod;
    } else if (current_ != inputMethod) {
      wanted_ = inputMethod;
      onSwitch();
    }
    return true;
  }
  std::optional<double> unsettledUntil(double now) override {
    return wanted_.empty() ? std::nullopt : std::optional(now + 1);
  }

  void settle() { current_ = std::exchange(wanted_, {}); }

  /// The desktop has been asked to switch.
  std::function<void()> onSwitch;

 private:
  Layouts layouts_;
  std::string current_ = "us";
  /// Empty when nothing is.
  std::string wanted_;
};

/// The corrector's desktop: the virtual one, with the way of the keys of input methods.
class SimulatedSession::Desktop final : public PartlyVirtualDesktop {
 public:
  Desktop(const std::filesystem::path& home, Layouts layouts)
      : base_(home, TESSAROK_TEST_DATA),
        methods(layouts),
        sources_(methods),
        keyboard_(base_.clock(), platform::PhysicalLayoutType::iso),
        flow({.taps = taps_,
              .inputSources = sources_,
              .keyboard = keyboard_,
              .runLoop = base_.runLoop(),
              .clock = base_.clock(),
              .runQueue = [this] { base_.endTurn(); },
              .flush = [] {},
              .log = base_.systemLog()},
             {}) {
    flow.onOtherPlace = [this] {
      base_.workspaceNotifications().announce(platform::Notification::applicationActivated);
    };
  }

  VirtualDesktop& base() override { return base_; }
  inputmethod::FieldEventTaps& eventTaps() override { return taps_; }
  plain::PlainEvents<inputmethod::FieldEvent>& events() override { return events_; }
  inputmethod::FieldInputSources& inputSources() override { return sources_; }
  plain::OnlyKeyboard& keyboard() override { return keyboard_; }

 private:
  VirtualDesktop base_;

 public:
  Methods methods;

 private:
  inputmethod::FieldEventTaps taps_;
  inputmethod::FieldInputSources sources_;
  plain::PlainEvents<inputmethod::FieldEvent> events_;
  plain::OnlyKeyboard keyboard_;

 public:
  KeyFlow flow;
};

SimulatedSession::SimulatedSession(const SimulatedProgram::Kind& kind, Layouts layouts,
                                   unsigned seed)
    : layouts_(layouts),
      random_(seed),
      home_(std::make_unique<virtualdesktop::TemporaryDirectory>()),
      desktop_(std::make_unique<Desktop>(home_->path(), layouts)) {
  platform::setDesktop(*desktop_);
  auto& base = desktop_->base();
  const auto textOf = [this](const Key& key) {
    if (layouts_ == Layouts::desktopsBeforeTheWay) return inputmethod::keyNames::textOf(key);
    const auto layout = layouts_ == Layouts::frameworks ? "us" : desktop_->methods.current(nullptr);
    const auto symbol = XkbLayout::named(layoutNamed(layout))
                            ->symbol(static_cast<std::uint32_t>(key.code), key.states);
    return inputmethod::keyNames::textOf({.symbol = symbol, .states = key.states});
  };
  program_ = std::make_shared<SimulatedProgram>(
      kind,
      SimulatedProgram::Surroundings{.loop = base.runLoop(),
                                     .clock = base.clock(),
                                     .random = random_,
                                     .textOf = textOf,
                                     .modifiers = [this] { return modifiers_; },
                                     .onReport = [this] { desktop_->flow.textReported(*program_); },
                                     .onReset = [this] { desktop_->flow.reset(*program_); }});
  desktop_->methods.onSwitch = [this] {
    const auto takes = kSwitchLeast + upTo(kSwitchMost - kSwitchLeast);
    desktop_->base().runLoop().after(takes, [this] {
      desktop_->methods.settle();
      desktop_->flow.inputMethodSettled();
    });
  };
  delegate_ = std::make_shared<AppDelegate>();
  delegate_->applicationDidFinishLaunching();
  base.endTurn();
  desktop_->flow.focusIn(program_);
  wait(1);
}

SimulatedSession::~SimulatedSession() {
  delegate_->applicationWillTerminate();
  desktop_->base().endTurn();
  IgnoreList::flush();
  DiagnosticLog::drain();
}

double SimulatedSession::upTo(double seconds) {
  return std::uniform_real_distribution<double>(0, seconds)(random_);
}

void SimulatedSession::wait(double seconds) {
  desktop_->base().wait(seconds);
}

void SimulatedSession::type(std::string_view keys, double mostBetween) {
  for (const char character : keys) {
    const auto stroke = [character]() -> layouts::KeyTable::Stroke {
      if (character == '\n') return {keyCodes::returnKey, false};
      if (character == '\b') return {keyCodes::backspace, false};
      if (character == ' ') return {keyCodes::space, false};
      return *layouts::KeyTable::english().strokeFor(static_cast<char32_t>(character));
    }();
    const auto xKey = xkb::hardwareKeys::xKeyOf(stroke.code);
    if (stroke.shift) {
      key(kShiftKey, false);
      wait(upTo(mostBetween));
    }
    key(xKey, false);
    wait(upTo(mostBetween));
    key(xKey, true);
    if (!stroke.shift) continue;
    wait(upTo(mostBetween));
    key(kShiftKey, true);
  }
}

void SimulatedSession::key(std::uint32_t xKey, bool isRelease) {
  KeyEvent event;
  event.isTranslating = layouts_ == Layouts::frameworks;
  event.isRelease = isRelease;
  const auto layout =
      layouts_ == Layouts::desktopsBeforeTheWay ? desktop_->methods.current(nullptr) : "us";
  event.key = {.symbol = XkbLayout::named(layoutNamed(layout))->symbol(xKey, modifiers_),
               .states = modifiers_,
               .code = static_cast<int>(xKey)};
  if (xKey == kShiftKey) modifiers_ = isRelease ? 0 : keyStates::shift;
  auto& clock = desktop_->base().clock();
  lastArrival_ = std::max(lastArrival_, clock.uptime() + upTo(kWayThere));
  ++arriving_;
  desktop_->base().runLoop().after(lastArrival_ - clock.uptime(), [this, event] {
    --arriving_;
    arrive(event);
  });
}

void SimulatedSession::arrive(const KeyEvent& pressed) {
  auto event = pressed;
  const auto layout = XkbLayout::named(layoutNamed(desktop_->methods.current(nullptr)));
  event.translated = event.key;
  if (layouts_ != Layouts::desktopsBeforeTheWay) {
    event.translated.symbol =
        layout->symbol(static_cast<std::uint32_t>(event.key.code), event.key.states);
  }
  // A desktop lets no key pass while it switches.
  if (!event.isTranslating) event.key = event.translated;
  const auto answer = desktop_->flow.keyEvent(program_, event);
  if (answer == KeyAnswer::take || event.isRelease || event.key.code == kShiftKey) return;
  const auto text = inputmethod::keyNames::textOf(event.translated);
  if (event.isTranslating && event.translated.symbol != event.key.symbol && !text.empty()) {
    return program_->commitOfFramework(text);
  }
  auto key = event.key;
  if (program_->habits().losesShift) key.states = modifiers_;
  program_->key(key);
}

std::string SimulatedSession::textInTheEnd() {
  std::string before;
  do {
    before = program_->text();
    wait(kQuiet);
  } while (program_->text() != before || !program_->isIdle() || arriving_ > 0);
  return before;
}

std::string SimulatedSession::messages() {
  std::string all;
  for (const auto& message : desktop_->base().systemLog().take())
    all += message + "\n";
  return all;
}

}  // namespace tessarok::testing
