// SPDX-License-Identifier: MIT
// The store of saved profiles on the recording platform, without a display: its controls are tokens.
#pragma once

#include <gmock/gmock.h> // before the headers of X, whose macros break it

#include "saved/SavedProfiles.h"
#include "tests/recording/Recording.h"

class SavedTest : public ::testing::Test {
protected:
    // A profile of five samples of two of three wavelengths, in a store that is empty.
    void SetUp() override
    {
        recording::reset();
        savedControls = {recording::makeToken("counter"), recording::makeToken("Clear"),
                         recording::makeToken("Write")};
        settings = {0, 0, 0.5f};
        recording::script.waves = {488.9f, 561.2f, 640};
        recording::script.displayed = {1, 0, 1};
        recording::script.colors = {0, 1, 2};
        segment.start = {3, 10, 20, 1};
        segment.end = {0, 6, 20, 1};
        sampleProfile();
        profile.fwhmValue = 0.625f;
        recording::calls.clear();
    }
    void TearDown() override { clear(); }

    static const SavedProfile& save()
    {
        saveCurrentProfile(nullptr, nullptr, nullptr);
        return *savedProfiles[savedCount - 1];
    }
    static void clear() { clearSavedProfiles(nullptr, nullptr, nullptr); }
};
