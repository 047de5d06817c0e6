// The lists of a person who has used the program for very long: what a rejection costs on the
// thread of the keys when 100,000 words are learned, and how long another thread takes to read a
// user dictionary of 100,000 words.
//
// usage: tessarok_lists_bench
// Prints one JSON object; times are milliseconds.

#include <algorithm>
#include <chrono>
#include <fstream>
#include <functional>
#include <iostream>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <vector>

#include "desktops/posix/PosixFiles.h"
#include "desktops/virtual/Session.h"
#include "words/IgnoreList.h"
#include "words/ListQueue.h"
#include "words/UserDict.h"

namespace {

using namespace tessarok;

constexpr std::size_t kWords = 100'000;
constexpr int kRejections = 100;
constexpr int kReloads = 11;

/// A Russian word as it is typed on the English layout, about as long as Russian words are.
std::string randomWord(std::mt19937& random) {
  std::string word;
  const auto length = 6 + random() % 10;
  for (std::size_t i = 0; i < length; ++i)
    word += static_cast<char>('a' + random() % 26);
  return word;
}

double millisecondsOf(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
      .count();
}

nlohmann::json summary(std::vector<double> times) {
  std::sort(times.begin(), times.end());
  return {
      {"shortest", times.front()}, {"median", times[times.size() / 2]}, {"longest", times.back()}};
}

}  // namespace

int main() {
  std::mt19937 random(1);
  const virtualdesktop::TemporaryDirectory home;
  const auto folder = posix::PosixFiles::defaultDataHome(home.path()) / "Tessarok";
  std::filesystem::create_directories(folder);
  {
    // Every word in both files of the learned list, which is the most that can be.
    std::ofstream rejects(folder / "rejects.txt");
    std::ofstream dictionary(folder / "dictionary.txt");
    for (std::size_t i = 0; i < kWords; ++i) {
      rejects << randomWord(random) << "\t3\n";
      dictionary << randomWord(random) << "\n";
    }
  }
  virtualdesktop::Session session(home.path(), std::nullopt);
  session.launch();
  if (IgnoreList::words().size() < kWords - 100 || UserDict::words().size() < kWords - 100) {
    std::cerr << "the lists were not read\n";
    return 2;
  }
  std::vector<double> pending;
  std::vector<double> promoted;
  for (int i = 0; i < kRejections; ++i) {
    const auto word = randomWord(random);
    for (int rejection = 1; rejection <= 3; ++rejection) {
      IgnoreList::flush();
      auto& times = rejection < 3 ? pending : promoted;
      times.push_back(millisecondsOf([&] { IgnoreList::recordRejection(word); }));
    }
  }
  std::vector<double> reloads;
  for (int i = 0; i < kReloads; ++i)
    reloads.push_back(millisecondsOf([] {
      UserDict::reload();
      ListQueue::drain();
    }));
  std::cout << nlohmann::json{{"rejection", summary(pending)},
                              {"promotion", summary(promoted)},
                              {"reload", summary(reloads)}}
                   .dump(2)
            << '\n';
  return 0;
}
