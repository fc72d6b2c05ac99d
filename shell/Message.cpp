// SPDX-License-Identifier: MIT
#include "shell/Message.h"

#include <WMEnh.h>

#include <cstdarg>
#include <cstdio>

// Module state: the bound buffer and its field.
char messageText[50];
Widget messageField;

void showMessage(const char* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(messageText, sizeof messageText, format, arguments);
    va_end(arguments);
    WMUpdateField(messageField);
}
