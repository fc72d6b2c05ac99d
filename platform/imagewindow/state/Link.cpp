// SPDX-License-Identifier: MIT
#include "platform/imagewindow/state/Link.h"

namespace viewer {

LinkState linkStateOf(const Shown& shown)
{
    const View& view = shown.view;
    const protocol::Geometry& g = shown.arrangement.geometry;
    if (view.fit)
        return {view.z, view.t, true, 0, 0, 0};
    return {view.z,
            view.t,
            false,
            view.zoom,
            view.originX + g.panelWidth / view.zoom / 2,
            view.originY + g.panelHeight / view.zoom / 2};
}

void follow(Shown& shown, const LinkChange& change)
{
    View& view = shown.view;
    const auto& [before, now] = change;
    if (now.z != before.z || now.t != before.t)
        shown.playback.stop();
    if (now.z != before.z)
        view.z = now.z;
    if (now.t != before.t)
        view.t = now.t;
    clampSection(shown.info(), view);
    const bool moved = now.fit != before.fit || now.zoom != before.zoom || now.middleX != before.middleX ||
                       now.middleY != before.middleY;
    if (moved) {
        view.fit = now.fit;
        view.zoom = now.fit ? view.zoom : now.zoom;
        shown.arrangeNow(); // how much of the image there is room for
        const protocol::Geometry& g = shown.arrangement.geometry;
        view.originX = now.middleX - g.panelWidth / view.zoom / 2;
        view.originY = now.middleY - g.panelHeight / view.zoom / 2;
        shown.arrangeNow();
    }
    shown.changed();
}

} // namespace viewer
