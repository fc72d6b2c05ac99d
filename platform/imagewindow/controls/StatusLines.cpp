// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/StatusLines.h"

#include "platform/imagewindow/controls/LocalText.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "widgets/Scale.h"

#include <X11/IntrinsicP.h> // XtConfigureWidget
#include <Xm/DrawingA.h>
#include <Xm/Label.h>

#include <algorithm>

namespace viewer {

namespace {

constexpr const char* separator = "   ";
constexpr std::size_t maxRemarkLines = 3, maxPixelLines = 4, maxStageLines = 2, maxStateLines = 2;

std::string joined(const std::vector<std::string>& items)
{
    std::string all;
    for (const std::string& item : items)
        all += (all.empty() ? "" : separator) + item;
    return all;
}

void writeLines(Widget label, std::vector<std::string> lines, std::size_t rows)
{
    lines.resize(std::max<std::size_t>(rows, 1),
                 " "); // all rows are filled: a label centres fewer lines in its height
    const auto text = labelString(lines);
    XtVaSetValues(label, XmNlabelString, text.get(), nullptr);
}

} // namespace

StatusLines::StatusLines(Widget parent)
    : marginWidth(widgets::scaled(parent, 8)), marginHeight(widgets::scaled(parent, 2)),
      gap(widgets::scaled(parent, 16))
{
    area = XtVaCreateWidget("status", xmDrawingAreaWidgetClass, parent, XmNmarginWidth, 0, XmNmarginHeight, 0,
                            XmNresizePolicy, XmRESIZE_NONE, nullptr);
    remark = makeLabel("remark", XmALIGNMENT_BEGINNING);
    pixel = makeLabel("pixel", XmALIGNMENT_BEGINNING);
    stage = makeLabel("stage", XmALIGNMENT_BEGINNING);
    state = makeLabel("state", XmALIGNMENT_END);
    measure = measureOf(pixel);
    lineHeight = lineHeightOf(pixel);
    XtVaSetValues(remark, XmNforeground, allocateColor(remark, textPalette[base::annotationColor]), nullptr);
    XtManageChild(area);
}

Widget StatusLines::makeLabel(const char* name, unsigned char alignment)
{
    Widget label = XtVaCreateManagedWidget(
        name, xmLabelWidgetClass, area, XmNalignment, alignment, XmNrecomputeSize, False, XmNmarginHeight,
        marginHeight, XmNmarginWidth, marginWidth, XmNhighlightThickness, 0, XmNshadowThickness, 0, nullptr);
    setLabel(label, " ");
    return label;
}

StatusLines::Lines StatusLines::linesOf(const StatusTexts& texts) const
{
    const auto flowing = [&](const std::vector<std::string>& items, const char* between, std::size_t most) {
        return flow(items, between, width - 2 * marginWidth, most, measure);
    };
    return {flowing(wordsOf(texts.remark), " ", maxRemarkLines),
            texts.sentence.empty() ? flowing(texts.pixel, separator, maxPixelLines)
                                   : flowing(wordsOf(texts.sentence), " ", maxPixelLines),
            texts.stage.empty() ? std::vector<std::string>{}
                                : flowing({texts.stage}, separator, maxStageLines),
            flowing(texts.state, separator, maxStateLines)};
}

bool StatusLines::besideEachOther(const StatusTexts& texts) const
{
    return texts.stage.empty() ||
           measure(texts.stage) + gap + measure(joined(texts.state)) <= width - 2 * marginWidth;
}

StatusLines::Rows StatusLines::rowsNeeded() const
{
    const Lines now = linesOf(shown), most = linesOf(widest);
    Rows needed;
    needed.remark = std::max(now.remark.size(), most.remark.size());
    needed.pixel = std::max({std::size_t{1}, now.pixel.size(), most.pixel.size()});
    needed.stage = std::max(now.stage.size(), most.stage.size());
    needed.state = std::max({std::size_t{1}, now.state.size(), most.state.size()});
    needed.beside = besideEachOther(shown) && besideEachOther(widest);
    return needed;
}

bool StatusLines::show(const StatusTexts& texts)
{
    if (texts == shown)
        return false;
    shown = texts;
    if (width == 0 || rowsNeeded() != rows)
        return true;
    write();
    return false;
}

// Returns where the next label begins.
int StatusLines::place(Widget label, int left, int top, int labelWidth, std::size_t rowCount) const
{
    const int height = rowCount == 0 ? 0 : static_cast<int>(rowCount) * lineHeight + 2 * marginHeight;
    XtSetMappedWhenManaged(label, height > 0 ? True : False);
    XtConfigureWidget(label, static_cast<Position>(left), static_cast<Position>(top),
                      static_cast<Dimension>(std::max(1, labelWidth)),
                      static_cast<Dimension>(std::max(1, height)), 0);
    return top + height;
}

int StatusLines::layOut(int newWidth)
{
    width = newWidth;
    rows = rowsNeeded();
    int top = place(remark, 0, 0, width, rows.remark);
    top = place(pixel, 0, top, width, rows.pixel);
    lowest = top;
    if (!rows.beside)
        top = place(stage, 0, top, width, rows.stage);
    top = place(state, 0, top, width, rows.state);
    write();
    return top;
}

void StatusLines::write()
{
    const Lines lines = linesOf(shown);
    writeLines(remark, lines.remark, rows.remark);
    writeLines(pixel, lines.pixel, rows.pixel);
    writeLines(stage, lines.stage, rows.stage);
    writeLines(state, lines.state, rows.state);
    if (!rows.beside)
        return;
    const int stateWidth = shown.stage.empty() ? width : measure(joined(shown.state)) + 2 * marginWidth;
    place(stage, 0, lowest, width - stateWidth, shown.stage.empty() ? 0 : 1);
    place(state, width - stateWidth, lowest, stateWidth, rows.state);
}

} // namespace viewer
