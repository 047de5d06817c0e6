#include "desktops/terminal/Keys.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "desktops/terminal/CommandLine.h"
#include "desktops/terminal/ForegroundProgram.h"
#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"

namespace tessarok::terminal {

namespace {

using Kind = InputItem::Kind;

/// So many letters of a line have to appear before the own layout has a say in it; one is enough
/// where a line editor is known to be at work.
constexpr std::size_t kLettersShown = 3;
/// No word that is to be converted is longer.
constexpr std::size_t kLongestWord = 64;
/// So much of what was typed on a filled screen is remembered.
constexpr std::size_t kLongestRun = 200;

bool isLetterOrNumber(const InputItem& item) {
  return item.kind == Kind::character && (text::isLetter(item.bytes) || text::isNumber(item.bytes));
}

bool isReturn(const InputItem& item) {
  return (item.kind == Kind::control && (item.scalar == '\r' || item.scalar == '\n')) ||
         (item.kind == Kind::sequence && item.bytes == "\x1bOM");
}

/// Whether a key ends the line, whatever the program does with it: Return, and Control with C, D, Z
/// or the backslash.
bool endsLine(const InputItem& item) {
  if (item.kind == Kind::paste) return item.bytes.find_first_of("\r\n") != std::string_view::npos;
  if (isReturn(item) || item.bytes == "\x1b[13u") return true;
  constexpr std::u32string_view kEnds = U"\x03\x04\x1a\x1c";
  return item.kind == Kind::control && kEnds.find(item.scalar) != std::u32string_view::npos;
}

bool endsInWord(std::u32string_view typed) {
  if (typed.empty()) return false;
  std::string last;
  text::appendScalar(typed.back(), last);
  return text::isLetter(last) || text::isNumber(last);
}

/// The characters of what a key sends; empty when it sends anything that does not print.
std::u32string charactersOf(std::string_view bytes) {
  std::u32string characters;
  while (!bytes.empty()) {
    auto first = text::firstCharacter(bytes);
    bytes.remove_prefix(first.size());
    for (std::size_t size = 1; !first.empty(); ++size) {
      if (size > first.size()) return {};
      const auto scalar = text::singleScalar(first.substr(0, size));
      if (!scalar) continue;
      if (*scalar < 0x20 || *scalar == 0x7F) return {};
      characters.push_back(*scalar);
      first.remove_prefix(size);
      size = 0;
    }
  }
  return characters;
}

}  // namespace

Keys::Keys(TerminalDesktop& desktop, const Pty& pty, ProgramOutput& output,
           posix::WriteQueue& toProgram)
    : desktop_(desktop),
      pty_(pty),
      output_(output),
      toProgram_(toProgram),
      hotKeys_([this](std::string_view key) { return desktop_.userDefaults().string(key); }),
      outer_(desktop.inputSources()),
      line_(output.screen()),
      retyping_(output.screen(), toProgram) {
  desktop_.eventTaps().setDelivery([this](const TerminalEvent& event) { deliver(event); });
  desktop_.textContext().watch([this] { return partInHand(); });
}

// What the program shows.

/// Whether a key may end a word, or change it.
bool Keys::mayRetype(const InputItem& item) const {
  if (item.kind == Kind::character) return !isLetterOrNumber(item);
  return isReturn(item) || (item.kind == Kind::control && item.scalar == '\t') ||
         hotKeys_.of(item).key == HotKeys::Key::manual;
}

bool Keys::needsEchoFirst(const InputItem& item) {
  if (output_.screen().isFilled()) {
    const bool isDue = isNamed() ? mayRetype(item) : hotKeys_.of(item).key == HotKeys::Key::manual;
    return isDue && !lastWordOfRun().empty() && !isRunShown();
  }
  if (!mayRetype(item) || line_.isHidden() || line_.isShown() || !line_.hasUnshownLetters()) {
    return false;
  }
  const auto modes = pty_.modes();
  if (!modes || !modes->isRaw() || hasScreenForItself(&*modes)) return false;
  // What goes out as it came needs nothing before it.
  if (item.kind == Kind::character && goesAsItCame(*modes)) return false;
  if (expectsEcho_) return true;
  // It has not shown anything lately, and a person should not wait for that again and again.
  giveUpEcho();
  return false;
}

bool Keys::isEchoComplete() {
  return output_.screen().isFilled() ? isRunShown() : line_.isShown();
}

void Keys::giveUpEcho() {
  if (output_.screen().isFilled()) return followScreen();
  expectsEcho_ = false;
  untranslated_.clear();
  line_.hide();
  KeyReader::readUnknown(event_);
  send();
}

void Keys::noteOutput() {
  line_.noteOutput();
  if (output_.takePrompt()) {
    expectsEcho_ = true;
    homeIsDue_ = true;
    if (!output_.isAlternateScreen()) setAddressing(-1);
    expectCommand();
  }
  if (output_.takeAddressing()) {
    const auto modes = pty_.modes();
    if (modes && modes->isRaw()) setAddressing(pty_.foregroundGroup());
  }
  if (output_.isAlternateScreen() && !homeIsDue_ && !isNamed()) homeIsDue_ = true;
  retyping_.noteOutput();
  translateSent();
}

void Keys::settle() {
  line_.settle();
  translateSent();
}

bool Keys::mayTranslate() const {
  const bool isLineEditor =
      output_.wantsBrackets() || desktop_.inputSources().isSelectedByCorrector();
  return line_.lettersShown() >= (isLineEditor ? 1 : kLettersShown);
}

bool Keys::goesAsItCame(const PtyModes& modes) const {
  return !isOnScreen_ && modes.isRaw() && !outer_.agrees() && !mayTranslate();
}

void Keys::translateSent() {
  if (untranslated_.empty() || !line_.isShown() || !mayTranslate()) return;
  for (std::size_t i = 0; i < untranslated_.size(); ++i)
    sendErase();
  std::string translated;
  for (const auto character : std::exchange(untranslated_, {}))
    text::appendScalar(outer_.keyFor(character).character, translated);
  sendText(translated);
}

// Lines, and the programs that they are for.

void Keys::noticeProgram(const PtyModes* modes) {
  auto reading = Reading::unknown;
  if (modes != nullptr) {
    reading = modes->isSecret()     ? Reading::secretLines
              : modes->isUnedited() ? Reading::unedited
              : modes->isRaw()      ? Reading::keys
                                    : Reading::lines;
  }
  const auto group = pty_.foregroundGroup();
  const bool isOther = reading != reading_ || group != readingGroup_;
  if (isOther) homeIsDue_ = true;
  if (reading != Reading::keys || group != addressingGroup_) setAddressing(-1);
  reading_ = reading;
  if (group == std::exchange(readingGroup_, group)) return;
  run_.clear();
  program_ = programOf(group);
}

bool Keys::isCommandLine() const {
  // Shells edit their lines themselves; in any other way a script reads an answer.
  return reading_ == Reading::keys &&
         (isShell(program_) || (output_.wantsBrackets() && mayHoldShell(program_)));
}

void Keys::expectCommand() {
  desktop_.textContext().expectCommand(desktop_.clock().uptime());
}

platform::TextContext::Part Keys::partInHand() const {
  if (!isCommandLine()) return platform::TextContext::Part::text;
  return endOfCommandLine(line_.text(), line_.isWhole()).part;
}

void Keys::goHomeIfDue(const InputItem& item) {
  if (!homeIsDue_) return;
  // A word that is typed while the program starts to read it is not torn in two.
  if (isLetterOrNumber(item) && endsInWord(line_.text())) return;
  homeIsDue_ = false;
  outer_.goHome();
}

void Keys::endLine() {
  untranslated_.clear();
  line_.end();
  homeIsDue_ = false;
  outer_.goHome();
  desktop_.runLoop().runQueue();
}

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

// One item.

void Keys::press(const InputItem& item) {
  const auto modes = pty_.modes();
  const TerminalSecureInput::Known reading(desktop_.secureInput(), modes);
  const auto* const known = modes ? &*modes : nullptr;
  noticeProgram(known);
  if (item.kind != Kind::answer) retyping_.giveUp();
  if (item.kind == Kind::answer) return toProgram_.add(item.bytes);
  if (hasScreenForItself(known) && modes && modes->isRaw()) return pressOnScreen(item, *modes);
  run_.clear();
  if (item.kind == Kind::pasteBracket || hasScreenForItself(known)) {
    line_.breakOff();
    return toProgram_.add(item.bytes);
  }
  goHomeIfDue(item);
  if (modes) erase_ = modes->erase();
  if (line_.text().empty() && isCommandLine()) expectCommand();
  // What the program makes of this key is not known, so neither is the word that it is part of.
  const bool isHidden = !modes || modes->isSecret() || (modes->isRaw() && line_.isHidden());
  if (isHidden) {
    pressHidden(item, known);
  } else {
    pressKey(item, *modes);
  }
  if (endsLine(item)) endLine();
}

// Programs that fill the screen.

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
    if (endsLine(item) || item.bytes == "\x1b") endLine();
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
  run_ += charactersOf(retyped_);
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
  run_ += charactersOf(text);
  if (run_.size() > kLongestRun) run_.erase(0, run_.size() - kLongestRun);
}

