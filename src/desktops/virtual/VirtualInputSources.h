#pragma once

#include <functional>
#include <string>
#include <vector>

#include "desktops/layouts/KeyTable.h"
#include "platform/InputSources.h"
#include "words/Language.h"

namespace tessarok::virtualdesktop {

using layouts::KeyTable;

/// The layouts of the virtual desktop.
class VirtualInputSources final : public platform::InputSources {
 public:
  VirtualInputSources();

  std::vector<std::shared_ptr<platform::InputSourceHandle>> enabledLayouts() override;
  const std::optional<std::string>& current() override { return current_; }
  bool select(platform::InputSourceHandle& source) override;

  void enable(std::vector<std::string> identifiers) { enabled_ = std::move(identifiers); }
  [[nodiscard]] bool isEnabled(const std::string& identifier) const;
  /// Makes a layout current without a word to anybody.
  void setCurrent(std::string identifier);
  /// The same for the first layout of a language.
  void setCurrent(Language language);
  /// What the keys of the current layout give.
  [[nodiscard]] const KeyTable& table() const { return *table_; }
  void failNextSelection() { failsNextSelection_ = true; }

  /// Called after every selection by the program.
  std::function<void()> onSelected;

 private:
  std::vector<std::string> enabled_;
  std::optional<std::string> current_;
  const KeyTable* table_ = nullptr;
  bool failsNextSelection_ = false;
};

}  // namespace tessarok::virtualdesktop
