#pragma once

#include <cstdio>
#include <memory>

namespace tessarok::makedata {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// A file of the C library that is closed at the end; empty where it could not be opened.
using StandardFile = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace tessarok::makedata
