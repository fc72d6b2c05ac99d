// SPDX-License-Identifier: MIT
#include "platform/text/Locale.h"

#include <X11/Xlib.h>

#include <clocale>

namespace text {

bool adoptLocale()
{
    const bool known = std::setlocale(LC_ALL, "") && XSupportsLocale();
    if (!known)
        std::setlocale(LC_ALL, "C");
    XSetLocaleModifiers("");
    std::setlocale(LC_NUMERIC, "C");
    return known;
}

} // namespace text
