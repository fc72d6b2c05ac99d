// SPDX-License-Identifier: MIT
#include "platform/imagewindow/controls/PlayDialogue.h"

#include "platform/imagewindow/controls/Desk.h"
#include "platform/imagewindow/view/TypedNumber.h"
#include "platform/text/MotifText.h"

#include <Xm/TextF.h>

#include <cstdio>
#include <string>

namespace viewer {

PlayDialogue::PlayDialogue(Widget parent, Desk& desk)
    : desk(desk),
      form(parent, "playing", "Playing in image window " + std::to_string(desk.shown.windowNumber)),
      axis(form.addChoice("Play", {"z sections", "time points"}, [this] { set(); })),
      atEnd(form.addChoice("At the end", {"begin again", "go back"}, [this] { set(); })),
      rate(form.addField("rate", "Rate", "a second, 0.1 to 100", 6, [this] { set(); }))
{
    form.addButtons("Play or stop", [this] { play(); });
}

void PlayDialogue::show()
{
    const Shown& shown = desk.shown;
    axis.choose(static_cast<int>(playedAxis(shown.info(), shown.view, shown.play.axis)));
    for (const PlayAxis each : {PlayAxis::Z, PlayAxis::Time})
        axis.enable(static_cast<int>(each), lastAlong(shown.info(), shown.view, each) > 0);
    atEnd.choose(static_cast<int>(shown.play.atEnd));
    char text[32];
    std::snprintf(text, sizeof text, "%g", shown.play.rate);
    XmTextFieldSetString(rate, text);
    form.show();
    form.say("");
}

bool PlayDialogue::set()
{
    const auto typed = typedNumber(text::fieldText(rate));
    if (!typed || *typed < static_cast<float>(minPlayRate) || *typed > static_cast<float>(maxPlayRate)) {
        form.say("The rate is a number of pictures a second, from 0.1 to 100.");
        return false;
    }
    form.say("");
    desk.actions.setPlay(
        {static_cast<PlayAxis>(axis.chosen()), static_cast<PlayEnd>(atEnd.chosen()), *typed});
    return true;
}

void PlayDialogue::play()
{
    if (set())
        desk.actions.togglePlay();
}

} // namespace viewer
