#include "desktops/terminal/LayoutSign.h"

#include <algorithm>
#include <array>
#include <utility>

#include "desktops/posix/PersonsEnvironment.h"

namespace tessarok::terminal {

namespace {

/// How the names of terminals begin that know the colour of a cursor (OSC 12, and 112 to have it
/// back) and keep a title (CSI 22 and 23 t).
constexpr auto kKnowing =
    std::to_array<std::string_view>({"xterm", "rxvt", "alacritty", "foot", "wezterm", "contour",
                                     "ghostty", "konsole", "gnome", "vte", "st-", "tmux"});

constexpr std::string_view kRussianCursor = "\x1b]12;#e05030\a";
constexpr std::string_view kOffCursor = "\x1b]12;#808080\a";
constexpr std::string_view kOwnCursor = "\x1b]112\a";
constexpr std::string_view kKeepTitle = "\x1b[22;2t";
constexpr std::string_view kOwnTitle = "\x1b[23;2t";

std::string title(LayoutSign::State state) {
  return std::string("\x1b]2;") + (state == LayoutSign::State::russian ? "РУС" : "⏸") + "\a";
}

}  // namespace

bool LayoutSign::isKnownTerminal() {
  if (isKnownTerminal_) return *isKnownTerminal_;
  const auto noColour = posix::personsVariable("NO_COLOR");
  const auto name = posix::personsVariable("TERM").value_or("");
  isKnownTerminal_ = (!noColour || noColour->empty()) &&
                     std::any_of(kKnowing.begin(), kKnowing.end(), [&name](std::string_view known) {
                       return name.starts_with(known);
                     });
  return *isKnownTerminal_;
}

bool LayoutSign::wants(std::string_view key, bool usually) const {
  const auto setting = settings_(key);
  return setting ? *setting == "on" : usually;
}

std::string LayoutSign::show(State state) {
  if (state == shown_ || !isKnownTerminal()) return {};
  const auto before = std::exchange(shown_, state);
  std::string bytes;
  if (wants("layoutCursor", true)) {
    bytes += state == State::english   ? kOwnCursor
             : state == State::russian ? kRussianCursor
                                       : kOffCursor;
  }
  if (!wants("layoutTitle", false)) return bytes;
  if (before == State::english) bytes += kKeepTitle;
  bytes += state == State::english ? std::string(kOwnTitle) : title(state);
  return bytes;
}

}  // namespace tessarok::terminal
