// SPDX-License-Identifier: MIT
// The main window by keyboard: Tab goes from control to control, drawing areas among them, and Alt with the
// underlined letter of a label goes straight to its control.
#pragma once

#include <X11/Intrinsic.h>

#include <string>
#include <string_view>

namespace wmenh {

// The letter of label that becomes its mnemonic: the initial of a word, else any letter or digit, that is not
// among those taken (lower case); '\0' when none is left.
char pickMnemonic(std::string_view label, std::string_view taken);

// Which labels choose their letters first.
enum class MnemonicRank { Button, Toggle, Label };

// shown, a label or button, gets a letter of its label underlined when the window is complete. Alt with it
// moves the focus to target and, unless that is a gadget (the button of a menu), activates it.
void offerMnemonic(Widget shown, Widget target, MnemonicRank rank);

// Lets a drawing area take part in traversal whatever its translations are: Tab leaves it, and a rim shows
// that it has the focus. Every key, Tab too, still reaches the program.
void addToTraversal(Widget drawingArea);

// Once all controls of the window are there: gives out the mnemonics, and makes the children of the form
// listen for them. Fields that the user cannot edit leave the traversal.
void completeKeyboard(Widget form);

} // namespace wmenh
