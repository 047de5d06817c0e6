#include "words/UserDict.h"

#include <atomic>
#include <functional>
#include <optional>
#include <utility>

#include "platform/Desktop.h"
#include "platform/FileStamp.h"
#include "text/Text.h"
#include "words/ClearedFlag.h"
#include "words/ListQueue.h"
#include "words/Published.h"
#include "words/WordList.h"

namespace tessarok {

namespace {

constexpr std::string_view kTemplate =
    R"(# Tessarok — пользовательский словарь: эти слова НИКОГДА не исправляются.
# Одно слово на строку, регистр не важен, строки с # — комментарии.
# Слово сравнивается с тем, что вы НАБРАЛИ (до смены раскладки).
# Файл перечитывается автоматически через пару секунд после сохранения.

# --- русский дев-сленг (транслит, которого нет в словаре) ---
кеш
кеша
кешу
кешем
кеше
кеши
шифт
шифтом
хеш
хеша
хешем
пуш
пуша
пушим
мердж
ребейз
стеш
коммит
деплой
хотфикс
бэкенд
фронтенд
эндпоинт
миддлвара
пайплайн
докер
нжинкс
постгрес
редис
джейсон
тайпскрипт
локалхост

# --- латинские аббревиатуры, чей свап совпадает с русским словом ---
jwt
tls
dto
dtos
vps
ssr
csr)";

struct State {
  Published<WordList> words;
  /// The queue's.
  std::optional<platform::FileStamp> lastLoadedStamp;
  /// The first load has been asked for and is not done.
  std::atomic<bool> isLoading = false;
  std::atomic<bool> isChecking = false;
  /// No once the program ends: a large file must not keep it.
  std::atomic<bool> isWanted = true;
  /// The main thread's.
  bool wasAsked = false;
};

State& state() {
  static State instance;
  return instance;
}

std::optional<platform::FileStamp> fileStamp() {
  return platform::desktop().files().stamp(UserDict::fileURL());
}

/// What is done on the queue.
void load() {
  const auto before = fileStamp();
  if (!before) return;
  const auto text = platform::desktop().files().read(UserDict::fileURL());
  if (!text || !text::isValidUtf8(*text)) return;
  // A file that changed while it was read is read again at the next check.
  if (fileStamp() != before) return;
  auto words = WordList::parse(*text, [] { return state().isWanted.load(); });
  if (!state().isWanted) return;
  state().words.publish(std::move(words));
  state().lastLoadedStamp = before;
}

void loadIfChanged() {
  state().words.forgetOld();
  if (fileStamp() != state().lastLoadedStamp) load();
}

}  // namespace

bool UserDict::contains(std::string_view word) {
  return state().words.value().contains(word);
}

bool UserDict::isLoading() {
  return state().isLoading;
}

WordSet UserDict::words() {
  ListQueue::drain();
  return state().words.value().toSet();
}

std::filesystem::path UserDict::directory() {
  auto& files = platform::desktop().files();
  const auto support = files.applicationSupportDirectory();
  return support.value_or(files.homeDirectory() / "Library" / "Application Support") / "Tessarok";
}

std::filesystem::path UserDict::fileURL() {
  return directory() / "dictionary.txt";
}

void UserDict::seedIfMissing() {
  ListQueue::async([] {
    auto& files = platform::desktop().files();
    const auto file = fileURL();
    if (files.exists(file)) return;
    // Without the file the program works all the same; the next start tries again.
    static_cast<void>(files.createDirectories(file.parent_path()));
    static_cast<void>(files.writeAtomically(file, kTemplate));
  });
}

void UserDict::reload(std::function<void()> then) {
  auto& all = state();
  if (!std::exchange(all.wasAsked, true)) all.isLoading = true;
  all.isWanted = true;
  ListQueue::async([&all, then = std::move(then)] {
    const ClearedFlag done(all.isLoading);
    if (then) platform::desktop().runLoop().async(then);
    load();
  });
}

void UserDict::reloadIfChanged() {
  auto& all = state();
  // A slow disk is not asked again before it has answered.
  if (all.isChecking.exchange(true)) return;
  ListQueue::async([&all] {
    const ClearedFlag done(all.isChecking);
    loadIfChanged();
  });
}

void UserDict::stop() {
  state().isWanted = false;
  ListQueue::drain();
}

}  // namespace tessarok
