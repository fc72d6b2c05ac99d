// SPDX-License-Identifier: MIT
// What the program remembers of images: small text files in the user's data folder, a folder for each kind of
// note ($XDG_DATA_HOME/kelvora/KIND, else ~/.local/share/kelvora/KIND) and a file for each image, named by a
// hash of its path.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace viewer {

struct NoteKind {
    const char* folder;
    const char* firstLine; // of its files: what they are, and in which version of the form
    std::size_t most;      // kept; the oldest go
};

struct ImageNote {
    std::string text;
    bool current = false; // taken of the file as it is now: same size and time
};

// Nothing when there is none for that path, or what is there is no note of that kind.
std::optional<ImageNote> loadNote(const NoteKind& kind, const std::filesystem::path& image);

constexpr int noNoteFolder = -1; // the environment names none

// Keeps a text of the file as it is now; forgetNote() removes what is kept for the path. 0, an error number,
// or noNoteFolder.
int keepNote(const NoteKind& kind, const std::filesystem::path& image, const std::string& text);
int forgetNote(const NoteKind& kind, const std::filesystem::path& image);

// "neither XDG_DATA_HOME nor HOME tells a folder", or the system's text.
std::string noteProblem(int error);

} // namespace viewer
