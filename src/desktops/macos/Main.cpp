// The program of Tessarok.app.

#include "desktops/macos/Program.h"

int main() {
  tessarok::macos::runProgram();
  return 0;
}
