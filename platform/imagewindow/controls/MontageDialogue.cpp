// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/MontageDialogue.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/view/TypedNumber.h"
#include "platform/text/MotifText.h"

#include <Xm/TextF.h>

#include <array>
#include <cmath>
#include <string>

namespace viewer {

namespace {

// In the order of the choice.
constexpr std::array styles{protocol::ZPanels, protocol::WavelengthPanels, protocol::TimePanels};

// 0 when what stands there is no whole number that a grid may have.
int numberIn(Widget field)
{
    const auto typed = typedNumber(text::fieldText(field));
    return typed && *typed == std::round(*typed) && std::fabs(*typed) < 1e6F ? static_cast<int>(*typed) : 0;
}

void put(Widget field, int number)
{
    XmTextFieldSetString(field, std::to_string(number).data());
}

} // namespace

MontageDialogue::MontageDialogue(Widget parent, Desk& desk)
    : desk(desk),
      form(parent, "montage", "Montage of image window " + std::to_string(desk.shown.windowNumber)),
      style(form.addChoice("Of", {"z sections", "wavelengths", "time points"},
                           [this] { propose(squareGrid(this->desk.shown.info(), chosenView())); })),
      columns(form.addField("columns", "Columns", "", 4, [this] { montage(); })),
      rows(form.addField("rows", "Rows", "", 4, [this] { montage(); }))
{
    form.addButtons("Show", [this] { montage(); });
}

void MontageDialogue::show()
{
    const Shown& shown = desk.shown;
    const int sizes[] = {shown.info().sizeZ, shown.info().sizeW, shown.info().sizeT};
    int wanted = -1;
    for (int i = 0; i < static_cast<int>(styles.size()); ++i) {
        const bool possible = sizes[i] > 1;
        style.enable(i, possible);
        if (possible && (wanted < 0 || styles[static_cast<std::size_t>(i)] == shown.view.style))
            wanted = i;
    }
    style.choose(wanted);
    const bool present = shown.view.grid.chosen() && chosenView().style == shown.view.style;
    propose(present ? shown.view.grid : squareGrid(shown.info(), chosenView()));
    form.show();
}

View MontageDialogue::chosenView() const
{
    View view = desk.shown.view;
    view.style = styles[static_cast<std::size_t>(style.chosen())];
    return view;
}

void MontageDialogue::propose(const PanelGrid& grid)
{
    put(columns, grid.columns);
    put(rows, grid.rows);
    form.say("");
}

void MontageDialogue::montage()
{
    form.say(desk.actions.setMontage(chosenView().style, {numberIn(columns), numberIn(rows)}));
}

} // namespace viewer
