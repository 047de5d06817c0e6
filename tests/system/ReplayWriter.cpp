#include "ReplayWriter.h"

#include <algorithm>
#include <utility>

namespace tessarok {

namespace {

using nlohmann::json;
using Texts = std::vector<std::string>;

const Texts kLayouts = {"com.apple.keylayout.US",         "com.apple.keylayout.ABC",
                        "com.apple.keylayout.British",    "com.apple.keylayout.Russian",
                        "com.apple.keylayout.RussianWin", "com.apple.keylayout.Ukrainian"};

/// Keys of words of both languages, on the right and on the wrong layout.
const Texts kWords = {"ghbdtn", "vbh",    "yf", "jy",     "hello", "world",  "rfr",    "ltkf",
                      "the",    "GHbdtn", "to", "Ghbdtn", "hi",    "vs",     "k.,jq",  "cat",
                      "xfcnj",  "gj",     "z",  "12",     "a_b",   "HEllo",  "gjtpl",  "lj",
                      "qqqq",   "j,]trn", "yt", "rjulf",  "ye",    "[jhjij", "because"};
const Texts kBoundaries = {" ", " ", " ", " ", "! ", ", ", "? ", ". ", "\n", "\t", "-", "  ", "'"};

/// Codes of letters, digits, punctuation, the special keys and none at all.
const std::vector<int> kCodes = {0,  1,  4,   5,   11,  12,  17,  31,  34,  37,  43,  44, 45,
                                 47, 41, 39,  18,  29,  49,  36,  76,  48,  51,  51,  51, 50,
                                 10, 53, 117, 123, 124, 125, 126, 115, 119, 116, 121, 200};
/// None of these joins with what stands before it.
const Texts kPayloads = {"", "x", "я", "é", "ї", "ab", "👍", "!", "e\u0301", "123456789", "a!", "7"};
const Texts kModifiers = {"shift", "control", "option", "command", "capslock", "fn"};
const Texts kWorkspace = {"NSWorkspaceDidActivateApplicationNotification",
                          "NSWorkspaceWillSleepNotification", "NSWorkspaceUnknown"};
const Texts kMenu = {"Enabled",
                     "⌥Space — convert last word",
                     "Словари исключений",
                     "Shift-фикс (ПРивет → Привет)",
                     "Open User Dictionary…",
                     "Open Accessibility Settings…",
                     "IT / разработка",
                     "Геймерский"};

}  // namespace

json ReplayWriter::setup() {
  json fields = json::object();
  if (below(2) == 0) {
    enabled_ = {any(kLayouts), kLayouts[0], kLayouts[4]};
    fields["sources"] = enabled_;
    fields["current"] = any(enabled_);
  }
  if (below(2) == 0) fields["keyboardType"] = 41;
  if (below(2) == 0) fields["layoutType"] = any(Texts{"ANSI", "ISO", "JIS"});
  if (below(4) == 0) fields["trusted"] = false;
  fields["defaults"] = {{"shiftLagFix", below(2) == 0}, {"pack.gaming", below(2) == 0}};
  fields["files"] = {{"rejects.txt", "ghbdtn\t2\nvbh\t1\n"}, {"dictionary.txt", dictionaryText()}};
  // Recreated taps show in the log.
  fields["debug"] = true;
  return {{"setup", fields}};
}

void ReplayWriter::queueRepair() {
  enabled_ = {kLayouts[0], kLayouts[4]};
  pending_.clear();
  queued_ = {{{"secure", false}},         {{"trusted", true}}, {{"enable", enabled_}},
             {{"select", any(enabled_)}}, {{"wait", 5.5}},     {{"keys", "\n"}}};
  if (!std::exchange(switchedOn_, true)) queued_.push_front({{"menu", "Enabled"}});
}

json ReplayWriter::line() {
  if (queued_.empty() && below(50) == 0) queueRepair();
  if (!queued_.empty()) {
    auto next = std::move(queued_.front());
    queued_.pop_front();
    return next;
  }
  if (!pending_.empty()) return keys();
  const auto chance = below(100);
  if (chance < 70) return keys();
  if (chance < 86) return down();
  if (chance < 94) return up();
  return desktopLine();
}

json ReplayWriter::keys() {
  if (pending_.empty()) pending_ = any(below(4) == 0 ? kWords : words_) + any(kBoundaries);
  // Words come whole now and then; only letters and spaces, whose place in the stream is plain.
  const auto end = std::find_if_not(pending_.begin(), pending_.end(),
                                    [](char c) { return (c >= 'a' && c <= 'z') || c == ' '; });
  const auto whole = static_cast<std::size_t>(end - pending_.begin());
  const auto count = whole > 1 && below(3) == 0 ? whole : 1;
  const auto text = pending_.substr(0, count);
  pending_.erase(0, count);
  return {{"keys", below(25) == 0 ? std::string("\b") : text}};
}

json ReplayWriter::down() {
  const auto code = below(3) == 0 ? 49 : any(kCodes);
  json fields = {{"code", code}};
  Texts modifiers;
  for (const auto& modifier : kModifiers) {
    if (below(8) == 0) modifiers.push_back(modifier);
  }
  if (code == 49 && below(2) == 0) modifiers = {"option"};
  if (!modifiers.empty()) fields["mods"] = modifiers;
  if (below(10) == 0) fields["repeat"] = true;
  if (below(6) == 0) fields["chars"] = any(kPayloads);
  if (below(20) == 0) fields["marker"] = true;
  held_.push_back(code);
  return {{"down", fields}};
}

json ReplayWriter::up() {
  if (held_.empty()) return {{"up", {{"code", any(kCodes)}}}};
  const auto code = held_.back();
  held_.pop_back();
  return {{"up", {{"code", code}, {"mods", json::array()}}}};
}

json ReplayWriter::desktopLine() {
  switch (below(16)) {
    case 0:
      return {{"click", any(Texts{"left", "right", "other"})}};
    case 1:
    case 2:
      return {{"select", any(enabled_)}};
    case 3:
      return enable();
    case 4:
      return {{"keyboard", {{"type", 40 + below(2)}, {"layoutType", any(Texts{"ANSI", "ISO"})}}}};
    case 5:
      return {{"secure", below(4) == 0}};
    case 6:
      return {{"trusted", below(4) != 0}};
    case 7:
      return {{"tap", any(Texts{"timeout", "user", "off", "deaf"})}};
    case 8:
    case 9:
      return {{"fail", any(Texts{"source", "event", "select", "write"})}};
    case 10:
      return {{"workspace", any(kWorkspace)}};
    case 11: {
      const auto& title = any(kMenu);
      if (title == "Enabled") switchedOn_ = !switchedOn_;
      return {{"menu", title}};
    }
    case 12:
      return file();
    default:
      return {{"wait", any(std::vector<double>{0, 0.1, 0.5, 2, 2.5, 5.1, 8, 31})}};
  }
}

json ReplayWriter::enable() {
  enabled_ = {kLayouts[0], kLayouts[4]};
  if (below(4) == 0) enabled_.pop_back();
  if (below(2) == 0) enabled_.insert(enabled_.begin(), any(kLayouts));
  return {{"enable", enabled_}};
}

json ReplayWriter::file() {
  if (below(3) == 0) return {{"file", {{"dictionary.txt", nullptr}}}};
  return {{"file", {{"dictionary.txt", dictionaryText()}}}};
}

std::string ReplayWriter::dictionaryText() {
  return "# own words\n" + any(kWords) + "\n" + any(kWords) + "\n";
}

}  // namespace tessarok
