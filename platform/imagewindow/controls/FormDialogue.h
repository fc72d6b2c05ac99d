// SPDX-License-Identifier: MIT
// A small dialogue made row by row: choices and fields with titles, room for a sentence, buttons. Its maker
// owns it; the widgets go with the object. Not shown at first. It stays up until Close or Escape.
#pragma once

#include <X11/Intrinsic.h>

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace viewer {

class FormDialogue {
public:
    using Action = std::function<void()>;

    FormDialogue(Widget parent, const char* name, const std::string& title);
    ~FormDialogue();
    FormDialogue(const FormDialogue&) = delete;
    FormDialogue& operator=(const FormDialogue&) = delete;

    // One of several, side by side; changed: the user has chosen another one.
    class Choice {
    public:
        int chosen() const;
        void choose(int item);
        void enable(int item, bool enabled);

    private:
        friend class FormDialogue;
        std::vector<Widget> buttons;
    };
    Choice addChoice(const char* title, const std::vector<std::string>& items, Action changed);
    // A text field; hint stands behind it, entered: Return was pressed in it. The first one has the keyboard.
    Widget addField(const char* name, const char* title, const char* hint, int columns, Action entered);
    // A line of text, as wide as the dialogue. Returns its label.
    Widget addText(const char* name, const std::string& text);
    // After all rows: the room for a sentence, and a button before Close.
    Widget addButtons(const char* label, Action pressed);

    // Comes to the front when it is up already.
    void show();
    // In the room for a sentence; empty: nothing.
    void say(const std::string& sentence);

private:
    void call(Widget widget, const char* callback, Action action);

    std::deque<Action> actions; // that the widgets point to
    Widget firstField = nullptr;
    Widget dialogue = nullptr, column = nullptr, rows = nullptr, message = nullptr;
};

} // namespace viewer
