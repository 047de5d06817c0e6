#include "platform/Desktop.h"

#include <cstdlib>

namespace tessarok::platform {

namespace {

Desktop* current = nullptr;

class PlainText final : public TextContext {
 public:
  Part part() override { return Part::text; }
  bool isProgram(std::string_view) override { return false; }
};

}  // namespace

TextContext& Desktop::textContext() {
  static PlainText text;
  return text;
}

Desktop& desktop() {
  if (current == nullptr) std::abort();
  return *current;
}

void setDesktop(Desktop& desktop) {
  current = &desktop;
}

}  // namespace tessarok::platform
