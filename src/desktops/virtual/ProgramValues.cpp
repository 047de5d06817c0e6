#include "desktops/virtual/ProgramValues.h"

#include <filesystem>
#include <system_error>

#include "typing/DiagnosticLog.h"
#include "typing/KeyTap.h"
#include "words/BuiltinPacks.h"
#include "words/IgnoreList.h"
#include "words/UserDict.h"

namespace tessarok::virtualdesktop::programValues {

namespace {

json fixValue(const WordState& word) {
  if (!word.lastFix()) return nullptr;
  return {{"text", word.lastFix()->text}, {"tail", word.lastFix()->tail}};
}

json autoFixValue(const WordState& word) {
  if (!word.lastAutoFix()) return nullptr;
  const auto& fix = *word.lastAutoFix();
  return {{"typed", fix.typed}, {"converted", fix.converted}, {"rejectionWord", fix.rejectionWord}};
}

json rejectionValue(const WordState& word) {
  if (!word.pendingRejection()) return nullptr;
  const auto& rejection = *word.pendingRejection();
  return {
      {"typed", rejection.typed}, {"rejectionWord", rejection.rejectionWord}, {"at", rejection.at}};
}

}  // namespace

json state() {
  const auto& keyTap = KeyTap::shared();
  const auto& word = keyTap.word();
  return {{"buffer", word.buffer()},
          {"untrackableWord", word.untrackableWord()},
          {"ruStreak", word.ruStreak()},
          {"enStreak", word.enStreak()},
          {"pendingShorts", word.pendingShorts()},
          {"lastFix", fixValue(word)},
          {"lastAutoFix", autoFixValue(word)},
          {"pendingRejection", rejectionValue(word)},
          {"enabled", keyTap.enabled},
          {"pausedUntil", keyTap.pausedUntil()},
          {"swallowedKeyUps", keyTap.swallowedKeyUps()},
          {"shiftFixEnabled", keyTap.shiftFixEnabled}};
}

json menu(const platform::Menu* menu) {
  auto items = json::array();
  if (menu == nullptr) return items;
  for (const auto& item : menu->items) {
    if (item->isSeparator) {
      items.push_back(nullptr);
      continue;
    }
    items.push_back({{"title", item->title},
                     {"enabled", item->enabled},
                     {"state", item->state},
                     {"items", programValues::menu(item->submenu.get())}});
  }
  return items;
}

json lists() {
  // Whoever has read the lists may rely on the files.
  IgnoreList::flush();
  return {{"ignored", IgnoreList::words()},
          {"session", IgnoreList::sessionWords()},
          {"rejects", json(IgnoreList::rejectCounts())},
          {"user", UserDict::words()},
          {"packs", BuiltinPacks::words().size()}};
}

json tap(const AppDelegate& delegate) {
  const auto& keyTap = KeyTap::shared();
  return {{"exists", keyTap.tapExists()},
          {"enabled", keyTap.tapIsEnabled()},
          {"tapRunning", delegate.tapRunning()},
          {"lastKeyEventAt", keyTap.lastKeyEventAt()}};
}

json icon(const VirtualStatusBar& statusBar) {
  const auto& icon = statusBar.icon();
  return {{"symbol", icon.symbol}, {"dimmed", icon.dimmed}, {"tooltip", icon.toolTip}};
}

json files(platform::Files& files) {
  IgnoreList::flush();
  auto texts = json::object();
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(UserDict::directory(), error)) {
    const auto name = entry.path().filename().string();
    const bool isTemporary = name.starts_with('.');
    if (name == "instance.lock" || isTemporary || !entry.is_regular_file(error)) continue;
    if (auto text = files.read(entry.path(), nullptr)) texts[name] = std::move(*text);
  }
  return texts;
}

json diagnosticLog(VirtualFiles& files) {
  DiagnosticLog::drain();
  return files.takeLog();
}

json systemLog(VirtualSystemLog& log) {
  IgnoreList::flush();
  return log.take();
}

}  // namespace tessarok::virtualdesktop::programValues
