// SPDX-License-Identifier: MIT
// The document tree of OME-XML, for those who look at more of it than OmeMetadata.h tells.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace image {

// text is the parser's from now on and must live as long as the tree. Throws FormatError when it is not well
// formed or has more elements than metadata of its length have.
void loadOmeXml(std::string& text, pugi::xml_document& tree);

// Without the prefix of its namespace.
std::string_view localName(pugi::xml_node node);

} // namespace image
