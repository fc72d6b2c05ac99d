// SPDX-License-Identifier: MIT
// Rows of metadata as text to be taken along: a line for each, indented by depth, name and value parted by a
// tabulator. Pure.
#pragma once

#include "platform/image/MetadataTree.h"

#include <string>

namespace viewer {

// A row and all that is below it; empty where there is no such row.
std::string rowText(const image::MetadataTree& tree, int row);

// All rows whose name or value holds the text, in either case, and the rows above them. Empty: all rows.
std::string foundText(const image::MetadataTree& tree, const std::string& wanted);

} // namespace viewer
