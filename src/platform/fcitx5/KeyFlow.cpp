#include "platform/fcitx5/KeyFlow.h"

#include <algorithm>
#include <fcitx-utils/utf8.h>
#include <fcitx/candidatelist.h>
#include <fcitx/inputpanel.h>
#include <string_view>
#include <utility>
#include <vector>

#include "Text.h"
#include "platform/EventFlags.h"
#include "platform/fcitx5/KeyNames.h"
#include "platform/xkb/HardwareKeys.h"

namespace tessarok::fcitx5 {

namespace {

using fcitx::CapabilityFlag;
using fcitx::InputContext;
using fcitx::Key;
using fcitx::KeyState;
using fcitx::KeyStates;
using platform::EventType;
using Way = ClientField::Way;
namespace eventFlags = platform::eventFlags;
namespace hardwareKeys = xkb::hardwareKeys;

/// Seconds for which a program's reset may be the answer to a key that was sent to it: by the
/// corrector, and because the person pressed it. Nobody clicks so soon behind a key.
constexpr double kOwnResetDelay = 1;
constexpr double kResetDelay = 0.3;
/// Seconds for which held keys wait for the text field that the last key has brought forward.
constexpr double kNextField = 1;
/// Stands for what is composed of several keys: a letter that is on no key of either layout, so
/// that the word is not followed until it ends.
constexpr std::u16string_view kComposed = u"é";

constexpr std::uint64_t kShortcut = eventFlags::control | eventFlags::option | eventFlags::command;

bool isWayland(const InputContext& context) {
  return std::string_view(context.frontend()).starts_with("wayland");
}

std::size_t scalars(std::string_view text) {
  return fcitx::utf8::length(text);
}

}  // namespace

KeyFlow::KeyFlow(Parts parts, xkb::ManualKey manualKey)
    : parts_(std::move(parts)), manualKey_(manualKey) {}

// What the keys are.

KeyFlow::Press KeyFlow::describe(const Key& key) const {
  Press press;
  auto& event = press.event;
  event.type = EventType::keyDown;
  event.key = key;
  event.code = keyNames::codeOf(key);
  event.modifiers = keyNames::flagsOf(key.states());
  event.payload = keyNames::payloadOf(key);
  event.autorepeat = key.states().test(KeyState::Repeat);
  const bool isShortcut = (event.modifiers & kShortcut) != 0;
  if (!isShortcut && keyNames::isPrintable(key)) press.text = Key::keySymToUTF8(key.sym());
  applyManualKey(event, key);
  return press;
}

void KeyFlow::applyManualKey(FcitxEvent& event, const Key& key) const {
  const bool isPlain = (event.modifiers & (kShortcut | eventFlags::shift)) == 0;
  if (key.code() == hardwareKeys::kPause && manualKey_.pause && isPlain) {
    event.code = keyCodes::space;
    event.modifiers |= eventFlags::option;
  } else if (event.code == keyCodes::space && !manualKey_.altSpace &&
             (event.modifiers & eventFlags::option) != 0) {
    event.code = hardwareKeys::kNoKey;
  }
}

bool KeyFlow::isComposing(InputContext& context) {
  if (!parts_.inputSources.isKeyboard(context) || parts_.instance.isComposing(&context)) {
    return true;
  }
  const auto& panel = context.inputPanel();
  return !panel.preedit().empty() || !panel.clientPreedit().empty() ||
         (panel.candidateList() && !panel.candidateList()->empty());
}

bool KeyFlow::isSecret() const {
  const auto* context = context_.get();
  return context != nullptr && context->capabilityFlags().testAny(fcitx::CapabilityFlags{
                                   CapabilityFlag::Password, CapabilityFlag::Disable});
}

// What Fcitx tells.

void KeyFlow::keyEvent(fcitx::KeyEvent& event) {
  auto* context = event.inputContext();
  if (replayed_ != nullptr) return replayed(event);
  if (context_.get() != context) focusIn(*context);
  if (keyNames::isModifier(event.rawKey())) return modifier(event);
  modifiers_.otherKey(event.origKey().states());
  if (event.isRelease()) return released(event);
  pressed(event);
  isPressHidden_ = event.filtered();
}

void KeyFlow::modifier(fcitx::KeyEvent& event) {
  modifiers_.modifierKey(event, now());
  if (!steps_.empty()) runSoon();
  // Fcitx takes Shift for pressed alone, which switches the layout, when it has seen no other key
  // between its press and its release. One that was held back has been between them.
  if (event.isRelease() && isPressHidden_) return event.filter();
  isPressHidden_ = false;
}

void KeyFlow::pressed(fcitx::KeyEvent& event) {
  auto& context = *event.inputContext();
  lastKeyDownAt_ = now();
  // Switches of the layout take effect before the key.
  parts_.runLoop.runQueue();
  const auto late = symbolWithoutLateShift(event);
  // The symbol is that of the layout; the modifiers are best known to the program.
  auto press = describe(
      Key(late.value_or(event.rawKey().sym()), event.origKey().states(), event.rawKey().code()));
  press.event.key = event.origKey();
  const auto [down, isNew] = keysDown_.insert_or_assign(event.rawKey().code(), press.event.code);
  press.event.autorepeat = press.event.autorepeat || !isNew;
  const bool isTranslated = event.rawKey().sym() != event.origKey().sym();
  const bool commits = !press.text.empty() && event.forward() && (late || isTranslated);
  const auto way = commits ? Way::text : Way::key;
  if (mustWait(way)) return hold(event);
  const bool composes = isComposing(context);
  if (composes && !press.event.payload.empty()) press.event.payload = kComposed;
  if (!showToTap(press.event)) return event.filterAndAccept();
  if (composes) press.text.clear();
  notePassed(press, way, false);
  if (!late || press.text.empty()) return;
  event.filterAndAccept();
  context.commitString(press.text);
}

std::optional<fcitx::KeySym> KeyFlow::symbolWithoutLateShift(const fcitx::KeyEvent& event) {
  const auto layout =
      event.forward() ? parts_.inputSources.layoutOf(*event.inputContext()) : nullptr;
  const auto& key = event.origKey();
  if (!layout || key.code() <= 0) return std::nullopt;
  const auto code = static_cast<std::uint32_t>(key.code());
  const auto right = layout->symbol(code, key.states());
  const auto otherwise = layout->symbol(code, key.states() ^ KeyStates(KeyState::Shift));
  const auto found = event.rawKey().sym();
  if (found == right || found != otherwise) return std::nullopt;
  return right;
}

void KeyFlow::released(fcitx::KeyEvent& event) {
  const auto found = keysDown_.find(event.rawKey().code());
  auto code = keyNames::codeOf(event.rawKey());
  if (found != keysDown_.end()) {
    code = found->second;
    keysDown_.erase(found);
  }
  if (heldKeys_.erase(event.rawKey().code()) > 0) return event.filterAndAccept();
  FcitxEvent up;
  up.type = EventType::keyUp;
  up.code = code;
  if (!showToTap(up)) event.filterAndAccept();
}

bool KeyFlow::mustWait(Way way) {
  if (!steps_.empty()) return true;
  if (isSecret() || !parts_.taps.isOpen()) return false;
  if (!unsettledUntil() || field_.lastWay() == way) return false;
  // A key behind a text that Fcitx itself has sent is no worse off than without the corrector.
  return field_.isLastOwn() || way == Way::text;
}

void KeyFlow::hold(fcitx::KeyEvent& event) {
  heldKeys_.insert(event.rawKey().code());
  steps_.push_back(Held{event.origKey(), event.time()});
  event.filterAndAccept();
  runSoon();
}

void KeyFlow::focusIn(InputContext& context) {
  context_ = context.watch();
  parts_.inputSources.setContext(&context);
  field_.reset();
  modifiers_.reset();
  keysDown_.clear();
  resetsExpected_ = 0;
  announceOtherPlace();
  textReported(context);
  if (!steps_.empty()) runSoon();
}

void KeyFlow::focusOut(InputContext& context) {
  if (context_.get() != &context) return;
  const bool isRetyping = std::any_of(steps_.begin(), steps_.end(), [](const Step& step) {
    return !std::holds_alternative<Held>(step);
  });
  if (isRetyping) hurry(context);
  context_.unwatch();
  keysDown_.clear();
  announceOtherPlace();
  if (steps_.empty()) return;
  // The keys behind a Tab are meant for the field that it leads to.
  const auto alarm = ++alarm_;
  parts_.runLoop.after(kNextField, [this, alarm] {
    if (alarm == alarm_ && context_.get() == nullptr) steps_.clear();
  });
}

void KeyFlow::destroyed(InputContext& context) {
  if (context_.get() != &context) return;
  context_.unwatch();
  steps_.clear();
  parts_.inputSources.forgetPutOff();
  announceOtherPlace();
}

void KeyFlow::expectReset(bool own) {
  resetsExpected_ = now() < resetsExpectedUntil_ ? resetsExpected_ + 1 : 1;
  const double until = now() + (own ? kOwnResetDelay : kResetDelay);
  resetsExpectedUntil_ = std::max(resetsExpectedUntil_, until);
}

void KeyFlow::reset(InputContext& context) {
  if (context_.get() != &context || !steps_.empty()) return;
  if (resetsExpected_ > 0 && now() < resetsExpectedUntil_) {
    --resetsExpected_;
    return;
  }
  field_.forgetText();
  announceOtherPlace();
}

void KeyFlow::textReported(InputContext& context) {
  if (context_.get() != &context) return;
  const auto& surrounding = context.surroundingText();
  if (!surrounding.isValid() || isSecret()) {
    field_.reportedNothing();
  } else {
    const auto& text = surrounding.text();
    const auto cursor = std::min<std::size_t>(surrounding.cursor(), scalars(text));
    const auto bytes = fcitx::utf8::ncharByteLength(text.begin(), cursor);
    const bool isSelected = surrounding.cursor() != surrounding.anchor();
    const auto before = std::string_view(text).substr(0, static_cast<std::size_t>(bytes));
    const bool isSamePlace = field_.reported(before, isSelected, now());
    if (!isSamePlace && steps_.empty()) announceOtherPlace();
  }
  if (!steps_.empty()) runSoon();
}

void KeyFlow::announceOtherPlace() {
  if (onOtherPlace) onOtherPlace();
}

// The tap.

bool KeyFlow::showToTap(FcitxEvent& event) {
  parts_.inputSources.putOffSelections(true);
  const bool passes = parts_.taps.send(event);
  queuePosted();
  parts_.inputSources.putOffSelections(false);
  return passes;
}

void KeyFlow::queuePosted() {
  std::vector<Step> steps;
  const auto retype = [&steps]() -> Retype& {
    if (steps.empty() || !std::holds_alternative<Retype>(steps.back()))
      steps.emplace_back(Retype{});
    return std::get<Retype>(steps.back());
  };
  for (const auto& event : parts_.taps.takePosted()) {
    if (event.type != EventType::keyDown) continue;
    if (event.isText) {
      std::string text;
      text::assignUtf16(event.payload, text);
      retype().text += text;
    } else if (event.code == keyCodes::backspace) {
      if (!retype().text.empty()) steps.emplace_back(Retype{});
      ++retype().erase;
    } else {
      steps.emplace_back(Forward{event.key});
    }
  }
  if (auto inputMethod = parts_.inputSources.takePutOff()) {
    steps.emplace_back(Select{std::move(*inputMethod)});
  }
  if (steps.empty()) return;
  // Before the keys that came later.
  steps_.insert(steps_.begin(), std::make_move_iterator(steps.begin()),
                std::make_move_iterator(steps.end()));
  runSoon();
}

void KeyFlow::notePassed(const Press& press, Way way, bool own) {
  if (isSecret()) return field_.forgetText();
  const ClientField::Sending sending{.way = way, .isOwn = own, .now = now()};
  if (!press.text.empty()) return field_.typed(press.text, sending);
  expectReset(own);
  const bool isPlain = (press.event.modifiers & kShortcut) == 0;
  if (press.event.code == keyCodes::backspace && isPlain) return field_.erased(1, sending);
  field_.keyOfUnknownEffect(sending);
}

// Retyping, and the keys that wait for it.

void KeyFlow::runSoon() {
  if (std::exchange(isRunDue_, true)) return;
  parts_.runLoop.async([this] {
    isRunDue_ = false;
    run();
  });
}

void KeyFlow::run() {
  if (std::exchange(isRunning_, true)) return;
  ++alarm_;
  for (auto* context = context_.get(); context != nullptr && !steps_.empty();
       context = context_.get()) {
    const auto until = perform(*context);
    if (!until) continue;
    parts_.runLoop.after(*until - now(), [this, alarm = alarm_] {
      if (alarm == alarm_) run();
    });
    break;
  }
  isRunning_ = false;
  parts_.flush();
}

std::optional<double> KeyFlow::perform(InputContext& context) {
  auto& step = steps_.front();
  if (auto* words = std::get_if<Retype>(&step)) {
    if (const auto until = retype(context, *words)) return until;
    steps_.pop_front();
  } else if (const auto* select = std::get_if<Select>(&step)) {
    const auto inputMethod = select->inputMethod;
    steps_.pop_front();
    static_cast<void>(parts_.inputSources.selectNow(context, inputMethod));
  } else if (const auto* again = std::get_if<Forward>(&step)) {
    if (const auto until = waitForKey(context, again->key.states())) return until;
    const auto key = again->key;
    steps_.pop_front();
    expectReset(true);
    field_.keyOfUnknownEffect(own(Way::key));
    forward(context, key);
  } else {
    return replayFirst(context);
  }
  return std::nullopt;
}

std::optional<double> KeyFlow::retype(InputContext& context, Retype& step) {
  if (step.erase > 0) {
    if (const auto until = unsettledUntil()) return until;
    if (!mayDelete(context, step.erase)) {
      if (const auto until = waitForModifiers(context, KeyStates())) return until;
    }
    erase(context, std::exchange(step.erase, 0));
  }
  if (step.text.empty()) return std::nullopt;
  if (const auto until = waitForWay(Way::text)) return until;
  commit(context, step.text);
  return std::nullopt;
}

std::optional<double> KeyFlow::unsettledUntil() {
  return isHurrying_ ? std::nullopt : field_.unsettledUntil(now());
}

std::optional<double> KeyFlow::waitForWay(Way way) {
  const auto until = unsettledUntil();
  return until && field_.lastWay() != way ? until : std::nullopt;
}

std::optional<double> KeyFlow::waitForKey(const InputContext& context, KeyStates states) {
  if (const auto until = waitForWay(Way::key)) return until;
  return waitForModifiers(context, states);
}

std::optional<double> KeyFlow::waitForModifiers(const InputContext& context, KeyStates states) {
  if (isHurrying_ || !isWayland(context)) return std::nullopt;
  return modifiers_.waitFor(states, now());
}

bool KeyFlow::mayDelete(const InputContext& context, std::size_t characters) const {
  return context.capabilityFlags().test(CapabilityFlag::SurroundingText) && field_.showsTyped() &&
         field_.last(characters);
}

void KeyFlow::erase(InputContext& context, std::size_t characters) {
  // What is known of the field is brought up to date first: a program may answer at once.
  if (mayDelete(context, characters)) {
    const auto count = static_cast<int>(scalars(*field_.last(characters)));
    field_.erased(characters, own(Way::text));
    return context.deleteSurroundingText(-count, static_cast<unsigned>(count));
  }
  const Key backspace(FcitxKey_BackSpace, KeyStates(), hardwareKeys::xKeyOf(keyCodes::backspace));
  for (std::size_t i = 0; i < characters; ++i) {
    expectReset(true);
    field_.erased(1, own(Way::key));
    forward(context, backspace);
  }
}

void KeyFlow::forward(InputContext& context, const Key& key) {
  context.forwardKey(key, false);
  // On Wayland one call is a press with its release.
  if (!isWayland(context)) context.forwardKey(key, true);
}

void KeyFlow::commit(InputContext& context, const std::string& text) {
  field_.typed(text, own(Way::text));
  context.commitString(text);
}

Key KeyFlow::translated(InputContext& context, const Key& key) {
  const auto layout = parts_.inputSources.layoutOf(context);
  if (!layout || key.code() <= 0) return key;
  return Key(layout->symbol(static_cast<std::uint32_t>(key.code()), key.states()), key.states(),
             key.code());
}

std::optional<double> KeyFlow::replayFirst(InputContext& context) {
  const auto held = std::get<Held>(steps_.front());
  auto press = describe(translated(context, held.key));
  const auto way = press.text.empty() ? Way::key : Way::text;
  const auto until =
      way == Way::key ? waitForKey(context, held.key.states()) : waitForWay(Way::text);
  if (until) return until;
  steps_.pop_front();
  if (context.hasFocus()) {
    replay(context, held, press);
  } else if (!press.text.empty()) {
    commit(context, press.text);
  } else {
    forward(context, held.key);
  }
  return std::nullopt;
}

void KeyFlow::replay(InputContext& context, const Held& held, Press& press) {
  const auto code = press.event.code;
  const auto alive = context.watch();
  fcitx::KeyEvent event(&context, held.key, false, held.time);
  replayed_ = &press;
  const bool isAccepted = context.keyEvent(event);
  replayed_ = nullptr;
  isPressHidden_ = isPressHidden_ || event.filtered();
  if (!isAccepted && alive.isValid()) forward(context, held.key);
  FcitxEvent up;
  up.type = EventType::keyUp;
  up.code = code;
  // Its release was not sent on, or never will be, so nothing depends on the answer.
  static_cast<void>(showToTap(up));
}

void KeyFlow::replayed(fcitx::KeyEvent& event) {
  auto& context = *event.inputContext();
  auto& press = *replayed_;
  // Fcitx has translated it by the modifiers of this moment, which belong to later keys.
  if (event.forward()) event.setRawKey(press.event.key);
  press.event.key = event.origKey();
  const bool composes = isComposing(context);
  if (composes && !press.event.payload.empty()) press.event.payload = kComposed;
  if (!showToTap(press.event)) return event.filterAndAccept();
  if (press.text.empty() || composes) {
    press.text.clear();
    return notePassed(press, Way::key, true);
  }
  event.filterAndAccept();
  if (isSecret()) {
    context.commitString(press.text);
  } else {
    commit(context, press.text);
  }
}

void KeyFlow::hurry(InputContext& context) {
  isHurrying_ = true;
  while (!steps_.empty())
    static_cast<void>(perform(context));
  isHurrying_ = false;
  parts_.flush();
}

void KeyFlow::finish() {
  if (auto* context = context_.get(); context != nullptr && !isRunning_) hurry(*context);
  steps_.clear();
}

}  // namespace tessarok::fcitx5
