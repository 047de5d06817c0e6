#include "words/ListQueue.h"

#include <new>
#include <utility>

#include "platform/Desktop.h"

namespace tessarok {

namespace {

platform::SerialQueue& queue() {
  static const auto instance = platform::desktop().serialQueues().create("app.tessarok.lists");
  return *instance;
}

}  // namespace

void ListQueue::async(std::function<void()> job) {
  queue().async([job = std::move(job)] {
    try {
      job();
    } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch): the words stay as they were
    }
  });
}

void ListQueue::drain() {
  queue().drain();
}

}  // namespace tessarok
