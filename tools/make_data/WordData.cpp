#include "WordData.h"

#include <algorithm>
#include <map>
#include <string>
#include <unordered_set>

#include "AffixDictionary.h"
#include "AffixTable.h"
#include "Alphabet.h"
#include "AspellArchive.h"
#include "ByteSort.h"
#include "ConflictResolver.h"
#include "DecisionModel.h"
#include "FrequencyTable.h"
#include "HandList.h"
#include "InputError.h"
#include "InputText.h"
#include "KeyText.h"
#include "Manifest.h"
#include "Scowl.h"
#include "WordCollector.h"

namespace tessarok::makedata {

namespace {

namespace fs = std::filesystem;

constexpr const char* kUtf8 = "UTF-8";
constexpr const char* kKoi8 = "KOI8-R";
constexpr const char* kLatin1 = "ISO-8859-1";

/// The data of one language while they are made.
struct Language {
  const Alphabet& alphabet;
  bool isRussian;
  LanguageModel model;
  Weights weights;
  /// The same without what dictionaries and the lists written by hand say, for the letter groups:
  /// a name or a slang word is known, but its letters are not usual for that.
  Weights typed;
  /// What was counted in speech alone.
  std::vector<std::string> spoken;

  [[nodiscard]] std::string keys(const std::string& word) const {
    return isRussian ? keysOf(word) : word;
  }
  /// A word, or a letter group with its marks.
  [[nodiscard]] std::string written(const std::string& keys) const {
    if (!isRussian) return keys;
    std::string_view middle = keys;
    std::string text;
    if (middle.starts_with('^')) {
      text = "^";
      middle.remove_prefix(1);
    }
    const bool ends = middle.ends_with('$');
    if (ends) middle.remove_suffix(1);
    text += russianOf(middle);
    return ends ? text + "$" : text;
  }
  [[nodiscard]] DataFile file(const char* name, const std::vector<std::string>& list) const {
    std::vector<std::string> lines;
    lines.reserve(list.size());
    for (const std::string& entry : list)
      lines.push_back(written(entry));
    sortByBytes(lines);
    return {name, joinLines(lines), lines.size()};
  }
  [[nodiscard]] DataFile file(const char* name, const std::unordered_set<std::string>& set) const {
    return file(name, std::vector<std::string>(set.begin(), set.end()));
  }
};

void raise(Weights& weights, const std::string& keys, double weight) {
  if (weight <= 0) return;
  auto& known = weights[keys];
  known = std::max(known, weight);
}

/// A word without ё is typed as often as the one with it, or more.
void weigh(const FrequencyTable& table, Language& language) {
  for (const auto& [word, entry] : table.entries()) {
    std::vector<std::string> spellings = {language.keys(word)};
    if (const auto plain = withoutYo(decodeUtf8(word))) {
      spellings.push_back(language.keys(encodeUtf8(*plain)));
    }
    for (const std::string& keys : spellings) {
      raise(language.weights, keys, entry.perMillion);
      raise(language.typed, keys, entry.typedPerMillion);
    }
  }
}

/// The words of the alphabet among them, in key spelling, those with ё also without it.
std::vector<std::string> keysOfWords(const std::vector<std::u32string>& forms) {
  std::vector<std::string> keys;
  for (const std::u32string& form : forms) {
    const auto word = lowerCase(form);
    if (!Alphabet::russian().spells(word)) continue;
    keys.push_back(keysOf(encodeUtf8(word)));
    if (const auto plain = withoutYo(word)) keys.push_back(keysOf(encodeUtf8(*plain)));
  }
  return keys;
}

/// No table is large enough to hold every form of a word: a form that it lacks is typed as often as
/// a small part of all the forms of its word.
constexpr double kShareOfEntry = 0.01;

void shareWithinEntries(const std::vector<std::vector<std::string>>& entries, Weights& weights) {
  Weights shares;
  for (const auto& forms : entries) {
    double all = 0;
    for (const std::string& form : forms) {
      const auto known = weights.find(form);
      if (known != weights.end()) all += known->second;
    }
    if (all <= 0) continue;
    for (const std::string& form : forms) {
      auto& share = shares[form];
      share = std::max(share, all * kShareOfEntry);
    }
  }
  for (const auto& [form, share] : shares)
    raise(weights, form, share);
}

/// How often, per million, the words of a list of this size are typed at least: the lists of common
/// words are better judges than a table that happens to lack a word.
double weightOfSize(int size) {
  if (size <= 20) return 2;
  return size <= 40 ? 0.7 : 0;
}

/// A word that a person has added is typed at least so often, in times per million.
constexpr double kOwnWord = 3;

/// A word that people begin messages with is typed at least so often: there is no chat to count.
constexpr double kFirstWord = 30;

/// Words that people type and no packaged list holds: names, slang, abbreviations.
constexpr std::size_t kFewestForDictionary = 3;
/// Words of two and three letters as frequent as this, per million, may be conversions.
constexpr double kFrequentShortWord = 6;
/// An English one of three letters that is nothing in Russian may be one when any table or list of
/// common words holds it.
constexpr double kKnownShortWord = 0.7;

bool isForDictionary(const FrequencyTable::Entry& entry) {
  return entry.place > 0 || entry.count >= kFewestForDictionary;
}

void addFrequent(const FrequencyTable& table, const std::unordered_set<std::string>& dropped,
                 Language& language) {
  for (const auto& [word, entry] : table.entries()) {
    const auto letters = decodeUtf8(word);
    if (!isForDictionary(entry) || !language.alphabet.isWord(letters)) continue;
    if (dropped.contains(word)) continue;
    language.model.words.insert(language.keys(word));
  }
}

void addFrequentShortWords(Language& language) {
  for (const auto& [keys, weight] : language.weights) {
    const bool isShort = keys.size() == 2 || keys.size() == 3;
    if (!isShort || weight < kFrequentShortWord || !language.model.words.contains(keys)) continue;
    language.model.shortWords.insert(keys);
  }
}

/// In a fixed order, because sums of floating-point numbers depend on it.
void countNgrams(Language& language) {
  std::map<std::string, double> ordered;
  for (const auto& [keys, weight] : language.typed) {
    if (language.model.words.contains(keys)) ordered.emplace(keys, weight);
  }
  for (const auto& [keys, weight] : ordered)
    language.model.ngrams.add(keys, weight);
}

/// Names of the files of one language.
struct FileNames {
  const char* words;
  const char* pairs;
  const char* triples;
  const char* markedTriples;
};

void addFiles(const Language& language, const FileNames& names, std::vector<DataFile>& files) {
  const auto& model = language.model;
  files.push_back(language.file(names.words, model.words));
  files.push_back(language.file(names.pairs, model.ngrams.pairs()));
  files.push_back(language.file(names.triples, model.ngrams.triples()));
  files.push_back(language.file(names.markedTriples, model.ngrams.markedTriples()));
}

class Sources final {
 public:
  Sources(const SourcePaths& paths, InputLedger& ledger) : paths_(paths), ledger_(ledger) {}

