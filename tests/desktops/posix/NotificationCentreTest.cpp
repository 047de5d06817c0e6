#include <gtest/gtest.h>
#include <memory>
#include <vector>

#include "desktops/posix/NotificationCentre.h"

namespace tessarok::posix {
namespace {

using platform::Notification;
using platform::Observation;

TEST(NotificationCentre, CallsObserversInTheirOrderAsLongAsTheyAre) {
  NotificationCentre centre;
  std::vector<int> called;
  const auto first = centre.observe(Notification::didWake, [&] { called.push_back(1); });
  auto second = centre.observe(Notification::didWake, [&] { called.push_back(2); });
  centre.announce(Notification::willSleep);
  centre.announce(Notification::didWake);
  second.reset();
  centre.announce(Notification::didWake);
  EXPECT_EQ(called, (std::vector{1, 2, 1}));
}

TEST(NotificationCentre, DoesNotCallWhomAnotherObserverHasEnded) {
  NotificationCentre centre;
  std::unique_ptr<Observation> second;
  const auto first = centre.observe(Notification::didWake, [&] { second.reset(); });
  second = centre.observe(Notification::didWake, [] { FAIL(); });
  centre.announce(Notification::didWake);
}

}  // namespace
}  // namespace tessarok::posix
