// Which files the loader of pictures takes as a bitmap.

#include "platform/bitmap_file.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

namespace qxterm::bitmap_file_test {
namespace {

std::string number(std::uint32_t value, int size) {
    std::string bytes;
    for (int i = 0; i < size; ++i) bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

struct Bitmap {
    std::uint32_t pixels = 54;
    std::uint32_t header = 40;
    std::int32_t width = 3;
    std::int32_t height = 2;
    std::uint32_t depth = 24;
    std::uint32_t compression = 0;
    std::uint32_t colours = 0;
    std::size_t behind = 24;  // bytes behind the header: two rows of nine, each filled to twelve

    [[nodiscard]] std::string file() const {
        return "BM" + number(0, 4) + number(0, 4) + number(pixels, 4) + number(header, 4) +
               number(static_cast<std::uint32_t>(width), 4) + number(static_cast<std::uint32_t>(height), 4) +
               number(1, 2) + number(depth, 2) + number(compression, 4) + std::string(12, '\0') +
               number(colours, 4) + number(0, 4) + std::string(behind, 'x');
    }
    [[nodiscard]] bool taken() const { return partsOfBitmap(file()).has_value(); }
};

TEST(BitmapFile, PartsOfATrueColourPicture) {
    const auto parts = partsOfBitmap(Bitmap{}.file());
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->description, 14U);
    EXPECT_EQ(parts->descriptionSize, 40U);
    EXPECT_EQ(parts->pixels, 54U);
    EXPECT_EQ(parts->pixelsSize, 24U);
}

TEST(BitmapFile, AByteTooFewOrOneMore) {
    EXPECT_FALSE((Bitmap{.behind = 23}.taken()));
    EXPECT_TRUE((Bitmap{.behind = 25}.taken()));
}

TEST(BitmapFile, RowsFromTheTopDownward) {
    EXPECT_TRUE((Bitmap{.height = -2}.taken()));
    EXPECT_FALSE((Bitmap{.height = -2, .behind = 23}.taken()));
}

TEST(BitmapFile, ColourTables) {
    // One row of eight points of one bit, behind two colours.
    EXPECT_TRUE((Bitmap{.pixels = 62, .width = 8, .height = 1, .depth = 1, .behind = 12}.taken()));
    EXPECT_FALSE((Bitmap{.pixels = 61, .width = 8, .height = 1, .depth = 1, .behind = 12}.taken()));
    EXPECT_FALSE((Bitmap{.pixels = 62, .width = 8, .height = 1, .depth = 1, .behind = 11}.taken()));
    EXPECT_FALSE(
        (Bitmap{.pixels = 66, .width = 8, .height = 1, .depth = 1, .colours = 3, .behind = 16}.taken()));
    // All 256, or ten of them.
    EXPECT_TRUE((Bitmap{.pixels = 54 + 1024, .width = 4, .height = 1, .depth = 8, .behind = 1028}.taken()));
    const auto ten = partsOfBitmap(
        Bitmap{.pixels = 94, .width = 4, .height = 1, .depth = 8, .colours = 10, .behind = 44}.file());
    ASSERT_TRUE(ten);
    EXPECT_EQ(ten->descriptionSize, 80U);
    // A table that a true-colour picture proposes for poorer screens.
    EXPECT_TRUE((Bitmap{.pixels = 58, .colours = 1, .behind = 28}.taken()));
    EXPECT_FALSE((Bitmap{.pixels = 54 + 4 * 257, .colours = 257, .behind = 2000}.taken()));
    EXPECT_FALSE((Bitmap{.pixels = 58, .colours = 0x40000000, .behind = 28}.taken()));
}

TEST(BitmapFile, WhatItIsNot) {
    EXPECT_FALSE(partsOfBitmap(""));
    EXPECT_FALSE(partsOfBitmap("BM"));
    EXPECT_FALSE(partsOfBitmap(Bitmap{.behind = 0}.file().substr(0, 53)));
    std::string other = Bitmap{}.file();
    other[1] = 'A';
    EXPECT_FALSE(partsOfBitmap(other));
    EXPECT_FALSE((Bitmap{.header = 12}.taken()));
    EXPECT_FALSE((Bitmap{.compression = 1}.taken()));
    EXPECT_FALSE((Bitmap{.depth = 0}.taken()));
    EXPECT_FALSE((Bitmap{.depth = 23}.taken()));
}

TEST(BitmapFile, SizesThatNobodyMeans) {
    for (const std::int32_t size : {0, 16385, 0x7FFFFFFF}) {
        EXPECT_FALSE((Bitmap{.width = size, .behind = 100000}.taken())) << size;
        EXPECT_FALSE((Bitmap{.height = size, .behind = 100000}.taken())) << size;
        EXPECT_FALSE((Bitmap{.height = -size, .behind = 100000}.taken())) << size;
    }
    EXPECT_FALSE((Bitmap{.width = -3}.taken()));
    EXPECT_FALSE((Bitmap{.height = INT32_MIN, .behind = 100000}.taken()));
    EXPECT_TRUE((Bitmap{.width = 16384, .height = 1, .depth = 32, .behind = 65536}.taken()));
    EXPECT_FALSE((Bitmap{.pixels = 0xFFFFFFFF}.taken()));
    EXPECT_FALSE((Bitmap{.pixels = 0}.taken()));
}

}  // namespace
}  // namespace qxterm::bitmap_file_test
