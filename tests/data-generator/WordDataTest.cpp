#include <map>

#include "Manifest.h"
#include "Program.h"
#include "TestSupport.h"
#include "WordData.h"

namespace tessarok::makedata::test {
namespace {

/// A small world of word lists in the formats of the packages.
class WordDataTest : public ::testing::Test {
 protected:
  void SetUp() override {
    writeFile(paths_.hunspellAffixes, "SET UTF-8\nSFX I Y 2\nSFX I а ы а\nSFX I а у а\n");
    writeFile(paths_.hunspellWords, "3\nмама/I\nЁж\nкое-кто\n");
    // КОТ/K and its suffix а, in KOI8-R
    writeFile(paths_.aspellAffixes, "SFX K Y 1\nSFX K 0 \xC1 .\n");
    writePacked("\xEB\xCF\xD4/K\n\xCD\xC1\xCD\xC1\n");
    writeFile(paths_.scowl / "english-words.10", "the\ntot\ncaf\xE9\ndon't\n");
    writeFile(paths_.scowl / "english-upper.50", "London\n");
    writeFile(paths_.scowl / "english-words.95", "zyzzyva\n");
    writeList("add_ru.txt", "# names\nКоля\nрама/I\n");
    writeList("drop_ru.txt", "раму\n");
    writeList("names_ru.txt", "# surnames\nЛис\n");
    writeList("talk_ru.txt", "ага\n");
    writeList("abbreviations_en.txt", "# acronyms\nkbc\nfuf\nzzz\n");
    writeList("abbreviations_ru.txt", "# acronyms\nргу\n");
    writeList("first_ru.txt", "# answers\nколя\n");
    writeList("first_en.txt", "# answers\n");
    writeList("web_ru.txt", "# names\n");
    writeList("web_en.txt", "# names\n");
    writeList("add_en.txt", "github\n");
    writeList("names_en.txt", "# places\nSonoma\n");
    writeList("drop_en.txt", "# еще\ntot\n");
    writeList("freq_short_en.txt", "# articles\nthe\nIt\n");
    writeList("freq_short_ru.txt", "она\nещё\nон\n");
    writeList("frequencies_ru.tsv",
              "# head\nона\t5\t0\t0\t0\nмама\t4\t0\t0\t0\nвася\t1\t0\t9\t0\n");
    writeList("frequencies_en.tsv",
              "the\t6\t1\t0\t0\nlondon\t4\t0\t0\t0\ndebian\t3\t0\t0\t0\nslip\t2\t0\t0\t0\n");
    for (const char* name : {"pack_it.txt", "pack_chat.txt", "pack_gaming.txt"}) {
      writeList(name, "# jargon\nкоммит\nbye.\n");
    }
  }

  void writeList(const std::string& name, std::string_view text) {
    writeFile(paths_.lists / name, text);
  }

  void writePacked(const std::string& words) {
    const ProgramResult list = runProgram({"prezip-bin", "-z"}, words);
    ASSERT_EQ(list.status, 0);
    const ProgramResult packed = runProgram({"gzip", "-n"}, list.output);
    ASSERT_EQ(packed.status, 0);
    writeFile(paths_.aspellWords, packed.output);
  }

  std::vector<DataFile> make() {
    ledger_ = {};
    return makeWordData(paths_, floors_, ledger_, report_);
  }

  std::string contentOf(const std::string& name) {
    for (const DataFile& file : make()) {
      if (file.name == name) return file.content;
    }
    return "no file " + name;
  }

  std::string error() {
    return inputErrorOf([this] { (void)make(); });
  }

  std::string listPath(const char* name) const { return (paths_.lists / name).string(); }

