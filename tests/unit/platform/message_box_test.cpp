#include "platform/headless/message_box.h"

#include "platform/headless_fixture.h"

namespace qxterm::test::message_box_test {
namespace {

class MessageBoxTest : public HeadlessTest {};

Answer ask(Buttons buttons) { return messageBox("text", "title", buttons, Icon::question); }

TEST_F(MessageBoxTest, RecordsTheBoxWithItsAnswer) {
    EXPECT_EQ(messageBox("Out of memory", "Title", Buttons::retryCancel, Icon::none), Answer::cancel);
    EXPECT_EQ(messageBox("Gone", "Title", Buttons::ok, Icon::information), Answer::ok);
    EXPECT_EQ(taken(),
              (Lines{"box title=Title text=Out of memory buttons=RetryCancel icon=none answer=Cancel",
                     "box title=Title text=Gone buttons=OK icon=information answer=OK"}));
}

TEST_F(MessageBoxTest, WithoutQueuedAnswersCancelIsTakenWhereThereIsOneElseNo) {
    EXPECT_EQ(ask(Buttons::ok), Answer::ok);
    EXPECT_EQ(ask(Buttons::okCancel), Answer::cancel);
    EXPECT_EQ(ask(Buttons::yesNoCancel), Answer::cancel);
    EXPECT_EQ(ask(Buttons::retryCancel), Answer::cancel);
    EXPECT_EQ(ask(Buttons::yesNo), Answer::no);
}

TEST_F(MessageBoxTest, QueuedAnswersAreTakenInOrder) {
    headless::queueAnswer(Answer::yes);
    headless::queueAnswer(Answer::retry);
    EXPECT_EQ(ask(Buttons::yesNo), Answer::yes);
    EXPECT_EQ(ask(Buttons::retryCancel), Answer::retry);
    EXPECT_EQ(ask(Buttons::yesNo), Answer::no);
}

TEST_F(MessageBoxTest, ABoxWithOkAloneUsesAnAnswerUp) {
    headless::queueAnswer(Answer::yes);
    EXPECT_EQ(ask(Buttons::ok), Answer::ok);
    EXPECT_EQ(ask(Buttons::yesNo), Answer::no);
}

TEST_F(MessageBoxTest, AnAnswerWithoutItsButtonGivesTheUsualOne) {
    headless::queueAnswer(Answer::retry);
    EXPECT_EQ(ask(Buttons::yesNoCancel), Answer::cancel);
}

TEST_F(MessageBoxTest, WhatHappensInABoxComesBeforeItsAnswerAndMayOpenAnother) {
    headless::queueAnswer(Answer::yes, [] {
        EXPECT_EQ(taken(), (Lines{"box title=title text=text buttons=YesNo icon=question answer=Yes"}));
        EXPECT_EQ(ask(Buttons::retryCancel), Answer::retry);
    });
    headless::queueAnswer(Answer::retry);
    EXPECT_EQ(ask(Buttons::yesNo), Answer::yes);
    EXPECT_EQ(taken(), (Lines{"box title=title text=text buttons=RetryCancel icon=question answer=Retry"}));
}

}  // namespace
}  // namespace qxterm::test::message_box_test
