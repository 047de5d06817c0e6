// Made-up scripts by the thousand, and what must be true after every line of them. A failure
// names the seed and the line, and prints the script as far as it got, ready for the program's
// replay command.

#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <istream>
#include <set>
#include <sstream>
#include <streambuf>

#include "ReplayWriter.h"
#include "desktops/layouts/KeyTable.h"
#include "desktops/virtual/Replay.h"
#include "platform/EventFlags.h"
#include "text/Text.h"
#include "typing/DiagnosticLog.h"
#include "typing/KeyTap.h"
#include "words/LayoutMap.h"

namespace tessarok {
namespace {

using layouts::KeyTable;
using nlohmann::json;
using virtualdesktop::Replay;
using virtualdesktop::VirtualDesktop;
using Events = std::vector<std::string>;

VirtualDesktop& desktop() {
  return static_cast<VirtualDesktop&>(platform::desktop());
}

/// An input stream whose lines are made up while it is read: when the next one is asked for, the
/// one before has been carried out.
class Script : public std::streambuf {
 public:
  /// The next line; empty at the end.
  using Source = std::function<std::string()>;
  explicit Script(Source next) : next_(std::move(next)) {}

 protected:
  int_type underflow() override {
    line_ = next_();
    if (line_.empty()) return traits_type::eof();
    line_ += '\n';
    setg(line_.data(), line_.data(), line_.data() + line_.size());
    return traits_type::to_int_type(*gptr());
  }

 private:
  Source next_;
  std::string line_;
};

/// The application's text, kept by what was delivered to it and by nothing else.
class Model {
 public:
  void insert(std::string_view character) {
    text_.insert(text_.begin() + static_cast<std::ptrdiff_t>(caret_), std::string(character));
    ++caret_;
  }
  void key(KeyCode code, std::uint64_t modifiers, const std::vector<std::string>& typed) {
    namespace flags = platform::eventFlags;
    if ((modifiers & (flags::command | flags::control)) != 0) return;
    switch (code) {
      case 51:
        if (caret_ > 0) text_.erase(text_.begin() + static_cast<std::ptrdiff_t>(--caret_));
        return;
      case 117:
        if (caret_ < text_.size()) text_.erase(text_.begin() + static_cast<std::ptrdiff_t>(caret_));
        return;
      case 36:
      case 76:
        return insert("\n");
      case 48:
        return insert("\t");
      case 123:
        caret_ -= caret_ > 0 ? 1 : 0;
        return;
      case 124:
        caret_ += caret_ < text_.size() ? 1 : 0;
        return;
      case 115:
      case 126:
        caret_ = 0;
        return;
      case 119:
      case 125:
        return moveToEnd();
      case 53:
      case 116:
      case 121:
        return;
      default:
        for (const auto& character : typed)
          insert(character);
    }
  }
  void moveToEnd() { caret_ = text_.size(); }

  [[nodiscard]] std::string text() const {
    std::string all;
    for (const auto& character : text_)
      all += character;
    return all;
  }
  [[nodiscard]] std::size_t caret() const { return caret_; }

 private:
  std::vector<std::string> text_;
  std::size_t caret_ = 0;
};

std::uint64_t maskOf(const json& modifiers) {
  static const std::map<std::string, std::uint64_t> masks = {
      {"shift", 0x20000},    {"control", 0x40000},  {"option", 0x80000},
      {"command", 0x100000}, {"capslock", 0x10000}, {"fn", 0x800000}};
  std::uint64_t mask = 0;
  for (const auto& name : modifiers)
    mask |= masks.at(name);
  return mask;
}

std::vector<std::string> charactersOf(std::string_view text) {
  std::vector<std::string> all;
  for (const auto character : text::Characters(text))
    all.emplace_back(character);
  return all;
}

/// What a key types without a "chars" field.
std::vector<std::string> charactersOfKey(KeyCode code, std::uint64_t mask, const KeyTable& table) {
  if (code == 49) return {(mask & 0x80000) != 0 ? "\u00a0" : " "};
  const auto unit = table.character(code, (mask & 0x20000) != 0);
  if (!unit) return {};
  std::string text;
  text::assignUtf16(std::u16string(1, *unit), text);
  return {text};
}

struct Stroke {
  KeyCode code;
  bool shift;
};

Stroke strokeOf(char key) {
  switch (key) {
    case ' ':
      return {49, false};
    case '\n':
      return {36, false};
    case '\t':
      return {48, false};
    case '\b':
      return {51, false};
    default: {
      const auto stroke = KeyTable::english().strokeFor(static_cast<unsigned char>(key)).value();
      return {stroke.code, stroke.shift};
    }
  }
}

/// Watches a replay from outside, line by line.
class Watcher {
 public:
  /// Before a line: what its keys will meet.
  void prepare(const json& line) {
    line_ = line;
    table_ = &desktop().inputSources().table();
    reachable_ = KeyTap::shared().tapIsEnabled() && !deaf_;
  }