  [[nodiscard]] std::vector<std::string> russianWords() {
    WordCollector words(Alphabet::russian());
    const FormsSink sink = [&](const std::vector<std::u32string>& forms) {
      for (const std::u32string& form : forms)
        words.add(form);
      if (forms.size() > 1) entries_.push_back(keysOfWords(forms));
    };
    const AffixTable affixes = addHunspell(sink);
    addAspell(sink);
    for (const char* list : {"add_ru.txt", "names_ru.txt", "talk_ru.txt"})
      addOwnWords(list, affixes, Alphabet::russian(), words);
    dropWords("drop_ru.txt", Alphabet::russian(), words);
    return words.take();
  }

  [[nodiscard]] std::vector<std::string> englishWords() {
    WordCollector words(Alphabet::english());
    const FormSink sink = [&words](std::u32string_view form) { words.add(form); };
    for (const fs::path& list : findScowlLists(paths_.scowl)) {
      const std::string bytes = ledger_.read(list, "scowl", list.string());
      const double weight = weightOfSize(sizeOfScowlList(list));
      readScowlList(toUtf8(bytes, kLatin1, list), list, [&](std::u32string_view form) {
        sink(form);
        if (weight > 0) common_.emplace_back(encodeUtf8(lowerCase(form)), weight);
      });
    }
    for (const char* list : {"add_en.txt", "names_en.txt"})
      addOwnWords(list, AffixTable(), Alphabet::english(), words);
    dropWords("drop_en.txt", Alphabet::english(), words);
    return words.take();
  }

