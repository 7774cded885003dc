#include <gmock/gmock.h>

#include "picture_svg.h"
#include "picture_text.h"

namespace qxterm::test::picture_files_test {
namespace {

using scenario::pictureAsSvg;
using scenario::pictureAsText;
using testing::HasSubstr;
using testing::Not;

std::string lineOf(const std::string& text, int row) {
    std::size_t at = 0;
    for (; row > 0; --row) at = text.find('\n', at) + 1;
    return text.substr(at, text.find('\n', at) - at);
}

constexpr TextLook glyphs{7, 0, false, TextFont::terminal};

TEST(PictureAsText, HasEachRowAndTheCursor) {
    Picture picture;
    picture.drawText(0, 2, "top", {});
    picture.drawText(24, 0, "status", {});
    picture.invert({5, 3, 1, 1}, Inversion::cursor);
    const std::string text = pictureAsText(picture);
    EXPECT_EQ(lineOf(text, 0), "  top");
    EXPECT_EQ(lineOf(text, 1), "");
    EXPECT_EQ(lineOf(text, 24), "status");
    EXPECT_EQ(lineOf(text, 25), "[cursor: column 6, row 4]");
}

TEST(PictureAsText, WritesGlyphsAndTheCodePageAsUtf8) {
    Picture picture;
    picture.drawText(0, 0, "\x12\x17\x11\x1e\x15", glyphs);  // l q k x o
    picture.drawText(1, 0, "lqk", glyphs);                   // letters of that font
    picture.drawText(2, 0, "\xe9\x80\x81\x7f", {});
    const std::string text = pictureAsText(picture);
    EXPECT_EQ(lineOf(text, 0), "\u250c\u2500\u2510\u2502\u23ba");
    EXPECT_EQ(lineOf(text, 1), "lqk");
    EXPECT_EQ(lineOf(text, 2), "\u00e9\u20ac\ufffd\ufffd");
    EXPECT_EQ(lineOf(text, 25), "[no cursor]");
}

TEST(PictureAsSvg, PlacesEachCharacterInItsColour) {
    Picture picture;
    picture.drawText(2, 3, "ab c", {1, 4, true, TextFont::normal});
    const std::string svg = pictureAsSvg(picture, 0);
    EXPECT_THAT(svg, HasSubstr(R"(<rect x="27" y="36" width="36" height="18" fill="#00f"/>)"));
    EXPECT_THAT(svg, HasSubstr(R"(<text y="50" x="27 36" fill="#f00" font-weight="bold">ab</text>)"));
    EXPECT_THAT(svg, HasSubstr(R"(<text y="50" x="54" fill="#f00" font-weight="bold">c</text>)"));
}

TEST(PictureAsSvg, EscapesWhatMeansSomethingInXml) {
    Picture picture;
    picture.drawText(0, 0, "<&>", {});
    EXPECT_THAT(pictureAsSvg(picture, 0), HasSubstr(">&lt;&amp;&gt;</text>"));
}

TEST(PictureAsSvg, DrawsLinesAsStrokesInTheTextColour) {
    Picture picture;
    picture.drawText(0, 0, "\x12", glyphs);  // l: from the middle down and to the right
    EXPECT_THAT(pictureAsSvg(picture, 0), HasSubstr(R"(<path d="M4.5 9.5V18M4.5 9.5H9" stroke="#fff"/>)"));
    EXPECT_THAT(pictureAsSvg(picture, 0), Not(HasSubstr("<text")));
}

TEST(PictureAsSvg, UnderlinesAreStrokes) {
    Picture picture;
    picture.drawText(1, 1, "u", {2, 0, false, TextFont::normal});
    picture.underline(1, 1, 1);
    EXPECT_THAT(pictureAsSvg(picture, 0), HasSubstr(R"(<path d="M9 34.5h9" stroke="#0f0"/>)"));
}

TEST(PictureAsSvg, InvertsCursorAndSelection) {
    Picture picture;
    picture.drawText(0, 0, "xy", {3, 4, false, TextFont::normal});
    picture.invert({0, 0, 1, 1}, Inversion::cursor);
    picture.invert({1, 0, 1, 1}, Inversion::underlineCursor);
    const std::string svg = pictureAsSvg(picture, 0);
    EXPECT_THAT(svg, HasSubstr(R"(<rect x="0" y="0" width="9" height="18" fill="#ff0"/>)"));
    EXPECT_THAT(svg, HasSubstr(R"(x="0" fill="#00f">x</text>)"));
    EXPECT_THAT(svg, HasSubstr(R"(<rect x="9" y="16" width="9" height="2" fill="#ff0"/>)"));
}

TEST(PictureAsSvg, ShowsTheBackgroundWhereNothingWasDrawn) {
    EXPECT_THAT(pictureAsSvg(Picture{}, 4),
                HasSubstr(R"(<rect x="0" y="0" width="720" height="18" fill="#00f"/>)"));
}

}  // namespace
}  // namespace qxterm::test::picture_files_test
