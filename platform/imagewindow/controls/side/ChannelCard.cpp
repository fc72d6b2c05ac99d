// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/side/ChannelCard.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/controls/Widgets.h"
#include "platform/imagewindow/render/Contrast.h"
#include "platform/imagewindow/view/Readout.h"
#include "platform/imagewindow/view/TypedNumber.h"
#include "platform/text/LocaleText.h"
#include "platform/text/Utf8.h"
#include "widgets/KvComboBox.h"
#include "widgets/KvPushButton.h"
#include "widgets/KvTip.h"
#include "widgets/Scale.h"

#include <X11/IntrinsicP.h> // XtConfigureWidget
#include <Xm/ComboBox.h>
#include <Xm/DrawingA.h>
#include <Xm/Label.h>
#include <Xm/TextF.h>
#include <Xm/ToggleB.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

namespace viewer {

namespace {

constexpr int margin = 6, gap = 4, histogramHeight = 62; // pixels of 96 dots per inch
constexpr std::size_t longestName = 40, shortestName = 6;
constexpr int besideName = 34;      // indicator and margins of a toggle, pixels of 96 dots per inch
constexpr float stepsOfSpan = 1000; // of limits that are fractions

int preferredHeight(Widget widget)
{
    XtWidgetGeometry preferred{};
    XtQueryGeometry(widget, nullptr, &preferred);
    return preferred.height;
}

int preferredWidth(Widget widget)
{
    XtWidgetGeometry preferred{};
    XtQueryGeometry(widget, nullptr, &preferred);
    return preferred.width;
}

void put(Widget widget, int x, int y, int width, int height)
{
    XtConfigureWidget(widget, static_cast<Position>(x), static_cast<Position>(y),
                      static_cast<Dimension>(std::max(1, width)), static_cast<Dimension>(std::max(1, height)),
                      0);
}

std::string colorItems()
{
    std::string items;
    for (const base::DisplayColor& color : base::displayColors)
        items += (items.empty() ? "" : "|") + std::string(color.name);
    return items;
}

Widget makeButton(Widget parent, const char* name, const char* text, const char* tip)
{
    Widget button = XtVaCreateManagedWidget(name, xmKvPushButtonWidgetClass, parent, XmNlabelType, XmSTRING,
                                            XmNkvFlat, False, XmNrecomputeSize, False, nullptr);
    setLabel(button, text);
    XmKvTipSet(button, tip);
    return button;
}

} // namespace

void setRowName(Widget toggle, const Desk& desk, int wavelength, int width)
{
    const image::Wavelength& wave = desk.shown.info().wavelengths[static_cast<std::size_t>(wavelength)];
    std::string end;
    if (!wave.name.empty() && wave.nanometres > 0)
        end = "  " + std::to_string(std::lround(wave.nanometres)) + " nm";
    const Measure measure = measureOf(toggle);
    const int room = width - widgets::scaled(toggle, besideName);
    std::string whole;
    std::size_t length = longestName;
    do
        whole = text::shortened(wavelengthName(desk.shown.info(), wavelength), length) + end;
    while (measure(whole) > room && --length >= shortestName);
    setLabel(toggle, whole);
}

ChannelCard::ChannelCard(Widget parent, Desk& desk) : desk(desk)
{
    card = XtVaCreateWidget("card", xmDrawingAreaWidgetClass, parent, XmNmarginWidth, 0, XmNmarginHeight, 0,
                            XmNresizePolicy, XmRESIZE_NONE, XmNmappedWhenManaged, False, nullptr);
    makeHead();
    histogram =
        std::make_unique<HistogramView>(card, [this](bool low, float value) { moveLimit(low, value); });
    XmKvTipSet(histogram->widget(), "Values of the section. Drag the black and the white mark.");
    makeFields();
    lineHeight = std::max({preferredHeight(black.text), preferredHeight(color), preferredHeight(name)});
    const int between = widgets::scaled(card, gap);
    lowest =
        widgets::scaled(card, margin) + 2 * lineHeight + widgets::scaled(card, histogramHeight) + 3 * between;
    XtManageChild(card);
}

void ChannelCard::makeHead()
{
    name = XtVaCreateManagedWidget("shown", xmToggleButtonWidgetClass, card, XmNindicatorOn, XmINDICATOR_FILL,
                                   XmNset, True, XmNrecomputeSize, False, XmNalignment, XmALIGNMENT_BEGINNING,
                                   nullptr);
    const auto hidden = [](Widget, XtPointer client, XtPointer) {
        auto* self = static_cast<ChannelCard*>(client);
        self->desk.actions.setWavelengthShown(self->wavelength, false);
    };
    XtAddCallback(name, XmNvalueChangedCallback, hidden, this);
    color = XtVaCreateManagedWidget("color", xmKvComboBoxWidgetClass, card, XmNkvItems, colorItems().c_str(),
                                    XmNvisibleItemCount, static_cast<int>(base::displayColors.size()),
                                    XmNcolumns, 8, nullptr);
    const auto chosen = [](Widget, XtPointer client, XtPointer call) {
        static_cast<ChannelCard*>(client)->colorChosen(
            static_cast<XmComboBoxCallbackStruct*>(call)->item_position);
    };
    XtAddCallback(color, XmNselectionCallback, chosen, this);
    automatic = makeButton(card, "auto", "Auto", "Fit the limits to the image");
    full = makeButton(card, "full", "Full", "From the smallest to the largest value");
    XtAddCallback(
        automatic, XmNactivateCallback,
        [](Widget, XtPointer client, XtPointer) {
            auto* self = static_cast<ChannelCard*>(client);
            self->span = {0, 0};
            self->desk.actions.setAutomaticContrast(self->wavelength);
        },
        this);
    XtAddCallback(
        full, XmNactivateCallback,
        [](Widget, XtPointer client, XtPointer) {
            auto* self = static_cast<ChannelCard*>(client);
            self->span = {0, 0};
            self->desk.actions.setFullRange(self->wavelength);
        },
        this);
}

void ChannelCard::makeFields()
{
    const struct {
        Field& field;
        const char *name, *label, *tip;
    } fields[] = {{black, "black", "Black", "The value that is black"},
                  {white, "white", "White", "The value that has full brightness"},
                  {gamma, "gamma", "Gamma", "Below 1: what is dark becomes brighter. Of the display alone."}};
    const auto ended = [](Widget text, XtPointer client, XtPointer) {
        auto* self = static_cast<ChannelCard*>(client);
        for (Field* field : {&self->black, &self->white, &self->gamma})
            if (field->text == text)
                self->typed(*field);
    };
    for (const auto& row : fields) {
        row.field.label =
            XtVaCreateManagedWidget((std::string(row.name) + "Label").c_str(), xmLabelWidgetClass, card,
                                    XmNrecomputeSize, False, XmNalignment, XmALIGNMENT_BEGINNING, nullptr);
        setLabel(row.field.label, row.label);
        row.field.text = XtVaCreateManagedWidget(row.name, xmTextFieldWidgetClass, card, XmNcolumns, 5,
                                                 XmNcursorPositionVisible, False, nullptr);
        XmKvTipSet(row.field.text, row.tip);
        XtAddCallback(row.field.text, XmNactivateCallback, ended, this);
        XtAddCallback(row.field.text, XmNlosingFocusCallback, ended, this);
        const auto focus = [](Widget text, XtPointer, XtPointer call) {
            const bool has = static_cast<XmAnyCallbackStruct*>(call)->reason == XmCR_FOCUS;
            XtVaSetValues(text, XmNcursorPositionVisible, has ? True : False, nullptr);
        };
        XtAddCallback(row.field.text, XmNfocusCallback, focus, nullptr);
        XtAddCallback(row.field.text, XmNlosingFocusCallback, focus, nullptr);
    }
}

void ChannelCard::place(int y, int width)
{
    if (width != laidOutFor)
        layOut(width);
    put(card, 0, y, width, lowest);
    XtSetMappedWhenManaged(card, True);
}

void ChannelCard::hide()
{
    XtSetMappedWhenManaged(card, False);
}

void ChannelCard::layOut(int width)
{
    laidOutFor = width;
    const int edge = widgets::scaled(card, margin), between = widgets::scaled(card, gap);
    const int comboWidth = preferredWidth(color);
    const int buttonWidth = measureOf(full)("Auto") + widgets::scaled(card, 20);
    int top = widgets::scaled(card, gap);
    put(name, edge, top, width - comboWidth - 2 * edge - between, lineHeight);
    if (wavelength >= 0)
        showName();
    put(color, width - edge - comboWidth, top + (lineHeight - preferredHeight(color)) / 2, comboWidth,
        preferredHeight(color));
    top += lineHeight + between;
    const int height = widgets::scaled(card, histogramHeight), half = (height - between) / 2;
    put(histogram->widget(), edge, top, width - buttonWidth - 2 * edge - between, height);
    put(automatic, width - edge - buttonWidth, top, buttonWidth, half);
    put(full, width - edge - buttonWidth, top + height - half, buttonWidth, half);
    layOutFields(top + height + between, width);
}

void ChannelCard::layOutFields(int top, int width)
{
    const int edge = widgets::scaled(card, margin), between = widgets::scaled(card, gap);
    const Measure measure = measureOf(black.label);
    const int labels[] = {measure("Black") + between, measure("White") + between, measure("Gamma") + between};
    Field* const fields[] = {&black, &white, &gamma};
    // The gamma has few digits, the limits may have many.
    constexpr int shares[] = {5, 5, 3}, allShares = 13;
    const int room = width - 2 * edge - labels[0] - labels[1] - labels[2] - 2 * between;
    int x = edge;
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        put(fields[i]->label, x, top, labels[i], lineHeight);
        x += labels[i];
        const int height = preferredHeight(fields[i]->text);
        put(fields[i]->text, x, top + (lineHeight - height) / 2, room * shares[i] / allShares, height);
        x += room * shares[i] / allShares + between;
    }
}