  /// After it.
  void check() {
    DiagnosticLog::drain();
    for (const auto& message : desktop().files().takeLog()) {
      if (message.starts_with("tap started")) deaf_ = false;
    }
    const auto posted = desktop().takePosted();
    const auto delivered = desktop().takeDelivered();
    const auto& name = line_.begin().key();
    const auto& value = line_.begin().value();
    if (name == "keys") {
      checkKeys(value, delivered, posted);
    } else if (name == "down") {
      checkDown(value, delivered, posted);
    } else if (name == "up") {
      checkUp(value, delivered, posted);
    } else {
      EXPECT_EQ(posted, Events{});
      const bool isClick = name == "click";
      EXPECT_EQ(delivered, isClick ? Events{"click " + value.get<std::string>()} : Events{});
      if (isClick) model_.moveToEnd();
      if (name == "tap" && value == "deaf" && KeyTap::shared().tapExists()) deaf_ = true;
      // Only a tap that was stopped forgets what it has swallowed.
      if (KeyTap::shared().swallowedKeyUps().empty()) swallowed_.clear();
    }
    checkState();
  }

  /// How often the program has retyped something.
  [[nodiscard]] int replacements() const { return replacements_; }

 private:
  void checkState() {
    const auto& word = KeyTap::shared().word();
    EXPECT_FALSE(word.ruStreak() > 0 && word.enStreak() > 0);
    EXPECT_GE(word.ruStreak(), 0);
    EXPECT_GE(word.enStreak(), 0);
    EXPECT_LE(word.pendingShorts().size(), 8u);
    EXPECT_LE(text::count(word.buffer()), 64u);
    EXPECT_TRUE(!word.lastFix() || text::count(word.lastFix()->tail) <= 64);
    EXPECT_TRUE(!word.untrackableWord() || word.buffer().empty());
    EXPECT_EQ(KeyTap::shared().swallowedKeyUps(), swallowed_);
    EXPECT_EQ(desktop().textField().text(), model_.text());
    EXPECT_EQ(desktop().textField().caret(), model_.caret());
  }

  /// What the program posted arrives complete and in order, behind the key in hand.
  void applyPosted(const Events& posted) {
    if (!posted.empty()) ++replacements_;
    for (const auto& event : posted) {
      if (!event.starts_with("down ")) continue;
      const auto what = event.substr(5);
      if (what == "51") {
        model_.key(51, 0, {});
      } else if (what.ends_with(" posted")) {
        model_.key(std::stoi(what), 0, {});
      } else {
        model_.insert(what);
      }
    }
  }

  void checkKeys(const std::string& keys, const Events& delivered, const Events& posted) {
    if (keys.size() == 1) return checkStroke(strokeOf(keys[0]), delivered, posted);
    // Several keys: letters always pass, a space is swallowed together with its release.
    Events rest = posted;
    std::size_t at = 0;
    for (const char key : keys) {
      const auto stroke = strokeOf(key);
      const auto down = "down " + std::to_string(stroke.code);
      const auto up = "up " + std::to_string(stroke.code);
      const bool passes = at + 1 < delivered.size() && delivered[at] == down &&
                          delivered[at + 1] == up && !startsWithPosted(delivered, at, rest);
      if (reachable_) swallowed_.erase(stroke.code);
      if (passes) {
        at += 2;
        model_.key(stroke.code, 0, charactersOfKey(stroke.code, 0, *table_));
        continue;
      }
      EXPECT_EQ(key, ' ') << "a swallowed letter";
      // Everything posted from here on belongs to this space, up to the next key.
      const auto batch = batchAt(delivered, at, rest);
      EXPECT_FALSE(batch.empty());
      if (batch.empty()) return;
      at += batch.size();
      rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(batch.size()));
      applyPosted(batch);
      table_ = &desktop().inputSources().table();
    }
    EXPECT_EQ(at, delivered.size());
    EXPECT_TRUE(rest.empty());
  }

