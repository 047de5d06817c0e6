// Retyping, and the keys that wait for it.

#include <algorithm>
#include <fcitx-utils/utf8.h>
#include <string_view>
#include <utility>

#include "desktops/fcitx5/KeyFlow.h"
#include "desktops/xkb/HardwareKeys.h"

namespace tessarok::fcitx5 {

namespace {

using fcitx::CapabilityFlag;
using fcitx::InputContext;
using fcitx::Key;
using fcitx::KeyStates;
using platform::EventType;
using Way = ClientField::Way;
namespace hardwareKeys = xkb::hardwareKeys;

bool isWayland(const InputContext& context) {
  return std::string_view(context.frontend()).starts_with("wayland");
}

bool isAscii(std::string_view text) {
  return std::none_of(text.begin(), text.end(),
                      [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; });
}

}  // namespace

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
  if (!context.capabilityFlags().test(CapabilityFlag::SurroundingText)) return false;
  const auto erased = field_.last(characters);
  if (!field_.showsTyped() || !erased) return false;
  // Wayland counts bytes here, and GTK 4.8 takes them for characters: of a Russian word it would
  // delete twice as much, the person's text before it as well.
  return !isWayland(context) || isAscii(*erased);
}

void KeyFlow::erase(InputContext& context, std::size_t characters) {
  // What is known of the field is brought up to date first: a program may answer at once.
  field_.correctionBegins(characters);
  if (mayDelete(context, characters)) {
    const auto count = static_cast<int>(fcitx::utf8::length(*field_.last(characters)));
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
  const bool composes = markComposed(context, press);
  if (!showToTap(press.event)) return event.filterAndAccept();
  if (press.text.empty() || composes) {
    press.text.clear();
    return notePassed(press, Way::key, true);
  }
  event.filterAndAccept();
  if (isLeftAlone()) {
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
