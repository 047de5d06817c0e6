#include "desktops/inputmethod/KeyFlow.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "desktops/inputmethod/KeyNames.h"
#include "desktops/xkb/HardwareKeys.h"
#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/InputSource.h"

namespace tessarok::inputmethod {

namespace {

using platform::EventType;
using Way = ClientField::Way;
namespace eventFlags = platform::eventFlags;
namespace hardwareKeys = xkb::hardwareKeys;

/// Seconds for which a program's reset may be the answer to a key that was sent to it: by the
/// corrector, and because the person pressed it. Nobody clicks so soon behind a key.
constexpr double kOwnResetDelay = 1;
constexpr double kResetDelay = 0.3;
/// Seconds behind a switch in which keys may come that were pressed before it.
constexpr double kWayOfKeys = 0.5;
/// Seconds for which held keys wait for the text field that the last key has brought forward.
constexpr double kNextField = 1;
/// A program that tells nothing of its text gets so many times what its keys came late, at most so
/// many seconds.
constexpr double kSlower = 3;
constexpr double kMostSettle = 0.3;
/// Stands for what is composed of several keys: a letter that is on no key of either layout, so
/// that the word is not followed until it ends.
constexpr std::u16string_view kComposed = u"é";

constexpr std::uint64_t kShortcut = eventFlags::control | eventFlags::option | eventFlags::command;

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
  event.modifiers = keyNames::flagsOf(key.states);
  event.payload = keyNames::payloadOf(key);
  event.autorepeat = (key.states & keyStates::repeat) != 0;
  const bool isShortcut = (event.modifiers & kShortcut) != 0;
  if (!isShortcut && keyNames::isPrintable(key)) press.text = keyNames::textOf(key);
  applyManualKey(event, key);
  applyPauseKey(event);
  return press;
}

void KeyFlow::applyManualKey(FieldEvent& event, const Key& key) const {
  const bool isPlain = (event.modifiers & (kShortcut | eventFlags::shift)) == 0;
  if (key.code == hardwareKeys::kPause && manualKey_.pause && isPlain) {
    event.code = keyCodes::space;
    event.modifiers |= eventFlags::option;
  } else if (event.code == keyCodes::space && !manualKey_.altSpace &&
             (event.modifiers & eventFlags::option) != 0) {
    event.code = hardwareKeys::kNoKey;
  }
}

void KeyFlow::applyPauseKey(FieldEvent& event) const {
  if (!xkb::PauseKey::isOne(event.code)) return;
  const auto layout = InputSource::languageOf(parts_.inputSources.current());
  // The corrector knows the keys that pause by their codes; this one is a letter.
  if (!pauseKey_.pauses(event.code, layout)) event.code = hardwareKeys::kNoKey;
}

bool KeyFlow::markComposed(const Client& client, Press& press) const {
  if (parts_.inputSources.isKeyboard(client) && !client.isComposing()) return false;
  if (!press.event.payload.empty()) press.event.payload = kComposed;
  return true;
}

bool KeyFlow::isLeftAlone() const {
  return client_ && (client_->isSecret() || leftAlone_.contains(client_.get()));
}

// What the framework tells.

KeyAnswer KeyFlow::keyEvent(const std::shared_ptr<Client>& client, const KeyEvent& event) {
  if (client_ != client) focusIn(client);
  if (keyNames::isModifier(event.translated)) return modifier(event);
  modifiers_.otherKey(event.key.states);
  if (event.isRelease) return released(event);
  const auto answer = pressed(*client, event);
  isPressHidden_ = answer != KeyAnswer::pass;
  return answer;
}

KeyAnswer KeyFlow::modifier(const KeyEvent& event) {
  modifiers_.modifierKey(event, now());
  if (!steps_.empty()) runSoon();
  // A framework may take Shift for pressed alone, which switches the layout, when it has seen no
  // other key between its press and its release. One that was held back has been between them.
  if (event.isRelease && isPressHidden_) return KeyAnswer::hide;
  isPressHidden_ = false;
  return KeyAnswer::pass;
}

double KeyFlow::settleOf(const Client& client) const {
  const auto habits = client.habits();
  if (!habits.handsKeysOn) return habits.settle;
  return std::max(habits.settle, std::min(kSlower * lag_.latest(), kMostSettle));
}

KeyAnswer KeyFlow::pressed(Client& client, const KeyEvent& event) {
  parts_.keyboard.noteKeyDown();
  lag_.keyCame(event.time, now());
  field_.setSettle(settleOf(client));
  // Switches of the layout take effect before the key. The framework has translated it already, so
  // behind one it is taken anew.
  const auto before = parts_.inputSources.inputMethodOf(client);
  parts_.runQueue();
  const bool isOutdated =
      parts_.inputSources.inputMethodOf(client) != before || isOfLayoutBefore(client, event);
  const auto late = symbolWithoutLateShift(client, event);
  // The symbol is that of the layout; the modifiers are best known to the program.
  auto press = describe({.symbol = late.value_or(event.translated.symbol),
                         .states = event.key.states,
                         .code = event.translated.code});
  press.event.key = event.key;
  const auto [down, isNew] = keysDown_.insert_or_assign(event.translated.code, press.event.code);
  press.event.autorepeat = press.event.autorepeat || !isNew;
  const bool isTranslated = event.translated.symbol != event.key.symbol;
  const bool sends = late || losesShift(client, press);
  const bool commits = !press.text.empty() && (sends || (event.isTranslating && isTranslated));
  const auto way = commits ? Way::text : Way::key;
  // What has no text is handed back as a key, or not at all.
  const bool mustPass = press.text.empty() && client.habits().takesNoKeysBack;
  if (isOutdated || mustWait(way)) {
    if (!mustPass) return hold(event);
    makeWay(client);
  }
  const bool composes = markComposed(client, press);
  if (!showToTap(press.event)) {
    const auto answer = mustPass ? takenButKept(client) : KeyAnswer::take;
    if (answer == KeyAnswer::take) return answer;
  }
  if (composes) press.text.clear();
  notePassed(press, way, false);
  if (!sends || press.text.empty()) return KeyAnswer::pass;
  client.commit(press.text);
  return KeyAnswer::take;
}

bool KeyFlow::losesShift(const Client& client, const Press& press) {
  return !press.text.empty() && (press.event.modifiers & eventFlags::shift) != 0 &&
         client.habits().losesShift;
}

std::optional<std::uint32_t> KeyFlow::symbolWithoutLateShift(const Client& client,
                                                             const KeyEvent& event) const {
  if (!event.isTranslating || event.key.code <= 0) return std::nullopt;
  const auto layout = parts_.inputSources.layoutOf(client);
  if (!layout) return std::nullopt;
  const auto code = static_cast<std::uint32_t>(event.key.code);
  const auto right = layout->symbol(code, event.key.states);
  const auto otherwise = layout->symbol(code, event.key.states ^ keyStates::shift);
  const auto found = event.translated.symbol;
  if (found == right || found != otherwise) return std::nullopt;
  return right;
}

bool KeyFlow::isOfLayoutBefore(const Client& client, const KeyEvent& event) const {
  if (!layoutBefore_ || now() > layoutBeforeUntil_ || event.key.code <= 0) return false;
  if (isLeftAlone()) return false;
  const auto layout = parts_.inputSources.layoutOf(client);
  if (!layout) return false;
  const auto code = static_cast<std::uint32_t>(event.key.code);
  const auto found = event.translated.symbol;
  return found != layout->symbol(code, event.key.states) &&
         found == layoutBefore_->symbol(code, event.key.states);
}

void KeyFlow::selectInputMethod(Client& client, const std::string& inputMethod) {
  layoutBefore_ = parts_.inputSources.layoutOf(client);
  layoutBeforeUntil_ = now() + kWayOfKeys;
  static_cast<void>(parts_.inputSources.selectNow(client, inputMethod));
}

KeyAnswer KeyFlow::released(const KeyEvent& event) {
  const auto found = keysDown_.find(event.translated.code);
  auto code = keyNames::codeOf(event.translated);
  if (found != keysDown_.end()) {
    code = found->second;
    keysDown_.erase(found);
  }
  if (heldKeys_.erase(event.translated.code) > 0) return KeyAnswer::take;
  FieldEvent up;
  up.type = EventType::keyUp;
  up.code = code;
  return showToTap(up) ? KeyAnswer::pass : KeyAnswer::take;
}

bool KeyFlow::mustWait(Way way) {
  if (!steps_.empty()) return true;
  if (isLeftAlone() || !parts_.taps.isOpen()) return false;
  if (parts_.inputSources.unsettledUntil(now())) return true;
  if (!unsettledUntil()) return false;
  if (field_.lastWay() == way) {
    return way == Way::text && field_.isLastOwn() && client_->habits().takesOneTextAtATime;
  }
  // A key behind a text that the framework itself has sent is no worse off than without the
  // corrector.
  return field_.isLastOwn() || way == Way::text;
}

KeyAnswer KeyFlow::hold(const KeyEvent& event) {
  heldKeys_.insert(event.translated.code);
  steps_.push_back(Held{event.key, event.time});
  runSoon();
  return KeyAnswer::take;
}

void KeyFlow::leaveAsTyped(Retype& step) {
  // A word has as many Characters in either layout.
  const text::Characters characters(step.text);
  auto end = characters.begin();
  for (; step.erase > 0 && end != text::Characters::end(); --step.erase)
    ++end;
  std::string rest;
  for (; end != text::Characters::end(); ++end)
    rest += *end;
  step = {.erase = 0, .text = std::move(rest)};
}

void KeyFlow::makeWay(Client& client) {
  for (auto& step : steps_) {
    if (auto* words = std::get_if<Retype>(&step)) leaveAsTyped(*words);
  }
  hurry(client);
}

KeyAnswer KeyFlow::takenButKept(Client& client) {
  const auto handsBack = [](const Step& step) { return std::holds_alternative<Forward>(step); };
  if (std::none_of(steps_.begin(), steps_.end(), handsBack)) return KeyAnswer::take;
  std::erase_if(steps_, handsBack);
  makeWay(client);
  return KeyAnswer::pass;
}

void KeyFlow::focusIn(const std::shared_ptr<Client>& client) {
  client_ = client;
  // Another program's keys may be timed by another clock.
  lag_ = {};
  parts_.inputSources.setClient(client);
  field_.reset(settleOf(*client));
  modifiers_.reset();
  keysDown_.clear();
  resetsExpected_ = 0;
  announceOtherPlace();
  textReported(*client);
  if (!steps_.empty()) runSoon();
}

void KeyFlow::focusOut(Client& client) {
  if (client_.get() != &client) return;
  const bool isRetyping = std::any_of(steps_.begin(), steps_.end(), [](const Step& step) {
    return !std::holds_alternative<Held>(step);
  });
  if (isRetyping) hurry(client);
  client_.reset();
  keysDown_.clear();
  announceOtherPlace();
  if (steps_.empty()) return;
  // The keys behind a Tab are meant for the field that it leads to.
  const auto alarm = ++alarm_;
  parts_.runLoop.after(kNextField, [this, alarm] {
    if (alarm == alarm_ && !client_) steps_.clear();
  });
}

void KeyFlow::destroyed(Client& client) {
  leftAlone_.erase(&client);
  if (client_.get() != &client) return;
  client_.reset();
  steps_.clear();
  parts_.inputSources.setClient(nullptr);
  parts_.inputSources.forgetPutOff();
  announceOtherPlace();
}

void KeyFlow::delivered() {
  if (client_) field_.setSettle(settleOf(*client_));
  if (!steps_.empty()) runSoon();
}

void KeyFlow::inputMethodSettled() {
  layoutBeforeUntil_ = now() + kWayOfKeys;
  if (!steps_.empty()) runSoon();
}

void KeyFlow::expectReset(bool own) {
  resetsExpected_ = now() < resetsExpectedUntil_ ? resetsExpected_ + 1 : 1;
  const double until = now() + (own ? kOwnResetDelay : kResetDelay);
  resetsExpectedUntil_ = std::max(resetsExpectedUntil_, until);
}

void KeyFlow::reset(Client& client) {
  if (client_.get() != &client || !steps_.empty()) return;
  if (resetsExpected_ > 0 && now() < resetsExpectedUntil_) {
    --resetsExpected_;
    return;
  }
  field_.forgetText();
  announceOtherPlace();
}

void KeyFlow::textReported(Client& client) {
  if (client_.get() != &client) return;
  const auto report = isLeftAlone() ? std::nullopt : client.report();
  if (!report) {
    field_.reportedNothing();
  } else {
    const bool isSamePlace = field_.reported(report->before, report->isSelected, now());
    if (field_.isDamaged()) leaveAlone(client);
    if (!isSamePlace && steps_.empty()) announceOtherPlace();
  }
  if (!steps_.empty()) runSoon();
}

void KeyFlow::leaveAlone(const Client& client) {
  field_.reset(settleOf(client));
  if (!leftAlone_.insert(&client).second) return;
  const auto program = client.program();
  parts_.log.write("Tessarok: " + (program.empty() ? "a program" : program) +
                   " did not erase what it was asked to; nothing more is corrected in that text "
                   "field");
  announceOtherPlace();
}

void KeyFlow::announceOtherPlace() {
  if (onOtherPlace) onOtherPlace();
}

// The tap.

bool KeyFlow::showToTap(FieldEvent& event) {
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
  if (isLeftAlone()) return field_.forgetText();
  const ClientField::Sending sending{.way = way, .isOwn = own, .now = now()};
  // Firefox with a module of GTK resets at every letter. Where reports tell of clicks anyway
  // nothing is missed by that.
  if (press.text.empty() || field_.hasReports()) expectReset(own);
  if (!press.text.empty()) return field_.typed(press.text, sending);
  const bool isPlain = (press.event.modifiers & kShortcut) == 0;
  if (press.event.code == keyCodes::backspace && isPlain) return field_.erased(1, sending);
  field_.keyOfUnknownEffect(sending);
}

}  // namespace tessarok::inputmethod
