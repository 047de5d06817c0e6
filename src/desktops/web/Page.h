#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "app/AppDelegate.h"
#include "desktops/web/WebDesktop.h"

namespace tessarok::web {

/// The corrector of a page, from the word data to the words about the last word. One per process.
class Page {
 public:
  Page();
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;
  ~Page();

  /// Starts with the word data (`PackedFiles`); false when they cannot be used.
  [[nodiscard]] bool launch(std::string_view wordData);
  [[nodiscard]] WebDesktop& desktop() { return desktop_; }

  const FieldEdit& keyDown(const WebDesktop::KeyDown& key);
  const FieldEdit& textTyped(std::u16string_view text);

  /// What the program thinks of the word that ended last: lines of text, of which the first is the
  /// word, the second one of "converted", "guessed", "unshifted", "waits" and "stays", the third
  /// what it became, and the others are the steps. Empty before the first word.
  [[nodiscard]] std::string explainLastWord() const;
  /// The packs by their places in the menu; none is on beyond the last.
  [[nodiscard]] static bool isPackOn(std::size_t index);
  void togglePack(std::size_t index);
  /// Automatic correction pauses just now.
  [[nodiscard]] bool isPaused() const;

 private:
  /// A word as it was typed, with what came before it.
  struct Word {
    std::string text;
    std::int64_t ruStreak = 0;
    std::int64_t enStreak = 0;
  };

  void noteWord();
  void noteEndOfWord();

  WebDesktop desktop_;
  std::shared_ptr<AppDelegate> delegate_;
  Word current_;
  Word last_;
};

}  // namespace tessarok::web
