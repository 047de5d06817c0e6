#include "Measurement.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <limits>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

namespace tessarok::measure {

namespace {

using Json = nlohmann::ordered_json;

/// A worker tells its parent that so many sentences are done.
constexpr std::size_t kProgressStep = 200;
constexpr char kProgressByte = '.';

[[noreturn]] void throwError(const char* what) {
  throw std::system_error(errno, std::generic_category(), what);
}

void writeAll(int pipe, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto written = ::write(pipe, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) throwError("write");
    if (written > 0) bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

CorpusReport emptyReport(const Corpus& corpus) {
  CorpusReport report;
  report.name = corpus.name;
  report.title = corpus.title;
  report.language = corpus.language;
  report.isCode = corpus.isCode;
  report.occasion = corpus.occasion;
  return report;
}

void measureSentence(SentenceTypist& typist, const Sentence& sentence, CorpusReport& report) {
  using Layout = SentenceTypist::Layout;
  report.addRightLayout(scoreSentence(sentence.text, typist.type(sentence, Layout::right)));
  if (report.isCode) return;
  report.addWrongLayout(scoreSentence(sentence.text, typist.type(sentence, Layout::wrong)));
}

/// Types every `step`-th sentence from `first` on.
Json measureShare(const std::vector<Task>& tasks, const SentenceTypist::Setup& setup,
                  std::size_t first, std::size_t step, int pipe) {
  SentenceTypist typist(setup);
  Json reports = Json::array();
  std::size_t done = 0;
  for (const auto& task : tasks) {
    auto report = emptyReport(task.corpus);
    for (std::size_t i = first; i < task.sentences.size(); i += step) {
      measureSentence(typist, task.sentences[i], report);
      if (++done % kProgressStep == 0) writeAll(pipe, {&kProgressByte, 1});
    }
    reports.push_back(toJson(report, std::numeric_limits<std::size_t>::max()));
  }
  return reports;
}

/// A child process and the pipe that it answers on.
struct Worker {
  pid_t process = 0;
  int pipe = -1;
  std::string answer;
  std::size_t sentencesDone = 0;
  bool isOpen = true;
};

[[noreturn]] void work(const std::vector<Task>& tasks, const SentenceTypist::Setup& setup,
                       std::size_t first, std::size_t step, int pipe) {
  int status = EXIT_SUCCESS;
  try {
    // A worker's part must not wait for a parent that is gone.
    writeAll(pipe, measureShare(tasks, setup, first, step, pipe).dump());
  } catch (const std::exception& error) {
    std::cerr << "measuring failed: " << error.what() << '\n';
    status = EXIT_FAILURE;
  }
  ::close(pipe);
  // Without the parent's destructors and buffers.
  std::_Exit(status);
}

Worker start(const std::vector<Task>& tasks, const SentenceTypist::Setup& setup, std::size_t first,
             std::size_t step) {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throwError("pipe");
  const auto process = ::fork();
  if (process < 0) throwError("fork");
  if (process == 0) {
    ::close(ends[0]);
    work(tasks, setup, first, step, ends[1]);
  }
  ::close(ends[1]);
  Worker worker;
  worker.process = process;
  worker.pipe = ends[0];
  return worker;
}

/// Takes in what a worker has written.
void receive(Worker& worker) {
  std::array<char, 65536> chunk{};
  const auto got = ::read(worker.pipe, chunk.data(), chunk.size());
  if (got < 0) {
    if (errno == EINTR) return;
    throwError("read");
  }
  if (got == 0) worker.isOpen = false;
  for (std::size_t i = 0; i < static_cast<std::size_t>(got); ++i) {
    if (worker.answer.empty() && chunk[i] == kProgressByte) {
      worker.sentencesDone += kProgressStep;
    } else {
      worker.answer += chunk[i];
    }
  }
}

void receiveAll(std::vector<Worker>& workers, std::size_t all, const ProgressSink& progress) {
  for (;;) {
    std::vector<pollfd> polled;
    std::size_t done = 0;
    for (const auto& worker : workers) {
      done += worker.sentencesDone;
      // A negative descriptor is passed over.
      polled.push_back({worker.isOpen ? worker.pipe : -1, POLLIN, 0});
    }
    progress(done, all);
    const bool anyOpen = std::ranges::any_of(workers, &Worker::isOpen);
    if (!anyOpen) return;
    if (::poll(polled.data(), polled.size(), -1) < 0 && errno != EINTR) throwError("poll");
    for (std::size_t i = 0; i < workers.size(); ++i) {
      if (polled[i].revents != 0) receive(workers[i]);
    }
  }
}

void finish(Worker& worker) {
  ::close(worker.pipe);
  int state = 0;
  while (::waitpid(worker.process, &state, 0) < 0) {
    if (errno != EINTR) throwError("waitpid");
  }
  if (!WIFEXITED(state) || WEXITSTATUS(state) != EXIT_SUCCESS) {
    throw std::runtime_error("a measuring process failed");
  }
}

}  // namespace

std::vector<CorpusReport> measure(const std::vector<Task>& tasks,
                                  const SentenceTypist::Setup& setup, std::size_t processes,
                                  const ProgressSink& progress) {
  std::vector<Worker> workers;
  for (std::size_t i = 0; i < processes; ++i) {
    workers.push_back(start(tasks, setup, i, processes));
  }
  std::vector<CorpusReport> reports;
  std::size_t all = 0;
  for (const auto& task : tasks) {
    reports.push_back(emptyReport(task.corpus));
    all += task.sentences.size();
  }
  receiveAll(workers, all, progress);
  for (auto& worker : workers)
    finish(worker);
  for (const auto& worker : workers) {
    const auto parts = Json::parse(worker.answer);
    for (std::size_t i = 0; i < reports.size(); ++i)
      reports[i].add(reportFromJson(parts.at(i)));
  }
  return reports;
}

}  // namespace tessarok::measure
