#include "Corpus.h"

#include <algorithm>
#include <fnmatch.h>
#include <fstream>
#include <functional>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <unordered_set>

#include "SentenceSplitter.h"
#include "Typography.h"
#include "make_data/Program.h"
#include "text/Text.h"

namespace tessarok::measure {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

/// A line of code that is longer was not typed by hand.
constexpr std::size_t kLongestLine = 120;

std::string readFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(stream)), std::istreambuf_iterator<char>());
  if (!stream) throw std::runtime_error(file.string() + ": cannot be read");
  // The second is a gzip file that can be read from the middle.
  if (file.extension() != ".gz" && file.extension() != ".dz") return bytes;
  auto unpacked = makedata::runProgram({"gzip", "-dc"}, bytes);
  if (unpacked.status != 0) throw std::runtime_error(file.string() + ": cannot be unpacked");
  return std::move(unpacked.output);
}

Corpus::Files filesFrom(const Json& json) {
  const auto format = textFormatNamed(json.at("format").get<std::string>());
  if (!format) throw std::runtime_error("unknown format " + json.at("format").dump());
  return {json.at("package").get<std::string>(), *format,
          json.at("files").get<std::vector<std::string>>(),
          json.value("except", std::vector<std::string>()), json.value("endedOnly", false)};
}

Corpus corpusFrom(const Json& json) {
  Corpus corpus;
  corpus.name = json.at("name").get<std::string>();
  corpus.title = json.at("title").get<std::string>();
  const auto language = json.at("language").get<std::string>();
  if (language != "ru" && language != "en" && language != "code") {
    throw std::runtime_error("unknown language \"" + language + "\"");
  }
  corpus.language = language == "ru" ? Language::russian : Language::english;
  corpus.isCode = language == "code";
  if (json.contains("for")) {
    corpus.occasion = occasionNamed(json["for"].get<std::string>());
    if (!corpus.occasion) throw std::runtime_error("unknown occasion " + json["for"].dump());
  }
  corpus.isWithoutYo = json.value("withoutYo", false);
  corpus.hasUnseenThird = json.value("unseenThird", false);
  for (const auto& files : json.at("from"))
    corpus.files.push_back(filesFrom(files));
  return corpus;
}

/// The package's own files, whatever other packages have put beside them.
std::vector<fs::path> filesMatching(const Corpus::Files& files) {
  if (files.package.empty()) return {files.patterns.front()};
  const auto listing = makedata::runProgram({"dpkg-query", "-L", files.package}, "");
  std::vector<fs::path> paths;
  std::istringstream lines(listing.output);
  for (std::string path; std::getline(lines, path);) {
    const auto matches = [&](const std::string& pattern) {
      return ::fnmatch(pattern.c_str(), path.c_str(), 0) == 0;
    };
    const auto endsPath = [&](const std::string& ending) { return path.ends_with(ending); };
    if (!std::ranges::any_of(files.patterns, matches)) continue;
    if (std::ranges::any_of(files.except, endsPath)) continue;
    if (fs::is_regular_file(path) && !fs::is_symlink(path)) paths.emplace_back(path);
  }
  std::ranges::sort(paths);
  if (paths.empty()) {
    throw std::runtime_error("the package " + files.package + " with " + files.patterns.front() +
                             " is not installed; `make measure` installs it");
  }
  return paths;
}

/// A catalogue has numbers between its texts, and reads only the texts that are UTF-8.
bool isCatalog(TextFormat format) {
  return format == TextFormat::catalog || format == TextFormat::catalogOriginals;
}

bool endsAsSentence(std::string_view paragraph) {
  constexpr std::string_view kClosers = "\")' ";
  constexpr std::string_view kStops = ".!?";
  const auto typed = asTyped(paragraph);
  const auto last = typed.find_last_not_of(kClosers);
  return last != std::string::npos && kStops.find(typed[last]) != std::string_view::npos;
}

std::string withoutYo(std::string_view text) {
  std::string plain;
  for (const auto character : text::Characters(text)) {
    plain += character == "ё" ? "е" : character == "Ё" ? "Е" : character;
  }
  return plain;
}

bool isTypedLine(std::string_view line) {
  const auto isPrintable = [](char byte) { return byte >= ' ' && byte < 127; };
  return line.size() <= kLongestLine && std::ranges::all_of(line, isPrintable) &&
         line.find(' ') != std::string_view::npos;
}

/// Adds what fits the corpus and has not been met before.
class Collector {
 public:
  explicit Collector(const Corpus& corpus) : corpus_(corpus) {}

  void add(const std::string& paragraph) {
    const auto written = asTyped(paragraph);
    const auto typed = corpus_.isWithoutYo ? withoutYo(written) : written;
    if (corpus_.isCode) {
      if (isTypedLine(typed)) addOnce(typed);
      return;
    }
    for (auto& sentence : splitSentences(typed)) {
      if (isSentenceOf(sentence, corpus_.language)) addOnce(sentence);
    }
  }
  std::vector<Sentence> take() { return std::move(sentences_); }

 private:
  void addOnce(const std::string& text) {
    if (met_.insert(text).second) sentences_.push_back({text, corpus_.language});
  }

  const Corpus& corpus_;
  std::unordered_set<std::string> met_;
  std::vector<Sentence> sentences_;
};

}  // namespace

std::vector<Corpus> readCorpora(const fs::path& list) {
  try {
    std::vector<Corpus> corpora;
    for (const auto& json : Json::parse(readFile(list)))
      corpora.push_back(corpusFrom(json));
    return corpora;
  } catch (const Json::exception& error) {
    throw std::runtime_error(list.string() + ": " + error.what());
  }
}

Corpus textFile(const std::string& language, const fs::path& file) {
  Corpus corpus;
  corpus.name = file.filename().string();
  corpus.title = corpus.name;
  corpus.language = language == "ru" ? Language::russian : Language::english;
  corpus.isCode = language == "code";
  const auto format = corpus.isCode ? TextFormat::lines : TextFormat::plain;
  corpus.files.push_back({"", format, {file.string()}, {}, false});
  return corpus;
}

std::vector<std::string> paragraphsOf(const Corpus& corpus) {
  std::vector<std::string> all;
  for (const auto& files : corpus.files) {
    for (const auto& file : filesMatching(files)) {
      const auto bytes = readFile(file);
      // A few old files are in another encoding; they say nothing about typing.
      if (!isCatalog(files.format) && !text::isValidUtf8(bytes)) continue;
      auto paragraphs = paragraphsOf(bytes, files.format);
      if (files.endedOnly) std::erase_if(paragraphs, std::not_fn(endsAsSentence));
      std::ranges::move(paragraphs, std::back_inserter(all));
    }
  }
  return all;
}

std::vector<Sentence> sentencesOf(const Corpus& corpus) {
  Collector collector(corpus);
  for (const auto& paragraph : paragraphsOf(corpus))
    collector.add(paragraph);
  return collector.take();
}

}  // namespace tessarok::measure
