#include "platform/virtual/ReplayPrinter.h"

#include <filesystem>
#include <functional>
#include <map>
#include <system_error>

#include "BuiltinPacks.h"
#include "DiagnosticLog.h"
#include "IgnoreList.h"
#include "KeyTap.h"
#include "Text.h"
#include "UserDict.h"
#include "platform/virtual/ReplayError.h"

namespace tessarok::virtualdesktop {

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
  // Whoever has read the lists may rely on the files.
  IgnoreList::flush();
  return {{"ignored", IgnoreList::words()},
          {"session", IgnoreList::sessionWords()},
          {"rejects", json(IgnoreList::rejectCounts())},
          {"user", UserDict::words()},
          {"packs", BuiltinPacks::words().size()}};
}

}  // namespace

json ReplayPrinter::value(const std::string& field) {
  auto& desktop = session_.desktop();
  using Maker = std::function<json()>;
  const std::map<std::string, Maker, std::less<>> makers = {
      {"text", [&] { return json(desktop.textField().text()); }},
      {"caret", [&] { return json(desktop.textField().caret()); }},
      {"source", [&] { return json(*desktop.inputSources().current()); }},
      {"state", [] { return stateValue(); }},
      {"tap", [this] { return tap(); }},
      {"icon", [this] { return icon(); }},
      {"menu", [this] { return menu(); }},
      {"log",
       [&] {
         DiagnosticLog::drain();
         return json(desktop.files().takeLog());
       }},
      {"syslog",
       [&] {
         IgnoreList::flush();
         return json(desktop.systemLog().take());
       }},
      {"posted", [&] { return json(desktop.takePosted()); }},
      {"delivered", [&] { return json(desktop.takeDelivered()); }},
      {"lists", [] { return listsValue(); }},
      {"files", [this] { return files(); }},
  };
  const auto maker = makers.find(field);
  if (maker == makers.end()) throw ReplayError("nothing to print is called \"" + field + "\"");
  return maker->second();
}

json ReplayPrinter::tap() {
  const auto& keyTap = KeyTap::shared();
  return {{"exists", keyTap.tapExists()},
          {"enabled", keyTap.tapIsEnabled()},
          {"tapRunning", session_.delegate().tapRunning()},
          {"lastKeyEventAt", keyTap.lastKeyEventAt()}};
}

json ReplayPrinter::icon() {
  const auto& icon = session_.desktop().statusBar().icon();
  return {{"symbol", icon.symbol}, {"dimmed", icon.dimmed}, {"tooltip", icon.toolTip}};
}

json ReplayPrinter::menu() {
  const auto* menu = session_.desktop().statusBar().menu();
  return menu == nullptr ? json::array() : menuValue(*menu);
}

json ReplayPrinter::files() {
  IgnoreList::flush();
  auto texts = json::object();
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(UserDict::directory(), error)) {
    const auto name = entry.path().filename().string();
    const bool isTemporary = name.starts_with('.');
    if (name == "instance.lock" || isTemporary || !entry.is_regular_file(error)) continue;
    if (auto text = session_.desktop().files().read(entry.path(), nullptr)) {
      texts[name] = std::move(*text);
    }
  }
  return texts;
}

}  // namespace tessarok::virtualdesktop
