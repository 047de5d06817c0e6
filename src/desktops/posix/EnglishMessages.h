#pragma once

#include <string>

namespace tessarok::posix {

/// While it lives messages are English, those of the system too: for what programs read, or the
/// people that the program is from. Main thread, while no other asks for a message.
class EnglishMessages final {
 public:
  EnglishMessages();
  EnglishMessages(const EnglishMessages&) = delete;
  EnglishMessages& operator=(const EnglishMessages&) = delete;
  ~EnglishMessages();

 private:
  std::string before_;
};

}  // namespace tessarok::posix
