#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "desktops/x11/KeyboardState.h"
#include "desktops/x11/XConnection.h"
#include "platform/PhysicalLayoutType.h"
#include "typing/KeyCodes.h"

struct xkb_keymap;
struct xkb_state;

namespace tessarok::x11 {

/// What every key of the keyboard gives in every layout group: a copy of the server's keymap at
/// one moment. Main thread.
class Keymap final {
 public:
  /// How to type a character: a key, and the modifier keys that have to be held with it.
  struct Stroke {
    std::uint8_t key = 0;
    unsigned group = 0;
    bool shift = false;
    /// AltGr.
    bool levelThree = false;
  };

  /// Null when the server does not tell.
  [[nodiscard]] static std::shared_ptr<const Keymap> read(XConnection& connection);

  ~Keymap();
  Keymap(const Keymap&) = delete;
  Keymap& operator=(const Keymap&) = delete;

  [[nodiscard]] unsigned groups() const { return static_cast<unsigned>(identifiers_.size()); }
  /// The name of a group's layout as the corrector knows it.
  [[nodiscard]] const std::string& identifier(unsigned group) const {
    return *identifiers_.at(group);
  }
  /// As the person chose it, such as "us"; as the keymap names it where it was not made by
  /// choosing. Empty for a group that no layout made.
  [[nodiscard]] const std::string& name(unsigned group) const { return names_.at(group); }
  [[nodiscard]] const std::optional<std::string>& optionalIdentifier(unsigned group) const;
  [[nodiscard]] platform::PhysicalLayoutType physicalLayout() const { return physicalLayout_; }
  /// All of it, as text; takes milliseconds.
  [[nodiscard]] std::string source() const;
  /// Equal for keymaps that give the same characters under the same identifiers.
  [[nodiscard]] const std::u16string& signature() const { return signature_; }

  /// What a key types, in UTF-16 units; empty for keys that type nothing, dead keys included.
  void text(std::uint8_t key, const KeyboardState& state, std::u16string& units) const;
  /// What a hardware key shows with or without Shift, dead keys as plain characters.
  [[nodiscard]] std::u16string shown(KeyCode code, bool shift, unsigned group) const;
  /// Modifiers, locks and keys that switch layouts: they type nothing, move nothing, and change
  /// the state of the keyboard.
  [[nodiscard]] bool changesState(std::uint8_t key, const KeyboardState& state) const;
  /// The key of a modifier that is in force while it is held.
  [[nodiscard]] bool isHeldModifier(std::uint8_t key) const;
  /// A key of the number pad that moves the caret now: the code of the key that always does.
  [[nodiscard]] std::optional<KeyCode> caretMover(std::uint8_t key,
                                                  const KeyboardState& state) const;

  /// The key for a character, in the preferred group if possible. Absent when no layout has it.
  [[nodiscard]] std::optional<Stroke> strokeFor(char32_t character, unsigned preferredGroup,
                                                unsigned lockedModifiers) const;
  /// The keys to hold for a `Stroke`; 0 when the keyboard has none.
  [[nodiscard]] std::uint8_t shiftKey() const { return shiftKey_; }
  [[nodiscard]] std::uint8_t levelThreeKey() const { return levelThreeKey_; }
  /// Keys without any symbol.
  [[nodiscard]] const std::vector<std::uint8_t>& spareKeys() const { return spareKeys_; }

 private:
  using Strokes = std::map<std::pair<unsigned, char32_t>, Stroke>;

  explicit Keymap(xkb_keymap* keymap);
  void nameGroups(XConnection& connection);
  /// How many groups every letter key has. A program that changes single keys, or tells keys one by
  /// one as servers of remote desktops do, makes groups of a sign or two beyond those.
  [[nodiscard]] unsigned layoutsOfLetters() const;
  void findModifierKeys();
  void findSpareKeys();
  void sign();
  [[nodiscard]] std::uint8_t keyWith(std::uint32_t symbol) const;
  [[nodiscard]] unsigned modifiersOf(std::uint8_t key) const;
  [[nodiscard]] std::uint32_t firstSymbol(std::uint8_t key) const;
  void set(const KeyboardState& state) const;
  [[nodiscard]] const Strokes& strokes(unsigned lockedModifiers) const;
  void collect(Strokes& strokes, unsigned lockedModifiers, bool shift, bool levelThree) const;

  xkb_keymap* keymap_;
  /// Where questions are worked out; holds nothing between two of them.
  xkb_state* scratch_;
  std::vector<std::optional<std::string>> identifiers_;
  std::vector<std::string> names_;
  platform::PhysicalLayoutType physicalLayout_ = platform::PhysicalLayoutType::iso;
  std::u16string signature_;
  std::uint8_t shiftKey_ = 0;
  std::uint8_t levelThreeKey_ = 0;
  unsigned levelThreeModifiers_ = 0;
  std::vector<std::uint8_t> spareKeys_;
  /// Made on first use for each set of locked modifiers, Caps Lock above all.
  mutable std::map<unsigned, Strokes> strokes_;
};

}  // namespace tessarok::x11