void ChannelCard::show(int shownWavelength, bool logarithmic, bool sampleNow)
{
    if (wavelength != shownWavelength) {
        wavelength = shownWavelength;
        span = {0, 0};
        sample.reset();
        showName();
    }
    XmToggleButtonSetState(name, True, False);
    showColor();
    showFields();
    showHistogram(logarithmic, sampleNow);
}

void ChannelCard::showColor()
{
    const int index = desk.shown.view.colors[static_cast<std::size_t>(wavelength)];
    int position = 0;
    XtVaGetValues(color, XmNselectedPosition, &position, nullptr);
    if (position != index)
        XtVaSetValues(color, XmNselectedPosition, index, nullptr);
    const Pixel fill = allocateColor(name, palette[static_cast<std::size_t>(index)]);
    Pixel before = 0;
    XtVaGetValues(name, XmNselectColor, &before, nullptr);
    if (before != fill)
        XtVaSetValues(name, XmNselectColor, fill, nullptr);
}

void ChannelCard::showFields()
{
    const ContrastLimits limits = desk.shown.renderer.limits(wavelength);
    showField(black, valueText(limits.low));
    showField(white, valueText(limits.high));
    char text[32];
    std::snprintf(text, sizeof text, "%.3g", static_cast<double>(desk.shown.renderer.gamma(wavelength)));
    showField(gamma, text);
}

