#pragma once

#include <functional>
#include <set>
#include <string>

namespace tessarok {

/// Words in the order of their code points, looked up without making a string.
using WordSet = std::set<std::string, std::less<>>;

}  // namespace tessarok