  /// Reads everything about one language.
  void fill(Language& language) {
    entries_.clear();
    own_.clear();
    common_.clear();
    const std::string suffix = language.isRussian ? "_ru" : "_en";
    for (const std::string& word : language.isRussian ? russianWords() : englishWords()) {
      language.model.words.insert(language.keys(word));
    }
    const fs::path tableFile = paths_.lists / ("frequencies" + suffix + ".tsv");
    const auto table = FrequencyTable::parse(readOwn(tableFile), tableFile, language.alphabet);
    weigh(table, language);
    shareWithinEntries(entries_, language.weights);
    shareWithinEntries(entries_, language.typed);
    for (const auto& [word, weight] : common_) {
      raise(language.weights, language.keys(word), weight);
      raise(language.typed, language.keys(word), weight);
    }
    for (const std::string& word : own_)
      raise(language.weights, language.keys(word), kOwnWord);
    addFirstWords("first" + suffix + ".txt", language);
    addFrequent(table, dropped_, language);
    for (const auto& [word, entry] : table.entries()) {
      if (entry.spoken > 0 && language.alphabet.isWord(decodeUtf8(word)) &&
          !dropped_.contains(word)) {
        language.spoken.push_back(language.keys(word));
      }
    }
    for (const std::string& word : shortWords("freq_short" + suffix + ".txt", language.alphabet)) {
      language.model.shortWords.insert(language.keys(word));
      language.model.words.insert(language.keys(word));
    }
    addFrequentShortWords(language);
    countNgrams(language);
  }

  /// Strings of letters that people write now and then and that must not become Russian.
  [[nodiscard]] std::vector<std::string> abbreviations() {
    const fs::path file = paths_.lists / "abbreviations_en.txt";
    return readHandWords(readOwn(file), file, Alphabet::english());
  }

  /// Strings of three letters that people write in Russian and no dictionary holds.
  [[nodiscard]] std::unordered_set<std::string> russianAbbreviations() {
    const fs::path file = paths_.lists / "abbreviations_ru.txt";
    std::unordered_set<std::string> keys;
    for (const auto& word : readHandWords(readOwn(file), file, Alphabet::russian(), {3, 3}))
      keys.insert(keysOf(word));
    return keys;
  }

