#include "WordData.h"

#include <array>
#include <string>

#include "AffixDictionary.h"
#include "AffixTable.h"
#include "Alphabet.h"
#include "AspellArchive.h"
#include "ByteOrder.h"
#include "HandList.h"
#include "InputError.h"
#include "Manifest.h"
#include "NgramSet.h"
#include "Scowl.h"
#include "Text.h"
#include "WordCollector.h"

namespace tessarok::makedata {

namespace {

namespace fs = std::filesystem;

constexpr const char* kUtf8 = "UTF-8";
constexpr const char* kKoi8 = "KOI8-R";
constexpr const char* kLatin1 = "ISO-8859-1";

class Sources final {
 public:
  Sources(const SourcePaths& paths, InputLedger& ledger) : paths_(paths), ledger_(ledger) {}

  [[nodiscard]] std::vector<std::string> russianWords() {
    WordCollector words(Alphabet::russian());
    const FormSink sink = [&words](std::u32string_view form) { words.add(form); };
    const AffixTable affixes = addHunspell(sink);
    addAspell(sink);
    addOwnWords("add_ru.txt", affixes, Alphabet::russian(), words);
    dropWords("drop_ru.txt", Alphabet::russian(), words);
    return words.take();
  }

  [[nodiscard]] std::vector<std::string> englishWords() {
    WordCollector words(Alphabet::english());
    const FormSink sink = [&words](std::u32string_view form) { words.add(form); };
    for (const fs::path& list : findScowlLists(paths_.scowl)) {
      const std::string bytes = ledger_.read(list, "scowl", list.string());
      readScowlList(toUtf8(bytes, kLatin1, list), list, sink);
    }
    addOwnWords("add_en.txt", AffixTable(), Alphabet::english(), words);
    dropWords("drop_en.txt", Alphabet::english(), words);
    return words.take();
  }

  /// A list of short words: the comments of the source are not allowed in the data file.
  [[nodiscard]] DataFile shortWords(const std::string& name, const Alphabet& alphabet) {
    const fs::path file = paths_.lists / name;
    std::vector<std::string> words = readHandWords(readOwn(file), file, alphabet, {2, 3});
    refuseEmpty(words.size(), file);
    sortByBytes(words);
    return {name, joinLines(words), words.size()};
  }

  /// A word pack, as it was written: the corrector skips the comments itself.
  [[nodiscard]] DataFile pack(const std::string& name) {
    const fs::path file = paths_.lists / name;
    std::string text = readOwn(file);
    const std::size_t words = readHandList(text, file).size();
    refuseEmpty(words, file);
    return {name, std::move(text), words};
  }

 private:
  std::string readOwn(const fs::path& file) {
    return toUtf8(ledger_.read(file, kOwnLists, file.filename().string()), kUtf8, file);
  }

  AffixTable addHunspell(const FormSink& sink) {
    const fs::path& affixFile = paths_.hunspellAffixes;
    const fs::path& wordFile = paths_.hunspellWords;
    const std::string affixes = ledger_.read(affixFile, "hunspell-ru", affixFile.string());
    AffixTable table = AffixTable::parse(toUtf8(affixes, kUtf8, affixFile), affixFile);
    const std::string words = ledger_.read(wordFile, "hunspell-ru", wordFile.string());
    expandHunspell(toUtf8(words, kUtf8, wordFile), table, wordFile, sink);
    return table;
  }

  void addAspell(const FormSink& sink) {
    const fs::path& affixFile = paths_.aspellAffixes;
    const fs::path& wordFile = paths_.aspellWords;
    const std::string affixes = ledger_.read(affixFile, "aspell-ru", affixFile.string());
    const AffixTable table = AffixTable::parse(toUtf8(affixes, kKoi8, affixFile), affixFile);
    const std::string packed = ledger_.read(wordFile, "aspell-ru", wordFile.string());
    const std::string words = toUtf8(unpackAspellList(packed, wordFile), kKoi8, wordFile);
    expandEntries(splitLines(words), table, wordFile, sink);
  }

  void addOwnWords(const char* name, const AffixTable& affixes, const Alphabet& alphabet,
                   WordCollector& words) {
    const fs::path file = paths_.lists / name;
    const std::string text = readOwn(file);
    for (const Line& line : readHandList(text, file)) {
      expandEntries({line}, affixes, file, [&](std::u32string_view form) {
        if (words.add(form)) return;
        throw InputError(
            file, line.number,
            "'" + encodeUtf8(form) + "' is not a word of the " + alphabet.name() + " letters");
      });
    }
  }

  void dropWords(const char* name, const Alphabet& alphabet, WordCollector& words) {
    const fs::path file = paths_.lists / name;
    for (std::string& word : readHandWords(readOwn(file), file, alphabet)) {
      words.drop(std::move(word));
    }
  }

  static void refuseEmpty(std::size_t words, const fs::path& file) {
    if (words == 0) throw InputError(file, 0, "holds no word");
  }

  const SourcePaths& paths_;
  InputLedger& ledger_;
};

DataFile ngramFile(const char* name, const NgramSet& ngrams) {
  const std::vector<std::string> groups = ngrams.list();
  return {name, joinLines(groups), groups.size()};
}

/// Names of the n-gram files of one language.
struct NgramNames {
  const char* pairs;
  const char* triples;
  const char* boundaryTriples;
};

void addNgramFiles(const std::vector<std::string>& words, const Alphabet& alphabet,
                   const NgramNames& names, std::vector<DataFile>& files) {
  NgramSet pairs(alphabet, 2, NgramSet::Marks::kNone);
  NgramSet triples(alphabet, 3, NgramSet::Marks::kNone);
  NgramSet boundaryTriples(alphabet, 3, NgramSet::Marks::kBoundary);
  for (const std::string& word : words) {
    const std::u32string letters = decodeUtf8(word);
    pairs.add(letters);
    triples.add(letters);
    boundaryTriples.add(letters);
  }
  files.push_back(ngramFile(names.pairs, pairs));
  files.push_back(ngramFile(names.triples, triples));
  files.push_back(ngramFile(names.boundaryTriples, boundaryTriples));
}

}  // namespace

std::vector<DataFile> makeWordData(const SourcePaths& paths, InputLedger& ledger) {
  Sources sources(paths, ledger);
  std::vector<DataFile> files;
  {
    const std::vector<std::string> words = sources.englishWords();
    files.push_back({"dict_en.txt", joinLines(words), words.size()});
    addNgramFiles(words, Alphabet::english(), {"proto_en2.txt", "proto_en3.txt", "proto_en3b.txt"},
                  files);
  }
  {
    const std::vector<std::string> words = sources.russianWords();
    files.push_back({"dict_ru.txt", joinLines(words), words.size()});
    addNgramFiles(words, Alphabet::russian(), {"proto_ru2.txt", "proto_ru3.txt", "proto_ru3b.txt"},
                  files);
  }
  files.push_back(sources.shortWords("freq_short_en.txt", Alphabet::english()));
  files.push_back(sources.shortWords("freq_short_ru.txt", Alphabet::russian()));
  for (const char* name : {"pack_it.txt", "pack_chat.txt", "pack_gaming.txt"}) {
    files.push_back(sources.pack(name));
  }
  return files;
}

}  // namespace tessarok::makedata
