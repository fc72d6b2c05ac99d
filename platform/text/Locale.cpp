// SPDX-License-Identifier: MIT
#include "platform/text/Locale.h"

#include <X11/Xlib.h>

#include <clocale>
#include <cstring>
#include <langinfo.h>

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

bool localeIsUtf8()
{
    return std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0;
}

} // namespace text
