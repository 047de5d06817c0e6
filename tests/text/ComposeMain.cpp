// Composes every line of standard input and prints it. `check-composition` holds it against
// another implementation.

#include <iostream>
#include <string>

#include "text/Text.h"

int main() {
  std::ios::sync_with_stdio(false);
  std::string line;
  while (std::getline(std::cin, line))
    std::cout << tessarok::text::composed(line) << '\n';
  return 0;
}
