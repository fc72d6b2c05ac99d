// SPDX-License-Identifier: MIT
/* libKVRunUtils: registration of running tools with the suite. */
#ifndef KVRUNUTILS_H
#define KVRUNUTILS_H

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Registers the running tool under a title: image windows list it and can ask it to end, and the window
 * manager's close does the same; quit is then called with the shell and null data. shell is the tool's shell,
 * 0 for the main window. Returns 1. */
int KVRunRegisterPgm(const char* title, Widget shell, XtCallbackProc quit);

#ifdef __cplusplus
}
#endif
#endif
