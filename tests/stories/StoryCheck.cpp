// Plays one story and compares what it prints with what the story says it must print.
//
// usage: tessarok_story_check PROGRAM DATA-DIRECTORY STORY

#include <cstdio>
#include <fstream>
#include <iostream>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace {

using nlohmann::json;

constexpr std::string_view kExpectation = "#= ";

struct Expectation {
  std::size_t line;
  json value;
};

std::optional<std::vector<Expectation>> readExpectations(const std::string& story) {
  std::ifstream file(story);
  if (!file) {
    std::cerr << "cannot read " << story << '\n';
    return std::nullopt;
  }
  std::vector<Expectation> expectations;
  std::string line;
  for (std::size_t number = 1; std::getline(file, line); ++number) {
    if (!line.starts_with(kExpectation)) continue;
    auto value = json::parse(line.substr(kExpectation.size()), nullptr, false);
    if (value.is_discarded()) {
      std::cerr << story << ":" << number << ": not a JSON value\n";
      return std::nullopt;
    }
    expectations.push_back({number, std::move(value)});
  }
  if (expectations.empty()) {
    std::cerr << story << ": the story expects nothing\n";
    return std::nullopt;
  }
  return expectations;
}

std::string quoted(const std::string& argument) {
  std::string text = "'";
  for (const char c : argument)
    text += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return text + "'";
}

/// The lines that a replay prints; absent, with a message, when it fails.
std::optional<std::vector<json>> play(const std::string& program, const std::string& data,
                                      const std::string& story) {
  const auto command =
      quoted(program) + " replay --resources " + quoted(data) + " " + quoted(story);
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) {
    std::perror("popen");
    return std::nullopt;
  }
  std::string output;
  char chunk[4096];
  while (const auto count = std::fread(chunk, 1, sizeof chunk, pipe))
    output.append(chunk, count);
  const int status = pclose(pipe);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::cerr << "the replay failed with status " << status << '\n';
    return std::nullopt;
  }
  std::vector<json> lines;
  std::size_t start = 0;
  for (auto end = output.find('\n'); end != std::string::npos; end = output.find('\n', start)) {
    lines.push_back(json::parse(output.substr(start, end - start)));
    start = end + 1;
  }
  return lines;
}

int compare(const std::string& story, const std::vector<Expectation>& expected,
            const std::vector<json>& printed) {
  int failures = 0;
  for (std::size_t i = 0; i < expected.size() && i < printed.size(); ++i) {
    if (printed[i] == expected[i].value) continue;
    ++failures;
    std::cerr << story << ":" << expected[i].line << ":\n  expected " << expected[i].value
              << "\n  printed  " << printed[i] << '\n';
  }
  if (printed.size() != expected.size()) {
    ++failures;
    std::cerr << story << ": " << expected.size() << " lines expected, " << printed.size()
              << " printed\n";
  }
  return failures == 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: tessarok_story_check PROGRAM DATA-DIRECTORY STORY\n";
    return 2;
  }
  const auto expected = readExpectations(argv[3]);
  const auto printed = expected ? play(argv[1], argv[2], argv[3]) : std::nullopt;
  return printed ? compare(argv[3], *expected, *printed) : 1;
}
