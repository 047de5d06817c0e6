#include "macos/StoryPrinter.h"

#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>

#include "BuiltinPacks.h"
#include "DiagnosticLog.h"
#include "IgnoreList.h"
#include "KeyTap.h"
#include "UserDict.h"

namespace tessarok::macostest {

namespace {

using nlohmann::json;

json fixValue(const WordState& word) {
  if (!word.lastFix) return nullptr;
  return {{"text", word.lastFix->text}, {"tail", word.lastFix->tail}};
}

json autoFixValue(const WordState& word) {
  if (!word.lastAutoFix) return nullptr;
  const auto& fix = *word.lastAutoFix;
  return {{"typed", fix.typed}, {"converted", fix.converted}, {"rejectionWord", fix.rejectionWord}};
}

json rejectionValue(const WordState& word) {
  if (!word.pendingRejection) return nullptr;
  const auto& rejection = *word.pendingRejection;
  return {
      {"typed", rejection.typed}, {"rejectionWord", rejection.rejectionWord}, {"at", rejection.at}};
}

json stateValue() {
  const auto& keyTap = KeyTap::shared();
  const auto& word = keyTap.word();
  return {{"buffer", word.buffer},
          {"untrackableWord", word.untrackableWord},
          {"ruStreak", word.ruStreak},
          {"enStreak", word.enStreak},
          {"pendingShorts", word.pendingShorts},
          {"lastFix", fixValue(word)},
          {"lastAutoFix", autoFixValue(word)},
          {"pendingRejection", rejectionValue(word)},
          {"enabled", keyTap.enabled},
          {"pausedUntil", keyTap.pausedUntil()},
          {"swallowedKeyUps", keyTap.swallowedKeyUps()},
          {"shiftFixEnabled", keyTap.shiftFixEnabled}};
}

json menuValue(const platform::Menu& menu) {
  auto items = json::array();
  for (const auto& item : menu.items) {
    if (item->isSeparator) {
      items.push_back(nullptr);
      continue;
    }
    items.push_back({{"title", item->title},
                     {"enabled", item->enabled},
                     {"state", item->state},
                     {"items", item->submenu ? menuValue(*item->submenu) : json::array()}});
  }
  return items;
}

json listsValue() {
  return {{"ignored", IgnoreList::words()},
          {"session", IgnoreList::sessionWords()},
          {"rejects", json(IgnoreList::rejectCounts())},
          {"user", UserDict::words()},
          {"packs", BuiltinPacks::words().size()}};
}

}  // namespace

json StoryPrinter::value(const std::string& field) {
  using Maker = std::function<json()>;
  const std::map<std::string, Maker, std::less<>> makers = {
      {"text", [this] { return json(mac_.textField().text()); }},
      {"caret", [this] { return json(mac_.textField().caret()); }},
      {"source", [this] { return json(mac_.source()); }},
      {"state", [] { return stateValue(); }},
      {"tap", [this] { return tap(); }},
      {"icon", [this] { return icon(); }},
      {"menu",
       [this] {
         const auto* menu = mac_.services().statusBar->menu();
         return menu == nullptr ? json::array() : menuValue(*menu);
       }},
      {"log",
       [this] {
         DiagnosticLog::drain();
         return json(mac_.files().takeLog());
       }},
      {"syslog",
       [this] {
         IgnoreList::flush();
         return json(mac_.services().systemLog->take());
       }},
      {"posted", [this] { return json(mac_.takePosted()); }},
      {"delivered", [this] { return json(mac_.takeDelivered()); }},
      {"lists", [] { return listsValue(); }},
      {"files", [this] { return files(); }},
  };
  const auto maker = makers.find(field);
  if (maker == makers.end()) throw std::runtime_error("unknown field " + field);
  return maker->second();
}

json StoryPrinter::tap() {
  const auto& keyTap = KeyTap::shared();
  return {{"exists", keyTap.tapExists()},
          {"enabled", keyTap.tapIsEnabled()},
          {"tapRunning", mac_.delegate().tapRunning()},
          {"lastKeyEventAt", keyTap.lastKeyEventAt()}};
}

json StoryPrinter::icon() {
  const auto& icon = mac_.services().statusBar->icon();
  return {{"symbol", icon.symbol}, {"dimmed", icon.dimmed}, {"tooltip", icon.toolTip}};
}

json StoryPrinter::files() {
  IgnoreList::flush();
  auto texts = json::object();
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(UserDict::directory(), error)) {
    const auto name = entry.path().filename().string();
    if (name == "instance.lock" || name.starts_with('.')) continue;
    if (auto text = mac_.files().read(entry.path(), nullptr)) texts[name] = std::move(*text);
  }
  return texts;
}

}  // namespace tessarok::macostest
