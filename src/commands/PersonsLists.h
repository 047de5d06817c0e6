#pragma once

#include "desktops/virtual/VirtualDesktop.h"

namespace tessarok::commands {

/// Whose lists of words that are never touched a command knows.
enum class Lists {
  /// Those of the person who runs it: the user dictionary, what was learned, the packs.
  persons,
  /// None at all.
  none,
};

/// Lays copies of the lists into the home of a virtual desktop and sets the switches of the packs,
/// so that nothing that happens there changes them. A file that is missing stays so. Says on
/// standard error what cannot be read, and goes on without it. Before the desktop's program
/// starts; the desktop is the current one.
void copyLists(virtualdesktop::VirtualDesktop& desktop, Lists lists);

}  // namespace tessarok::commands
