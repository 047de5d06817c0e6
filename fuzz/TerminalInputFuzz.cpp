// What comes from a terminal: keys, pastes, answers, and anything else. The first byte says in
// what pieces it comes, and how the program's side is set.

#include <string>
#include <vector>

#include "Check.h"
#include "Input.h"
#include "desktops/terminal/InputDecoder.h"
#include "desktops/terminal/KeyReader.h"
#include "desktops/terminal/ProgramOutput.h"
#include "desktops/terminal/TerminalInputSources.h"
#include "desktops/terminal/TypedLine.h"

namespace tessarok::fuzz {
namespace {

using terminal::InputDecoder;
using terminal::InputItem;
using Kind = InputItem::Kind;

struct Item {
  Kind kind;
  std::string bytes;

  bool operator==(const Item&) const = default;
};

/// Text of a paste or of an answer may come in any number of items.
bool isText(Kind kind) {
  return kind == Kind::paste || kind == Kind::answer;
}

class Reader {
 public:
  explicit Reader(const terminal::PtyModes& modes) : modes_(modes) {}

  void feed(std::string_view bytes) {
    decoder_.append(bytes);
    takeItems();
  }
  void setBurst(bool burst) { decoder_.setBurst(burst); }
  void end() {
    // A silence after every item ends what waits, as it does in a terminal.
    while (decoder_.isWaiting()) {
      decoder_.endWaiting();
      takeItems();
      if (decoder_.size() == 0) break;
    }
  }
  [[nodiscard]] std::size_t size() const { return decoder_.size(); }
  [[nodiscard]] const std::vector<Item>& items() const { return items_; }
  [[nodiscard]] std::string bytes() const {
    std::string all;
    for (const auto& item : items_)
      all += item.bytes;
    return all;
  }

 private:
  void takeItems() {
    while (const auto item = decoder_.next()) {
      check(!item->bytes.empty(), "an item has bytes");
      keys_.read(*item, modes_, event_);
      if (isText(item->kind) && !items_.empty() && items_.back().kind == item->kind) {
        items_.back().bytes += item->bytes;
      } else {
        items_.push_back({item->kind, std::string(item->bytes)});
      }
    }
  }

  InputDecoder decoder_;
  terminal::PtyModes modes_;
  terminal::TerminalInputSources own_;
  terminal::OuterLayout outer_{own_};
  terminal::KeyReader keys_{outer_};
  terminal::TerminalEvent event_;
  std::vector<Item> items_;
};

terminal::PtyModes modesOf(unsigned char options) {
  termios settings{};
  settings.c_cc[VERASE] = '\x7f';
  settings.c_cc[VINTR] = '\x03';
  if ((options & 0x40u) == 0) settings.c_lflag = ICANON | ECHO;
  return terminal::PtyModes(settings);
}

void checkInput(std::string_view text, unsigned char options) {
  Reader whole(modesOf(options));
  whole.feed(text);
  whole.end();
  // Within the brackets of a paste the beginning of the closing one waits for ever.
  check(whole.bytes() + std::string(text.substr(text.size() - whole.size())) == text,
        "no byte is lost or changed");

  Reader pieces(modesOf(options));
  const std::size_t size = (options & 0x07u) + 1;
  for (std::size_t at = 0; at < text.size(); at += size)
    pieces.feed(text.substr(at, size));
  pieces.end();
  check(pieces.items() == whole.items(), "the pieces in which bytes come do not matter");

  Reader burst(modesOf(options));
  burst.setBurst(true);
  burst.feed(text);
  burst.end();
  check(burst.bytes().size() + burst.size() == text.size(), "nor does a burst lose any");
}

void checkOutput(std::string_view text, unsigned char options) {
  terminal::ProgramOutput whole;
  terminal::ProgramOutput pieces;
  terminal::TypedLine lineOfWhole(whole.screen());
  terminal::TypedLine lineOfPieces(pieces.screen());
  for (auto* line : {&lineOfWhole, &lineOfPieces}) {
    line->noteOutput();
    line->add(U'п');
    line->add(U'x');
  }
  whole.feed(text);
  const std::size_t size = (options & 0x07u) + 1;
  for (std::size_t at = 0; at < text.size(); at += size)
    pieces.feed(text.substr(at, size));
  check(whole.isAlternateScreen() == pieces.isAlternateScreen(), "the same screen is shown");
  check(whole.screen().cursor() == pieces.screen().cursor(), "the cursor is in the same place");
  check(lineOfWhole.isShown() == lineOfPieces.isShown(), "the same has appeared");
}

}  // namespace
}  // namespace tessarok::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const auto text = tessarok::fuzz::textOf(data + 1, size - 1);
  tessarok::fuzz::checkInput(text, data[0]);
  tessarok::fuzz::checkOutput(text, data[0]);
  return 0;
}