void Keys::pressHidden(const InputItem& item, const PtyModes* modes) {
  untranslated_.clear();
  line_.hide();
  // They belong to this program, and would be part of a password.
  if (hotKeys_.of(item).key != HotKeys::Key::none) return;
  if (modes != nullptr && !modes->isSecret() && endsLine(item)) {
    reader_.read(item, *modes, event_);
  } else {
    KeyReader::readUnknown(event_);
    event_.bytes = item.bytes;
  }
  send();
}

void Keys::pressKey(const InputItem& item, const PtyModes& modes) {
  const auto press = hotKeys_.of(item);
  if (press.key == HotKeys::Key::layout) return pressHotKey(press);
  // Nothing can be taken back there, by hand neither.
  if (modes.isUnedited()) return pressUnknown(item);
  if (press.key == HotKeys::Key::manual) return pressHotKey(press);
  if (item.kind == Kind::character) {
    outer_.note(item.scalar);
    if (goesAsItCame(modes)) return pressAsItCame(item);
    if (pressQuote(item)) return;
    // The person has switched meanwhile, so what came before was meant as it is.
    if (outer_.agrees()) untranslated_.clear();
  }
  if (modes.isRaw() && mayRetype(item) && line_.isShown() && line_.lettersShown() > 0) {
    expectsEcho_ = true;
  }
  reader_.read(item, modes, event_);
  const bool isMeta = item.kind == Kind::meta && event_.code == keyCodes::space;
  if (isMeta || (event_.code == keyCodes::grave && !hotKeys_.pausesWithGrave())) {
    // Left to the program.
    event_.code = OuterLayout::kNoKey;
  }
  send();
  followLine(item, modes);
}