void ChannelCard::showName()
{
    Dimension width = 0;
    XtVaGetValues(name, XmNwidth, &width, nullptr);
    setRowName(name, desk, wavelength, width);
    const std::string whole = wavelengthName(desk.shown.info(), wavelength);
    XmKvTipSet(name, text::fromUtf8("Wavelength " + std::to_string(wavelength + 1) + ": " +
                                    text::shortened(whole, 200))
                         .c_str());
}

// Does not overwrite what the user is typing, unless the value itself has changed.
void ChannelCard::showField(Field& field, const std::string& text)
{
    if (field.shown == text)
        return;
    field.shown = text;
    XmTextFieldSetString(field.text, const_cast<char*>(text.c_str()));
}

void ChannelCard::showHistogram(bool logarithmic, bool sampleNow)
{
    const ContrastLimits limits = desk.shown.renderer.limits(wavelength);
    if (sampleNow) {
        const SampleStore::Sample now = desk.shown.renderer.sample(wavelength);
        if (now != sample) {
            if (!sample)
                span = {0, 0};
            sample = now;
            const char* what = sample->values.empty() ? "This section cannot be read."
                               : sample->whole
                                   ? "Values of the section. Drag the black and the white mark."
                                   : "Values of a sample of the section, which is large. Drag the "
                                     "black and the white mark.";
            XmKvTipSet(histogram->widget(), what);
        }
    }
    if (!(span.low < span.high) || limits.low < span.low || limits.high > span.high)
        span = wantedSpan(limits);
    const auto colorIndex = static_cast<std::size_t>(
        desk.shown.view.grey ? 0 : desk.shown.view.colors[static_cast<std::size_t>(wavelength)]);
    histogram->show({sample, limits, span, desk.shown.renderer.gamma(wavelength), logarithmic,
                     holdsIntegers(), textPalette[colorIndex]});
}

