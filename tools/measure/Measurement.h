#pragma once

#include <functional>
#include <vector>

#include "Corpus.h"
#include "CorpusReport.h"
#include "SentenceTypist.h"

namespace tessarok::measure {

/// Sentences to type, and the corpus that they stand for.
struct Task {
  Corpus corpus;
  std::vector<Sentence> sentences;
};

/// Called now and then with the number of sentences typed and the number of all.
using ProgressSink = std::function<void(std::size_t done, std::size_t all)>;

/// Types every sentence in both ways and sums up, a report for each task. The sentences are shared
/// out among `processes` processes, since the program's state is the process's. Throws
/// std::runtime_error when one of them fails.
[[nodiscard]] std::vector<CorpusReport> measure(const std::vector<Task>& tasks,
                                                const SentenceTypist::Setup& setup,
                                                std::size_t processes,
                                                const ProgressSink& progress);

}  // namespace tessarok::measure
