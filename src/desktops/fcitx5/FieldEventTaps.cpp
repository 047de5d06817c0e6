#include "desktops/fcitx5/FieldEventTaps.h"

namespace tessarok::fcitx5 {

std::vector<FieldEvent> FieldEventTaps::takePosted() {
  std::vector<FieldEvent> passed;
  showPosted([&passed](const FieldEvent& event) { passed.push_back(event); });
  return passed;
}

}  // namespace tessarok::fcitx5
