// SPDX-License-Identifier: MIT
/* libOrUtils: placing of tool windows, names of output files, the data directory. */
#ifndef ORUTILS_H
#define ORUTILS_H

#include <X11/Intrinsic.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Size of the buffer that OrvelGenerateFileName fills. */
#define ORVEL_NAME_SIZE 256

/* Places the shell of widget beside image window windowNumber and on the screen: right of it, else left, else
 * below, else where it covers least. To be called before the shell is shown. Returns 1, 0 when there is no
 * such window. */
int OrvelPositionNextToImage(int windowNumber, Widget widget);

/* Default name of an output file: the base name of source without its image extension, "_", tag, ".",
 * extension; "cells.ome.tif" with "PRF" and "slk" gives "cells_PRF.slk". name has ORVEL_NAME_SIZE bytes; a
 * longer base name is shortened at a character boundary. Returns 1. */
int OrvelGenerateFileName(const char* source, const char* tag, const char* extension, char* name);

/* Non-zero when name is a database URI (scheme://...) rather than a file path. */
int OrvelIsADatabaseURI(const char* name);

/* The user's data directory: $KELVORA_DATA_DIR, else the configuration key KV_DATA_DIR, else the XDG
 * documents folder, else the home directory; it exists and is a directory, else the current directory is
 * given. Owned by the library, valid until the next call. */
const char* OrvelGetVerifyDataDirectory(void);

#ifdef __cplusplus
}
#endif
#endif