  /// Words of the web that no dictionary above holds: names, brands, spellings that people really
  /// type.
  [[nodiscard]] std::vector<std::string> webWords(const Language& language) {
    const fs::path file = paths_.lists / (language.isRussian ? "web_ru.txt" : "web_en.txt");
    std::vector<std::string> keys;
    for (const std::string& word : readHandWords(readOwn(file), file, language.alphabet))
      if (!dropped_.contains(word)) keys.push_back(language.keys(word));
    return keys;
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
  void addFirstWords(const std::string& name, Language& language) {
    const fs::path file = paths_.lists / name;
    for (const std::string& word : readHandWords(readOwn(file), file, language.alphabet, {2, 64})) {
      const std::string keys = language.keys(word);
      language.model.words.insert(keys);
      raise(language.weights, keys, kFirstWord);
    }
  }

  std::vector<std::string> shortWords(const std::string& name, const Alphabet& alphabet) {
    const fs::path file = paths_.lists / name;
    std::vector<std::string> words = readHandWords(readOwn(file), file, alphabet, {2, 3});
    refuseEmpty(words.size(), file);
    return words;
  }

  std::string readOwn(const fs::path& file) {
    return toUtf8(ledger_.read(file, kOwnLists, file.filename().string()), kUtf8, file);
  }

  AffixTable addHunspell(const FormsSink& sink) {
    const fs::path& affixFile = paths_.hunspellAffixes;
    const fs::path& wordFile = paths_.hunspellWords;
    const std::string affixes = ledger_.read(affixFile, "hunspell-ru", affixFile.string());
    AffixTable table = AffixTable::parse(toUtf8(affixes, kUtf8, affixFile), affixFile);
    const std::string words = ledger_.read(wordFile, "hunspell-ru", wordFile.string());
    expandHunspell(toUtf8(words, kUtf8, wordFile), table, wordFile, sink);
    return table;
  }

  void addAspell(const FormsSink& sink) {
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
      expandEntries({line}, affixes, file, [&](const std::vector<std::u32string>& forms) {
        for (const std::u32string& form : forms) {
          if (!words.add(form)) {
            throw InputError(
                file, line.number,
                "'" + encodeUtf8(form) + "' is not a word of the " + alphabet.name() + " letters");
          }
          own_.insert(encodeUtf8(lowerCase(form)));
        }
      });
    }
  }

  void dropWords(const char* name, const Alphabet& alphabet, WordCollector& words) {
    const fs::path file = paths_.lists / name;
    for (std::string& word : readHandWords(readOwn(file), file, alphabet)) {
      dropped_.insert(word);
      words.drop(std::move(word));
    }
  }

  static void refuseEmpty(std::size_t words, const fs::path& file) {
    if (words == 0) throw InputError(file, 0, "holds no word");
  }

