#pragma once

#include <deque>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace tessarok {

/// Makes up replay lines of every kind, the same ones for the same seed. What it says is always
/// allowed; whether it makes sense is left to chance.
class ReplayWriter {
 public:
  /// `words` are what it types besides a few words of its own, as keys of the US layout.
  ReplayWriter(unsigned seed, std::vector<std::string> words)
      : random_(seed), words_(std::move(words)) {}

  [[nodiscard]] nlohmann::json setup();
  /// Any line but "setup", "print" and "quit".
  [[nodiscard]] nlohmann::json line();

 private:
  [[nodiscard]] nlohmann::json keys();
  [[nodiscard]] nlohmann::json down();
  [[nodiscard]] nlohmann::json up();
  [[nodiscard]] nlohmann::json desktopLine();
  [[nodiscard]] nlohmann::json file();
  [[nodiscard]] nlohmann::json enable();
  [[nodiscard]] std::string dictionaryText();
  [[nodiscard]] std::size_t below(std::size_t limit) { return random_() % limit; }
  template <typename Value>
  [[nodiscard]] const Value& any(const std::vector<Value>& values) {
    return values[below(values.size())];
  }

  /// Lines that put everything back to where words are tracked; else a script would spend most
  /// of its time where nothing happens.
  void queueRepair();

  std::mt19937 random_;
  std::vector<std::string> words_;
  std::deque<nlohmann::json> queued_;
  bool switchedOn_ = true;
  std::vector<std::string> enabled_ = {"com.apple.keylayout.US", "com.apple.keylayout.RussianWin"};
  /// What is left of the word being typed, a key a line.
  std::string pending_;
  std::vector<int> held_;
};

}  // namespace tessarok
