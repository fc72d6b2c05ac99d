// SPDX-License-Identifier: MIT
#include "shell/Settings.h"

#include "profile/Plot.h"
#include "profile/Profile.h"

#include <IWL.h>

constexpr const char* fwhmKey = "KV_APROF_FWHM";
// Says whether autoscaling is on: the inverse of the menu's index.
constexpr const char* autoScaleKey = "KV_APROF_SCALE_AUTO";

void readSettings()
{
    if (!IWGetConfigBoolean(fwhmKey, &settings.showFwhm))
        settings.showFwhm = 0;
    int autoScale = 1;
    settings.scaleMode = IWGetConfigBoolean(autoScaleKey, &autoScale) && autoScale == 0;
}

void fwhmToggled(Widget, XtPointer, XtPointer)
{
    IWSetConfigBoolean(fwhmKey, settings.showFwhm);
    IWSaveUserConfig();
    drawProfile(1);
}

void scalingChosen(Widget, XtPointer, XtPointer)
{
    IWSetConfigBoolean(autoScaleKey, settings.scaleMode == 0);
    IWSaveUserConfig();
    drawProfile(1);
}
