// SPDX-License-Identifier: MIT
// The whole tool on the recording platform and a real display: started once per test program, as its user
// would find it. Its window is on the screen and the plot has been exposed.
#pragma once

#include <gmock/gmock.h> // before the headers of X, whose macros break it

#include "tests/recording/Recording.h"

class RunningTool : public ::testing::Test {
protected:
    static Display* display;

    static void SetUpTestSuite();
    // Start script, no calls noted, no segment, both settings off, an empty profile.
    void SetUp() override;

    // Events of the image window as its handlers get them.
    static void press(int x, int y, unsigned button = 1);
    static void motion(int x, int y, unsigned state = Button1Mask);
    static void release();
    static void drag(int x0, int y0, int x1, int y1);

    // A resource, of the type that the widget stores.
    template<class Value> static Value valueOf(Widget object, const char* name)
    {
        Value value{};
        XtVaGetValues(object, name, &value, nullptr);
        return value;
    }
};
