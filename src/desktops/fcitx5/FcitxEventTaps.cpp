#include "desktops/fcitx5/FcitxEventTaps.h"

namespace tessarok::fcitx5 {

std::vector<FcitxEvent> FcitxEventTaps::takePosted() {
  std::vector<FcitxEvent> passed;
  showPosted([&passed](const FcitxEvent& event) { passed.push_back(event); });
  return passed;
}

}  // namespace tessarok::fcitx5
