// SPDX-License-Identifier: MIT
// Asks where to save something, and once more where a file of that name is there already.
#pragma once

#include <X11/Intrinsic.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace viewer {

struct SaveQuestion {
    std::string title;
    std::filesystem::path proposal;   // folder and name to begin with
    std::string hint;                 // one line: which names
    std::vector<std::string> choices; // one of them is chosen, the first at first
    std::string extra;                // a switch, off at first; empty: none
    std::string extraEnding;          // of the file beside the other that the switch adds
};

struct SaveAnswer {
    std::filesystem::path path;
    int choice = 0;
    bool extra = false;
};

class SaveDialogue {
public:
    // Writes; returns why it could not in one sentence, empty when it is done and the dialogue may go.
    using Save = std::function<std::string(const SaveAnswer&)>;

    // Shows it. Goes before its parent does.
    SaveDialogue(Widget parent, const SaveQuestion& question, Save save);
    ~SaveDialogue();
    SaveDialogue(const SaveDialogue&) = delete;
    SaveDialogue& operator=(const SaveDialogue&) = delete;

private:
    void addOptions(const SaveQuestion& question);
    void addCallbacks();
    void confirmed(const std::filesystem::path& chosen);
    std::string alreadyThere() const;
    void askToReplace(const std::string& names);
    void write();
    void keepName();
    void restoreName();

    Save save;
    Widget dialogue = nullptr, name = nullptr, extra = nullptr;
    std::vector<Widget> choices;
    std::string typed; // the name, which the toolkit empties with each folder that is entered
    std::string extraEnding;
    std::filesystem::path path; // to write
};

// The name with that ending in the folder of an image and after it ("cells.ome.tif": "cells.png"), or with a
// number behind it where that file is there already.
std::filesystem::path proposedName(const std::filesystem::path& image, const std::string& ending);

} // namespace viewer
