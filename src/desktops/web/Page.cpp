#include "desktops/web/Page.h"

#include <algorithm>
#include <utility>

#include "desktops/web/PackedFiles.h"
#include "platform/EventFlags.h"
#include "typing/KeyTap.h"
#include "words/BuiltinPacks.h"
#include "words/Dict.h"
#include "words/Explanation.h"

namespace tessarok::web {

namespace {

namespace flags = platform::eventFlags;

constexpr std::uint64_t kShortcuts = flags::control | flags::option | flags::command;

bool endsWords(KeyCode code) {
  const auto& movers = KeyTap::kCaretMovers;
  return code != KeyTap::kDelete && std::find(movers.begin(), movers.end(), code) == movers.end();
}

const char* verdictOf(const Explanation& explanation) {
  if (const auto& decision = explanation.decision) {
    return decision->confidence == Detector::Confidence::high ? "converted" : "guessed";
  }
  if (explanation.shiftLag) return "unshifted";
  return explanation.shortRuCandidate || explanation.shortEnCandidate ? "waits" : "stays";
}

}  // namespace

Page::Page() : delegate_(std::make_shared<AppDelegate>()) {
  platform::setDesktop(desktop_);
}

Page::~Page() {
  delegate_->applicationWillTerminate();
}

bool Page::launch(std::string_view wordData) {
  for (auto& file : PackedFiles::unpack(wordData))
    desktop_.files().put(plain::MemoryBundle::pathOf(file.name), std::move(file.text));
  delegate_->applicationDidFinishLaunching();
  desktop_.runLoop().runQueue();
  return Dict::areAvailable() && delegate_->tapRunning();
}

const FieldEdit& Page::keyDown(const WebDesktop::KeyDown& key) {
  noteWord();
  const auto& edit = desktop_.keyDown(key);
  if ((key.modifiers & kShortcuts) == 0 && endsWords(key.code)) noteEndOfWord();
  return edit;
}

const FieldEdit& Page::textTyped(std::u16string_view text) {
  noteWord();
  const auto& edit = desktop_.textTyped(text);
  if (text.size() == 1) noteEndOfWord();
  return edit;
}

void Page::noteWord() {
  const auto& word = KeyTap::shared().word();
  current_.text = word.untrackableWord() ? std::string() : word.buffer();
  current_.ruStreak = word.ruStreak();
  current_.enStreak = word.enStreak();
}

void Page::noteEndOfWord() {
  if (!current_.text.empty() && KeyTap::shared().word().buffer().empty())
    std::swap(last_, current_);
}

std::string Page::explainLastWord() const {
  if (last_.text.empty()) return {};
  const auto explanation = Explanation::of(last_.text, last_.ruStreak, last_.enStreak);
  std::string lines = explanation.word;
  lines.append("\n").append(verdictOf(explanation)).append("\n");
  lines += explanation.converted.value_or(explanation.shiftLag.value_or(explanation.word));
  for (const auto& step : explanation.steps)
    lines.append("\n").append(step);
  return lines;
}

bool Page::isPackOn(std::size_t index) {
  const auto& packs = BuiltinPacks::all();
  return index < packs.size() && BuiltinPacks::isEnabled(packs[index]);
}

void Page::togglePack(std::size_t index) {
  const auto& packs = BuiltinPacks::all();
  if (index < packs.size()) desktop_.chooseMenuItem(packs[index].title);
}

bool Page::isPaused() const {
  return KeyTap::shared().isPaused();
}

}  // namespace tessarok::web
