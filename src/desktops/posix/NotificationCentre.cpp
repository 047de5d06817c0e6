#include "desktops/posix/NotificationCentre.h"

#include <utility>

namespace tessarok::posix {

class NotificationCentre::Token final : public platform::Observation {
 public:
  Token(NotificationCentre& centre, std::uint64_t number) : centre_(centre), number_(number) {}
  ~Token() override { centre_.observers_.erase(number_); }

 private:
  NotificationCentre& centre_;
  std::uint64_t number_;
};

std::unique_ptr<platform::Observation> NotificationCentre::observe(
    platform::Notification notification, std::function<void()> work) {
  const auto number = ++lastNumber_;
  observers_.emplace(number, Observer{notification, std::move(work)});
  return std::make_unique<Token>(*this, number);
}

void NotificationCentre::announce(platform::Notification notification) {
  // Observers may come and go while they are called.
  const auto observers = observers_;
  for (const auto& [number, observer] : observers) {
    if (observer.notification == notification && observers_.contains(number)) observer.work();
  }
}

}  // namespace tessarok::posix
