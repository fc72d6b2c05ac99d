// SPDX-License-Identifier: MIT
// The one-line message field of the tool window. showMessage is its only writer.
#pragma once

#include <X11/Intrinsic.h>

// Text bound to the field: ISO 8859-1, always terminated.
extern char messageText[50];
// The field; made by the tool window, null before.
extern Widget messageField;

// Formats with the printf rules into messageText, cut at 49 characters, and shows it.
void showMessage(const char* format, ...) __attribute__((format(printf, 1, 2)));
