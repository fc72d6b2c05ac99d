// SPDX-License-Identifier: MIT
// libIWL in this process against a fake image window.
#pragma once

#include "tests/x/iwl/FakeViewer.h"

#include "platform/iwl/Session.h"

#include <IWL.h>

#include <filesystem>
#include <memory>
#include <string>

constexpr int slot = 1;

class Iwl : public testing::Test {
protected:
    Iwl()
    {
        static char name[] = "/usr/bin/iwl_x_test";
        static char* arguments[] = {name, nullptr};
        IWAttach(1, arguments);
    }
    ~Iwl() override
    {
        IMClose(slot);
        XSync(iwl::display(), True);
    }

    // A viewer that shows an image file, attached as the slot with its events selected.
    std::unique_ptr<FakeViewer> show(const std::string& options = usualImage)
    {
        writeImage(file, options);
        auto viewer = std::make_unique<FakeViewer>(file);
        EXPECT_EQ(IWAttachWin(slot, viewer->record.windowNumber, "ro"), 1);
        XSelectInput(iwl::display(), viewer->canvas, PropertyChangeMask | StructureNotifyMask);
        XSync(iwl::display(), False);
        return viewer;
    }

    // The first change that the events bring; Nothing after all events that are on their way.
    static iwl::Change handleEvents()
    {
        XSync(iwl::display(), False);
        while (XPending(iwl::display())) {
            XEvent event;
            XNextEvent(iwl::display(), &event);
            if (const iwl::Change change = iwl::handleEvent(event); change != iwl::Change::Nothing)
                return change;
        }
        return iwl::Change::Nothing;
    }

    // A pixel of a section as IMRdPas delivers it, -1 when it does not.
    static float pixel(int z, int w, int t, int x, int y)
    {
        float value = -1;
        const bool read = IMPosnZWTP(slot, z, w, t, 0) == 0 && IMRdPas(slot, &value, 1, 1, x, x, y, y) == 0;
        return read ? value : -1;
    }

    TempFolder folder;
    std::filesystem::path file = folder / "cells.ome.tif";
};
