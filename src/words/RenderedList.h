#pragma once

#include <cstddef>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessarok {

/// The text of a list file, one line a record in the order of the words, kept ready in pieces that
/// are shared and never change. After a change only the piece with that word is written anew, and
/// a snapshot for another thread copies no text: with 100,000 learned words the keys would
/// otherwise wait for 60 ms.
///
/// `Records` is a sorted set of words or a sorted map by word; it must outlive this object. Main
/// thread; a snapshot may be read on any thread.
template <typename Records>
class RenderedList final {
 public:
  /// Appends the line of a record, without the line break.
  using AppendLine = void (*)(const typename Records::value_type& record, std::string& text);

  /// The whole text at one moment.
  class Snapshot final {
   public:
    /// Every list ends with a line break, an empty one consists of it.
    [[nodiscard]] std::string text() const {
      std::string all;
      for (const auto& piece : pieces_)
        all.append(*piece);
      if (all.empty()) all = "\n";
      return all;
    }

   private:
    friend class RenderedList;
    std::vector<std::shared_ptr<const std::string>> pieces_;
  };

  /// Takes the records in that there are already.
  RenderedList(const Records& records, AppendLine appendLine)
      : records_(records), appendLine_(appendLine) {
    renderAll();
  }
  RenderedList(const RenderedList&) = delete;
  RenderedList& operator=(const RenderedList&) = delete;

  /// To be called after any number of changes.
  void renderAll() {
    pieces_.clear();
    // The words before the first one belong to the first piece too.
    render(std::string(), records_.begin(), records_.end());
  }
  /// To be called after the record of `word` has come, gone or changed.
  void render(std::string_view word) {
    const auto after = pieces_.upper_bound(word);
    const auto piece = std::prev(after);
    const auto begin = records_.lower_bound(piece->first);
    const auto end = after == pieces_.end() ? records_.end() : records_.lower_bound(after->first);
    render(piece->first, begin, end);
  }
  [[nodiscard]] Snapshot snapshot() const {
    Snapshot snapshot;
    snapshot.pieces_.reserve(pieces_.size());
    for (const auto& [first, text] : pieces_)
      snapshot.pieces_.push_back(text);
    return snapshot;
  }

 private:
  using Iterator = typename Records::const_iterator;

  /// Half of it is rendered after most changes, which takes some ten microseconds.
  static constexpr std::size_t kMostLines = 256;

  static const std::string& wordOf(const std::string& record) { return record; }
  template <typename Value>
  static const std::string& wordOf(const std::pair<const std::string, Value>& record) {
    return record.first;
  }

  /// Writes the piece that starts at `first` anew, as several pieces if it has grown too long.
  void render(std::string first, Iterator begin, Iterator end) {
    while (true) {
      std::string text;
      std::size_t lines = 0;
      for (; begin != end && lines < kMostLines; ++begin, ++lines) {
        appendLine_(*begin, text);
        text.push_back('\n');
      }
      pieces_[std::move(first)] = std::make_shared<const std::string>(std::move(text));
      if (begin == end) return;
      first = wordOf(*begin);
    }
  }

  const Records& records_;
  AppendLine appendLine_;
  /// By the lowest word that belongs into the piece; the first piece has the empty word.
  std::map<std::string, std::shared_ptr<const std::string>, std::less<>> pieces_;
};

}  // namespace tessarok
