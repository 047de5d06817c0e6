#pragma once

#include <fcitx-config/configuration.h>
#include <fcitx-config/enum.h>
#include <fcitx-config/option.h>
#include <string>

#include "desktops/posix/Translation.h"

// With this name Fcitx's macros have the choices translated where they are shown.
#define _(message) tessarok::posix::translated(message)

namespace tessarok::fcitx5 {

/// Which keys convert the last word by hand.
enum class ManualKeyChoice { Both, AltSpace, Pause };
FCITX_CONFIG_ENUM_NAME_WITH_I18N(ManualKeyChoice, posix::translatable("Alt+Space and Pause"),
                                 posix::translatable("Alt+Space"), posix::translatable("Pause"));

/// Which key pauses the correction.
enum class PauseKeyChoice { Grave, EnglishOnly, Section, None };
FCITX_CONFIG_ENUM_NAME_WITH_I18N(PauseKeyChoice, posix::translatable("Grave accent and ё"),
                                 posix::translatable("Grave accent in the English layout"),
                                 posix::translatable("The key beside the left Shift"),
                                 posix::translatable("None"));

/// Fcitx's configuration page. It is made of the settings whenever it is shown; nothing of it is
/// kept by Fcitx.
FCITX_CONFIGURATION(
    AddonConfig,
    fcitx::Option<bool> shiftFix{this, "ShiftFix", "Shift-фикс (ПРивет → Привет)", true};
    fcitx::OptionWithAnnotation<ManualKeyChoice, ManualKeyChoiceI18NAnnotation> manualKey{
        this, "ManualKey", posix::translated("Keys that convert the last word by hand"),
        ManualKeyChoice::Both};
    fcitx::OptionWithAnnotation<PauseKeyChoice, PauseKeyChoiceI18NAnnotation> pauseKey{
        this, "PauseKey", posix::translated("Key that pauses the correction"),
        PauseKeyChoice::EnglishOnly};
    fcitx::Option<bool> packIt{this, "PackIt", "Словарь исключений: IT / разработка", true};
    fcitx::Option<bool> packChat{this, "PackChat", "Словарь исключений: интернет-сленг", true};
    fcitx::Option<bool> packGaming{this, "PackGaming", "Словарь исключений: геймерский", false};)

}  // namespace tessarok::fcitx5

#undef _
