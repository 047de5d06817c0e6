#include "desktops/terminal/TerminalInputSources.h"

#include "desktops/layouts/TableLayout.h"
#include "platform/LayoutIdentifiers.h"

namespace tessarok::terminal {

namespace {

constexpr Language kLanguages[] = {Language::english, Language::russian};

const std::optional<std::string>& identifierOf(Language language) {
  static const std::optional english = std::string(platform::layoutIdentifiers::kUs);
  static const std::optional russian = std::string(platform::layoutIdentifiers::kRussianWin);
  return language == Language::russian ? russian : english;
}

}  // namespace

std::vector<std::shared_ptr<platform::InputSourceHandle>> TerminalInputSources::enabledLayouts() {
  std::vector<std::shared_ptr<platform::InputSourceHandle>> handles;
  for (const auto language : kLanguages) {
    handles.push_back(std::make_shared<layouts::TableLayout>(*identifierOf(language)));
  }
  return handles;
}

const std::optional<std::string>& TerminalInputSources::current() {
  return identifierOf(language_);
}

bool TerminalInputSources::select(platform::InputSourceHandle& source) {
  const auto identifier = source.identifier();
  for (const auto language : kLanguages) {
    if (identifier != identifierOf(language)) continue;
    isSelectedByCorrector_ = true;
    change(language);
    return true;
  }
  return false;
}

void TerminalInputSources::setLanguage(Language language) {
  isSelectedByCorrector_ = false;
  change(language);
}

void TerminalInputSources::change(Language language) {
  if (language_ == language) return;
  language_ = language;
  if (onSelected) onSelected();
}

}  // namespace tessarok::terminal
