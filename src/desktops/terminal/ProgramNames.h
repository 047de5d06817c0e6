#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessarok::terminal {

/// The names of the programs in some folders. They are read on threads of its own, so that no key
/// waits for a folder on a server that does not answer; a thread that is caught in one stays there,
/// and another one goes on with the other folders. Main thread.
class ProgramNames final {
 public:
  /// The names in a folder; empty when it cannot be read. Called on any thread.
  using Reader = std::function<std::vector<std::string>(const std::string& folder)>;

  explicit ProgramNames(std::vector<std::string> folders);
  /// With another way of reading.
  ProgramNames(std::vector<std::string> folders, Reader reader);
  ProgramNames(const ProgramNames&) = delete;
  ProgramNames& operator=(const ProgramNames&) = delete;
  ~ProgramNames();

  /// Has the folders read if that was long ago; `now` is in seconds. Does not wait.
  void refresh(double now);
  /// Whether there was a program of this name when its folder was read last; false of a folder
  /// that has not answered yet.
  [[nodiscard]] bool contains(std::string_view name);

 private:
  struct State;

  std::shared_ptr<State> state_;
};

}  // namespace tessarok::terminal
