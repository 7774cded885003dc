#include "common/stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace zpt::stream_test {
namespace {

class StreamTest : public testing::Test {
protected:
    void put(const std::string& text) {
        const std::span<char> room = stream->room();
        ASSERT_GE(room.size(), text.size());
        std::copy(text.begin(), text.end(), room.begin());
        stream->received(text.size());
    }
    [[nodiscard]] std::string waiting() const {
        const std::span<const char> bytes = stream->waiting();
        return {bytes.begin(), bytes.end()};
    }

    std::unique_ptr<Stream> stream = std::make_unique<Stream>();
};

TEST_F(StreamTest, BytesGoOutInTheOrderInWhichTheyCame) {
    put("abc");
    stream->sent(1);
    put("de");
    EXPECT_EQ(waiting(), "bcde");
    stream->sent(4);
    EXPECT_EQ(waiting(), "");
}

TEST_F(StreamTest, AFullStreamWantsNoInput) {
    put(std::string(Stream::capacity, 'x'));
    EXPECT_FALSE(stream->wantsInput());
    stream->sent(1);
    EXPECT_TRUE(stream->wantsInput());
    put("y");
    EXPECT_FALSE(stream->wantsInput());
    EXPECT_EQ(waiting(), std::string(Stream::capacity - 1, 'x') + 'y');
}

TEST_F(StreamTest, ThereIsRoomWheneverInputIsWanted) {
    for (int n = 0; n < 5000; ++n) {
        ASSERT_TRUE(stream->wantsInput());
        const std::size_t count = std::min<std::size_t>(stream->room().size(), 997);
        ASSERT_GT(count, 0U);
        stream->received(count);
        stream->sent(std::min<std::size_t>(stream->waiting().size(), 991));
        if (!stream->wantsInput()) stream->sent(stream->waiting().size());
    }
}

TEST_F(StreamTest, TheEndFollowsTheLastByteAndIsToldOnce) {
    put("abc");
    stream->endInput();
    EXPECT_FALSE(stream->wantsInput());
    EXPECT_FALSE(stream->takeEnd());
    stream->sent(3);
    EXPECT_FALSE(stream->over());
    EXPECT_TRUE(stream->takeEnd());
    EXPECT_FALSE(stream->takeEnd());
    EXPECT_TRUE(stream->over());
}

TEST_F(StreamTest, WhatIsAppendedGoesOutInItsTurn) {
    put("abc");
    stream->append("12");
    put("d");
    EXPECT_EQ(waiting(), "abc12d");
    EXPECT_EQ(stream->space(), Stream::capacity - 6);
}

TEST_F(StreamTest, ThereIsSpaceToAppendWhereverTheBytesStand) {
    put(std::string(Stream::capacity - 1, 'x'));
    stream->sent(Stream::capacity - 4);
    ASSERT_EQ(stream->space(), Stream::capacity - 3);
    stream->append(std::string(Stream::capacity - 3, 'y'));
    EXPECT_EQ(stream->space(), 0U);
    EXPECT_EQ(waiting(), "xxx" + std::string(Stream::capacity - 3, 'y'));
}

TEST_F(StreamTest, ItIsOpenUntilTheSenderEnds) {
    put("abc");
    EXPECT_TRUE(stream->open());
    stream->endInput();
    EXPECT_FALSE(stream->open());
}

}  // namespace
}  // namespace zpt::stream_test
