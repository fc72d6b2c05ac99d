// SPDX-License-Identifier: MIT
// Turns the image file and the view into the pixels of the canvas. Keeps the floats of the visible region and
// the contrast limits, so that showing a wavelength again or moving a limit reads nothing. No X; one per
// window, used from the window's thread.
#pragma once

#include "platform/imagewindow/render/Composite.h"
#include "platform/imagewindow/render/Histogram.h"
#include "platform/imagewindow/render/PanelSum.h"
#include "platform/imagewindow/render/Projections.h"
#include "platform/imagewindow/render/Tile.h"
#include "platform/imagewindow/view/View.h"

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace viewer {

constexpr std::uint32_t surroundPixel = 0x16181B; // gaps between panels and places without a panel

class Renderer {
public:
    // The file must outlive the renderer or be replaced by setFile().
    explicit Renderer(image::ImageFile& file);

    // Forgets what was read from the previous file (a growing file that was opened anew); limits that were
    // set by hand stay.
    void setFile(image::ImageFile& newFile);

    // Nothing is read from the file any more until setFile().
    void letGo() { projections.reset(); }

    // Reads what the panels need and is not at hand yet. Returns the sentence of the first failure, empty
    // when all is there. What cannot be read stays black and is tried again by the next load().
    std::string load(const protocol::Geometry& newGeometry, const std::vector<PanelContent>& newPanels);

    // What the panels of load() show: their projection once it is there, the sections until then.
    Projection projection() const { return mode; }
    // Whether load() has found that a projection has yet to be made, the share of it that is done, and
    // whether it is over, so that load() is to be called again.
    bool projecting() const { return awaited; }
    double projected() const { return projections ? projections->progress() : 1; }
    bool projectingEnded() const { return awaited && !(projections && projections->working()); }

    // Fills pixels, width * height of the canvas row by row, with what load() has prepared.
    void draw(std::span<std::uint32_t> pixels, int width, int height) const;

    // The value of data pixel (x, y) in a panel, from memory when the zoom shows data pixels, else from the
    // file.
    std::optional<float> valueAt(int panel, int wavelength, int x, int y) const;

    // Contrast of a wavelength: set by hand, or fitted to the sections of all panels when it was first shown
    // in that kind of panels and kept from then on, so that sections can be compared. Each projection has its
    // own; without one named, it is that on display.
    ContrastLimits limits(int wavelength) const { return limits(wavelength, mode); }
    ContrastLimits limits(int wavelength, Projection projection) const;
    void setLimits(int wavelength, const ContrastLimits& limits) { setLimits(wavelength, limits, mode); }
    void setLimits(int wavelength, const ContrastLimits& limits, Projection projection);
    // The limits that were set by hand; nothing when they follow the image.
    std::optional<ContrastLimits> limitsByHand(int wavelength) const
    {
        return limitsByHand(wavelength, mode);
    }
    std::optional<ContrastLimits> limitsByHand(int wavelength, Projection projection) const;
    // Fits all limits, or those of one wavelength, to what is on display; drops those that were set by hand.
    void setAutomatic();
    void setAutomatic(int wavelength);
    // As setAutomatic(), for all projections.
    void forgetLimits();

    // Values of what the first panel shows of the wavelength, read once; empty when no panel does.
    SampleStore::Sample sample(int wavelength) const;

    // Of the display alone: values that are told stay. Within minGamma and maxGamma, 1 at first.
    float gamma(int wavelength) const;
    void setGamma(int wavelength, float gamma);

private:
    using SectionKey = std::array<int, 4>; // z, w, t, p

    // What a panel shows of a wavelength: where it is read, and under which key it is kept.
    struct Source {
        image::ImageFile* file; // null: not there
        image::SectionIndex section;
        SectionKey key;
    };
    Source sourceOf(const PanelContent& panel, int wavelength) const;
    // False when what was shown before stays until the projections are there.
    bool chooseProjection(const std::vector<PanelContent>& newPanels, bool sameGeometry,
                          std::string& problem);
    std::string loadTiles();
    void fitMissingLimits();
    struct Fitted {
        ContrastLimits alone, amongOthers; // as the wavelength is shown
    };
    // By wavelength.
    struct LimitSet {
        std::map<int, Fitted> fitted;
        std::map<int, ContrastLimits> manual;
    };
    LimitSet& limitSet() { return limitSets[static_cast<std::size_t>(mode)]; }
    const LimitSet& limitSet() const { return limitSets[static_cast<std::size_t>(mode)]; }
    std::optional<Fitted> limitsOfSections(int wavelength) const;
    ContrastLimits limitsAmong(int wavelength, bool others, Projection projection) const;
    bool shownAmongOthers(int wavelength) const;
    std::vector<CompositeChannel> channelsOf(const PanelContent& panel) const;
    void beginSum(PanelSum& sum, const PanelContent& panel) const;
    // Fills out with the panel's pixels from first on, of the tile; from several threads at a time.
    using Compose = std::function<void(std::size_t first, std::span<std::uint32_t> out)>;
    Compose composerOf(int index) const;
    void drawPanel(int index, std::span<std::uint32_t> pixels, int width, int height) const;

    image::ImageFile* file;
    protocol::Geometry geometry;
    std::vector<PanelContent> panels;
    TileFrame frame;
    std::map<SectionKey, std::vector<float>> tiles; // of this frame
    std::unique_ptr<Projections> projections;
    Projection mode = Projection::Section; // on display
    bool awaited = false;
    std::array<LimitSet, 4> limitSets; // by projection
    struct Gamma {
        float value;
        std::shared_ptr<const GammaTable> table;
    };
    std::map<int, Gamma> gammas;        // by wavelength, those that are not 1
    int lastSet = -1;                   // the wavelength whose limits or gamma the user has set last
    mutable std::vector<PanelSum> sums; // of the panels, for what is drawn next
    mutable SampleStore samples;
};

} // namespace viewer
