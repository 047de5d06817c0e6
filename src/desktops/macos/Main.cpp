// The program of Tessarok.app.

#include "desktops/macos/Program.h"
#include "desktops/posix/WriteSignals.h"

int main() {
  tessarok::posix::ignoreWriteSignals();
  tessarok::macos::runProgram();
  return 0;
}
