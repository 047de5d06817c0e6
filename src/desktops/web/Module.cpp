// What the page's script calls. Texts go through one buffer, in UTF-16 both ways but for names,
// word data and explanations, which are bytes. Numbers are those of WebAssembly: 32 bits, or
// doubles.

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "desktops/web/KeyNames.h"
#include "desktops/web/Page.h"

#define TESSAROK_EXPORT(name) __attribute__((export_name(name)))

namespace {

using tessarok::Language;
using tessarok::web::FieldEdit;
using tessarok::web::Page;

/// UTF-16 units that fit between script and module; longer texts than words are not exchanged.
constexpr std::size_t kUnits = 1024;

struct Exchange {
  char16_t units[kUnits];
  std::uint32_t erase;
  std::uint32_t textUnits;
  std::uint32_t keyTextUnits;
  std::uint32_t keyPasses;
};

Exchange exchange;
std::string bytes;

Page& page() {
  static Page instance;
  return instance;
}

/// The text and behind it what the key types. A text that does not fit never comes up: the
/// corrector follows no longer words.
void hand(const FieldEdit& edit) {
  const auto text = std::min(edit.text.size(), kUnits);
  const auto keyText = std::min(edit.keyText.size(), kUnits - text);
  std::copy_n(edit.text.begin(), text, exchange.units);
  std::copy_n(edit.keyText.begin(), keyText, exchange.units + text);
  exchange.erase = static_cast<std::uint32_t>(edit.erase);
  exchange.textUnits = static_cast<std::uint32_t>(text);
  exchange.keyTextUnits = static_cast<std::uint32_t>(keyText);
  exchange.keyPasses = edit.keyPasses ? 1 : 0;
}

}  // namespace

extern "C" {

TESSAROK_EXPORT("exchange") Exchange* exchangeAddress() {
  return &exchange;
}

/// Makes room for so many bytes from the script.
TESSAROK_EXPORT("bytes") char* roomForBytes(std::uint32_t size) {
  bytes.assign(size, '\0');
  return bytes.data();
}

/// Starts with the word data that are in the bytes; whether they could be used.
TESSAROK_EXPORT("launch") std::uint32_t launch() {
  const bool works = page().launch(bytes);
  bytes = {};
  return works ? 1 : 0;
}

/// The number of the key whose name is in the bytes; -1 for a key that means nothing.
TESSAROK_EXPORT("keyNamed") std::int32_t keyNamed() {
  return static_cast<std::int32_t>(tessarok::web::keyNames::codeOf(bytes).value_or(-1));
}

TESSAROK_EXPORT("advanceTo") void advanceTo(double seconds) {
  page().desktop().advanceTo(seconds);
}

TESSAROK_EXPORT("keyDown")
void keyDown(std::int32_t code, std::uint32_t modifiers, std::uint32_t autorepeat) {
  hand(page().keyDown({.code = code, .modifiers = modifiers, .autorepeat = autorepeat != 0}));
}

TESSAROK_EXPORT("keyUp") void keyUp(std::int32_t code, std::uint32_t modifiers) {
  page().desktop().keyUp(code, modifiers);
}

/// The text is in the exchange.
TESSAROK_EXPORT("textTyped") void textTyped(std::uint32_t size) {
  hand(page().textTyped({exchange.units, std::min<std::size_t>(size, kUnits)}));
}

TESSAROK_EXPORT("click") void click() {
  page().desktop().click();
}

TESSAROK_EXPORT("focusMoved") void focusMoved() {
  page().desktop().focusMoved();
}

/// 0 for English, 1 for Russian.
TESSAROK_EXPORT("layout") std::uint32_t layout() {
  return page().desktop().layout() == Language::russian ? 1 : 0;
}

TESSAROK_EXPORT("selectLayout") void selectLayout(std::uint32_t layout) {
  page().desktop().selectLayout(layout == 0 ? Language::english : Language::russian);
}

TESSAROK_EXPORT("isPackOn") std::uint32_t isPackOn(std::uint32_t index) {
  return Page::isPackOn(index) ? 1 : 0;
}

TESSAROK_EXPORT("togglePack") void togglePack(std::uint32_t index) {
  page().togglePack(index);
}

TESSAROK_EXPORT("isPaused") std::uint32_t isPaused() {
  return page().isPaused() ? 1 : 0;
}

/// Leaves the lines of `Page::explainLastWord` in the bytes; their size.
TESSAROK_EXPORT("explain") std::uint32_t explain() {
  bytes = page().explainLastWord();
  return static_cast<std::uint32_t>(bytes.size());
}

/// Where the bytes are, which every call may move.
TESSAROK_EXPORT("bytesAddress") const char* bytesAddress() {
  return bytes.data();
}

}  // extern "C"
