#include "desktops/terminal/TerminalSession.h"

#include <algorithm>
#include <cerrno>
#include <poll.h>
#include <signal.h>
#include <unistd.h>
#include <utility>

#include "desktops/posix/DescriptorWait.h"

namespace tessarok::terminal {

namespace {

/// Seconds after which a lone ESC is the Escape key, and not the beginning of a sequence.
constexpr double kEscapeDelay = 0.05;
/// Seconds for which the echo of a word is waited for. It is there long before a person has
/// pressed the next key, except through a slow connection.
constexpr double kEchoDelay = 0.2;
/// Seconds for which keys wait until a word on a filled screen is erased, before its new form.
constexpr double kRetypingDelay = 1.0;
/// Seconds for which a cursor has to rest before what stands there is believed to be an echo.
constexpr double kSettleDelay = 0.005;
/// In which more of a paste follows, when what has come may be its beginning.
constexpr int kPasteGapMilliseconds = 10;
/// Seconds between a program's leaving of its terminal and its end.
constexpr double kPartingDelay = 1.0;
/// The last words of a program, in chunks: others may write on and on.
constexpr int kLastChunks = 256;
constexpr int kKilled = 128;

/// Back to the main screen, and to the cursor's place there.
constexpr std::string_view kLeaveAlternateScreen = "\x1b[?1049l";
/// A cursor of the usual shape, plain text, and no reports, brackets or frames: what a program that
/// could not clean up may have left behind.
constexpr std::string_view kTidyScreen =
    "\x1b[?2026l\x1b[?2004l\x1b[?1004l\x1b[?1000l\x1b[?1002l\x1b[?1003l\x1b[?1005l\x1b[?1006l"
    "\x1b[?1015l\x1b[?1l\x1b>\x1b[?25h\x1b[0 q\x1b[0m\r\n";

bool isReadable(int descriptor, int milliseconds) {
  pollfd waiting{descriptor, POLLIN, 0};
  return posix::waitFor({&waiting, 1}, milliseconds) > 0;
}

}  // namespace

TerminalSession::TerminalSession(TerminalDesktop& desktop, AppDelegate& delegate,
                                 OuterTerminal& outer, Pty& pty)
    : desktop_(desktop),
      outer_(outer),
      pty_(pty),
      signals_({SIGCHLD, SIGWINCH, SIGCONT, SIGTSTP, SIGTERM, SIGHUP, SIGINT, SIGQUIT, SIGALRM,
                SIGUSR1, SIGUSR2},
               [this](int signal) { handleSignal(signal); }),
      input_(
          OuterTerminal::input(), [this] { return readsInput() ? short{POLLIN} : short{0}; },
          [this](short) { readInput(); }),
      program_(
          pty.descriptor(), [this] { return programEvents(); },
          [this](short events) { serveProgram(events); }),
      screen_(
          outer.output(), [this] { return toScreen_.isEmpty() ? short{0} : short{POLLOUT}; },
          [this](short) { flushScreen(); }),
      toProgram_(pty.descriptor(), posix::WriteQueue::Mode::nonBlocking),
      toScreen_(outer.output(), outer.isOutputNonBlocking() ? posix::WriteQueue::Mode::nonBlocking
                                                            : posix::WriteQueue::Mode::any),
      keys_(desktop, pty, output_, toProgram_),
      requests_(desktop, delegate, keys_, toProgram_),
      sign_([&desktop](std::string_view key) { return desktop.userDefaults().string(key); }) {
  requests_.onGo = [this] {
    if (std::exchange(isEchoLate_, false) && held_) return echoCame();
    serveInput();
  };
  auto& loop = desktop_.runLoop();
  loop.add(signals_);
  loop.add(program_);
  loop.add(screen_);
  loop.add(input_);
}

TerminalSession::~TerminalSession() {
  auto& loop = desktop_.runLoop();
  loop.remove(input_);
  loop.remove(screen_);
  loop.remove(program_);
  loop.remove(signals_);
}

int TerminalSession::run() {
  desktop_.systemLog().hold();
  outer_.makeRaw();
  // The window may have changed while the program was starting.
  resize();
  endIfProgramEnded();
  desktop_.runLoop().run();
  tidyScreen();
  outer_.restore();
  desktop_.systemLog().release();
  return exitStatus_.value_or(0);
}

void TerminalSession::handleSignal(int signal) {
  switch (signal) {
    case SIGCHLD:
      return endIfProgramEnded();
    case SIGTSTP:
      return stop();
    case SIGCONT:
      outer_.makeRaw();
      [[fallthrough]];
    case SIGWINCH:
      return resize();
    default:
      isUntidy_ = true;
      isHurried_ = true;
      return end(kKilled + signal);
  }
}

void TerminalSession::resize() {
  const auto size = outer_.size();
  pty_.setSize(size);
  output_.screen().setSize(size.ws_row, size.ws_col);
}

void TerminalSession::stop() {
  // Whoever has the terminal meanwhile is to find it as it was.
  outer_.restore();
  ::raise(SIGSTOP);
}

void TerminalSession::endIfProgramEnded() {
  if (isEnding_) return;
  const auto status = pty_.exitStatus();
  if (!status) return;
  isEnding_ = true;
  // Its last words; others may still hold the pseudo-terminal open, and are not waited for.
  for (int i = 0; i < kLastChunks && readProgram(); ++i) {
    if (!finishScreen()) break;
  }
  isUntidy_ = pty_.wasKilled();
  end(*status);
}

void TerminalSession::end(int exitStatus) {
  if (!exitStatus_) exitStatus_ = exitStatus;
  desktop_.runLoop().stop();
}

void TerminalSession::tidyScreen() {
  toScreen_.add(sign_.show(LayoutSign::State::english));
  const bool isLeft = output_.isAlternateScreen();
  if (isLeft) {
    toScreen_.add(output_.undoingOfKeyboardModes(KeyboardModes::Screen::alternate));
    toScreen_.add(kLeaveAlternateScreen);
  }
  toScreen_.add(output_.undoingOfKeyboardModes(KeyboardModes::Screen::main));
  if (isLeft || isUntidy_) toScreen_.add(kTidyScreen);
  isEnding_ = true;
  static_cast<void>(finishScreen());
}

bool TerminalSession::finishScreen() {
  // A screen that takes nothing must not hold up the end that a signal asks for.
  while (!isHurried_) {
    if (!toScreen_.flush()) return false;
    if (toScreen_.isEmpty()) return true;
    std::array<pollfd, 2> waiting{
        {{toScreen_.descriptor(), POLLOUT, 0}, {signals_.descriptor(), POLLIN, 0}}};
    if (posix::waitFor(waiting, -1) > 0 && waiting[1].revents != 0) signals_.ready(POLLIN);
  }
  return toScreen_.flush();
}

// Keys.

bool TerminalSession::readsInput() const {
  return isDrained_ && !mustKeysWait() && !isProgramGone_ && !toProgram_.isFull();
}

bool TerminalSession::mustKeysWait() const {
  return held_ || keys_.isRetyping() || requests_.makeKeysWait();
}

void TerminalSession::readInput() {
  if (const auto begin = std::exchange(onFirstKey, nullptr)) begin();
  const auto now = desktop_.clock().uptime();
  auto count = readMore();
  while (paste_.mayBegin(count, now) && isReadable(OuterTerminal::input(), kPasteGapMilliseconds)) {
    const auto more = readMore();
    if (more == 0) break;
    count += more;
  }
  decoder_.setBurst(paste_.read(count, output_.wantsBrackets(), now));
  serveInput();
}

std::size_t TerminalSession::readMore() {
  const auto count = ::read(OuterTerminal::input(), chunk_.data(), chunk_.size());
  if (count > 0) {
    decoder_.append({chunk_.data(), static_cast<std::size_t>(count)});
    return static_cast<std::size_t>(count);
  }
  const bool isGone = count == 0 || (errno != EINTR && errno != EAGAIN);
  if (isGone) handleSignal(SIGHUP);
  return 0;
}

void TerminalSession::serveInput() {
  isDrained_ = false;
  // Where the program takes at once all that there was room for, nothing would call again.
  while (!isDrained_ && !mustKeysWait() && !isProgramGone_ && !toProgram_.isFull()) {
    pressKeys();
    flushToProgram();
  }
  flushScreen();
  if (mustKeysWait() || !isDrained_) paste_.noteWait(desktop_.clock().uptime());
  if (!isDrained_) return;
  paste_.noteServed(desktop_.clock().uptime());
  if (decoder_.isWaiting()) waitForRest();
}

void TerminalSession::pressKeys() {
  while (!mustKeysWait() && !toProgram_.isFull()) {
    const auto item = decoder_.next();
    if (!item) {
      isDrained_ = true;
      return;
    }
    if (keys_.needsEchoFirst(*item)) {
      waitForEcho(*item);
    } else {
      press(*item);
    }
  }
}

void TerminalSession::press(const InputItem& item) {
  keys_.press(item);
  if (!keys_.isRetyping()) return;
  const auto wait = ++retypingWait_;
  desktop_.runLoop().after(kRetypingDelay, [this, wait] {
    if (wait != retypingWait_ || !keys_.isRetyping()) return;
    keys_.stopRetyping();
    serveInput();
  });
}

void TerminalSession::waitForRest() {
  const auto wait = ++restWait_;
  const auto size = decoder_.size();
  desktop_.runLoop().after(kEscapeDelay, [this, wait, size] {
    // Meanwhile more has come.
    if (wait != restWait_ || size != decoder_.size()) return;
    decoder_.endWaiting();
    serveInput();
  });
}

void TerminalSession::waitForEcho(const InputItem& item) {
  held_ = item;
  const auto wait = ++echoWait_;
  desktop_.runLoop().after(kEchoDelay, [this, wait] {
    if (wait != echoWait_ || !held_) return;
    keys_.giveUpEcho();
    echoCame();
  });
}

void TerminalSession::waitToSettle() {
  const auto wait = echoWait_;
  const auto place = output_.screen().cursor();
  desktop_.runLoop().after(kSettleDelay, [this, wait, place] {
    if (wait != echoWait_ || !held_ || place != output_.screen().cursor()) return;
    keys_.settle();
    if (keys_.isEchoComplete()) echoCame();
  });
}

void TerminalSession::echoCame() {
  // What is being given back comes before it.
  isEchoLate_ = requests_.makeKeysWait();
  if (isEchoLate_) return;
  press(*held_);
  held_.reset();
  serveInput();
}

void TerminalSession::flushToProgram() {
  // A program that has gone needs nothing; its end is told by a signal.
  if (!toProgram_.flush()) programHasLeft();
}

// The program.

short TerminalSession::programEvents() const {
  if (isProgramGone_) return 0;
  int events = 0;
  if (!toScreen_.isFull()) events |= POLLIN;
  if (!toProgram_.isEmpty()) events |= POLLOUT;
  return static_cast<short>(events);
}

void TerminalSession::serveProgram(short events) {
  if ((events & POLLOUT) != 0) flushToProgram();
  if ((events & (POLLIN | POLLHUP | POLLERR)) != 0) serveOutput();
  // What could not be taken for want of room goes on with whoever makes some.
  if (!isDrained_ && !held_) serveInput();
}

void TerminalSession::serveOutput() {
  static_cast<void>(readProgram());
  flushScreen();
  keys_.noteOutput();
  for (const auto& request : output_.takeRequests())
    requests_.serve(request);
  flushToProgram();
  if (!held_) return;
  if (keys_.isEchoComplete()) {
    echoCame();
  } else if (keys_.seemsEchoed()) {
    waitToSettle();
  }
}

void TerminalSession::programHasLeft() {
  if (std::exchange(isProgramGone_, true)) return;
  // As a rule its end is just being told. If not, it lives on without its terminal, and there is
  // nothing to stay for.
  desktop_.runLoop().after(kPartingDelay, [this] {
    endIfProgramEnded();
    if (!exitStatus_) end(kKilled + SIGHUP);
  });
}

bool TerminalSession::readProgram() {
  const auto count = ::read(pty_.descriptor(), chunk_.data(), chunk_.size());
  if (count <= 0) {
    // Nobody has the other side open any more.
    if (count == 0 || (errno != EAGAIN && errno != EINTR)) programHasLeft();
    return count < 0 && errno == EINTR;
  }
  const std::string_view bytes(chunk_.data(), static_cast<std::size_t>(count));
  const bool wasAlternateScreen = output_.isAlternateScreen();
  output_.feed(bytes);
  if (output_.isAlternateScreen() != wasAlternateScreen) desktop_.announceOtherProgram();
  toScreen_.add(bytes);
  return true;
}

void TerminalSession::showLayout() {
  // What the program writes must not be torn apart.
  if (!output_.isBetweenCharacters()) return;
  auto state = LayoutSign::State::english;
  if (!desktop_.statusBar().works()) {
    state = LayoutSign::State::off;
  } else if (keys_.typesRussian()) {
    state = LayoutSign::State::russian;
  }
  toScreen_.add(sign_.show(state));
}

void TerminalSession::flushScreen() {
  showLayout();
  if (!toScreen_.flush()) handleSignal(SIGHUP);
}

}  // namespace tessarok::terminal
