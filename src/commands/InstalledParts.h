#pragma once

namespace tessarok::commands {

/// The parts of this program that other programs load, which have packages of their own: whether
/// their files are where packages put them, beside this program or in a data folder of the system.

/// The addon of Fcitx5.
[[nodiscard]] bool isFcitxAddonInstalled();
/// The engines of IBus.
[[nodiscard]] bool areIbusEnginesInstalled();
/// The extension of GNOME's shell, for any version of that; also where the person has put it into
/// their own folder.
[[nodiscard]] bool isShellExtensionInstalled();
/// Whether a program of this name can be started.
[[nodiscard]] bool isProgramThere(const char* name);

}  // namespace tessarok::commands
