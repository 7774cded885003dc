#include "app/menus.h"

#include <string>

#include "app/dialogs/caption.h"
#include "app/dialogs/help_topics.h"
#include "app/dialogs/profile_dialog.h"
#include "app/dialogs/splash.h"
#include "app/edit_menu.h"
#include "config/profile_lists.h"
#include "config/profile_record.h"
#include "config/program_values.h"
#include "config/user_profile.h"
#include "connection/connection_manager.h"
#include "diag/checked.h"
#include "diag/error_trap.h"
#include "diag/format_msg.h"
#include "diag/numbers.h"
#include "platform/help.h"
#include "platform/main_form.h"
#include "platform/message_box.h"

namespace qxterm {
namespace {

// Entries of the Profile menu.
constexpr std::int16_t newItem = 0;
constexpr std::int16_t openItem = 1;
constexpr std::int16_t saveItem = 2;
constexpr std::int16_t saveAsItem = 3;
constexpr std::int16_t firstRecentItem = recentMenuBase + 1;
constexpr std::int16_t lastRecentItem = recentMenuBase + static_cast<std::int16_t>(mruCount);
constexpr std::int16_t exitItem = 10;
// Entries of the Help menu.
constexpr std::int16_t contentsItem = 0;
constexpr std::int16_t supportItem = 2;
constexpr std::int16_t aboutItem = 3;

}  // namespace

Menu mnuprofitem{frmterm,
                 "mnuprofitem",
                 "&Profile",
                 {{newItem, "&New"},
                  {openItem, "&Open..."},
                  {saveItem, "&Save"},
                  {saveAsItem, "Save &As..."},
                  {4, "-"},
                  {5, "", false},
                  {6, "", false},
                  {7, "", false},
                  {8, "", false},
                  {9, "-"},
                  {exitItem, "E&xit"}}};
Menu mnueditItem{frmterm,
                 "mnueditItem",
                 "&Edit",
                 {{editItem::copy, "&Copy"}, {editItem::paste, "&Paste"}, {editItem::clear, "C&lear"}}};

Menu mnuconnitem{frmterm,
                 "mnuconnitem",
                 "&Connection",
                 {{connectionItem::connect, "&Connect"},
                  {connectionItem::disconnect, "&Disconnect"},
                  {connectionItem::sendBreak, "Send &Break"},
                  {connectionItem::options, "&Options..."}}};
Menu mnuhelpItem{frmterm,
                 "mnuhelpItem",
                 "&Help",
                 {{contentsItem, "&Contents"},
                  {1, "-"},
                  {supportItem, "&Technical Support"},
                  {aboutItem, "&About Terminal Emulator"}}};

namespace {

/// One more than the number of the last "profileN" in list order, which need not be the highest: a new name
/// can be one that exists. Error 13 when such a name goes on with something else than a number.
std::int16_t numberForNewProfile() {
    constexpr std::string_view prefix = "profile";
    std::int16_t number = 0;
    for (const std::string& name : profileNames) {
        if (name.starts_with(prefix)) number = textToInt16(std::string_view{name}.substr(prefix.size()));
    }
    return toInt16(number + 1);
}

void newProfile() {
    promptSaveProfile();
    setProfileNew(true);
    setCurrentProfile(DefaultProfile);
    nameCurrentProfile(formatMsg("profile%1", std::to_string(numberForNewProfile())));
    setCaption();
    setDialogCancelled(false);
    mnuconnitem_Click(connectionItem::options);
    if (!g_bDialogCancelled) mnuprofItem_Click(saveAsItem);
    if (!g_bDialogCancelled) connectPort();
}

void saveProfile() {
    if (g_bProfileNew || CurrentProfile.name == untitledName) {
        mnuprofItem_Click(saveAsItem);
    } else {
        writeUserProf();
    }
}

void openRecent(std::size_t n) {
    promptSaveProfile();
    const std::string name = mruNames[n - 1];
    if (name != CurrentProfile.name) {
        readUserProf(name);
    } else {
        setCaption();
    }
    connectPort();
    reOrderProf(name);
}

}  // namespace

void enableProfileItems(bool enabled) {
    mnuprofitem.setEnabled(newItem, enabled);
    mnuprofitem.setEnabled(openItem, enabled);
    for (std::int16_t index = firstRecentItem; index <= lastRecentItem; ++index) {
        mnuprofitem.setEnabled(index, enabled);
    }
}

void mnuprofItem_Click(std::int16_t index) {
    trappedOnRequest("mnuprofItem_Click", [&] {
        switch (index) {
            case newItem: newProfile(); break;
            case openItem:
                promptSaveProfile();
                showOpenProfile();
                break;
            case saveItem: saveProfile(); break;
            case saveAsItem: showSaveProfileAs(); break;
            case exitItem: frmterm.unload(); break;
            default:
                if (index >= firstRecentItem && index <= lastRecentItem) {
                    openRecent(static_cast<std::size_t>(index - recentMenuBase));
                }
                break;
        }
    });
}

void mnuhelpItem_Click(std::int16_t index) {
    trapped("mnuhelpItem_Click", [&] {
        switch (index) {
            case contentsItem: help::show(g_sHelpFile, help::displayTopic, 0); break;
            case supportItem: help::show(g_sHelpFile, help::helpContext, helpTopic::technicalSupport); break;
            case aboutItem: showAbout(); break;
            default: break;
        }
    });
}

void promptSaveProfile() {
    trapped("promptSaveProfile", [] {
        if (!g_bProfileChanged) return;
        const std::string question = formatMsg("Save changes to profile: %1?", CurrentProfile.name);
        if (messageBox(question, programTitle, Buttons::yesNo, Icon::question) != Answer::yes) {
            setProfileChanged(false);
            setProfileNew(false);
        } else if (g_bProfileNew) {
            showSaveProfileAs();
        } else {
            writeUserProf();
        }
    });
}

}  // namespace qxterm
