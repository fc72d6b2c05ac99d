// SPDX-License-Identifier: MIT
// The converter from String to Motif's pixmap resources, by picture files.
#include "widgets/PixmapOf.h"

#include "gauge/ClassParts.h"
#include "widgets/Scale.h"

#include <Xm/LabelG.h>
#include <Xm/LabelP.h>
#include <Xm/PushB.h>
#include <Xm/ToggleB.h>
#include <Xm/XmP.h>

#include <cstring>
#include <filesystem>
#include <optional>

namespace widgets {

namespace fs = std::filesystem;

namespace {

// A path, else a file in the folder that the application's resources name.
std::optional<fs::path> fileNamed(Widget widget, const char* name)
{
    std::error_code error;
    if (fs::is_regular_file(name, error))
        return name;
    Widget shell = widget;
    while (XtParent(shell))
        shell = XtParent(shell);
    char* folder = nullptr;
    XtResource row = pointerRow(XmNkvPixmapFolder, "KvPixmapFolder", XmRString, 0);
    XtGetApplicationResources(shell, &folder, &row, 1, nullptr, 0);
    if (folder && fs::is_regular_file(fs::path(folder) / name, error))
        return fs::path(folder) / name;
    return std::nullopt;
}

// Motif's own words and its built-in images and bitmap files.
Pixmap motifPixmap(Widget widget, const char* name)
{
    if (strcasecmp(name, "unspecified_pixmap") == 0)
        return XmUNSPECIFIED_PIXMAP;
    if (strcasecmp(name, "none") == 0 || !*name)
        return None;
    Pixel foreground = BlackPixelOfScreen(XtScreen(widget));
    XtVaGetValues(widget, XmNforeground, &foreground, nullptr);
    return XmGetPixmap(XtScreen(widget), const_cast<char*>(name), foreground, widget->core.background_pixel);
}

// XmUNSPECIFIED_PIXMAP where nothing can be made of the name.
Pixmap pixmapNamed(Widget widget, const char* name, bool& ours)
{
    ours = false;
    const std::optional<fs::path> file = fileNamed(widget, name);
    if (!file)
        return motifPixmap(widget, name);
    try {
        const picture::Picture picture = picture::read(*file);
        ours = true;
        return pixmapOf(widget, picture, widget->core.background_pixel, screenScale(XtDisplay(widget)));
    } catch (const picture::PictureError& error) {
        const Pixmap motif = motifPixmap(widget, name); // a bitmap file of X
        if (motif == XmUNSPECIFIED_PIXMAP)
            XtAppWarningMsg(XtWidgetToApplicationContext(widget), "picture", "convert", "XmKvError",
                            error.what(), nullptr, nullptr);
        return motif;
    }
}

// Whose resource is converted: the one argument of the converter.
void giveWidget(Widget widget, Cardinal*, XrmValue* value)
{
    static Widget asked;
    asked = widget;
    value->size = sizeof asked;
    value->addr = reinterpret_cast<XPointer>(&asked);
}

Boolean convert(Display* display, XrmValue* args, Cardinal*, XrmValue* from, XrmValue* to, XtPointer* data)
{
    static Pixmap result; // for callers that give no memory for it
    const Widget widget = windowed(*reinterpret_cast<Widget*>(args[0].addr));
    bool ours = false;
    const Pixmap pixmap = pixmapNamed(widget, from->addr, ours);
    if (pixmap == XmUNSPECIFIED_PIXMAP && strcasecmp(from->addr, "unspecified_pixmap") != 0)
        XtDisplayStringConversionWarning(display, from->addr, XmRPixmap);
    *data = ours ? reinterpret_cast<XtPointer>(display) : nullptr;
    if (to->addr && to->size < sizeof(Pixmap)) {
        to->size = sizeof(Pixmap);
        return False;
    }
    to->size = sizeof(Pixmap);
    result = pixmap;
    if (to->addr)
        std::memcpy(to->addr, &pixmap, sizeof pixmap);
    else
        to->addr = reinterpret_cast<XPointer>(&result);
    return True;
}

// Frees a pixmap when the last widget that uses it is gone. Those that Motif has made stay in Motif's cache.
void release(XtAppContext, XrmValue* to, XtPointer data, XrmValue*, Cardinal*)
{
    if (data)
        XFreePixmap(static_cast<Display*>(data), *reinterpret_cast<Pixmap*>(to->addr));
}

} // namespace

void registerPixmapConverter()
{
    // Motif registers its converters when these classes are initialised; ours take their place.
    for (const WidgetClass motif : {xmLabelWidgetClass, xmPushButtonWidgetClass, xmToggleButtonWidgetClass,
                                    reinterpret_cast<WidgetClass>(xmLabelGadgetClass)})
        XtInitializeWidgetClass(motif);
    static XtConvertArgRec args[] = {{XtProcedureArg, reinterpret_cast<XtPointer>(giveWidget), 0}};
    const char* const types[] = {XmRPixmap, XmRDynamicPixmap, XmRGadgetPixmap, XmRPrimForegroundPixmap,
                                 XmRLargeIconPixmap};
    for (const char* type : types)
        XtSetTypeConverter(XmRString, type, convert, args, XtNumber(args), XtCacheAll | XtCacheRefCount,
                           release);
}

} // namespace widgets
