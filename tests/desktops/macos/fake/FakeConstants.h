#pragma once

/// Makes a constant of the system absent, as on a system that does not know it.
namespace tessarok::fakemac {

void forgetSelectedChangedConstant();
void forgetKeyboardCategoryConstant();

}  // namespace tessarok::fakemac
