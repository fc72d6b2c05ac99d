// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/PlaySettings.h"

#include "platform/imagewindow/files/Settings.h"

#include <sstream>

namespace viewer {

namespace {

constexpr const char *settingName = "play", *timeName = "time", *bounceName = "bounce";

} // namespace

std::string playText(const PlaySettings& play)
{
    std::ostringstream text;
    text << (play.axis == PlayAxis::Time ? timeName : "z") << ' ' << play.rate << ' '
         << (play.atEnd == PlayEnd::Bounce ? bounceName : "loop");
    return text.str();
}

PlaySettings playOf(const std::string& text)
{
    std::istringstream words(text);
    std::string axis, atEnd;
    double rate = 0;
    PlaySettings play;
    words >> axis >> rate >> atEnd;
    if (axis == timeName)
        play.axis = PlayAxis::Time;
    if (rate >= minPlayRate && rate <= maxPlayRate)
        play.rate = rate;
    if (atEnd == bounceName)
        play.atEnd = PlayEnd::Bounce;
    return play;
}

PlaySettings loadPlay()
{
    return playOf(setting(settingName));
}

std::string keepPlay(const PlaySettings& play)
{
    return keepSettings({{settingName, playText(play)}});
}

} // namespace viewer
