// The whole tool on the recording platform and a real display: started once per test program, as its user
// would find it. Its window is on the screen and the plot has been exposed.
#pragma once

#include <gmock/gmock.h> // before X, whose macros it does not stand

#include "tests/recording/Recording.h"

class RunningTool : public ::testing::Test {
protected:
    static Display* display;
    static Window imageWindow; // 100 x 80, where pointer events come from

    static void SetUpTestSuite();
    // Start script, no calls noted, no segment, both settings off, an empty profile.
    void SetUp() override;

    // Events of the image window as its handlers get them.
    static void press(int x, int y, unsigned button = 1);
    static void motion(int x, int y, unsigned state = Button1Mask);
    static void release();
    static void drag(int x0, int y0, int x1, int y1);

    // Value of a gauge object's resource that is a double.
    static double doubleResource(Widget object, const char* name);
};
