// SPDX-License-Identifier: MIT
#include "platform/imagewindow/files/Netpbm.h"

#include <gtest/gtest.h>

#include <span>
#include <string>
#include <string_view>
#include <vector>

using namespace viewer;

namespace {

std::span<const std::byte> bytesOf(std::string_view text)
{
    return std::as_bytes(std::span(text));
}

std::vector<std::string> imagesOf(NetpbmStream& stream)
{
    std::vector<std::string> list;
    while (const auto image = stream.next())
        list.emplace_back(reinterpret_cast<const char*>(image->data()), image->size());
    return list;
}

} // namespace

// However the bytes are cut by the pipe, the images are the same.
TEST(Netpbm, SeparatesImagesAtAnyCut)
{
    const std::string text = "P5 2 2 255\nabcd"
                             "P5\n# made by hand P6 9 9\n2 2\n# 7\n255\n#efg"
                             "\nP5\t2\r\n2 255 \nxyz";
    for (std::size_t step = 1; step <= text.size(); ++step) {
        NetpbmStream stream;
        for (std::size_t at = 0; at < text.size(); at += step)
            stream.feed(bytesOf(std::string_view(text).substr(at, step)));
        EXPECT_EQ(imagesOf(stream), (std::vector<std::string>{"abcd", "#efg", "\nxyz"})) << step;
        EXPECT_FALSE(stream.insideImage());
    }
}

TEST(Netpbm, KnowsSizeAndKind)
{
    const struct {
        const char* header;
        StreamFormat format;
    } rows[] = {
        {"P5 3 2 255\n", {3, 2, 1, 1}},
        {"P5 3 2 256\n", {3, 2, 1, 2}},
        {"P6 30 20 65535 ", {30, 20, 3, 2}},
        {"P6 1 1 1\n", {1, 1, 3, 1}},
    };
    for (const auto& row : rows) {
        NetpbmStream stream;
        stream.feed(bytesOf(row.header));
        ASSERT_TRUE(stream.format()) << row.header;
        EXPECT_EQ(*stream.format(), row.format) << row.header;
        EXPECT_TRUE(stream.insideImage());
        EXPECT_FALSE(stream.next());
    }
}

TEST(Netpbm, RefusesWhatIsNoSuchStream)
{
    using namespace std::string_literals;
    for (const std::string& text :
         {"II*\1"s, "P2 1 1 255\n"s, "P5 0 1 255\n"s, "P5 1 -1 255\n"s, "P5 1 1 65536\n"s, "P5 1x 1 255\n"s,
          "P5 1000000 1000000 255\n"s, "P5 1 1 255\naP5 2 1 255\n"s, "P5 1 1 255\naP6 1 1 255\n"s,
          "P5 #" + std::string(10000, 'x')}) {
        NetpbmStream stream;
        EXPECT_THROW(stream.feed(bytesOf(text)), StreamError) << text.substr(0, 30);
    }
}
