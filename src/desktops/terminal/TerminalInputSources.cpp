#include "desktops/terminal/TerminalInputSources.h"

#include <array>

#include "desktops/layouts/TableLayout.h"

namespace tessarok::terminal {

namespace {

/// The English one, then the Russian one.
const std::array<std::optional<std::string>, 2>& identifiers() {
  static const std::array<std::optional<std::string>, 2> all = {"com.apple.keylayout.US",
                                                                "com.apple.keylayout.RussianWin"};
  return all;
}

}  // namespace

std::vector<std::shared_ptr<platform::InputSourceHandle>> TerminalInputSources::enabledLayouts() {
  std::vector<std::shared_ptr<platform::InputSourceHandle>> handles;
  for (const auto& identifier : identifiers()) {
    handles.push_back(std::make_shared<layouts::TableLayout>(*identifier));
  }
  return handles;
}

const std::optional<std::string>& TerminalInputSources::current() {
  return identifiers()[isRussian_ ? 1 : 0];
}

bool TerminalInputSources::select(platform::InputSourceHandle& source) {
  const auto identifier = source.identifier();
  for (const bool russian : {false, true}) {
    if (identifier != identifiers()[russian ? 1 : 0]) continue;
    isSelectedByCorrector_ = true;
    change(russian);
    return true;
  }
  return false;
}

void TerminalInputSources::setRussian(bool russian) {
  isSelectedByCorrector_ = false;
  change(russian);
}

void TerminalInputSources::change(bool russian) {
  if (isRussian_ == russian) return;
  isRussian_ = russian;
  if (onSelected) onSelected();
}

const layouts::KeyTable& TerminalInputSources::table(bool russian) {
  return russian ? layouts::KeyTable::russian() : layouts::KeyTable::english();
}

}  // namespace tessarok::terminal
