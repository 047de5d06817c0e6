#include "desktops/terminal/Keys.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "desktops/terminal/CommandLine.h"
#include "desktops/terminal/ForegroundProgram.h"
#include "desktops/terminal/PrintedCharacters.h"
#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"

namespace tessarok::terminal {

namespace {

using Kind = InputItem::Kind;

/// So many letters of a line have to appear before the own layout has a say in it; one is enough
/// where a line editor is known to be at work.
constexpr std::size_t kLettersShown = 3;

bool isLetterOrNumber(char32_t character) {
  std::string encoded;
  text::appendScalar(character, encoded);
  return text::isLetter(encoded) || text::isNumber(encoded);
}

bool endsInWord(std::u32string_view typed) {
  return !typed.empty() && isLetterOrNumber(typed.back());
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
  if (item.kind == Kind::character) return !item.isLetterOrNumber();
  return item.isReturn() || (item.kind == Kind::control && item.scalar == '\t') ||
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
    reading = modes->isSecret()           ? Reading::secretLines
              : modes->takesNothingBack() ? Reading::unedited
              : modes->isRaw()            ? Reading::keys
                                          : Reading::lines;
  }
  const auto group = pty_.foregroundGroup();
  const bool isOther = reading != reading_ || group != readingGroup_;
  if (isOther) homeIsDue_ = true;
  if (reading_ == Reading::keys && reading == Reading::lines && !line_.text().empty()) {
    isWordTorn_ = true;
  }
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
  if (item.isLetterOrNumber() && endsInWord(line_.text())) return;
  homeIsDue_ = false;
  outer_.goHome();
}

void Keys::endLine() {
  untranslated_.clear();
  isWordTorn_ = false;
  line_.end();
  homeIsDue_ = false;
  outer_.goHome();
  desktop_.runLoop().runQueue();
}

/// Also of the key that comes first behind the change, whatever it is: it may end the word.
bool Keys::continuesTornWord(const InputItem& item) {
  const bool isFirst = isWordTorn_ && !line_.text().empty();
  isWordTorn_ = isWordTorn_ && (isFirst || item.isLetterOrNumber());
  return isWordTorn_;
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
  if (continuesTornWord(item)) {
    pressUnknown(item);
    if (item.endsLine()) endLine();
    return;
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
  if (item.endsLine()) endLine();
}

void Keys::pressHidden(const InputItem& item, const PtyModes* modes) {
  untranslated_.clear();
  line_.hide();
  // They belong to this program, and would be part of a password.
  if (hotKeys_.of(item).key != HotKeys::Key::none) return;
  if (modes != nullptr && !modes->isSecret() && item.endsLine()) {
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
  if (modes.takesNothingBack()) return pressUnknown(item);
  if (press.key == HotKeys::Key::manual) return pressHotKey(press);
  if (item.kind == Kind::character) {
    outer_.note(item.scalar);
    if (goesAsItCame(modes)) return pressAsItCame(item);
    if (pressQuote(item)) return goHomeBehindText();
    if (pressDollar(item)) return;
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
  if (item.kind == Kind::character && !item.isLetterOrNumber()) goHomeBehindText();
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

/// The sign of a variable. Of a Russian text its key is the semicolon, which stands behind a word.
bool Keys::pressDollar(const InputItem& item) {
  if (item.scalar != U'$' || outer_.agrees() || !isCommandLine()) return false;
  if (line_.text().empty() || endsInWord(line_.text())) return false;
  KeyReader::readOpening(item, event_);
  send();
  goHomeWithinLine();
  return true;
}

/// What follows a text in quotes is for the shell, which has nothing Russian.
void Keys::goHomeBehindText() {
  if (outer_.agrees() || !isCommandLine()) return;
  const auto line = line_.text();
  const auto quote = line.find_last_of(U"\"'");
  if (quote == std::u32string_view::npos || endOfCommandLine(line, line_.isWhole()).quote != 0) {
    return;
  }
  const auto behind = line.substr(quote + 1);
  if (std::none_of(behind.begin(), behind.end(), isLetterOrNumber)) goHomeWithinLine();
}

void Keys::goHomeWithinLine() {
  outer_.goHomeWithinLine();
  desktop_.runLoop().runQueue();
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
  for (const auto character : printedCharacters(text))
    line_.add(character);
}

}  // namespace tessarok::terminal
