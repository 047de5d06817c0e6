#pragma once

#include <functional>
#include <initializer_list>
#include <signal.h>
#include <vector>

#include "desktops/posix/FileDescriptor.h"
#include "desktops/posix/PollSource.h"

namespace tessarok::posix {

/// Turns signals into events of the run loop, in which anything may be done. One at a time in a
/// process; its end puts the former dispositions back. Main thread.
///
/// Signals that were ignored when the program was started (by nohup, say) stay so.
class SignalPipe final : public PollSource {
 public:
  using Handler = std::function<void(int signal)>;

  /// Throws `std::system_error` when no pipe can be had.
  SignalPipe(std::initializer_list<int> signals, Handler handler);
  ~SignalPipe() override;

  [[nodiscard]] int descriptor() const override { return reader_.get(); }
  [[nodiscard]] short events() const override;
  void ready(short events) override;

 private:
  struct Former {
    int signal;
    struct sigaction action;
  };

  void catchSignal(int signal);

  Handler handler_;
  FileDescriptor reader_;
  FileDescriptor writer_;
  std::vector<Former> former_;
};

}  // namespace tessarok::posix
