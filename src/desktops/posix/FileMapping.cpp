#include "desktops/posix/FileMapping.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <utility>

#include "desktops/posix/MappingGuard.h"
#include "desktops/posix/PagesAtHand.h"

namespace tessarok::posix {

namespace {

/// When the file was written, and how long it is.
struct Content {
  std::int64_t seconds;
  std::int64_t nanoseconds;
  off_t size;

  bool operator==(const Content&) const = default;
};

std::optional<Content> contentOf(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) return std::nullopt;
#ifdef __APPLE__
  const auto& time = status.st_mtimespec;
#else
  const auto& time = status.st_mtim;
#endif
  return Content{time.tv_sec, time.tv_nsec, status.st_size};
}

class Mapping final : public platform::MappedFile {
 public:
  Mapping(void* address, const Content& content, FileDescriptor descriptor)
      : address_(address),
        size_(static_cast<std::size_t>(content.size)),
        content_(content),
        descriptor_(std::move(descriptor)),
        guard_(address, size_),
        pages_(descriptor_.get(), bytes()) {}
  ~Mapping() override {
    if (size_ > 0) ::munmap(address_, size_);
  }
  [[nodiscard]] std::string_view bytes() const override {
    return {static_cast<const char*>(address_), size_};
  }
  [[nodiscard]] bool hasLostPart() const override { return guard_.hasLostPart(); }
  [[nodiscard]] bool isUnchanged() const override {
    // Of the file that is mapped, whatever has taken its name since.
    const auto now = contentOf(descriptor_.get());
    return !hasLostPart() && (!now || *now == content_);
  }
  [[nodiscard]] bool isAtHand(std::size_t from, std::size_t to) override {
    return pages_.contain(from, to);
  }
  void askAnew() override { pages_.askAnew(); }

 private:
  void* address_;
  std::size_t size_;
  Content content_;
  FileDescriptor descriptor_;
  MappingGuard guard_;
  PagesAtHand pages_;
};

}  // namespace

std::unique_ptr<platform::MappedFile> mapWhole(FileDescriptor descriptor) {
  const auto content = descriptor.isOpen() ? contentOf(descriptor.get()) : std::nullopt;
  if (!content) return nullptr;
  void* address = nullptr;
  // A mapping cannot be empty.
  if (content->size > 0) {
    address = ::mmap(nullptr, static_cast<std::size_t>(content->size), PROT_READ, MAP_PRIVATE,
                     descriptor.get(), 0);
    if (address == MAP_FAILED) return nullptr;
  }
  return std::make_unique<Mapping>(address, *content, std::move(descriptor));
}

}  // namespace tessarok::posix
