#include "FileSetWriter.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tessarok::makedata {

namespace {

[[noreturn]] void throwError(int error, const std::filesystem::path& file) {
  throw std::system_error(error, std::generic_category(), file.string());
}

/// A file that is being written, or its folder, until it is on the disk. Errors name what it will
/// become.
class DiskFile final {
 public:
  DiskFile(int fd, const std::filesystem::path& file) : fd_(fd), file_(file) {
    if (fd_ < 0) throwError(errno, file_);
  }
  ~DiskFile() {
    if (fd_ >= 0) ::close(fd_);
  }
  DiskFile(const DiskFile&) = delete;
  DiskFile& operator=(const DiskFile&) = delete;

  void write(std::string_view bytes) const {
    while (!bytes.empty()) {
      const ssize_t written = ::write(fd_, bytes.data(), bytes.size());
      if (written < 0 && errno == EINTR) continue;
      if (written < 0) throwError(errno, file_);
      bytes.remove_prefix(static_cast<std::size_t>(written));
    }
  }

  void allowReading() const {
    // mkstemp makes files private; the data are for everybody.
    if (fchmod(fd_, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH) != 0) throwError(errno, file_);
  }

  void sync() const {
    if (fsync(fd_) != 0) throwError(errno, file_);
  }

  void close() {
    const int fd = std::exchange(fd_, -1);
    if (::close(fd) != 0) throwError(errno, file_);
  }

 private:
  int fd_;
  const std::filesystem::path& file_;
};

}  // namespace

FileSetWriter::~FileSetWriter() {
  for (const Staged& file : staged_) {
    if (!file.replaced) ::unlink(file.temporary.c_str());
    if (!file.backup.empty()) ::unlink(file.backup.c_str());
  }
}

void FileSetWriter::stage(const std::string& name, const std::string& content) {
  std::filesystem::create_directories(directory_);
  const std::filesystem::path target = directory_ / name;
  std::string temporary = (directory_ / ("." + name + ".XXXXXX")).string();
  DiskFile file(mkstemp(temporary.data()), target);
  staged_.push_back({temporary, target, {}, false});
  file.write(content);
  file.allowReading();
  file.sync();
  file.close();
}

void FileSetWriter::keepOldFile(Staged& file) const {
  const std::filesystem::path backup = file.temporary.string() + ".old";
  if (::link(file.target.c_str(), backup.c_str()) == 0) {
    file.backup = backup;
    return;
  }
  if (errno != ENOENT) throwError(errno, file.target);
}

void FileSetWriter::restoreOldFiles() noexcept {
  for (Staged& file : staged_) {
    if (!file.replaced) continue;
    if (file.backup.empty()) {
      ::unlink(file.target.c_str());
    } else {
      std::rename(file.backup.c_str(), file.target.c_str());
    }
  }
}

void FileSetWriter::commit() {
  try {
    for (Staged& file : staged_)
      keepOldFile(file);
    for (Staged& file : staged_) {
      if (std::rename(file.temporary.c_str(), file.target.c_str()) != 0) {
        throwError(errno, file.target);
      }
      file.replaced = true;
    }
    // The renames themselves last only once the directory is on disk.
    DiskFile file(::open(directory_.c_str(), O_RDONLY | O_DIRECTORY), directory_);
    file.sync();
  } catch (...) {
    restoreOldFiles();
    throw;
  }
}

}  // namespace tessarok::makedata
