#pragma once

#include <fcitx-config/configuration.h>
#include <fcitx-config/enum.h>
#include <fcitx-config/option.h>

namespace tessarok::fcitx5 {

/// Which keys convert the last word by hand.
enum class ManualKeyChoice { Both, AltSpace, Pause };
FCITX_CONFIG_ENUM_NAME(ManualKeyChoice, "Alt+Space and Pause", "Alt+Space", "Pause");

/// Which key pauses the correction.
enum class PauseKeyChoice { Grave, EnglishOnly, Section, None };
FCITX_CONFIG_ENUM_NAME(PauseKeyChoice, "Grave accent and ё", "Grave accent in the English layout",
                       "The key beside the left Shift", "None");

/// Fcitx's configuration page. It is made of the settings whenever it is shown; nothing of it is
/// kept by Fcitx.
FCITX_CONFIGURATION(
    AddonConfig,
    fcitx::Option<bool> shiftFix{this, "ShiftFix", "Shift-фикс (ПРивет → Привет)", true};
    fcitx::Option<ManualKeyChoice> manualKey{
        this, "ManualKey", "Keys that convert the last word by hand", ManualKeyChoice::Both};
    fcitx::Option<PauseKeyChoice> pauseKey{this, "PauseKey", "Key that pauses the correction",
                                           PauseKeyChoice::EnglishOnly};
    fcitx::Option<bool> packIt{this, "PackIt", "Словарь исключений: IT / разработка", true};
    fcitx::Option<bool> packChat{this, "PackChat", "Словарь исключений: интернет-сленг", true};
    fcitx::Option<bool> packGaming{this, "PackGaming", "Словарь исключений: геймерский", false};)

}  // namespace tessarok::fcitx5
