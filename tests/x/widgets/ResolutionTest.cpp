// SPDX-License-Identifier: MIT
// At twice the resolution every page, and every control on it, is twice as large.
#include "tests/x/widgets/GalleryTest.h"

#include <X11/Xatom.h>

#include <string>
#include <vector>

namespace {

class ResolutionTest : public GalleryTest, public testing::WithParamInterface<const char*> {
protected:
    ~ResolutionTest() override { XDeleteProperty(screen.x(), screen.root(), XA_RESOURCE_MANAGER); }

    void setResolution(int dotsPerInch)
    {
        const std::string text = "Xft.dpi: " + std::to_string(dotsPerInch) + "\n";
        XChangeProperty(screen.x(), screen.root(), XA_RESOURCE_MANAGER, XA_STRING, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
        XSync(screen.x(), False);
    }
    std::vector<drive::Rect> sizesAt(int dotsPerInch)
    {
        setResolution(dotsPerInch);
        open(GetParam());
        std::vector<drive::Rect> sizes{screen.geometry(window)};
        for (const Window leaf : screen.leaves(window))
            sizes.push_back(screen.geometry(leaf));
        process.reset();
        return sizes;
    }
};

TEST_P(ResolutionTest, sizesFollow)
{
    const std::vector<drive::Rect> usual = sizesAt(96);
    const std::vector<drive::Rect> doubled = sizesAt(192);
    ASSERT_EQ(usual.size(), doubled.size());
    // Fonts are not exactly twice as large, and a pixel counts much in something small.
    const auto isTwice = [](int small, int large) { return std::abs(large - 2 * small) <= 4 + small / 5; };
    for (std::size_t i = 0; i < usual.size(); ++i) {
        EXPECT_TRUE(isTwice(usual[i].width, doubled[i].width))
            << i << ": " << usual[i].width << ", " << doubled[i].width;
        EXPECT_TRUE(isTwice(usual[i].height, doubled[i].height))
            << i << ": " << usual[i].height << ", " << doubled[i].height;
    }
}

INSTANTIATE_TEST_SUITE_P(Pages, ResolutionTest,
                         testing::Values("aligner", "buttons", "combo", "outliner", "pictures", "progress",
                                         "tabs"),
                         [](const auto& page) { return std::string(page.param); });

} // namespace
