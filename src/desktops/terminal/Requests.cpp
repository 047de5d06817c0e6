#include "desktops/terminal/Requests.h"

#include <algorithm>
#include <cstddef>
#include <random>
#include <utility>

#include "text/Hex.h"
#include "typing/KeyTap.h"

namespace tessarok::terminal {

namespace {

/// Seconds after which keys wait no more for who has asked.
constexpr double kLongestWait = 1.0;
/// Seconds without a key behind which what was typed before is not kept any more.
constexpr double kLull = 10;
/// As many bytes as a terminal keeps.
constexpr std::size_t kMostTyped = 4096;
/// More than ask at the same time.
constexpr std::size_t kMostAnswered = 4;
constexpr std::string_view kWait = ";wait";
constexpr std::string_view kGo = "go;";

/// One that nobody guesses.
std::string newNumber() {
  std::random_device device;
  return std::to_string(device()) + std::to_string(device());
}

/// A terminal may have made a line feed of a Return.
std::string withLineFeeds(std::string_view bytes) {
  std::string text(bytes);
  std::replace(text.begin(), text.end(), '\r', '\n');
  return text;
}

}  // namespace

Requests::Requests(TerminalDesktop& desktop, AppDelegate& delegate, Keys& keys,
                   posix::WriteQueue& toProgram)
    : desktop_(desktop), delegate_(delegate), keys_(keys), toProgram_(toProgram) {
  typed_.reserve(2 * kMostTyped);
  toProgram_.onAdd = [this](std::string_view bytes) { note(bytes); };
}

void Requests::note(std::string_view bytes) {
  if (isAnswering_) return;
  const auto now = desktop_.clock().uptime();
  const bool isOld = now - std::exchange(typedAt_, now) > kLull;
  // Nothing of a password is kept.
  const bool isSecret = desktop_.secureInput().isEnabled();
  if (isOld || isSecret) typed_.clear();
  if (isSecret) return;
  typed_ += bytes;
  if (typed_.size() > kMostTyped) typed_.erase(0, typed_.size() - kMostTyped);
}

void Requests::serve(const std::string& request) {
  std::string_view name = request;
  if (name.starts_with(kGo)) return go(name.substr(kGo.size()));
  const bool waits = name.ends_with(kWait);
  if (waits) name.remove_suffix(kWait.size());
  if (!carryOut(name)) return;
  const bool isRussian = desktop_.inputSources().language() == Language::russian;
  const auto number = waits ? ";" + wait() : std::string();
  isAnswering_ = true;
  toProgram_.add(std::string("\x1b]7717;tessarok;") + (delegate_.status().enabled ? "on" : "off") +
                 (isRussian ? ";ru" : ";en") + number + "\x1b\\");
  isAnswering_ = false;
}

bool Requests::carryOut(std::string_view request) {
  if (request == "on") {
    delegate_.setCorrection(AppDelegate::Correction::on);
  } else if (request == "off") {
    delegate_.setCorrection(AppDelegate::Correction::off);
  } else if (request == "layout") {
    keys_.toggleLayout();
  } else if (request == "pause") {
    KeyTap::shared().startPause();
  } else {
    return request == "status";
  }
  return true;
}

std::string Requests::wait() {
  answered_.push_back({newNumber(), typed_});
  if (answered_.size() > kMostAnswered) answered_.pop_front();
  // One question behind the other must not hold keys for ever.
  if (!std::exchange(isWaiting_, true)) {
    desktop_.runLoop().after(kLongestWait, [this] { endWaiting(); });
  }
  return answered_.back().number;
}

void Requests::go(std::string_view numberAndBytes) {
  const auto number = numberAndBytes.substr(0, numberAndBytes.find(';'));
  const auto found = std::find_if(answered_.begin(), answered_.end(),
                                  [&](const Answered& one) { return one.number == number; });
  if (found == answered_.end()) return;
  const auto answered = std::move(*found);
  answered_.erase(found);
  // Also later than keys could wait: then it comes behind them.
  if (number.size() < numberAndBytes.size()) {
    giveBack(answered, numberAndBytes.substr(number.size() + 1));
  }
  endWaiting();
}

void Requests::giveBack(const Answered& answered, std::string_view digits) {
  const auto bytes = text::bytesOfHex(digits);
  if (!bytes || !withLineFeeds(answered.typed).ends_with(withLineFeeds(*bytes))) return;
  // As the keys sent them, which a line editor tells from what a line feed would do.
  toProgram_.add(answered.typed.substr(answered.typed.size() - bytes->size()));
}

void Requests::endWaiting() {
  if (std::exchange(isWaiting_, false)) onGo();
}

}  // namespace tessarok::terminal