  TemporaryDirectory home_;
  SourcePaths paths_{home_.path() / "ru.aff",       home_.path() / "ru.dic",
                     home_.path() / "ru_affix.dat", home_.path() / "ru.cwl.gz",
                     home_.path() / "scowl",        home_.path() / "lists"};
  NgramFloors floors_{{1, 1}, {1, 1}};
  InputLedger ledger_;
  std::string report_;
};

TEST_F(WordDataTest, MergesTheRussianSources) {
  EXPECT_EQ(contentOf("dict_ru.txt"),
            "ага\nеж\nещё\nколя\nкот\nкота\nлис\nмама\nмаму\nмамы\nон\nона\nрама\nрамы\nёж\n");
}

TEST_F(WordDataTest, MergesTheEnglishListsAndWhatPeopleType) {
  EXPECT_EQ(contentOf("dict_en.txt"), "debian\nfuf\ngithub\nit\nkbc\nlondon\nsonoma\nthe\n");
}

TEST_F(WordDataTest, TakesAnAbbreviationOnlyAgainstARareRussianWord) {
  // фгф is no word, лис is a rare one and она a frequent one.
  writeList("abbreviations_en.txt", "faf\nkbc\njyf\n");
  EXPECT_EQ(contentOf("dict_en.txt"), "debian\ngithub\nit\nkbc\nlondon\nsonoma\nthe\n");
}

TEST_F(WordDataTest, TakesWordsOfTheWebWhereTheyStandInNoWay) {
  // аутв is no word; еру has the keys of "the", and лис is a rare word that "kbc" guards against.
  writeList("abbreviations_en.txt", "zzz\n");
  writeList("web_ru.txt", "изя\nеру\n");
  writeList("web_en.txt", "theth\nheth\nkbc\nfed\n");
  floors_.english = {0, 0};
  const auto russian = contentOf("dict_ru.txt");
  EXPECT_NE(russian.find("\nизя\n"), std::string::npos);
  EXPECT_EQ(russian.find("еру"), std::string::npos);
  const auto english = contentOf("dict_en.txt");
  EXPECT_NE(english.find("\nkbc\n"), std::string::npos);
  EXPECT_EQ(english.find("fed"), std::string::npos);
  // Its letter groups are no English ones.
  EXPECT_EQ(english.find("heth"), std::string::npos);
}

TEST_F(WordDataTest, TakesASpokenWordWhoseLettersArePossible) {
  writeList("frequencies_ru.tsv",
            "она\t5\t0\t0\t0\nмама\t4\t0\t0\t1\nмамама\t0\t0\t0\t1\nбрнщж\t0\t0\t0\t1\n");
  const auto russian = contentOf("dict_ru.txt");
  EXPECT_NE(russian.find("\nмамама\n"), std::string::npos);
  EXPECT_EQ(russian.find("брнщж"), std::string::npos);
}

TEST_F(WordDataTest, LetsNoRunOfOneLetterBecomeAnother) {
  writeList("frequencies_ru.tsv", "аааа\t9\t0\t0\t0\nмама\t4\t0\t0\t0\n");
  EXPECT_NE(contentOf("dict_en.txt").find("\nffff\n"), std::string::npos);
  EXPECT_NE(contentOf("dict_ru.txt").find("аааа\n"), std::string::npos);
}

TEST_F(WordDataTest, TakesTheLetterGroupsFromWordsThatPeopleType) {
  // Neither from the lists written by hand nor from words that only dictionaries hold.
  EXPECT_EQ(contentOf("proto_ru2.txt"), "ам\nма\nму\nмы\nна\nон\n");
  EXPECT_EQ(contentOf("proto_ru3b.txt"), "^ма\n^он\nама\nаму\nамы\nма$\nмам\nму$\nмы$\nна$\nона\n");
}

TEST_F(WordDataTest, LeavesLetterGroupsBelowTheFloorOut) {
  // она is five of nine words, мама four, each with ма twice.
  floors_.russian = {450'000, 450'000};
  EXPECT_EQ(contentOf("proto_ru2.txt"), "ма\nна\nон\n");
}

TEST_F(WordDataTest, DropsAWordThatNobodyTypesForAFrequentOne) {
  writeList("add_ru.txt", "Коля\n");
  writeFile(paths_.hunspellWords, "1\nеру\n");
  writeList("abbreviations_en.txt", "zzz\n");
  EXPECT_EQ(contentOf("dict_ru.txt").find("еру"), std::string::npos);
  EXPECT_EQ(report_, "еру: dropped (0.00 per million): the keys of the (400000.00)\n");
}

TEST_F(WordDataTest, KnowsWhatMessagesBeginWithThoughNoTableHoldsIt) {
  writeList("first_en.txt", "# answers\nyup\n");
  EXPECT_NE(contentOf("dict_en.txt").find("\nyup\n"), std::string::npos);
  EXPECT_EQ(contentOf("freq_short_en.txt"), "it\nthe\nyup\n");
}

TEST_F(WordDataTest, WritesShortWordsWithoutCommentsInByteOrder) {
  EXPECT_EQ(contentOf("freq_short_en.txt"), "it\nthe\n");
  EXPECT_EQ(contentOf("freq_short_ru.txt"), "ещё\nон\nона\n");
}

TEST_F(WordDataTest, ConvertsARareShortWordThatIsNothingInRussian) {
  // Of the Russian words of their keys ргу is an abbreviation and она a word; нфл is nothing.
  writeList("frequencies_en.tsv",
            "the\t999997\t0\t0\t0\nhue\t3\t0\t0\t0\nyak\t3\t0\t0\t0\njyf\t3\t0\t0\t0\n");
  writeList("freq_short_en.txt", "the\n");
  EXPECT_EQ(contentOf("freq_short_en.txt"), "the\nyak\n");
  // Its letter groups are those of words.
  writeFile(paths_.hunspellWords, "4\nмама/I\nнфла\nанфл\nкнфлк\n");
  writeList("frequencies_ru.tsv", "нфла\t5\t0\t0\t0\nанфл\t5\t0\t0\t0\nкнфлк\t4\t0\t0\t0\n");
  EXPECT_EQ(contentOf("freq_short_en.txt"), "the\n");
}

TEST_F(WordDataTest, CopiesPacksAsTheyAre) {
  EXPECT_EQ(contentOf("pack_it.txt"), "# jargon\nкоммит\nbye.\n");
}

TEST_F(WordDataTest, MakesEveryFileOfTheDataDirectory) {
  std::vector<std::string> names;
  for (const DataFile& file : make())
    names.push_back(file.name);
  EXPECT_EQ(names,
            (std::vector<std::string>{
                "dict_en.txt", "proto_en2.txt", "proto_en3.txt", "proto_en3b.txt", "dict_ru.txt",
                "proto_ru2.txt", "proto_ru3.txt", "proto_ru3b.txt", "freq_short_en.txt",
                "freq_short_ru.txt", "pack_it.txt", "pack_chat.txt", "pack_gaming.txt"}));
}

TEST_F(WordDataTest, CountsTheWordsAndNotTheComments) {
  std::map<std::string, std::size_t> words;
  for (const DataFile& file : make())
    words[file.name] = file.words;
  EXPECT_EQ(words["dict_en.txt"], 8U);
  EXPECT_EQ(words["freq_short_ru.txt"], 3U);
  EXPECT_EQ(words["pack_chat.txt"], 2U);
}

TEST_F(WordDataTest, IsTheSameInEveryRun) {
  const auto manifest = [this] {
    const std::vector<DataFile> files = make();
    return manifestJson(ledger_.records(), files, [](const std::string&) { return std::nullopt; });
  };
  EXPECT_EQ(manifest(), manifest());
}

TEST_F(WordDataTest, RecordsEveryInput) {
  (void)make();
  std::vector<std::string> packages;
  for (const InputRecord& record : ledger_.records())
    packages.push_back(record.package);
  EXPECT_EQ(std::ranges::count(packages, "aspell-ru"), 2);
  EXPECT_EQ(std::ranges::count(packages, "hunspell-ru"), 2);
  EXPECT_EQ(std::ranges::count(packages, "scowl"), 2);
  EXPECT_EQ(std::ranges::count(packages, "tessarok"), 20);
  EXPECT_EQ(packages.size(), 26U);
}

TEST_F(WordDataTest, RefusesAMissingFile) {
  std::filesystem::remove(paths_.hunspellWords);
  EXPECT_EQ(error(),
            paths_.hunspellWords.string() + ": cannot be opened: No such file or directory");
}

TEST_F(WordDataTest, RefusesADirectoryInPlaceOfAFile) {
  std::filesystem::remove(paths_.hunspellWords);
  std::filesystem::create_directory(paths_.hunspellWords);
  EXPECT_EQ(error(), paths_.hunspellWords.string() + ": cannot be read: Is a directory");
}

TEST_F(WordDataTest, RefusesAWrongCharset) {
  writeFile(paths_.hunspellWords, "1\n\xEB\xCF\xD4\n");
  EXPECT_EQ(error(), paths_.hunspellWords.string() + ":2: not valid UTF-8 text");
}

TEST_F(WordDataTest, RefusesADamagedArchive) {
  writeFile(paths_.aspellWords, "not an archive");
  EXPECT_EQ(error(), paths_.aspellWords.string() + ": gzip cannot unpack it (exit status 1)");
}

TEST_F(WordDataTest, RefusesAnAddedWordThatTheDictionaryCannotHold) {
  writeList("add_ru.txt", "Коля\nкое-где\n");
  EXPECT_EQ(error(), listPath("add_ru.txt") + ":2: 'кое-где' is not a word of the russian letters");
}

TEST_F(WordDataTest, RefusesAffixFlagsOnAnEnglishWord) {
  writeList("add_en.txt", "commit/S\n");
  EXPECT_EQ(error(), listPath("add_en.txt") + ":1: no affix class for the flag 'S'");
}

TEST_F(WordDataTest, RefusesALongShortWord) {
  writeList("freq_short_ru.txt", "он\nлишь\n");
  EXPECT_EQ(error(), listPath("freq_short_ru.txt") + ":2: 'лишь' must have 2 to 3 letters");
}

TEST_F(WordDataTest, RefusesAnEmptyPack) {
  writeList("pack_it.txt", "# nothing yet\n");
  EXPECT_EQ(error(), listPath("pack_it.txt") + ": holds no word");
}

}  // namespace
}  // namespace tessarok::makedata::test
