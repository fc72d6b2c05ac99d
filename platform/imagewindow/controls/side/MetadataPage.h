// SPDX-License-Identifier: MIT
// The page of the side panel with all that the file tells about the image: searched, read in full and taken
// along as text. Read from the file when the page is first shown, and again when the file is another. Owned
// by the panel; the widgets go with their parent.
#pragma once

#include "platform/image/MetadataTree.h"
#include "platform/imagewindow/controls/TextOffer.h"

#include <X11/Intrinsic.h>

#include <optional>
#include <string>
#include <vector>

namespace viewer {

struct Desk;

class MetadataPage {
public:
    MetadataPage(Widget parent, Desk& desk);
    MetadataPage(const MetadataPage&) = delete;
    MetadataPage& operator=(const MetadataPage&) = delete;

    Widget widget() const { return form; }
    void refresh();

private:
    void makeHead();
    void makeRows();
    void read();
    void fill();
    void search();
    void selected(int row, Time time);
    void copy(Time time);
    std::string typed() const;
    std::vector<int> selectedRows() const;

    Desk& desk;
    Widget form = nullptr, head = nullptr, wanted = nullptr, outliner = nullptr, value = nullptr;
    image::MetadataTree tree;
    std::optional<TextOffer> offer;
    int version = -1; // of the file that was read
};

} // namespace viewer
