#include "desktops/terminal/PtyModes.h"

#include <algorithm>
#include <array>
#include <unistd.h>

namespace tessarok::terminal {

namespace {

constexpr char kUsualErase = '\x7f';
constexpr cc_t kDisabled = _POSIX_VDISABLE;

}  // namespace

bool PtyModes::takesNothingBack() const {
  if (!echoes()) return false;
  if ((settings_.c_lflag & ICANON) == 0) return true;
  return settings_.c_cc[VERASE] == kDisabled || (settings_.c_iflag & IUTF8) == 0;
}

char PtyModes::erase() const {
  const auto erase = settings_.c_cc[VERASE];
  return erase == kDisabled ? kUsualErase : static_cast<char>(erase);
}

bool PtyModes::clearsWord(char control) const {
  constexpr std::array kClearing = {VINTR, VQUIT, VSUSP, VEOF, VKILL, VWERASE};
  return std::any_of(kClearing.begin(), kClearing.end(), [&](int which) {
    const auto character = settings_.c_cc[which];
    return character != kDisabled && static_cast<char>(character) == control;
  });
}

}  // namespace tessarok::terminal
