#include "app/dialogs/splash.h"

#include "config/program_values.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "platform/controls.h"
#include "platform/display.h"
#include "platform/resource_ids.h"

namespace qxterm {

constinit Form frmSplash{"frmSplash", FormKind::picture, IDD_FRMSPLASH, ""};

namespace {

constexpr const char* pictureFile = "tmspl16.dat";
constexpr const char* notice = "Copyright (c) the qxterm developers. Free software under the MIT licence.";
constexpr Rgb textColour{0, 64, 128};

/// On the picture, in pixels.
struct Spot {
    std::int32_t left;
    std::int32_t top;
};
constexpr Spot versionSpot{55, 283};
constexpr Spot noticeSpot{55, 301};
constexpr Spot okSpot{390, 275};
constexpr std::int32_t okWidth = 75;
constexpr std::int32_t okHeight = 23;

Image picSplash{frmSplash, "picSplash", IDC_PICSPLASH};
Label lblVersion{frmSplash, "lblVersion", IDC_LBLVERSION};
Label lblNotice{frmSplash, "lblNotice", IDC_LBLNOTICE};
Button cmdOK{frmSplash, "cmdOK", IDC_SPLASH_OK, {.caption = "OK", .visible = false}};

void moveTo(Control& control, const Spot& spot) {
    TwipsRect place = control.place();
    place.left = spot.left * display::twipsPerPixelX();
    place.top = spot.top * display::twipsPerPixelY();
    control.move(place);
}

/// The button keeps its size on the picture, whatever the resolution.
void moveButton() {
    cmdOK.move({okSpot.left * display::twipsPerPixelX(), okSpot.top * display::twipsPerPixelY(),
                okWidth * display::twipsPerPixelX(), okHeight * display::twipsPerPixelY()});
}

void Form_Load() {
    trapped("Form_Load", [] {
        picSplash.loadPicture(besideProgram(pictureFile));
        const TwipsRect picture = picSplash.place();
        frmSplash.setClientSize(picture.width, picture.height);
        moveTo(lblVersion, versionSpot);
        lblVersion.setTextColour(textColour);
        lblNotice.setTextColour(textColour);
        moveTo(lblNotice, noticeSpot);
        moveButton();
        Glb_CentreForm(frmSplash);
        lblVersion.setCaption(formatMsg("Version %1.%2.%3.%4", "19", "2", "NC", "06"));
        lblNotice.setCaption(notice);
    });
}

void cmdOK_Click() {
    trapped("cmdOK_Click", [] { frmSplash.unload(); });
}

}  // namespace

void showAbout() {
    trapped("showAbout", [] { frmSplash.showModal([] { cmdOK.setVisible(true); }); });
}

void connectSplash() {
    frmSplash.onLoad.connect("Form_Load", Form_Load);
    cmdOK.onClick.connect("cmdOK_Click", cmdOK_Click);
}

}  // namespace qxterm
