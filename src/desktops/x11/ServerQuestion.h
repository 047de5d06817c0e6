#pragma once

struct _XDisplay;

namespace tessarok::x11 {

/// Whether the X server answers at all, without a wait for it. Main thread.
class ServerQuestion final {
 public:
  /// Asks the server something that it knows at once. Not while another question is open.
  void ask(_XDisplay* display);
  /// There is no open question: none was asked, or it was answered, or the server has gone.
  [[nodiscard]] bool isAnswered();

 private:
  /// Null while no question is open.
  _XDisplay* display_ = nullptr;
  unsigned number_ = 0;
};

}  // namespace tessarok::x11
