// Retyping, and the keys that wait for it.

#include <algorithm>
#include <string_view>
#include <utility>
#include <xkbcommon/xkbcommon-keysyms.h>

#include "desktops/inputmethod/KeyFlow.h"
#include "desktops/inputmethod/Scalars.h"
#include "desktops/xkb/HardwareKeys.h"

namespace tessarok::inputmethod {

namespace {

using platform::EventType;
using Way = ClientField::Way;
namespace hardwareKeys = xkb::hardwareKeys;

/// Seconds between two questions for a report.
constexpr double kAskAgain = 0.03;

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
  for (auto client = client_; client && !steps_.empty(); client = client_) {
    const auto until = perform(*client);
    if (until || steps_.empty() || client_ != client) sendText(*client);
    if (!until) continue;
    runAt(*until, *client);
    break;
  }
  isRunning_ = false;
  parts_.flush();
}

void KeyFlow::runAt(double time, const Client& client) {
  const bool asks =
      client.habits().reportsWhenAsked && field_.hasReports() && time > now() + kAskAgain;
  parts_.runLoop.after(asks ? kAskAgain : time - now(), [this, asks, alarm = alarm_] {
    if (alarm != alarm_) return;
    if (asks && client_) client_->askForReport();
    run();
  });
}

std::optional<double> KeyFlow::perform(Client& client) {
  if (!isHurrying_) {
    if (const auto until = parts_.inputSources.unsettledUntil(now())) return until;
  }
  auto& step = steps_.front();
  if (auto* words = std::get_if<Retype>(&step)) {
    if (const auto until = retype(client, *words)) return until;
    steps_.pop_front();
  } else if (const auto* select = std::get_if<Select>(&step)) {
    // A switch keeps whoever passes texts on from doing so.
    if (const auto until = undeliveredUntil(client)) return until;
    const auto inputMethod = select->inputMethod;
    steps_.pop_front();
    selectInputMethod(client, inputMethod);
  } else if (const auto* again = std::get_if<Forward>(&step)) {
    if (const auto until = waitForKey(client, again->key.states)) return until;
    const auto key = again->key;
    steps_.pop_front();
    expectReset(true);
    field_.keyOfUnknownEffect(own(Way::key));
    forward(client, key);
  } else {
    return replayFirst(client);
  }
  return std::nullopt;
}

std::optional<double> KeyFlow::retype(Client& client, Retype& step) {
  if (step.erase > 0) {
    if (const auto until = unsettledUntil()) return until;
    if (!mayDelete(client, step.erase)) {
      if (const auto until = waitForModifiers(client, 0)) return until;
      // Backspaces would have to be handed back.
      if (client.habits().takesNoKeysBack) leaveAsTyped(step);
    }
    if (step.erase > 0) erase(client, std::exchange(step.erase, 0));
  }
  if (step.text.empty()) return std::nullopt;
  if (const auto until = waitForWay(client, Way::text)) return until;
  commit(client, step.text);
  return std::nullopt;
}

std::optional<double> KeyFlow::unsettledUntil() {
  if (isHurrying_) return std::nullopt;
  const auto undelivered = client_ ? client_->undeliveredUntil(now()) : std::nullopt;
  if (undelivered && field_.isStillOnItsWay(now())) return undelivered;
  return field_.unsettledUntil(now());
}

std::optional<double> KeyFlow::undeliveredUntil(const Client& client) {
  return isHurrying_ ? std::nullopt : client.undeliveredUntil(now());
}

std::optional<double> KeyFlow::waitForWay(const Client& client, Way way) {
  const auto until = unsettledUntil();
  if (!until || field_.lastWay() != way) return until;
  const bool overtakes =
      way == Way::text && gathered_.empty() && client.habits().takesOneTextAtATime;
  return overtakes ? until : std::nullopt;
}

std::optional<double> KeyFlow::waitForKey(const Client& client, std::uint32_t states) {
  if (const auto until = waitForWay(client, Way::key)) return until;
  return waitForModifiers(client, states);
}

std::optional<double> KeyFlow::waitForModifiers(const Client& client, std::uint32_t states) {
  if (isHurrying_ || !client.habits().readsModifiersLate) return std::nullopt;
  return modifiers_.waitFor(states, now());
}

bool KeyFlow::mayDelete(const Client& client, std::size_t characters) const {
  if (!client.canDelete()) return false;
  const auto erased = field_.last(characters);
  if (!field_.showsTyped() || !erased) return false;
  return !client.habits().maySwapBytes || isAscii(*erased);
}

void KeyFlow::erase(Client& client, std::size_t characters) {
  // What is known of the field is brought up to date first: a program may answer at once.
  field_.correctionBegins(characters);
  if (mayDelete(client, characters)) {
    const auto count = static_cast<std::size_t>(scalars(*field_.last(characters)));
    field_.erased(characters, own(Way::text));
    sendText(client);
    return client.deleteBefore(count);
  }
  const Key backspace{
      .symbol = XKB_KEY_BackSpace, .states = 0, .code = hardwareKeys::xKeyOf(keyCodes::backspace)};
  for (std::size_t i = 0; i < characters; ++i) {
    expectReset(true);
    field_.erased(1, own(Way::key));
    forward(client, backspace);
  }
}

void KeyFlow::commit(Client& client, const std::string& text) {
  field_.typed(text, own(Way::text));
  if (!client.habits().takesOneTextAtATime) return client.commit(text);
  gathered_ += text;
}

void KeyFlow::forward(Client& client, const Key& key) {
  sendText(client);
  client.forward(key);
}

void KeyFlow::sendText(Client& client) {
  if (gathered_.empty()) return;
  client.commit(std::exchange(gathered_, {}));
}

Key KeyFlow::translated(const Client& client, const Key& key) const {
  const auto layout = parts_.inputSources.layoutOf(client);
  if (!layout || key.code <= 0) return key;
  const auto symbol = layout->symbol(static_cast<std::uint32_t>(key.code), key.states);
  return {.symbol = symbol, .states = key.states, .code = key.code};
}

std::optional<double> KeyFlow::replayFirst(Client& client) {
  const auto held = std::get<Held>(steps_.front());
  const auto key = translated(client, held.key);
  auto press = describe(key);
  const auto way = press.text.empty() ? Way::key : Way::text;
  const auto until =
      way == Way::key ? waitForKey(client, held.key.states) : waitForWay(client, Way::text);
  if (until) return until;
  steps_.pop_front();
  if (client.hasFocus()) {
    replay(client, held, key, press);
  } else if (way == Way::text) {
    commit(client, press.text);
  } else {
    forward(client, key);
  }
  return std::nullopt;
}

void KeyFlow::replay(Client& client, const Held& held, const Key& translated, Press& press) {
  press.event.key = held.key;
  const auto code = press.event.code;
  const auto after =
      client.replay(held.key, translated, held.time, [&] { return replayed(client, press); });
  isPressHidden_ = isPressHidden_ || after.isHidden;
  if (!after.isTaken) forward(client, held.key);
  FieldEvent up;
  up.type = EventType::keyUp;
  up.code = code;
  // Its release was not sent on, or never will be, so nothing depends on the answer.
  static_cast<void>(showToTap(up));
}

KeyAnswer KeyFlow::replayed(Client& client, Press& press) {
  const bool composes = markComposed(client, press);
  if (!showToTap(press.event)) return KeyAnswer::take;
  if (composes) press.text.clear();
  if (press.text.empty()) {
    notePassed(press, Way::key, true);
    return KeyAnswer::pass;
  }
  if (isLeftAlone()) {
    client.commit(press.text);
  } else {
    commit(client, press.text);
  }
  return KeyAnswer::take;
}

void KeyFlow::hurry(Client& client) {
  isHurrying_ = true;
  while (!steps_.empty())
    static_cast<void>(perform(client));
  sendText(client);
  isHurrying_ = false;
  parts_.flush();
}

void KeyFlow::finish() {
  if (const auto client = client_; client && !isRunning_) hurry(*client);
  steps_.clear();
}

}  // namespace tessarok::inputmethod
