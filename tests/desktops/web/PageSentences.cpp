// Prints the keys of the sentences that are typed into the other desktops, a JSON text a line.
//
// usage: tessarok_page_sentences COUNT

#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>

#include "tests/desktops/fcitx5/Sentences.h"

int main(int count, char** arguments) {
  constexpr unsigned kSeed = 20260;
  if (count != 2) return 2;
  for (const auto& sentence : tessarok::testing::sentences(std::atoi(arguments[1]), kSeed))
    std::cout << nlohmann::json(sentence) << '\n';
  return 0;
}