  void checkStroke(const Stroke& stroke, const Events& delivered, const Events& posted) {
    const auto code = std::to_string(stroke.code);
    const std::uint64_t mask = stroke.shift ? 0x20000 : 0;
    Events expected = posted;
    const bool passes = delivered.size() == posted.size() + 2;
    if (passes) {
      expected.insert(expected.begin(), "down " + code);
      expected.push_back("up " + code);
    }
    // Otherwise both press and release were swallowed.
    EXPECT_EQ(delivered, expected);
    if (reachable_) swallowed_.erase(stroke.code);
    if (passes) model_.key(stroke.code, mask, charactersOfKey(stroke.code, mask, *table_));
    EXPECT_TRUE(passes || !posted.empty()) << "swallowed for nothing";
    applyPosted(posted);
  }

  void checkDown(const json& fields, const Events& delivered, const Events& posted) {
    const KeyCode code = fields["code"];
    const auto mask = fields.contains("mods") ? maskOf(fields["mods"]) : 0;
    const bool marked = fields.contains("marker");
    const bool passes = delivered.size() == posted.size() + 1;
    Events expected = posted;
    if (passes) expected.insert(expected.begin(), "down " + std::to_string(code));
    EXPECT_EQ(delivered, expected);
    if (!reachable_ || marked) {
      EXPECT_TRUE(passes);
      EXPECT_TRUE(posted.empty());
    } else if (passes) {
      swallowed_.erase(code);
    } else {
      swallowed_.insert(code);
    }
    if (passes) {
      model_.key(code, mask,
                 fields.contains("chars") ? charactersOf(fields["chars"].get<std::string>())
                                          : charactersOfKey(code, mask, *table_));
    }
    applyPosted(posted);
  }

  void checkUp(const json& fields, const Events& delivered, const Events& posted) {
    const KeyCode code = fields["code"];
    const bool swallows = reachable_ && swallowed_.contains(code);
    EXPECT_EQ(delivered, swallows ? Events{} : Events{"up " + std::to_string(code)});
    EXPECT_EQ(posted, Events{});
    if (swallows) swallowed_.erase(code);
  }

  /// Whether the delivered events from `at` on are the program's own rather than the key's: its
  /// batches start with an erasure, no letter or space does.
  static bool startsWithPosted(const Events& delivered, std::size_t at, const Events& posted) {
    return !posted.empty() && delivered[at] == "down 51" && posted.front() == "down 51";
  }

  /// The batch of own events delivered from `at` on: erasures, then texts, no erasure again.
  static Events batchAt(const Events& delivered, std::size_t at, const Events& posted) {
    Events batch;
    bool erases = true;
    for (std::size_t i = 0; i < posted.size() && at + i < delivered.size(); ++i) {
      const bool isErasure = posted[i].ends_with(" 51");
      if (isErasure && !erases) break;
      erases = isErasure;
      EXPECT_EQ(delivered[at + i], posted[i]);
      batch.push_back(posted[i]);
    }
    return batch;
  }

