#include <tuple>

#include "platform/controls.h"
#include "platform/display.h"
#include "platform/event_loop.h"
#include "platform/headless/event_loop.h"
#include "platform/headless/modal.h"
#include "platform/headless/user.h"
#include "platform/headless_fixture.h"
#include "platform/menu.h"
#include "platform/picture_box.h"

namespace qxterm::test::forms_test {
namespace {

constinit Form mainForm{"frmMain", FormKind::mainWindow, 1, "designed"};
constinit Form dialog{"frmDialog", FormKind::dialog, 2, "dialog"};
Label label{dialog, "lblText", 10, {.caption = "designed"}};
Frame upper{dialog, "frameUpper", 20};
OptionButton one{dialog, "optOne", 21};
OptionButton two{dialog, "optTwo", 22};
Frame lower{dialog, "frameLower", 30};
OptionButton three{dialog, "optThree", 31};
TextBox box{dialog, "txtName", 40};
Button button{dialog, "cmdGo", 41};
Button hidden{dialog, "cmdHidden", 42, {.visible = false}};
CheckBox check{dialog, "chkAuto", 43};
ListBox list{dialog, "lstNames", 44};

class FormsTest : public HeadlessTest {
protected:
    void SetUp() override {
        HeadlessTest::SetUp();
        for (Form* form : {&mainForm, &dialog}) {
            form->onLoad.disconnect();
            form->onUnload.disconnect();
            form->onQueryUnload.disconnect();
        }
        button.onClick.connect("click", [] { lines.emplace_back("click"); });
        box.onChange.connect("change", [] { lines.push_back("change " + box.text()); });
        box.onKeyPress.disconnect();
    }
};

TEST_F(FormsTest, TellsLoadingShowingAndUnloadingInOrder) {
    dialog.onLoad.connect("load", [] {
        lines.emplace_back("loading");
        label.setCaption("while loading");
        dialog.setCaption("dialog");  // as designed: no change
        dialog.setCaption("other");
    });
    dialog.onUnload.connect("unload", [] { lines.emplace_back("unloading"); });
    label.setCaption("not loaded yet");
    dialog.show();
    label.setCaption("shown");
    label.setCaption("shown");
    dialog.unload();
    EXPECT_EQ(taken(),
              (Lines{"loading", "label name=lblText text=while loading", "caption name=frmDialog text=other",
                     "window name=frmDialog op=show", "label name=lblText text=shown", "unloading",
                     "window name=frmDialog op=unload"}));
    EXPECT_EQ(dialog.native, nullptr);
}

TEST_F(FormsTest, TheProgramEndsWithItsMainWindow) {
    mainForm.show();
    EXPECT_FALSE(eventLoop::ending());
    mainForm.unload();
    EXPECT_TRUE(eventLoop::ending());
    EXPECT_EQ(taken(), (Lines{"window name=frmMain op=show", "window name=frmMain op=unload", "exit"}));
}

TEST_F(FormsTest, AModalFormTakesEventsUntilItIsUnloaded) {
    static int events = 0;
    events = 0;
    headless::setNextEvent([] {
        lines.push_back("event " + std::to_string(++events) + " in " + headless::modalForms().back()->name());
        if (events == 2) dialog.unload();
        return true;
    });
    dialog.showModal();
    EXPECT_EQ(taken(), (Lines{"window name=frmDialog op=modal", "event 1 in frmDialog",
                              "event 2 in frmDialog", "window name=frmDialog op=unload"}));
    EXPECT_TRUE(headless::modalForms().empty());
}

TEST_F(FormsTest, AModalFormWithoutFurtherEventsIsLeftByEndOfScript) {
    headless::setNextEvent([] { return false; });
    EXPECT_THROW(dialog.showModal(), headless::EndOfScript);
    EXPECT_TRUE(headless::modalForms().empty());
}

TEST_F(FormsTest, TheEndIsToldOnceTheModalLoopsHaveEnded) {
    mainForm.show();
    headless::setNextEvent([] {
        mainForm.unload();
        return true;
    });
    taken();
    dialog.showModal();
    EXPECT_EQ(taken(), (Lines{"window name=frmDialog op=modal", "window name=frmMain op=unload", "exit"}));
}

TEST_F(FormsTest, EndlessNestingOfModalFormsIsCutOff) {
    headless::setNextEvent([] {
        dialog.showModal();
        return true;
    });
    dialog.showModal();
    EXPECT_FALSE(dialog.loaded());
    EXPECT_EQ(taken().size(), headless::deepestModal + 2);  // the one too many was shown, too
}

TEST_F(FormsTest, TheRunEndsWithoutHandlersAndRecords) {
    mainForm.onUnload.connect("unload", [] { lines.emplace_back("unloading"); });
    mainForm.show();
    taken();
    headless::endRun();
    EXPECT_FALSE(mainForm.loaded());
    EXPECT_FALSE(eventLoop::ending());
    EXPECT_TRUE(taken().empty());
    EXPECT_TRUE(mainForm.onUnload.connected());
}

TEST_F(FormsTest, WindowsStandOnWholePixels) {
    mainForm.load();
    mainForm.move({1207, 899, 3000, 3000});
    EXPECT_EQ(mainForm.normalPosition().left, 80);
    EXPECT_EQ(mainForm.normalPosition().top, 59);
    EXPECT_EQ(mainForm.place().left, 1200);
    mainForm.setClientSize(4500, 6000);
    EXPECT_EQ(mainForm.place().width, 4500);
    EXPECT_EQ(mainForm.place().height, 6000);
}

TEST_F(FormsTest, CentringUsesTheDisplay) {
    mainForm.load();
    mainForm.setClientSize(15 * 624, 15 * 368);
    Glb_CentreForm(mainForm);
    EXPECT_EQ(mainForm.normalPosition().left, 200);  // (1024 - 624) / 2
    EXPECT_EQ(mainForm.normalPosition().top, 200);   // (768 - 368) / 2
}

TEST_F(FormsTest, SelectingAnOptionDeselectsTheOthersOfItsFrame) {
    dialog.show();
    three.setValue(true);
    EXPECT_TRUE(headless::click(one));
    EXPECT_TRUE(headless::click(two));
    EXPECT_FALSE(one.value());
    EXPECT_TRUE(two.value());
    EXPECT_TRUE(three.value());
}

TEST_F(FormsTest, WhatIsHiddenOrDisabledCannotBeClicked) {
    EXPECT_FALSE(headless::click(button));  // its form is not there
    dialog.show();
    taken();
    EXPECT_FALSE(headless::click(hidden));
    EXPECT_TRUE(headless::click(button));
    button.setEnabled(false);
    EXPECT_FALSE(headless::click(button));
    EXPECT_EQ(taken(), (Lines{"click"}));
}

TEST_F(FormsTest, WhatStoodOnAHiddenTabIsSeenWhenTheFormLoadsAgain) {
    dialog.show();
    button.setContainerShown(false);
    EXPECT_FALSE(button.seen());
    dialog.unload();
    dialog.load();
    EXPECT_TRUE(button.seen());
}

TEST_F(FormsTest, ACheckBoxChangesWithEachClick) {
    dialog.show();
    EXPECT_TRUE(headless::click(check));
    EXPECT_TRUE(check.value());
    EXPECT_TRUE(headless::click(check));
    EXPECT_FALSE(check.value());
}

TEST_F(FormsTest, KeysPassTheBoxesHandlerBeforeTheyAreTyped) {
    dialog.show();
    taken();
    box.onKeyPress.connect("key", [](std::int16_t& code) {
        if (code == ' ') code = 0;
    });
    for (const char c : std::string_view{"a b\b\r"}) EXPECT_TRUE(headless::press(box, c));
    EXPECT_EQ(taken(), (Lines{"change a", "change ab", "change a"}));
}

TEST_F(FormsTest, ChoosingAnEntryClicksAndDoubleClicks) {
    list.onClick.connect("click", [] { lines.push_back("list " + std::string{list.chosenText()}); });
    list.onDblClick.connect("dblclick", [] { lines.emplace_back("double"); });
    dialog.show();
    list.addItem("first");
    list.addItem("second");
    taken();
    EXPECT_TRUE(headless::choose(list, 1, false));
    EXPECT_TRUE(headless::choose(list, 0, true));
    EXPECT_EQ(taken(), (Lines{"list second", "list first", "double"}));
}

TEST_F(FormsTest, MenusRefuseSeparatorsAndWhatCannotBeUsed) {
    Menu menu{mainForm, "mnuTest", "&Test", {{0, "&Open"}, {1, "-"}, {2, "&Close"}, {3, "&Hidden", false}}};
    menu.onClick.connect("menu",
                         [](std::int16_t index) { lines.push_back("menu " + std::to_string(index)); });
    menu.onOpen.connect("open", [] { Menu::all().back()->setEnabled(2, false); });
    EXPECT_FALSE(headless::chooseMenu(menu, 0));  // the window is not there
    mainForm.show();
    taken();
    EXPECT_TRUE(headless::chooseMenu(menu, 0));
    EXPECT_FALSE(headless::chooseMenu(menu, 1));
    EXPECT_FALSE(headless::chooseMenu(menu, 2));  // disabled when the menu opens
    EXPECT_FALSE(headless::chooseMenu(menu, 3));
    EXPECT_EQ(taken(), (Lines{"menu 0"}));
    EXPECT_THROW((void)headless::chooseMenu(menu, 4), RunTimeError);
}

TEST_F(FormsTest, YieldingRunsTheHookThenPaints) {
    headless::yieldHook = [] { lines.emplace_back("hook"); };
    eventLoop::doEvents();
    EXPECT_EQ(taken(), (Lines{"hook"}));
}

TEST_F(FormsTest, TheActivationMessageFollowsTheEventThatAttachesItsHook) {
    mainForm.onActivate.connect("activate", [] {
        lines.emplace_back("activate");
        mainForm.attachMessageHook(true);
    });
    mainForm.onDeactivate.connect("deactivate", [] {
        lines.emplace_back("deactivate");
        mainForm.attachMessageHook(false);
    });
    mainForm.onActivateMessage.connect(
        "message", [](std::int16_t how) { lines.push_back("message " + std::to_string(how)); });
    mainForm.show();
    headless::deactivate(mainForm);
    headless::activate(mainForm);
    EXPECT_EQ(taken(), (Lines{"window name=frmMain op=show", "activate", "message 1", "message 0",
                              "deactivate", "activate", "message 1"}));
}

// As the system's own are before anybody has set anything.
TEST_F(FormsTest, ABarBeginsAtNothingAndStepsByOne) {
    const ScrollBar bar{dialog, "vscNew", 45};
    EXPECT_EQ((std::tuple{bar.minimum(), bar.value(), bar.maximum()}), (std::tuple{0, 0, 0}));
    EXPECT_EQ((std::tuple{bar.smallChange(), bar.largeChange()}), (std::tuple{1, 1}));
    const PictureBox picture{dialog, "picNew", 46};
    EXPECT_EQ(picture.background(), 0);
}

TEST_F(FormsTest, AListChoosesAnEntryOrNone) {
    list.clear();
    list.addItem("one");
    for (const int index : {-2, 1, 99}) EXPECT_THROW(list.setListIndex(index), RunTimeError) << index;
    list.setListIndex(0);
    EXPECT_EQ(list.listIndex(), 0);
    list.setListIndex(-1);
    EXPECT_EQ(list.listIndex(), -1);
    list.setListIndex(0);
    list.clear();
    EXPECT_EQ(list.listIndex(), -1);
}

}  // namespace
}  // namespace qxterm::test::forms_test
