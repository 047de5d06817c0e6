#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/InputSources.h"
#include "words/Language.h"

namespace tessarok::terminal {

/// The terminal's own two layouts, an English and a Russian one. A terminal cannot select the
/// desktop's layout, so it has these: the current one says what a key types, whatever the
/// desktop's layout sends for it. Main thread.
class TerminalInputSources final : public platform::InputSources {
 public:
  std::vector<std::shared_ptr<platform::InputSourceHandle>> enabledLayouts() override;
  const std::optional<std::string>& current() override;
  bool select(platform::InputSourceHandle& source) override;

  /// The language of the current layout.
  [[nodiscard]] Language language() const { return language_; }
  /// The current layout was selected by the corrector, and not by `setLanguage`.
  [[nodiscard]] bool isSelectedByCorrector() const { return isSelectedByCorrector_; }
  /// Makes a layout current, and tells so if it was not.
  void setLanguage(Language language);

  /// Called after every change of the current layout.
  std::function<void()> onSelected;

 private:
  void change(Language language);

  Language language_ = Language::english;
  bool isSelectedByCorrector_ = false;
};

}  // namespace tessarok::terminal
