#pragma once

#include <cstddef>
#include <string>

namespace tessarok::web {

/// What a key does to the text field that has the focus: first the corrector's own change before
/// the caret, then, unless it was swallowed, the key itself.
struct FieldEdit {
  /// Characters to be taken from before the caret. Each is one UTF-16 unit, because the corrector
  /// follows no word of longer ones.
  std::size_t erase = 0;
  /// What is typed in their place.
  std::u16string text;
  /// The key goes on to the field.
  bool keyPasses = false;
  /// What it types there by the layout that is on; empty when that is for the browser to say.
  std::u16string keyText;

  [[nodiscard]] bool changesText() const { return erase > 0 || !text.empty(); }
};

}  // namespace tessarok::web
