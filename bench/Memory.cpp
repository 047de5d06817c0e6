// The private memory of the program while a million keys are typed on the virtual desktop: words of
// both dictionaries in random order, whichever layout is selected, so that every second word or so
// is put right and the layout changes with it; slips that are taken back; a tick every two seconds.
//
// usage: tessarok_memory_bench
// Prints one JSON object; memory is KiB that belong to the process alone, mapped files left out.

#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <string_view>

#include "desktops/virtual/Session.h"
#include "text/Text.h"
#include "typing/KeyCodes.h"
#include "words/Dict.h"

namespace {

using namespace tessarok;
using layouts::KeyTable;

constexpr long kKeys = 1'000'000;
/// Nobody types faster for long.
constexpr long kKeysASecond = 10;

long privateMemory() {
  std::ifstream status("/proc/self/status");
  std::string field;
  while (status >> field) {
    long value = 0;
    if (field == "RssAnon:" && status >> value) return value;
  }
  return 0;
}

class Typist {
 public:
  explicit Typist(virtualdesktop::VirtualDesktop& desktop) : desktop_(desktop) {}

  void typeUntil(long keys) {
    while (keys_ < keys)
      typeWord();
  }
  [[nodiscard]] long fixes() const { return fixes_; }

 private:
  void typeWord() {
    const bool russian = random_() % 2 == 0;
    const auto& table = russian ? KeyTable::russian() : KeyTable::english();
    for (const char16_t letter : text::utf16(randomWord(russian ? Dict::ru() : Dict::en()))) {
      // The key of ё starts a pause.
      const auto stroke = table.strokeFor(letter == u'ё' ? u'е' : letter);
      if (stroke) press({stroke->code, random_() % 40 == 0});
      if (random_() % 30 == 0 && stroke) {
        press({keyCodes::backspace, false});
        press(*stroke);
      }
    }
    const auto before = desktop_.textField().text();
    press({random_() % 12 == 0 ? keyCodes::returnKey : keyCodes::space, false});
    if (!desktop_.textField().text().starts_with(before)) ++fixes_;
    // The text belongs to the application, not to the program.
    if (desktop_.textField().text().size() > 4000) desktop_.clearTextField();
  }

  std::string_view randomWord(const DictFile& dictionary) {
    const auto data = dictionary.data();
    const auto start = data.find('\n', random_() % (data.size() - 200)) + 1;
    return data.substr(start, data.find('\n', start) - start);
  }

  void press(const KeyTable::Stroke& stroke) {
    desktop_.stroke(stroke);
    ++keys_;
    if (keys_ % (2 * kKeysASecond) == 0) desktop_.wait(2.0);
  }

  virtualdesktop::VirtualDesktop& desktop_;
  std::mt19937 random_{1};
  long keys_ = 0;
  long fixes_ = 0;
};

}  // namespace

int main() {
  virtualdesktop::Session session(std::nullopt, std::nullopt);
  session.launch();
  if (!Dict::en().isAvailable() || !Dict::ru().isAvailable()) {
    std::cerr << "the word data are missing; run make data\n";
    return 2;
  }
  nlohmann::json result{{"keys", kKeys}, {"launched", privateMemory()}};
  Typist typist(session.desktop());
  typist.typeUntil(kKeys / 10);
  result["tenth"] = privateMemory();
  typist.typeUntil(kKeys / 2);
  result["half"] = privateMemory();
  typist.typeUntil(kKeys);
  result["end"] = privateMemory();
  result["fixes"] = typist.fixes();
  std::cout << result.dump(2) << '\n';
  return 0;
}
