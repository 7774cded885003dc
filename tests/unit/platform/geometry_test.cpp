#include "platform/geometry.h"

#include <gtest/gtest.h>

namespace qxterm::geometry_test {
namespace {

TEST(PixelRect, IsEmptyWithoutWidthOrHeight) {
    EXPECT_TRUE((PixelRect{}.empty()));
    EXPECT_TRUE((PixelRect{3, 1, 3, 9}.empty()));
    EXPECT_TRUE((PixelRect{4, 1, 3, 9}.empty()));
    EXPECT_TRUE((PixelRect{1, 5, 9, 5}.empty()));
    EXPECT_TRUE((PixelRect{1, 6, 9, 5}.empty()));
    EXPECT_FALSE((PixelRect{1, 5, 2, 6}.empty()));
}

}  // namespace
}  // namespace qxterm::geometry_test
