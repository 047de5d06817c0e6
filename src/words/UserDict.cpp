#include "words/UserDict.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "platform/Desktop.h"
#include "text/Text.h"
#include "words/WordLines.h"

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
  WordSet words;
  std::optional<platform::FileStamp> lastLoadedStamp;
  /// Of a file that is too large, and was complained of.
  std::optional<platform::FileStamp> refusedStamp;
};

State& state() {
  static State instance;
  return instance;
}

std::optional<platform::FileStamp> fileStamp() {
  return platform::desktop().files().stamp(UserDict::fileURL());
}

void refuse(const platform::FileStamp& stamp) {
  if (state().refusedStamp == stamp) return;
  state().refusedStamp = stamp;
  platform::desktop().systemLog().write(
      "Tessarok: dictionary.txt is larger than 8 MiB; its words stay as they were");
}

}  // namespace

const WordSet& UserDict::words() {
  return state().words;
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
  auto& files = platform::desktop().files();
  const auto file = fileURL();
  if (files.exists(file)) return;
  // Without the file the program works all the same; the next start tries again.
  static_cast<void>(files.createDirectories(file.parent_path()));
  static_cast<void>(files.writeAtomically(file, kTemplate));
}

void UserDict::reload() {
  const auto before = fileStamp();
  if (!before) return;
  if (before->size > kMostBytes) return refuse(*before);
  const auto text = platform::desktop().files().read(fileURL());
  if (!text || !text::isValidUtf8(*text)) return;
  // A file that changed while it was read is read again at the next check.
  if (fileStamp() != before) return;
  state().words = parse(*text);
  state().lastLoadedStamp = before;
}

void UserDict::reloadIfChanged() {
  if (fileStamp() == state().lastLoadedStamp) return;
  reload();
}

WordSet UserDict::parse(std::string_view text) {
  std::vector<std::string> words;
  WordLines lines(text);
  while (lines.next()) {
    auto word = text::normalizedWord(lines.line());
    if (word.front() == '#') continue;
    words.push_back(std::move(word));
  }
  // A set takes words that are in order in half the time, sorting included.
  std::sort(words.begin(), words.end());
  return {std::make_move_iterator(words.begin()), std::make_move_iterator(words.end())};
}

}  // namespace tessarok
