// SPDX-License-Identifier: MIT
// What the file chooser makes of names and folders. No X here.
#pragma once

#include <string>
#include <string_view>

namespace wmenh {

// Absolute path of name seen from directory; "~" and "~/..." are the home directory. Spaces at both ends of
// name are left out.
std::string pathFromName(std::string_view directory, std::string_view name);

// The deepest directory on the way to path that exists, path itself included; the current directory when path
// is empty, "/" at the last.
std::string nearestDirectory(const std::string& path);

// Extension without its dot: of a pattern like "*.slk" or of a file name; empty when it has none. A leading
// dot makes a hidden file, not an extension.
std::string extensionOf(std::string_view name);

// path with the extension appended when its last part has neither that one nor another by which a table is
// known: the dot of "scan 1.5um" begins no extension.
std::string withExtension(std::string path, std::string_view extension);

// The part after the last slash and the part before it ("/" for a file there).
std::string lastPart(std::string_view path);
std::string directoryPart(std::string_view path);

// One sentence that says why a file cannot be written under path, empty when it can as far as one can tell.
// capacity: bytes of the caller's buffer, the terminating NUL included.
std::string complaintAbout(const std::string& path, int capacity);

} // namespace wmenh
