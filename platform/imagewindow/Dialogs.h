// Dialogue windows of the viewer. All are modeless for other windows of the process and own themselves.
#pragma once

#include <X11/Intrinsic.h>

#include <string>

namespace viewer {

class ImageWindow;

void showError(Widget parent, const std::string& title, const std::string& text);
void showInformation(Widget parent, const std::string& title, const std::string& text);
// Asks for a file and opens it in a new window.
void chooseFile(Widget parent, ImageWindow& window);

} // namespace viewer
