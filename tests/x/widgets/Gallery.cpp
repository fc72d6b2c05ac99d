// SPDX-License-Identifier: MIT
#include "tests/x/widgets/Gallery.h"

#include "platform/text/Fonts.h"
#include "platform/text/Locale.h"
#include "platform/text/MotifText.h"
#include "tests/x/support/ShellPicture.h"
#include "widgets/PixmapOf.h"
#include "widgets/Scale.h"

#include <X11/IntrinsicP.h>
#include <Xm/Label.h>
#include <Xm/RowColumn.h>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <map>
#include <vector>

namespace gallery {

namespace {

const char* const looks[] = {
    "*background: #dcdcd9",
    "*foreground: #101010",
    "*highlightColor: #2f74d0",
    "*XmText.background: #ffffff",
    "*XmTextField.background: #ffffff",
    "*XmList.background: #ffffff",
    "*heading.foreground: #2a5a9a",
    "*enableEtchedInMenu: True",
    "*XmToggleButton.shadowThickness: 0",
};

const std::map<std::string, Page>& pages()
{
    static const std::map<std::string, Page> all = {{"aligner", alignerPage},  {"buttons", buttonPage},
                                                    {"combo", comboPage},      {"outliner", outlinerPage},
                                                    {"pictures", picturePage}, {"progress", progressPage},
                                                    {"tabs", tabPage},         {"tips", tipPage}};
    return all;
}

// The list is Xt's for the life of the process.
String* fallbackResources(Display* display)
{
    static std::vector<const char*> list(std::begin(looks), std::end(looks));
    static const std::vector<std::string> sizes = widgets::scaledResources(display);
    for (const std::string& line : sizes)
        list.push_back(line.c_str());
    text::appendFontResources(display, list);
    list.push_back(nullptr);
    return const_cast<String*>(list.data());
}

Widget openShell(const char* page, int& argc, char** argv)
{
    XtToolkitInitialize();
    text::adoptLocale();
    XtAppContext app = XtCreateApplicationContext();
    Display* display = XOpenDisplay(nullptr);
    if (!display) {
        std::fputs("There is no display.\n", stderr);
        return nullptr;
    }
    XtAppSetFallbackResources(app, fallbackResources(display));
    XtDisplayInitialize(app, display, "gallery", "Gallery", nullptr, 0, &argc, argv);
    return XtVaAppCreateShell("gallery", "Gallery", applicationShellWidgetClass, display, XmNtitle,
                              (std::string("Gallery: ") + page).c_str(), XmNallowShellResize, True, nullptr);
}

} // namespace

void tell(const std::string& line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

void tellCallback(Widget, XtPointer text, XtPointer)
{
    tell(static_cast<const char*>(text));
}

void addHeading(Widget parent, const char* text)
{
    XtVaCreateManagedWidget("heading", xmLabelWidgetClass, parent, XmNlabelString,
                            text::MotifString(text).get(), XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
}

Pixmap icon(Widget widget, const picture::Drawing& draw)
{
    constexpr picture::PageSize size{16, 16};
    return widgets::pixmapOf(widget, picture::rasterize(size, widgets::screenScale(XtDisplay(widget)), draw),
                             widget->core.background_pixel);
}

namespace {

int run(int argc, char** argv)
{
    const auto page = argc > 1 ? pages().find(argv[1]) : pages().end();
    if (page == pages().end() || argc > 3) {
        std::fprintf(stderr, "Usage: %s PAGE [FILE.png]\nPages:", argv[0]);
        for (const auto& [name, fill] : pages())
            std::fprintf(stderr, " %s", name.c_str());
        std::fputs("\n", stderr);
        return 2;
    }
    const Widget shell = openShell(argv[1], argc, argv);
    if (!shell)
        return 1;
    const int margin = widgets::scaled(shell, 8);
    const Widget column =
        XtVaCreateManagedWidget("column", xmRowColumnWidgetClass, shell, XmNmarginWidth, margin,
                                XmNmarginHeight, margin, XmNspacing, margin / 2, nullptr);
    page->second(column);
    XtRealizeWidget(shell);
    if (argc == 3)
        return savePicture(shell, argv[2]) ? 0 : 1;
    XtAppMainLoop(XtWidgetToApplicationContext(shell));
    return 0;
}

} // namespace

} // namespace gallery

int main(int argc, char** argv)
{
    return gallery::run(argc, argv);
}
