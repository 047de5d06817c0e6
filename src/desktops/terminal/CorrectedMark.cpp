#include "desktops/terminal/CorrectedMark.h"

#include <cstdlib>
#include <string>

#include "desktops/posix/PersonsEnvironment.h"
#include "desktops/terminal/Multiplexer.h"

namespace tessarok::terminal {

namespace {

constexpr const char* kVariable = "TESSAROK_TERMINAL";

/// Tells windows of multiplexers apart, each of which is a terminal of its own.
std::string markOfThisWindow() {
  const auto window = Multiplexer::window();
  return window.empty() ? "1" : window;
}

}  // namespace

CorrectedMark::Place CorrectedMark::find() {
  const auto mark = posix::personsVariable(kVariable).value_or("");
  if (mark.empty()) return Place::none;
  // A window knows nothing else than its own mark, or that of where its server was started.
  return Multiplexer::window().empty() || mark == markOfThisWindow() ? Place::here : Place::around;
}

void CorrectedMark::leave() {
  ::setenv(kVariable, markOfThisWindow().c_str(), 1);
}

}  // namespace tessarok::terminal
