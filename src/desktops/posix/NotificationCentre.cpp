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

std::unique_ptr<platform::Observation> NotificationCentre::observe(std::string_view name,
                                                                   std::function<void()> work) {
  const auto number = ++lastNumber_;
  observers_.emplace(number, Observer{std::string(name), std::move(work)});
  return std::make_unique<Token>(*this, number);
}

void NotificationCentre::announce(std::string_view name) {
  // Observers may come and go while they are called.
  const auto observers = observers_;
  for (const auto& [number, observer] : observers) {
    if (observer.name == name) observer.work();
  }
}

}  // namespace tessarok::posix
