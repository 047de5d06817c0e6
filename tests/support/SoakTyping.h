#pragma once

#include <chrono>
#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tessarok::testing {

/// What a person types for a long time: random words of both languages, as the keys of a US
/// keyboard. A key shows as the letter of one layout or of the other; which one is other tests'
/// affair. Here every character on the screen is taken back to its key, and the keys there must be
/// those that were pressed.
class SoakTyping final {
 public:
  explicit SoakTyping(unsigned seed);

  /// For so long a test goes on: the seconds in TESSAROK_SOAK_SECONDS, else a few.
  [[nodiscard]] static std::chrono::seconds duration();
  /// The keys of a text on the screen.
  [[nodiscard]] static std::string keysOf(const std::string& text);

  [[nodiscard]] std::size_t below(std::size_t end) { return random_() % end; }
  /// The keys of a word, without the one that begins a pause.
  [[nodiscard]] const std::string& word() { return words_[below(words_.size())]; }
  /// Words for the person's dictionary.
  [[nodiscard]] std::vector<std::string> someWords();
  /// A few words with what stands between them.
  [[nodiscard]] std::string words();
  /// Takes note of keys that are pressed. A Backspace takes back the one before.
  void note(std::string_view keys);
  /// What must be on the screen, as keys.
  [[nodiscard]] const std::string& onScreen() const { return onScreen_; }
  /// Where these keys, those of the screen, and those that must be there are not the same.
  [[nodiscard]] std::string difference(const std::string& shown) const;
  /// The screen is empty.
  void begin() { onScreen_.clear(); }
  /// Keys that were pressed since the start.
  [[nodiscard]] std::size_t count() const { return count_; }

 private:
  void addWords(const char* dictionary);

  std::mt19937 random_;
  std::vector<std::string> words_;
  std::string onScreen_;
  std::size_t count_ = 0;
};

}  // namespace tessarok::testing
