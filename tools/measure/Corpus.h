#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Occasion.h"
#include "Sentence.h"
#include "TextFormat.h"
#include "words/Language.h"

namespace tessarok::measure {

/// A body of text from installed packages.
struct Corpus {
  /// Files that hold text in one format.
  struct Files {
    /// Empty for a file of a person's own, whose path is the pattern.
    std::string package;
    TextFormat format = TextFormat::plain;
    /// Shell patterns.
    std::vector<std::string> patterns;
    /// Endings of file names to leave out.
    std::vector<std::string> except;
    /// Only paragraphs that end as a sentence does: no names of things, no labels.
    bool endedOnly = false;
  };

  std::string name;
  std::string title;
  Language language = Language::english;
  /// Programs, file names and commands: typed in the right layout only.
  bool isCode = false;
  /// What a person types such a text for; absent when it counts for none of a week.
  std::optional<Occasion> occasion;
  /// Whether ё is typed as е, as most people write to one another.
  bool isWithoutYo = false;
  /// Whether a third of its sentences is in neither half (`isOfUnseenThird`).
  bool hasUnseenThird = false;
  std::vector<Files> files;
};

/// Reads the list of corpora. Throws std::runtime_error that names the file and the fault.
[[nodiscard]] std::vector<Corpus> readCorpora(const std::filesystem::path& list);

/// Every sentence of the corpus once, in the order of the files. Throws std::runtime_error when a
/// package is missing or a file cannot be read.
[[nodiscard]] std::vector<Sentence> sentencesOf(const Corpus& corpus);

/// Every paragraph of the corpus, as it stands in the files. Throws like sentencesOf().
[[nodiscard]] std::vector<std::string> paragraphsOf(const Corpus& corpus);

/// A corpus that is one file of a person's own text: paragraphs between empty lines, or lines of
/// code. `language` is "ru", "en" or "code".
[[nodiscard]] Corpus textFile(const std::string& language, const std::filesystem::path& file);
}  // namespace tessarok::measure
