// SPDX-License-Identifier: MIT
// The user's locale, as Motif needs it.
#pragma once

namespace text {

// Sets the locale that the environment asks for, or the C locale where Xlib or the C library lacks it.
// Numbers keep the decimal point in every language, because files and properties are read and written with
// it. Call this before Xt opens a display. Returns false when it fell back to the C locale.
bool adoptLocale();

} // namespace text
