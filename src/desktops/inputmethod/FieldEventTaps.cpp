#include "desktops/inputmethod/FieldEventTaps.h"

namespace tessarok::inputmethod {

std::vector<FieldEvent> FieldEventTaps::takePosted() {
  std::vector<FieldEvent> passed;
  showPosted([&passed](const FieldEvent& event) { passed.push_back(event); });
  return passed;
}

}  // namespace tessarok::inputmethod
