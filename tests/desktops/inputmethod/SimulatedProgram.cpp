#include "tests/desktops/inputmethod/SimulatedProgram.h"

#include <algorithm>
#include <utility>

#include "desktops/inputmethod/KeyNames.h"
#include "desktops/virtual/VirtualEvent.h"
#include "desktops/xkb/HardwareKeys.h"
#include "text/Text.h"

namespace tessarok::testing {

namespace {

using inputmethod::Key;
using virtualdesktop::VirtualEvent;

/// Seconds between two texts that are sent at once, until the terminal foot has drawn what has
/// come, and until the compositor has heard of that.
constexpr double kBetweenTexts = 0.0002;
constexpr double kDrawing = 0.0008;
constexpr double kBlindness = 0.0004;

/// Where one character of UTF-8 begins, from the end.
std::size_t bytesOfLast(const std::string& text, std::size_t scalars) {
  auto at = text.size();
  while (scalars > 0 && at > 0) {
    --at;
    if ((static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) --scalars;
  }
  return text.size() - at;
}

std::string lastWords(const std::string& text) {
  auto at = text.size();
  for (int word = 0; word < 3 && at > 0; ++word) {
    at = text.find_last_not_of(" \n", at - 1);
    if (at == std::string::npos) return text;
    at = text.find_last_of(" \n", at);
    if (at == std::string::npos) return text;
  }
  return text.substr(std::min(at + 1, text.size()));
}

}  // namespace

double SimulatedProgram::lasting(const Delay& delay) {
  return std::uniform_real_distribution<double>(delay.least, delay.most)(around_.random);
}

bool SimulatedProgram::oneOf(int many) {
  return many > 0 && around_.random() % static_cast<unsigned>(many) == 0;
}

void SimulatedProgram::send(Channel& channel, const Delay& delay, std::function<void()> work) {
  const auto now = around_.clock.uptime();
  channel.lastDue = std::max(channel.lastDue, now + lasting(delay));
  ++onTheirWay_;
  around_.loop.after(channel.lastDue - now, [this, work = std::move(work)] {
    --onTheirWay_;
    work();
  });
}

void SimulatedProgram::key(const Key& key) {
  // What is sent behind a text comes behind it.
  keys_.lastDue = std::max(keys_.lastDue, texts_.lastDue);
  send(keys_, kind_.key, [this, key] { handleKey(key); });
}

void SimulatedProgram::forward(const Key& key) {
  if (kind_.habits.takesNoKeysBack) return;
  auto sent = key;
  if (kind_.habits.readsModifiersLate) sent.states = around_.modifiers();
  this->key(sent);
}

void SimulatedProgram::commit(const std::string& text) {
  if (!kind_.isBlindWhileDrawing) return arrive(text);
  // What is sent at once goes one behind the other.
  lastSent_ = std::max(around_.clock.uptime(), lastSent_ + kBetweenTexts);
  if (isBlindAt(lastSent_)) return;
  if (lastSent_ > drawing_) drawing_ = lastSent_ + kDrawing;
  arrive(text);
}

void SimulatedProgram::commitOfFramework(const std::string& text) {
  if (!isBlindAt(around_.clock.uptime())) arrive(text);
}

bool SimulatedProgram::isBlindAt(double time) const {
  return time >= drawing_ && time < drawing_ + kBlindness;
}

void SimulatedProgram::arrive(const std::string& text) {
  send(texts_, kind_.text, [this, text, number = ++lastText_] {
    if (kind_.losesTexts && number != lastText_) return;
    VirtualEvent event;
    event.code = xkb::hardwareKeys::kNoKey;
    event.payload = text::utf16(text);
    field_.keyDown(event);
    tell();
  });
}

void SimulatedProgram::deleteBefore(std::size_t scalars) {
  if (kind_.ignoresDeletion) return;
  send(texts_, kind_.text, [this, scalars] { handleDeletion(scalars); });
}

void SimulatedProgram::handleDeletion(std::size_t scalars) {
  const auto count = kind_.deletesBytes ? bytesOfLast(field_.text(), scalars) : scalars;
  VirtualEvent backspace;
  backspace.code = keyCodes::backspace;
  for (std::size_t i = 0; i < count; ++i)
    field_.keyDown(backspace);
  tell();
}

void SimulatedProgram::handleKey(const Key& key) {
  VirtualEvent event;
  event.code = inputmethod::keyNames::codeOf(key);
  event.modifiers = inputmethod::keyNames::flagsOf(key.states);
  event.payload = text::utf16(around_.textOf(key));
  field_.keyDown(event);
  tell();
  if (kind_.resets && event.payload.empty()) around_.onReset();
}

std::string SimulatedProgram::toldText() const {
  const auto text = field_.text();
  switch (kind_.reports) {
    case Reports::all:
      return text;
    case Reports::lastWords:
      return lastWords(text);
    case Reports::line:
      return text.substr(text.rfind('\n') + 1);
    case Reports::nothing:
    case Reports::emptyText:
      break;
  }
  return {};
}

void SimulatedProgram::tell() {
  if (kind_.reports == Reports::nothing) return;
  const auto told = toldText();
  auto shown = told;
  if (oneOf(kind_.oneWrongOf)) {
    shown.resize(std::min(told.size(), toldBefore_));
    while (!shown.empty() && (static_cast<unsigned char>(shown.back()) & 0xC0) == 0xC0)
      shown.pop_back();
  }
  toldBefore_ = told.size();
  if (oneOf(kind_.oneLostOf)) return;
  send(reports_, kind_.report, [this, shown] {
    report_ = Report{.before = shown};
    around_.onReport();
  });
}

}  // namespace tessarok::testing
