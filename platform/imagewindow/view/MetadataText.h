// SPDX-License-Identifier: MIT
// Rows of metadata as text to be taken along: a line for each, indented by depth, name and value parted by a
// tabulator. Pure.
#pragma once

#include "platform/image/MetadataTree.h"

#include <string>
#include <vector>

namespace viewer {

// These rows, each with all that is below it and none twice; empty where there are no such rows.
std::string rowsText(const image::MetadataTree& tree, const std::vector<int>& rows);

// All rows whose name or value holds the text, in either case, and the rows above them. Empty: all rows.
std::string foundText(const image::MetadataTree& tree, const std::string& wanted);

} // namespace viewer
