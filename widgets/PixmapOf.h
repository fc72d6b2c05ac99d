// SPDX-License-Identifier: MIT
// Pictures on the screen: the thin part between widgets/picture and X.
#pragma once

#include "widgets/picture/Picture.h"

#include <X11/Intrinsic.h>

#define XmNkvPixmapFolder "kvPixmapFolder"

namespace widgets {

// The widget itself, or the one in whose window a gadget is drawn.
Widget windowed(Widget object);

// A pixmap of the screen's depth that shows the picture over the background pixel, in the picture's size
// times scale. The caller frees it with XFreePixmap.
Pixmap pixmapOf(Widget widget, const picture::Picture& picture, Pixel background, double scale = 1);

// A copy of a pixmap that has faded towards the background pixel; None where its depth is not the screen's.
// The caller frees it.
Pixmap fadedPixmap(Widget widget, Pixmap pixmap, Pixel background);

// Registers the converter from String to the types of Motif's pixmap resources (labelPixmap,
// labelInsensitivePixmap, largeIconPixmap and their like). The string names a file: a path, else a file in
// the folder of the application resource XmNkvPixmapFolder. Its format is known by its content, its opacity
// is blended over the widget's background, its size follows the resolution of the screen, and the pixmap goes
// with the last widget that uses it. A name that is no picture file is left to XmGetPixmap. To be called
// before widgets are created; a second call does nothing new.
void registerPixmapConverter();

} // namespace widgets
