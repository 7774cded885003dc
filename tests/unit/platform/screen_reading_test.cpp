#include "platform/screen_reading.h"

#include <gmock/gmock.h>

namespace qxterm::test::screen_reading_test {
namespace {

ScreenReading withRow(std::size_t row, const char* text) {
    ScreenReading reading;
    reading.rows[row] = text;
    return reading;
}

TEST(ChangePacer, FirstLookFindsNothingNew) {
    ChangePacer pacer;
    EXPECT_EQ(pacer.waitFrom(1000), 0);
    const ScreenChanges changes = pacer.look(withRow(3, "three"), 1000);
    EXPECT_TRUE(changes.rows.none());
    EXPECT_FALSE(changes.selection);
}

TEST(ChangePacer, NamesTheRowsThatDiffer) {
    ChangePacer pacer;
    (void)pacer.look(withRow(3, "three"), 1000);
    const ScreenChanges changes = pacer.look(withRow(24, "status"), 2000);
    EXPECT_EQ(changes.rows.count(), 2U);
    EXPECT_TRUE(changes.rows[3]);
    EXPECT_TRUE(changes.rows[24]);
    EXPECT_FALSE(changes.selection);
    EXPECT_TRUE(pacer.look(withRow(24, "status"), 3000).rows.none());
}

TEST(ChangePacer, TellsOfTheSelection) {
    ChangePacer pacer;
    ScreenReading reading;
    (void)pacer.look(reading, 0);
    reading.selected[7] = {2, 5};
    const ScreenChanges changes = pacer.look(reading, 1000);
    EXPECT_TRUE(changes.selection);
    EXPECT_TRUE(changes.rows.none());
}

TEST(ChangePacer, WaitsLongBehindManyRowsAndShortlyBehindFew) {
    ChangePacer pacer;
    (void)pacer.look({}, 1000);
    EXPECT_EQ(pacer.waitFrom(1000), 50);
    EXPECT_EQ(pacer.waitFrom(1049), 1);
    EXPECT_EQ(pacer.waitFrom(1050), 0);
    ScreenReading many;
    many.rows[0] = many.rows[1] = many.rows[2] = "x";
    (void)pacer.look(many, 2000);
    EXPECT_EQ(pacer.waitFrom(2000), 250);
    many.rows[0] = many.rows[1] = "y";
    (void)pacer.look(many, 2250);
    EXPECT_EQ(pacer.waitFrom(2250), 50);
}

TEST(ChangePacer, ForgetsWhatItHasSeen) {
    ChangePacer pacer;
    (void)pacer.look(withRow(3, "three"), 1000);
    pacer.forget();
    EXPECT_TRUE(pacer.look(withRow(3, "else"), 2000).rows.none());
    EXPECT_TRUE(pacer.look(withRow(3, "again"), 3000).rows[3]);
}

/// Whatever flows for ten seconds: events a second stay few.
TEST(ChangePacer, BoundsWhatAFloodAnnounces) {
    ChangePacer pacer;
    std::size_t told = 0;
    for (std::int64_t now = 0; now < 10000; ++now) {
        if (pacer.waitFrom(now) > 0) continue;
        ScreenReading reading;
        for (std::string& row : reading.rows) row = std::to_string(now);
        told += pacer.look(reading, now).rows.count();
    }
    EXPECT_LE(told, 25U * 41U);
    EXPECT_GE(told, 25U * 38U);
}

}  // namespace
}  // namespace qxterm::test::screen_reading_test
