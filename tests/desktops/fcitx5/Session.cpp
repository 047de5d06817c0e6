#include "tests/desktops/fcitx5/Session.h"

#include <csignal>
#include <stdexcept>
#include <utility>

#include "tests/desktops/x11/ChromiumCommand.h"
#include "tests/desktops/x11/Patience.h"
#include "tests/support/TestFiles.h"

namespace tessarok::testing {

namespace {

/// Seconds after which a word is taken to be lost, because nobody had the focus yet.
constexpr double kOneWord = 1.5;

}  // namespace

std::unique_ptr<Subprocess> Session::start(const std::vector<std::string>& command,
                                           const std::string& package, int descriptor) const {
  Subprocess::Setup setup;
  setup.environment = home_.environment();
  for (const auto& [name, value] : environment_)
    setup.environment[name] = value;
  setup.errors = home_.path() / "messages";
  setup.descriptor = descriptor;
  return std::make_unique<Subprocess>(inSession(command), package, setup);
}

void Session::startFcitx() {
  fcitx_ =
      start({"fcitx5", "--disable=all", "--enable=keyboard,testui,tessarok," + addons_}, "fcitx5");
}

void Session::endFcitx() {
  fcitx_->send(SIGTERM);
  const auto status = fcitx_->exitStatus();
  fcitx_.reset();
  if (status != 0) {
    throw std::runtime_error("Fcitx ended with status " + std::to_string(status) + ":\n" +
                             messages());
  }
}

void Session::closeEntry() {
  entry_.reset();
  page_.reset();
  std::filesystem::remove(textFile());
}

void Session::openEntry(Entry entry) {
  closeEntry();
  switch (entry) {
    case Entry::text:
    case Entry::password:
      openEntryOfGtk(entry);
      break;
    case Entry::qt:
      entry_ = start({TESSAROK_QT_ENTRY, textFile().string()}, "python3-pyqt5");
      break;
    case Entry::chromium:
      openEntryOfChromium();
      break;
  }
  if (!waitUntil([&] { return std::filesystem::exists(textFile()); })) {
    throw std::runtime_error("the window does not open:\n" + messages());
  }
}

void Session::openEntryOfGtk(Entry entry) {
  std::vector<std::string> command{entryProgram_, textFile().string()};
  if (entry == Entry::password) command.emplace_back("password");
  entry_ = start(command, "libgtk-3-dev");
}

void Session::openEntryOfChromium() {
  const auto folder = textFile().parent_path();
  const auto page = folder / "page.html";
  page_ = start({TESSAROK_BROWSER_PAGE, folder.string()}, "python3");
  if (!waitUntil([&] { return std::filesystem::exists(page); })) {
    throw std::runtime_error("there is no page to show");
  }
  // Of the versions of GTK the one in which Fcitx has its part.
  entry_ = start(chromiumCommand(page, {"--gtk-version=3"}), "chromium");
}

std::string Session::text() const {
  return readFile(textFile());
}

bool Session::shows(const std::string& expected) const {
  return waitUntilGives([this] { return text(); }, expected);
}

std::string Session::typeUntilCorrected() {
  std::string after;
  int tries = 0;
  const bool isCorrected = waitUntil([&] {
    const auto before = text();
    ++tries;
    hands().type("ghbdtn\n");
    const auto isThere = [&](const char* line) { return text() == before + line; };
    static_cast<void>(
        waitUntil([&] { return isThere("привет\n") || isThere("ghbdtn\n"); }, kOneWord));
    after = text();
    return after == before + "привет\n";
  });
  if (!isCorrected) {
    throw std::runtime_error("nothing is corrected; the entry holds " + after + "\n" + messages());
  }
  // Of the words before, some may have been on their way for long.
  while (tries > 1 && waitUntil([&] { return text() != after; }, kOneWord))
    after = text();
  return after;
}

std::string Session::typeUntilShown() {
  const bool isShown = waitUntil([&] {
    hands().type("a\n");
    return waitUntil([&] { return !text().empty(); }, kOneWord);
  });
  // Lines may still come; those that were typed before the window had the focus never do.
  std::string last;
  const bool isQuiet = isShown && waitUntil([&] {
                         const auto now = text();
                         return std::exchange(last, now) == now && now.ends_with("\n");
                       });
  if (!isQuiet) throw std::runtime_error("nothing arrives in the entry:\n" + messages());
  return text();
}

std::string Session::messages() const {
  const auto file = home_.path() / "messages";
  return std::filesystem::exists(file) ? readFile(file) : "";
}

}  // namespace tessarok::testing
