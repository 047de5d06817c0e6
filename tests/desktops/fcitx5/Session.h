#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tests/desktops/fcitx5/FcitxProcess.h"
#include "tests/desktops/fcitx5/Hands.h"
#include "tests/desktops/x11/Subprocess.h"

namespace tessarok::testing {

/// A session with Fcitx, the addon under test, and a window with a text entry.
class Session {
 public:
  /// Of GTK, for passwords too, of Qt, and on a page in Chromium.
  enum class Entry { text, password, qt, chromium };

  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  virtual ~Session() = default;

  [[nodiscard]] virtual Hands& hands() = 0;
  /// So many lines may be typed before they stand in the entry; absent for any number.
  [[nodiscard]] virtual std::optional<std::size_t> mostLinesAhead() const { return std::nullopt; }
  void startFcitx();
  /// Ends Fcitx as somebody does who restarts it, and waits for its end.
  void endFcitx();
  /// Opens the window in place of the last one; it gets the focus.
  virtual void openEntry(Entry entry);
  /// What is in the entry, behind the lines that were ended.
  [[nodiscard]] std::string text() const;
  /// Waits until that is the text.
  [[nodiscard]] bool shows(const std::string& expected) const;
  /// Types a word, and Return, until it comes out corrected: programs and Fcitx find each other in
  /// their own time. What is in the entry then.
  [[nodiscard]] std::string typeUntilCorrected();
  /// Types lines until one arrives. What is in the entry then.
  [[nodiscard]] std::string typeUntilShown();
  /// Where it can be seen what Fcitx and the compositor have said.
  [[nodiscard]] std::string messages() const;

 protected:
  Session() : home_({"keyboard-us", "keyboard-ru"}) {}
  [[nodiscard]] FcitxHome& home() { return home_; }
  /// The line that starts a program in this session.
  [[nodiscard]] virtual std::vector<std::string> inSession(std::vector<std::string> command) const {
    return command;
  }
  [[nodiscard]] std::unique_ptr<Subprocess> start(const std::vector<std::string>& command,
                                                  const std::string& package,
                                                  int descriptor = -1) const;
  void closeEntry();
  /// Variables for the programs, and the addons that Fcitx needs besides.
  std::map<std::string, std::string> environment_;
  std::string addons_;
  /// The program whose window has the entry.
  std::string entryProgram_ = TESSAROK_GTK_ENTRY;

 private:
  void openEntryOfGtk(Entry entry);
  void openEntryOfChromium();
  [[nodiscard]] std::filesystem::path textFile() const { return home_.path() / "run" / "text"; }

  FcitxHome home_;
  std::unique_ptr<Subprocess> fcitx_;
  std::unique_ptr<Subprocess> entry_;
  /// Writes down what the page in the browser says.
  std::unique_ptr<Subprocess> page_;
};

}  // namespace tessarok::testing
