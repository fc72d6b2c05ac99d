// SPDX-License-Identifier: MIT
// The user's locale, as Motif needs it.
#pragma once

namespace text {

// Sets the locale that the environment asks for, the C locale where Xlib or the C library does not have it.
// Numbers keep the decimal point whatever the language: they are parsed and written all over. To be called
// before Xt opens a display. Returns false when only the C locale could be set.
bool adoptLocale();

// Whether the locale that is set encodes text in UTF-8.
bool localeIsUtf8();

} // namespace text