  json line_;
  Model model_;
  const KeyTable* table_ = nullptr;
  bool reachable_ = true;
  bool deaf_ = false;
  std::set<KeyCode> swallowed_;
  int replacements_ = 0;
};

/// The words of both dictionaries as keys of the US layout.
std::vector<std::string> wordsOfBothLanguages() {
  std::vector<std::string> words;
  for (const std::string name : {"/dict_en.txt", "/dict_ru.txt"}) {
    std::ifstream in(TESSAROK_TEST_DATA + name);
    for (std::string word; std::getline(in, word);)
      words.push_back(LayoutMap::convert(word, Language::russian));
  }
  return words;
}

/// Replays lines that are made one by one. `check` looks at what came of the lines so far, of which
/// it is told the number; `next` makes the line of a number, from 1 on.
void play(unsigned seed, int lines, const std::function<void(int)>& check,
          const std::function<std::string(int)>& next) {
  std::string written;
  int number = 0;
  Script script([&]() -> std::string {
    check(number);
    if (number == lines || ::testing::Test::HasFailure()) return {};
    auto line = next(++number);
    written += line + "\n";
    return line;
  });
  std::istream in(&script);
  std::ostringstream out;
  Replay replay(std::nullopt, std::filesystem::path(TESSAROK_TEST_DATA));
  EXPECT_NO_THROW(replay.run(in, out));
  EXPECT_FALSE(::testing::Test::HasFailure()) << "seed " << seed << ", line " << number << " of\n"
                                              << written;
  EXPECT_EQ(number, lines);
}

void runScript(unsigned seed, int lines) {
  ReplayWriter writer(seed, wordsOfBothLanguages());
  Watcher watcher;
  const auto check = [&](int number) {
    if (number > 1) watcher.check();
  };
  const auto next = [&](int number) {
    const auto line = number == 1 ? writer.setup() : writer.line();
    if (number > 1) watcher.prepare(line);
    return line.dump();
  };
  play(seed, lines, check, next);
  // A script that never makes the program retype anything would prove little.
  EXPECT_GT(watcher.replacements(), lines / 50);
  ::testing::Test::RecordProperty("replacements", watcher.replacements());
}

constexpr int kLines = 5000;

TEST(Property, AnyScriptWithSeed1) {
  runScript(1, kLines);
}
TEST(Property, AnyScriptWithSeed2) {
  runScript(2, kLines);
}
TEST(Property, AnyScriptWithSeed3) {
  runScript(3, kLines);
}
TEST(Property, AnyScriptWithSeed4) {
  runScript(4, kLines);
}

// Plain typing: letters, digits, punctuation and boundaries, no caret moves, no shortcuts, no
// pause. Every key leaves exactly one Character, which is what one of the two layouts has on it;
// and of every word either nothing was converted or everything up to some punctuation at its end.

struct TypedKey {
  std::string english;
  std::string russian;
  /// What it gave on the layout that was current.
  std::string typed;
};

bool isWordCharacter(std::string_view character) {
  return text::isLetter(character) || LayoutMap::isRussianLetterKey(character) ||
         text::isNumber(character) || character == "_";
}

class PlainTyping {
 public:
  explicit PlainTyping(unsigned seed) : random_(seed) {}

  /// After how many keys the last word stood as the program had fixed it.
  [[nodiscard]] int fixes() const { return fixes_; }

  [[nodiscard]] std::string nextLine() {
    if (pending_.empty()) pending_ = nextWord();
    const char key = pending_.front();
    pending_.erase(0, 1);
    note(key);
    return json{{"keys", std::string(1, key)}}.dump();
  }

  void check() const {
    const auto screen = charactersOf(desktop().textField().text());
    ASSERT_EQ(screen.size(), keys_.size()) << "text was lost or doubled";
    std::size_t start = checkedUpTo_;
    while (start < keys_.size()) {
      std::size_t end = start;
      while (end < keys_.size() && isWordCharacter(keys_[end].typed))
        ++end;
      expectWholeWord(screen, start, end);
      if (end < keys_.size()) {
        EXPECT_EQ(screen[end], keys_[end].typed) << "a boundary changed";
      }
      start = end + 1;
    }
  }

  /// Checks, and is done with the lines that are finished: no fix reaches behind one.
  void endOfLine() {
    check();
    if (KeyTap::shared().word().lastAutoFix()) ++fixes_;
    for (std::size_t i = keys_.size(); i > 0; --i) {
      if (keys_[i - 1].typed != "\n") continue;
      checkedUpTo_ = i;
      return;
    }
  }

