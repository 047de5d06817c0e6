#include "tests/desktops/fcitx5/driver/TextClient.h"

#include <ctime>
#include <fcitx-utils/utf8.h>
#include <fcitx/inputcontextmanager.h>
#include <optional>

#include "desktops/virtual/VirtualEvent.h"
#include "desktops/xkb/HardwareKeys.h"
#include "platform/EventFlags.h"
#include "text/Text.h"

namespace tessarok::testing {

namespace {

using fcitx::CapabilityFlag;
using fcitx::KeyState;
using virtualdesktop::VirtualEvent;

fcitx::CapabilityFlags capabilitiesFor(const TextClient::Habits& habits) {
  fcitx::CapabilityFlags flags;
  if (habits.reports != TextClient::Reports::nothing) flags |= CapabilityFlag::SurroundingText;
  if (habits.ordersEvents) flags |= CapabilityFlag::KeyEventOrderFix;
  return flags;
}

VirtualEvent eventOf(const TextClient::Stroke& stroke) {
  namespace flags = platform::eventFlags;
  VirtualEvent event;
  event.code = xkb::hardwareKeys::codeOf(static_cast<std::uint8_t>(stroke.xKey));
  if (stroke.states.test(KeyState::Shift)) event.modifiers |= flags::shift;
  if (stroke.states.test(KeyState::Ctrl)) event.modifiers |= flags::control;
  if (stroke.states.test(KeyState::Alt)) event.modifiers |= flags::option;
  if (stroke.states.test(KeyState::Super)) event.modifiers |= flags::command;
  const bool isOptionSpace =
      event.code == keyCodes::space && (event.modifiers & flags::option) != 0;
  const auto scalar = isOptionSpace ? 0xA0 : fcitx::Key::keySymToUnicode(stroke.symbol);
  std::string spelled;
  if (scalar >= U' ') text::appendScalar(scalar, spelled);
  event.payload = text::utf16(spelled);
  return event;
}

/// As if Shift had not been pressed; of letters.
TextClient::Stroke withoutShift(TextClient::Stroke stroke) {
  stroke.states = stroke.states.unset(KeyState::Shift);
  const bool isCapital = stroke.symbol >= FcitxKey_A && stroke.symbol <= FcitxKey_Z;
  if (isCapital)
    stroke.symbol = static_cast<fcitx::KeySym>(stroke.symbol + FcitxKey_a - FcitxKey_A);
  return stroke;
}

/// A key that does something to the text other than adding to it.
bool isEditing(const VirtualEvent& event) {
  return event.payload.empty() && event.modifiers == 0 && event.code != xkb::hardwareKeys::kNoKey;
}

VirtualEvent keyOnly(KeyCode code) {
  VirtualEvent event;
  event.code = code;
  return event;
}

}  // namespace

TextClient::TextClient(fcitx::Instance& instance, const Habits& habits)
    : InputContext(instance.inputContextManager(), "tessarok-driver"),
      instance_(instance),
      habits_(habits) {
  setCapabilityFlags(capabilitiesFor(habits));
  timer_ = instance_.eventLoop().addTimeEvent(CLOCK_MONOTONIC, 0, 1,
                                              [this](fcitx::EventSourceTime*, std::uint64_t) {
                                                serveQueue();
                                                return true;
                                              });
  timer_->setEnabled(false);
  created();
  report();
}

TextClient::~TextClient() {
  destroy();
}

bool TextClient::keyEventOf(const Stroke& stroke, bool isRelease) {
  fcitx::KeyEvent event(this, fcitx::Key(stroke.symbol, stroke.states, stroke.xKey), isRelease,
                        ++time_);
  if (!habits_.ordersEvents) return InputContext::keyEvent(event);
  const fcitx::InputContextEventBlocker blocker(this);
  return InputContext::keyEvent(event);
}

void TextClient::press(const Stroke& stroke) {
  states_ = stroke.states;
  if (!keyEventOf(stroke, false)) enqueue(stroke);
}

void TextClient::release(const Stroke& stroke) {
  static_cast<void>(keyEventOf(stroke, true));
}

void TextClient::click() {
  field_.moveCaretToEnd();
  reset();
  report();
}

void TextClient::commitStringImpl(const std::string& text) {
  serveOverdue();
  VirtualEvent event;
  event.code = xkb::hardwareKeys::kNoKey;
  event.payload = text::utf16(text);
  field_.keyDown(event);
  report();
}

void TextClient::deleteSurroundingTextImpl(int offset, unsigned int size) {
  serveOverdue();
  if (offset != -static_cast<int>(size))
    FCITX_FATAL() << "what was deleted is not before the caret";
  if (habits_.deletesBytes) size = static_cast<unsigned>(bytesBeforeCaret(size));
  for (unsigned i = 0; i < size; ++i)
    field_.keyDown(keyOnly(keyCodes::backspace));
  report();
}

std::size_t TextClient::bytesBeforeCaret(std::size_t characters) const {
  const auto& text = field_.text();
  const auto at = [&text](std::size_t character) {
    return fcitx::utf8::ncharByteLength(text.begin(), character);
  };
  return static_cast<std::size_t>(at(field_.caret()) - at(field_.caret() - characters));
}

void TextClient::forwardKeyImpl(const fcitx::ForwardKeyEvent& key) {
  if (key.isRelease()) return;
  enqueue({key.rawKey().sym(), key.rawKey().states(), key.rawKey().code()});
}

void TextClient::enqueue(const Stroke& stroke) {
  if (habits_.keyDelay == 0) return handle(stroke);
  if (queue_.empty()) {
    due_ = fcitx::now(CLOCK_MONOTONIC) + habits_.keyDelay * 1000ull;
    timer_->setTime(due_);
    timer_->setOneShot();
  }
  queue_.push_back(stroke);
}

void TextClient::serveOverdue() {
  // This process may have been kept from running while a program would have run.
  if (!queue_.empty() && fcitx::now(CLOCK_MONOTONIC) >= due_) serveQueue();
}

void TextClient::serveQueue() {
  const auto strokes = std::move(queue_);
  queue_.clear();
  for (const auto& stroke : strokes)
    handle(stroke);
}

void TextClient::handle(const Stroke& stroke) {
  const bool losesShift = habits_.readsShiftLate && stroke.states.test(KeyState::Shift) &&
                          !states_.test(KeyState::Shift);
  const auto event = eventOf(losesShift ? withoutShift(stroke) : stroke);
  field_.keyDown(event);
  if (habits_.resetsAlways) reset();
  report();
  if (habits_.resets && isEditing(event)) reset();
}

void TextClient::report() {
  if (habits_.reports == Reports::nothing) return;
  if (habits_.reports == Reports::emptyText) {
    surroundingText().setText("", 0, 0);
  } else {
    const auto caret = static_cast<unsigned>(field_.caret());
    surroundingText().setText(field_.text(), caret, caret);
  }
  updateSurroundingText();
}

}  // namespace tessarok::testing
