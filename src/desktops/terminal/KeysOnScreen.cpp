// Keys for programs that fill the screen.

#include <algorithm>
#include <string_view>
#include <utility>

#include "desktops/terminal/Keys.h"
#include "desktops/terminal/PrintedCharacters.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"

namespace tessarok::terminal {

namespace {

using Kind = InputItem::Kind;

/// No word that is to be converted is longer.
constexpr std::size_t kLongestWord = 64;
/// So much of what was typed on a filled screen is remembered.
constexpr std::size_t kLongestRun = 200;

}  // namespace

bool Keys::hasScreenForItself(const PtyModes* modes) const {
  if (output_.isAlternateScreen()) return true;
  return modes != nullptr && modes->isRaw() && addressingGroup_ >= 0 &&
         addressingGroup_ == pty_.foregroundGroup();
}

void Keys::setAddressing(pid_t group) {
  addressingGroup_ = group;
  if (output_.isAlternateScreen()) return;
  if (group >= 0) {
    output_.screen().fill();
  } else {
    output_.screen().endFilling();
  }
}

bool Keys::isNamed() const {
  // tmux calls itself "tmux: client".
  const auto name = program_.substr(0, program_.find(':'));
  const auto named = desktop_.userDefaults().strings("fullScreen");
  return std::find(named.begin(), named.end(), name) != named.end();
}

void Keys::pressOnScreen(const InputItem& item, const PtyModes& modes) {
  line_.breakOff();
  erase_ = modes.erase();
  erases_ = 0;
  retyped_.clear();
  const bool isWatched = isNamed();
  const auto press = hotKeys_.of(item);
  const bool isManual = press.key == HotKeys::Key::manual;
  isOnScreen_ = true;
  if (isManual && convertOnScreen(press, isWatched)) {
    isOnScreen_ = false;
    return;
  }
  const bool erasesOne = item.kind == Kind::control && item.bytes.front() == erase_;
  if (isManual || !isWatched || item.kind == Kind::pasteBracket) {
    toProgram_.add(item.bytes);
    if (item.kind == Kind::character) addToRun(item.bytes);
    if (erasesOne && !run_.empty()) run_.pop_back();
    if (item.kind != Kind::character && !erasesOne) run_.clear();
  } else {
    goHomeIfDue(item);
    pressKey(item, modes);
    finishOnScreen(run_, item.bytes);
    if (item.kind != Kind::character && !erasesOne) run_.clear();
    // Behind Escape an editor may wait for commands.
    if (item.endsLine() || item.bytes == "\x1b") endLine();
  }
  isOnScreen_ = false;
}

bool Keys::convertOnScreen(HotKeys::Press press, bool isWatched) {
  if (press.phase == HotKeys::Phase::release) return std::exchange(hasConverted_, false);
  if (press.phase == HotKeys::Phase::repeat) return hasConverted_;
  hasConverted_ = false;
  // What the tap has followed it knows best: it may have fixed it, and is told that that was wrong.
  const bool isFollowed = isWatched && !run_.empty() && isRunShown();
  if (!isFollowed) {
    const auto word = output_.screen().wordBeforeCursor(kLongestWord);
    // Keys that are not shown are a secret, or commands.
    const bool isHidden = !run_.empty() && !word.ends_with(run_.back());
    if (word.empty() || isHidden) return false;
    showToTap(word);
    run_ = word;
  }
  pressHotKey(press);
  hasConverted_ = erases_ > 0;
  finishOnScreen(run_, {});
  if (!isWatched) {
    run_.clear();
    KeyReader::readUnknown(event_);
    send();
    outer_.goHome();
  }
  return hasConverted_;
}

/// Has the tap follow a word that stands there already, as if it had just been typed.
void Keys::showToTap(std::u32string_view word) {
  const bool isRussian = std::any_of(word.begin(), word.end(), [](char32_t character) {
    return character >= U'\u0400' && character <= U'\u04FF';
  });
  const auto language = isRussian ? Language::russian : Language::english;
  desktop_.inputSources().setLanguage(language);
  desktop_.runLoop().runQueue();
  isShowing_ = true;
  KeyReader::readStart(event_);
  send();
  for (const auto character : word) {
    KeyReader::readShown(character, language, event_);
    send();
  }
  isShowing_ = false;
}

std::u32string_view Keys::lastWordOfRun() const {
  const std::u32string_view run = run_;
  const auto space = run.rfind(U' ');
  return space == std::u32string_view::npos ? run : run.substr(space + 1);
}

bool Keys::isRunShown() const {
  const auto& screen = output_.screen();
  const auto word = lastWordOfRun();
  return screen.endsWith(word, screen.placeBeforeCursor(word));
}

/// What was typed does not stand on the screen. Perhaps a part of it was a command.
void Keys::followScreen() {
  if (!isNamed()) return;
  const auto word = output_.screen().wordBeforeCursor(kLongestWord);
  if (!word.empty() && lastWordOfRun().ends_with(word)) {
    showToTap(word);
    run_ = word;
    return;
  }
  run_.clear();
  KeyReader::readUnknown(event_);
  send();
}

void Keys::finishOnScreen(std::u32string_view shown, std::string_view original) {
  if (erases_ == 0) return;
  const auto count = erases_;
  const bool begins = count <= shown.size() &&
                      retyping_.begin(shown.substr(shown.size() - count), erase_, retyped_);
  if (!begins) {
    // The key goes as it came.
    toProgram_.add(original);
    run_.clear();
    KeyReader::readUnknown(event_);
    erases_ = 0;
    send();
    return outer_.goHome();
  }
  run_.resize(run_.size() - count);
  run_ += printedCharacters(retyped_);
}

void Keys::deliverOnScreen(const TerminalEvent& event) {
  const bool isErase = event.code == keyCodes::backspace && event.modifiers == 0;
  if (isErase && event.bytes.empty()) {
    ++erases_;
    return;
  }
  if (isErase) {
    toProgram_.add({&erase_, 1});
    if (!run_.empty()) run_.pop_back();
    return;
  }
  text_ = event.bytes;
  if (text_.empty() && event.isText) text::assignUtf16(event.payload, text_);
  if (erases_ > 0) {
    retyped_ += text_;
    return;
  }
  toProgram_.add(text_);
  addToRun(text_);
}

void Keys::addToRun(std::string_view text) {
  run_ += printedCharacters(text);
  if (run_.size() > kLongestRun) run_.erase(0, run_.size() - kLongestRun);
}

}  // namespace tessarok::terminal