 private:
  [[nodiscard]] std::string nextWord() {
    static const std::vector<std::string> words = {
        "ghbdtn", "vbh",  "yf",  "jy",     "hello", "world",  "rfr",     "ltkf",  "the",   "cj,frf",
        "to",     "hi",   "vs",  "cat",    "xfcnj", "gj",     "z",       "12",    "a_b",   "Gjxtve",
        "lj",     "qqqq", "yt",  "j,]trn", "ye",    "[jhjij", "because", "gjtpl", "HEllo", "GHbdtn",
        ";bpym",  "'nj",  "jnf", "gjyzk",  "mouse", "dj,ot",  "k.,jdm",  "ghj",   "ds",    "Z"};
    static const std::vector<std::string> ends = {" ",  " ",  " ",  " ",  " ",  "! ", ", ", ". ",
                                                  "? ", "; ", "- ", "\n", "\t", ") ", "/ ", "   "};
    std::string word;
    if (random_() % 4 == 0) {
      for (auto length = 1 + random_() % 9; length > 0; --length)
        word += "qwertyuiop[]asdfghjkl;'zxcvbnm,."[random_() % 32];
    } else {
      word = words[random_() % words.size()];
    }
    return word + ends[random_() % ends.size()];
  }

  void note(char key) {
    if (key == ' ' || key == '\n' || key == '\t') {
      const std::string text(1, key);
      keys_.push_back({text, text, text});
      return;
    }
    const auto stroke = strokeOf(key);
    const std::uint64_t mask = stroke.shift ? 0x20000 : 0;
    const auto on = [&](const KeyTable& table) {
      return charactersOfKey(stroke.code, mask, table).front();
    };
    keys_.push_back(
        {on(KeyTable::english()), on(KeyTable::russian()), on(desktop().inputSources().table())});
  }

  /// The word as typed; or converted with the tail kept; each also with its second capital
  /// lowered.
  void expectWholeWord(const std::vector<std::string>& screen, std::size_t start,
                       std::size_t end) const {
    std::string typed;
    std::string shown;
    for (std::size_t i = start; i < end; ++i) {
      typed += keys_[i].typed;
      shown += screen[i];
    }
    const auto looksLike = [&](const std::string& word) {
      if (shown == word) return true;
      const auto all = charactersOf(word);
      if (all.size() < 2) return false;
      return shown ==
             all[0] + text::lowercased(all[1]) + word.substr(all[0].size() + all[1].size());
    };
    if (looksLike(typed)) return;
    for (std::size_t trim = 0; trim < end - start; ++trim) {
      const auto core = text::withoutLast(typed, trim);
      const auto tail = std::string(text::last(typed, trim));
      for (const auto from : {Language::english, Language::russian}) {
        const auto converted = LayoutMap::convert(core, from);
        if (!looksLike(converted + tail)) continue;
        // The way back gives the same keys.
        EXPECT_EQ(LayoutMap::convert(converted, other(from)), core);
        return;
      }
      if (!LayoutMap::isRussianLetterKey(text::lastCharacter(core))) break;
    }
    ADD_FAILURE() << "\"" << typed << "\" became \"" << shown << "\"";
  }

  std::mt19937 random_;
  std::string pending_;
  std::vector<TypedKey> keys_;
  std::size_t checkedUpTo_ = 0;
  int fixes_ = 0;
};

void typePlainly(unsigned seed, int lines) {
  PlainTyping typing(seed);
  const auto check = [&typing](int number) {
    if (number > 0) typing.endOfLine();
  };
  play(seed, lines, check, [&typing](int) { return typing.nextLine(); });
  EXPECT_GT(typing.fixes(), lines / 100);
}

TEST(Property, PlainTypingLosesNothingWithSeed11) {
  typePlainly(11, kLines);
}
TEST(Property, PlainTypingLosesNothingWithSeed12) {
  typePlainly(12, kLines);
}
TEST(Property, PlainTypingLosesNothingWithSeed13) {
  typePlainly(13, kLines);
}
TEST(Property, PlainTypingLosesNothingWithSeed14) {
  typePlainly(14, kLines);
}

}  // namespace
}  // namespace tessarok