  const SourcePaths& paths_;
  InputLedger& ledger_;
  /// Entries of the Russian dictionaries with their forms in key spelling.
  std::vector<std::vector<std::string>> entries_;
  /// Words of the lists of common words, with their least weights.
  std::vector<std::pair<std::string, double>> common_;
  /// Words of the add lists; the languages share no spelling.
  std::unordered_set<std::string> own_;
  /// Words of the drop lists.
  std::unordered_set<std::string> dropped_;
};

/// An abbreviation enters the English dictionary when it would become a Russian word that people
/// type less than this, per million: both then stay as they are. Any other is safe without it, and
/// would only make Russian names into abbreviations.
constexpr double kWorthAnAbbreviation = 12;

/// Shorter ones are abbreviations, of which there are as many as groups of letters.
constexpr std::size_t kShortestWebWord = 4;

void guard(const std::vector<std::string>& abbreviations, Language& english,
           const Language& russian) {
  for (const std::string& word : abbreviations) {
    const auto weight = russian.weights.find(word);
    const bool isFrequent =
        weight != russian.weights.end() && weight->second >= kWorthAnAbbreviation;
    if (russian.model.words.contains(word) && !isFrequent) english.model.words.insert(word);
  }
}

/// What keeps rare English words of three letters from being converted is that they might be meant
/// in Russian. Words that people type in Russian have no such letter groups; abbreviations, which
/// may have any, are listed.
void addSafeShortWords(const std::unordered_set<std::string>& abbreviations, Language& english,
                       const Language& russian) {
  for (const auto& [word, weight] : english.weights) {
    if (word.size() != 3 || weight < kKnownShortWord || !english.model.words.contains(word))
      continue;
    if (russian.model.words.contains(word) || abbreviations.contains(word)) continue;
    if (russian.model.ngrams.hasImpossible(word)) english.model.shortWords.insert(word);
  }
}

/// Runs of one letter are cries in one language and something else in the other ("FFFF"): where one
/// would become the other, both dictionaries hold them, and neither does.
void addRuns(Language& english, Language& russian) {
  constexpr std::size_t kShortest = 4;
  constexpr std::size_t kLongest = 12;
  for (char letter = 'a'; letter <= 'z'; ++letter) {
    for (std::size_t length = kShortest; length <= kLongest; ++length) {
      const std::string run(length, letter);
      const DecisionModel model(english.model, russian.model);
      if (!model.wouldBecomeEnglish(run) && !model.wouldBecomeRussian(run) &&
          !russian.model.words.contains(run)) {
        continue;
      }
      english.model.words.insert(run);
      russian.model.words.insert(run);
    }
  }
}

/// A word of the web enters a dictionary where it stands in no word's way. Where it does, an
/// English one keeps a rare Russian word from coming in its place, as an abbreviation does.
void addWebWords(const std::vector<std::string>& englishWords,
                 const std::vector<std::string>& russianWords, Language& english,
                 Language& russian) {
  // Both before either: a word of the web does not stand in another's way.
  std::vector<std::string> added;
  for (const std::string& word : russianWords) {
    if (!english.model.words.contains(word)) added.push_back(word);
  }
  for (const std::string& word : englishWords) {
    const bool isReal =
        word.size() >= kShortestWebWord && !english.model.ngrams.hasImpossible(word);
    if (isReal && !russian.model.words.contains(word)) english.model.words.insert(word);
  }
  guard(englishWords, english, russian);
  for (std::string& word : added) {
    if (!english.model.words.contains(word)) russian.model.words.insert(std::move(word));
  }
}

/// A word of subtitles that no dictionary holds is a name or a slip of the one who wrote them, or
/// of a program that took the letters for others. The last kind has impossible letter groups.
void addSpoken(Language& language, const std::vector<std::string>& webWords) {
  const std::unordered_set<std::string> web(webWords.begin(), webWords.end());
  for (const std::string& word : language.spoken) {
    const bool isReal = web.contains(word) || !language.model.ngrams.hasImpossible(word);
    if (word.size() >= kShortestWebWord && isReal) language.model.words.insert(word);
  }
}

std::string reportOf(const ConflictResolver& resolver) {
  std::string report;
  for (const auto& finding : resolver.findings())
    report += finding.word + ": " + finding.what + "\n";
  return report;
}

}  // namespace

std::vector<DataFile> makeWordData(const SourcePaths& paths, const NgramFloors& floors,
                                   InputLedger& ledger, std::string& report) {
  Sources sources(paths, ledger);
  Language english{Alphabet::english(), false, {}, {}, {}, {}};
  Language russian{Alphabet::russian(), true, {}, {}, {}, {}};
  sources.fill(english);
  sources.fill(russian);
  english.model.ngrams.setFloors(floors.english);
  russian.model.ngrams.setFloors(floors.russian);

  const auto englishWeb = sources.webWords(english);
  const auto russianWeb = sources.webWords(russian);
  addSpoken(russian, russianWeb);
  guard(sources.abbreviations(), english, russian);
  addWebWords(englishWeb, russianWeb, english, russian);
  addRuns(english, russian);
  addSafeShortWords(sources.russianAbbreviations(), english, russian);
  ConflictResolver resolver(english.model, russian.model, english.weights, russian.weights);
  resolver.resolve();
  report = reportOf(resolver);

  std::vector<DataFile> files;
  addFiles(english, {"dict_en.txt", "proto_en2.txt", "proto_en3.txt", "proto_en3b.txt"}, files);
  addFiles(russian, {"dict_ru.txt", "proto_ru2.txt", "proto_ru3.txt", "proto_ru3b.txt"}, files);
  files.push_back(english.file("freq_short_en.txt", english.model.shortWords));
  files.push_back(russian.file("freq_short_ru.txt", russian.model.shortWords));
  for (const char* name : {"pack_it.txt", "pack_chat.txt", "pack_gaming.txt"}) {
    files.push_back(sources.pack(name));
  }
  return files;
}

}  // namespace tessarok::makedata