void Keys::pressHotKey(HotKeys::Press press) {
  if (press.phase == HotKeys::Phase::release) return;
  // The tap sees it, as it sees the desktop's own shortcut; the program does not.
  const bool isManual = press.key == HotKeys::Key::manual;
  event_.become(keyCodes::space,
                isManual ? platform::eventFlags::option : platform::eventFlags::control);
  event_.autorepeat = press.phase == HotKeys::Phase::repeat;
  send();
  event_.autorepeat = false;
  if (!isManual && press.phase == HotKeys::Phase::press) toggleLayout();
}

void Keys::toggleLayout() {
  outer_.toggle();
}

bool Keys::typesRussian() const {
  return desktop_.inputSources().language() == Language::russian &&
         (!output_.screen().isFilled() || isNamed());
}

void Keys::pressUnknown(const InputItem& item) {
  line_.breakOff();
  KeyReader::readUnknown(event_);
  event_.bytes = item.bytes;
  send();
}

void Keys::pressAsItCame(const InputItem& item) {
  KeyReader::readUnknown(event_);
  event_.bytes = item.bytes;
  send();
  untranslated_.push_back(item.scalar);
}

bool Keys::pressQuote(const InputItem& item) {
  if (item.scalar != U'"' && item.scalar != U'\'') return false;
  if (!isCommandLine()) return false;
  const auto quote = endOfCommandLine(line_.text(), line_.isWhole()).quote;
  // Within another one it is a letter, or whatever its key types.
  if (quote != 0 && quote != item.scalar) return false;
  if (quote == 0) {
    KeyReader::readOpening(item, event_);
  } else {
    KeyReader::readClosing(item, event_);
  }
  send();
  return true;
}

void Keys::followLine(const InputItem& item, const PtyModes& modes) {
  if (item.kind == Kind::character) return;
  if (item.kind == Kind::control && item.bytes.front() == modes.erase()) {
    if (!untranslated_.empty()) untranslated_.pop_back();
    return;
  }
  untranslated_.clear();
  line_.breakOff();
}

// What the program gets.

void Keys::send() {
  // A change of layout that the key has brought about is to be known before the key itself.
  desktop_.runLoop().runQueue();
  desktop_.keyboard().noteKeyDown();
  desktop_.eventTaps().press(event_);
  desktop_.runLoop().runQueue();
}

void Keys::deliver(const TerminalEvent& event) {
  if (event.type == platform::EventType::keyUp || isShowing_) return;
  if (isOnScreen_) return deliverOnScreen(event);
  if (event.code == keyCodes::backspace && event.modifiers == 0) return sendErase();
  if (!event.bytes.empty()) return sendText(event.bytes);
  // Some keys of the person send nothing.
  if (!event.isText) return;
  text::assignUtf16(event.payload, text_);
  sendText(text_);
}

void Keys::sendErase() {
  toProgram_.add({&erase_, 1});
  line_.erase();
}

void Keys::sendText(std::string_view text) {
  toProgram_.add(text);
  for (const auto character : charactersOf(text))
    line_.add(character);
}

}  // namespace tessarok::terminal
