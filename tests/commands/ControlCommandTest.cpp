#include <gtest/gtest.h>

#include "commands/ControlCommand.h"

namespace tessarok::commands {
namespace {

DesktopStatus standing(const char* correction, bool isEnabled) {
  DesktopStatus status;
  status.correction = correction;
  status.isEnabled = isEnabled;
  return status;
}

TEST(ControlCommand, SaysThatItIsOffWhileItWaits) {
  EXPECT_EQ(correctionOf(standing("waiting", false)), "off, waiting");
  EXPECT_EQ(correctionOf(standing("waiting", true)), "waiting");
  EXPECT_EQ(correctionOf(standing("off", false)), "off");
  EXPECT_EQ(correctionOf(standing("on", true)), "on");
}

}  // namespace
}  // namespace tessarok::commands
