// One launch with the full word data: prints the milliseconds from `main` to ready, those of them
// that the processor worked for it, and the resident memory in KiB, private and of mapped files.
//
// usage: tessarok_launch_bench HOME
// The first launch in a home takes longer: it puts the user dictionary on the disk.

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "desktops/virtual/Session.h"
#include "words/Dict.h"

namespace {

/// A field of /proc/self/status, in KiB; 0 when it is not there.
long statusField(const std::string& name) {
  std::ifstream status("/proc/self/status");
  std::string field;
  while (status >> field) {
    if (field != name + ":") continue;
    long value = 0;
    status >> value;
    return value;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: tessarok_launch_bench HOME\n";
    return 2;
  }
  using Milliseconds = std::chrono::duration<double, std::milli>;
  const auto worked = std::clock();
  const auto start = std::chrono::steady_clock::now();
  tessarok::virtualdesktop::Session session(std::filesystem::path(argv[1]), std::nullopt);
  session.launch();
  const Milliseconds ready = std::chrono::steady_clock::now() - start;
  const double processor = 1000.0 * static_cast<double>(std::clock() - worked) / CLOCKS_PER_SEC;
  if (!tessarok::Dict::en().isAvailable() || !tessarok::Dict::ru().isAvailable()) {
    std::cerr << "the word data are missing; run make data\n";
    return 2;
  }
  std::cout << ready.count() << ' ' << processor << ' ' << statusField("RssAnon") << ' '
            << statusField("RssFile") << '\n';
  return 0;
}