// Room to move the limits, but not where there are no values.
ContrastLimits ChannelCard::wantedSpan(const ContrastLimits& limits) const
{
    // The ranges of the file are of its sections.
    const bool sections = desk.shown.renderer.projection() == Projection::Section;
    const image::ValueRange range = sections ? desk.shown.life.range(wavelength) : image::ValueRange{};
    ContrastLimits wanted =
        contrastSpan(limits, range.known ? ContrastLimits{range.min, range.max} : ContrastLimits{0, 0});
    if (!sample || sample->values.empty())
        return wanted;
    const float room = (limits.high - limits.low) / 20;
    wanted.low = std::max(wanted.low, std::min(limits.low, sample->range.low) - room);
    wanted.high = std::min(wanted.high, std::max(limits.high + 10 * room, sample->range.high + room));
    return wanted;
}

void ChannelCard::typed(Field& field)
{
    char* const given = XmTextFieldGetString(field.text);
    const std::string text = given ? given : "";
    XtFree(given);
    if (text == field.shown || wavelength < 0)
        return;
    field.shown = text;
    if (const std::optional<float> value = typedNumber(text))
        takeNumber(field, *value);
    else
        desk.actions.refuse("\"" + text::shortened(text, 20) + "\" is no number.");
    showFields(); // what holds now
}

void ChannelCard::takeNumber(Field& field, float value)
{
    if (&field != &gamma)
        return moveLimit(&field == &black, value);
    if (value < minGamma || value > maxGamma)
        return desk.actions.refuse("A gamma is between 0.1 and 10.");
    desk.actions.setGamma(wavelength, value);
}

// The limit that moves pushes the other.
void ChannelCard::moveLimit(bool low, float value)
{
    const ContrastLimits limits = desk.shown.renderer.limits(wavelength);
    const float wanted = holdsIntegers() ? std::round(value) : value;
    desk.actions.setContrast(wavelength, low ? withLow(limits, wanted, smallestStep())
                                             : withHigh(limits, wanted, smallestStep()));
}

void ChannelCard::colorChosen(int index)
{
    if (wavelength >= 0 && index >= 0 && index < static_cast<int>(base::displayColors.size()) &&
        index != desk.shown.view.colors[static_cast<std::size_t>(wavelength)])
        desk.actions.setColor(wavelength, index);
}

float ChannelCard::smallestStep() const
{
    return holdsIntegers() ? 1 : std::max((span.high - span.low) / stepsOfSpan, 1e-30F);
}

bool ChannelCard::holdsIntegers() const
{
    const image::PixelType type = desk.shown.info().pixelType;
    return type != image::PixelType::Float32 && type != image::PixelType::Float64;
}

std::string ChannelCard::valueText(float value) const
{
    char text[64];
    std::snprintf(text, sizeof text, holdsIntegers() ? "%.0f" : "%.5g", static_cast<double>(value));
    return text;
}

} // namespace viewer
