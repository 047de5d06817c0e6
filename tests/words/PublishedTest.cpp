#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <utility>

#include "words/Published.h"

namespace tessarok {
namespace {

/// Says on which thread its end was.
class Value final {
 public:
  Value() = default;
  explicit Value(int made, std::thread::id* end = nullptr) : number(made), end_(end) {}
  Value(Value&& other) noexcept : number(other.number), end_(std::exchange(other.end_, nullptr)) {}
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  Value& operator=(Value&&) = delete;
  ~Value() {
    if (end_ != nullptr) *end_ = std::this_thread::get_id();
  }

  int number = 0;

 private:
  std::thread::id* end_ = nullptr;
};

void onThread(const std::function<void(std::thread::id)>& work) {
  std::thread([&] { work(std::this_thread::get_id()); }).join();
}

TEST(Published, TheNewestValueIsRead) {
  Published<Value> published;
  EXPECT_EQ(published.value().number, 0);
  onThread([&](auto) {
    published.publish(Value(1));
    published.publish(Value(2));
  });
  EXPECT_EQ(published.value().number, 2);
}

TEST(Published, AValueStaysUntilItIsAskedForAgain) {
  Published<Value> published;
  onThread([&](auto) { published.publish(Value(1)); });
  const auto& read = published.value();
  onThread([&](auto) {
    published.publish(Value(2));
    published.forgetOld();
  });
  EXPECT_EQ(read.number, 1);
}

TEST(Published, AnOldValueEndsOnTheThreadThatMadeIt) {
  std::thread::id end;
  Published<Value> published;
  onThread([&](auto) { published.publish(Value(1, &end)); });
  EXPECT_EQ(published.value().number, 1);
  onThread([&](auto) { published.publish(Value(2)); });
  EXPECT_EQ(published.value().number, 2);
  EXPECT_EQ(end, std::thread::id());
  onThread([&](std::thread::id maker) {
    published.forgetOld();
    EXPECT_EQ(end, maker);
  });
}

}  // namespace
}  // namespace tessarok
