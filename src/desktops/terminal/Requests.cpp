#include "desktops/terminal/Requests.h"

#include <random>

#include "text/Hex.h"
#include "typing/KeyTap.h"

namespace tessarok::terminal {

namespace {

/// Seconds after which who has asked has gone without giving anything back.
constexpr double kLongestWait = 1.0;
constexpr std::string_view kWait = ";wait";
constexpr std::string_view kGo = "go;";

/// One that nobody guesses.
std::string newNumber() {
  std::random_device device;
  return std::to_string(device()) + std::to_string(device());
}

}  // namespace

Requests::Requests(TerminalDesktop& desktop, Keys& keys, posix::WriteQueue& toProgram)
    : desktop_(desktop), keys_(keys), toProgram_(toProgram) {}

void Requests::serve(const std::string& request) {
  std::string_view name = request;
  if (name.starts_with(kGo)) return go(name.substr(kGo.size()));
  const bool waits = name.ends_with(kWait);
  if (waits) name.remove_suffix(kWait.size());
  if (!carryOut(name)) return;
  if (waits) wait();
  const bool isRussian = desktop_.inputSources().language() == Language::russian;
  toProgram_.add(std::string("\x1b]7717;tessarok;") +
                 (desktop_.statusBar().isEnabled() ? "on" : "off") + (isRussian ? ";ru" : ";en") +
                 (waits ? ";" + number_ : "") + "\x1b\\");
}

bool Requests::carryOut(std::string_view request) {
  if (request == "on" || request == "off") {
    desktop_.statusBar().setEnabled(request == "on");
  } else if (request == "layout") {
    keys_.toggleLayout();
  } else if (request == "pause") {
    KeyTap::shared().startPause();
  } else {
    return request == "status";
  }
  return true;
}

void Requests::wait() {
  // One question behind the other must not hold keys for ever.
  if (makeKeysWait()) return;
  number_ = newNumber();
  desktop_.runLoop().after(kLongestWait, [this, number = number_] {
    if (number == number_) go(number);
  });
}

void Requests::go(std::string_view numberAndBytes) {
  const auto number = numberAndBytes.substr(0, numberAndBytes.find(';'));
  if (!makeKeysWait() || number != number_) return;
  number_.clear();
  if (number.size() < numberAndBytes.size()) {
    const auto bytes = text::bytesOfHex(numberAndBytes.substr(number.size() + 1));
    if (bytes) toProgram_.add(*bytes);
  }
  onGo();
}

}  // namespace tessarok::terminal
