#include "desktops/fcitx5/KeyFlow.h"

#include <algorithm>
#include <fcitx-utils/utf8.h>
#include <fcitx/candidatelist.h>
#include <fcitx/inputpanel.h>
#include <string_view>
#include <utility>
#include <vector>

#include "desktops/fcitx5/KeyNames.h"
#include "desktops/xkb/HardwareKeys.h"
#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/InputSource.h"

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

/// Fcitx's part for KWin and Weston: the first version of the input method protocol.
constexpr std::string_view kKwinFrontend = "wayland";

constexpr std::uint64_t kShortcut = eventFlags::control | eventFlags::option | eventFlags::command;

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
  applyPauseKey(event);
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

void KeyFlow::applyPauseKey(FcitxEvent& event) const {
  if (!xkb::PauseKey::isOne(event.code)) return;
  const auto layout = InputSource::languageOf(parts_.inputSources.current());
  // The corrector knows the keys that pause by their codes; this one is a letter.
  if (!pauseKey_.pauses(event.code, layout)) event.code = hardwareKeys::kNoKey;
}

bool KeyFlow::isComposing(InputContext& context) {
  if (!parts_.inputSources.isKeyboard(context) || parts_.instance.isComposing(&context)) {
    return true;
  }
  const auto& panel = context.inputPanel();
  return !panel.preedit().empty() || !panel.clientPreedit().empty() ||
         (panel.candidateList() && !panel.candidateList()->empty());
}

bool KeyFlow::markComposed(InputContext& context, Press& press) {
  if (!isComposing(context)) return false;
  if (!press.event.payload.empty()) press.event.payload = kComposed;
  return true;
}

bool KeyFlow::isLeftAlone() const {
  const auto* context = context_.get();
  if (context == nullptr) return false;
  const fcitx::CapabilityFlags secret{CapabilityFlag::Password, CapabilityFlag::Disable};
  return context->capabilityFlags().testAny(secret) || leftAlone_.contains(context->uuid());
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
  parts_.keyboard.noteKeyDown();
  // Switches of the layout take effect before the key. Fcitx has translated it already, so behind
  // one it is taken anew.
  const auto before = parts_.instance.inputMethod(&context);
  parts_.runLoop.runQueue();
  const bool isOutdated = parts_.instance.inputMethod(&context) != before;
  const auto late = symbolWithoutLateShift(event);
  // The symbol is that of the layout; the modifiers are best known to the program.
  auto press = describe(
      Key(late.value_or(event.rawKey().sym()), event.origKey().states(), event.rawKey().code()));
  press.event.key = event.origKey();
  const auto [down, isNew] = keysDown_.insert_or_assign(event.rawKey().code(), press.event.code);
  press.event.autorepeat = press.event.autorepeat || !isNew;
  const bool isTranslated = event.rawKey().sym() != event.origKey().sym();
  const bool sends = late || losesShift(context, press);
  const bool commits = !press.text.empty() && (sends || (event.forward() && isTranslated));
  const auto way = commits ? Way::text : Way::key;
  if (isOutdated || mustWait(way)) return hold(event);
  const bool composes = markComposed(context, press);
  if (!showToTap(press.event)) return event.filterAndAccept();
  if (composes) press.text.clear();
  notePassed(press, way, false);
  if (!sends || press.text.empty()) return;
  event.filterAndAccept();
  context.commitString(press.text);
}

bool KeyFlow::losesShift(const InputContext& context, const Press& press) {
  return context.frontend() == kKwinFrontend && !press.text.empty() &&
         (press.event.modifiers & eventFlags::shift) != 0;
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
  if (isLeftAlone() || !parts_.taps.isOpen()) return false;
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
  leftAlone_.erase(context.uuid());
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
  if (!surrounding.isValid() || isLeftAlone()) {
    field_.reportedNothing();
  } else {
    const auto& text = surrounding.text();
    const auto cursor = std::min<std::size_t>(surrounding.cursor(), scalars(text));
    const auto bytes = fcitx::utf8::ncharByteLength(text.begin(), cursor);
    const bool isSelected = surrounding.cursor() != surrounding.anchor();
    const auto before = std::string_view(text).substr(0, static_cast<std::size_t>(bytes));
    const bool isSamePlace = field_.reported(before, isSelected, now());
    if (field_.isDamaged()) leaveAlone(context);
    if (!isSamePlace && steps_.empty()) announceOtherPlace();
  }
  if (!steps_.empty()) runSoon();
}

void KeyFlow::leaveAlone(InputContext& context) {
  field_.reset();
  if (!leftAlone_.insert(context.uuid()).second) return;
  const auto& program = context.program();
  parts_.log.write("Tessarok: " + (program.empty() ? "a program" : program) +
                   " did not erase what it was asked to; nothing more is corrected in that text "
                   "field");
  announceOtherPlace();
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
  if (isLeftAlone()) return field_.forgetText();
  const ClientField::Sending sending{.way = way, .isOwn = own, .now = now()};
  // Firefox with Fcitx's part for GTK resets at every letter. Where reports tell of clicks anyway
  // nothing is missed by that.
  if (press.text.empty() || field_.hasReports()) expectReset(own);
  if (!press.text.empty()) return field_.typed(press.text, sending);
  const bool isPlain = (press.event.modifiers & kShortcut) == 0;
  if (press.event.code == keyCodes::backspace && isPlain) return field_.erased(1, sending);
  field_.keyOfUnknownEffect(sending);
}

}  // namespace tessarok::fcitx5
