// Where the dialogs and the splash picture stand: in the middle of the screen, and what is on them in its
// place.

#include <array>
#include <cstdint>

#include "app/dialogs/options_dialog.h"
#include "app/dialogs/profile_dialog.h"
#include "app/dialogs/splash.h"
#include "app/program_fixture.h"
#include "config/profile_record.h"
#include "connection/connection_manager.h"
#include "connection/status_dialog.h"
#include "platform/headless/display.h"

namespace qxterm::test::dialog_places_test {
namespace {

class DialogPlaces : public ProgramTest {
protected:
    using Place = std::array<std::int32_t, 4>;  ///< left, top, width, height; twips
    template <class Thing>
    static Place placeOf(const Thing& thing) {
        const TwipsRect place = thing.place();
        return {place.left, place.top, place.width, place.height};
    }
    static Place placeOn(Form& form, const char* name) { return placeOf(find<Control>(form, name)); }
    static void startAt(std::int32_t width, std::int32_t height, std::int16_t twips) {
        headless::setDisplay(width, height, twips);
        start();
    }
};

// In memory a dialog is 400 x 300 pixels: on 1024 x 768 it leaves 312 at each side, 234 above and below.
TEST_F(DialogPlaces, DialogsOpenInTheMiddleOfTheScreen) {
    startAt(1024, 768, 15);
    const Place middle{312 * 15, 234 * 15, 400 * 15, 300 * 15};
    then([&] {
        EXPECT_EQ(placeOf(frmOptions), middle);
        click(frmOptions, "cmdCancel");
    });
    frmOptions.showModal();
    frmprof.load();
    EXPECT_EQ(placeOf(frmprof), middle);
    frmprof.unload();
    CurrentProfile.connectType = connectType::net;
    CurrentProfile.host = "krv";
    then([&] {
        EXPECT_EQ(placeOf(frmConn), middle);
        click(frmConn, "cmdCancel");
    });
    connectPort();
}

// The splash picture is 480 x 320 pixels, and so is its window.
TEST_F(DialogPlaces, TheSplashPictureFillsItsWindow) {
    startAt(1280, 1024, 12);
    frmSplash.load();
    EXPECT_EQ(placeOf(frmSplash), (Place{400 * 12, 352 * 12, 480 * 12, 320 * 12}));
    // The two lines of text in the lower left corner, dark blue; OK in the lower right one.
    for (const auto& [name, top] : {std::pair{"lblVersion", 283}, std::pair{"lblNotice", 301}}) {
        EXPECT_EQ(placeOn(frmSplash, name)[0], 55 * 12) << name;
        EXPECT_EQ(placeOn(frmSplash, name)[1], top * 12) << name;
        const Rgb colour = find<Label>(frmSplash, name).textColour;
        EXPECT_EQ(colour.red, 0) << name;
        EXPECT_EQ(colour.green, 64) << name;
        EXPECT_EQ(colour.blue, 128) << name;
    }
    EXPECT_EQ(placeOn(frmSplash, "cmdOK"), (Place{390 * 12, 275 * 12, 75 * 12, 23 * 12}));
    frmSplash.unload();
}

}  // namespace
}  // namespace qxterm::test::dialog_places_test
