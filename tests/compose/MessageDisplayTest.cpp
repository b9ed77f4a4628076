#include "ComposeBench.h"

#include "support/PaintCount.h"
#include "support/UncountedLeaks.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QProxyStyle>
#include <QRegularExpression>

namespace {

const QColor DarkRed(128, 0, 0);

class MessageDisplayTest : public ComposeBench {};

TEST_F(MessageDisplayTest, AnEmptyMessageWithoutSignatureAndTailHas156CharactersLeft) {
    EXPECT_EQ(Area->GetTailText(), QStringLiteral(" - "));
    EXPECT_EQ(Used(), QStringLiteral("0"));
    EXPECT_EQ(Parts(), QStringLiteral("1"));
    EXPECT_EQ(Left(), QStringLiteral("156"));
    EXPECT_EQ(pbMsgSize().Maximum(), 156);
    EXPECT_EQ(pbMsgSize().Position(), 0);
}

TEST_F(MessageDisplayTest, AConfiguredSizeOf0Or100BehavesAs160) {
    for (const qint16 size : {qint16(0), qint16(100)}) {
        Office.OutboxValues.MaxMessageSize = size;
        Area->UpdateStateDisplay();
        EXPECT_EQ(Office.OutboxValues.MaxMessageSize, 160);
        EXPECT_EQ(Left(), QStringLiteral("156"));
    }
}

TEST_F(MessageDisplayTest, ASystemRowBelow160ReadFromTheOutboxBehavesAs160) {
    for (const char* size : {"0", "100"}) {
        Office.ExecuteOnOutbox(QStringLiteral("UPDATE System SET sysSMSMaxMessageSize = ") +
                               QString::fromLatin1(size));
        mdlOutbox::OpenOutbox(Office.Outbox());
        Area->InitMessageSize();
        Area->UpdateStateDisplay();
        EXPECT_EQ(txtMessage().MaxLength(), 160);
        EXPECT_EQ(pbMsgSize().Maximum(), 156);
    }
}

TEST_F(MessageDisplayTest, ALargerConfiguredSizeIsTheInputLimitAndTheSpace) {
    SetMaxMessageSize(480);
    EXPECT_EQ(txtMessage().MaxLength(), 480);
    EXPECT_EQ(Left(), QStringLiteral("476"));
}

TEST_F(MessageDisplayTest, EveryTypedCharacterIsCountedAtOnce) {
    ShowWindow();
    QTest::keyClicks(&txtMessage(), QStringLiteral("Hello ["));
    EXPECT_EQ(Used(), QStringLiteral("8"));
    EXPECT_EQ(Left(), QStringLiteral("148"));
    EXPECT_EQ(pbMsgSize().Position(), 8);
}

TEST_F(MessageDisplayTest, TheSignatureStandsTrimmedInTheTailText) {
    txtEndWidth().setText(QStringLiteral("  Front Desk "));
    EXPECT_EQ(Area->GetTailText(), QStringLiteral(": Front Desk - "));
    EXPECT_EQ(Left(), QString::number(160 - 16));
    SetTails({QStringLiteral("Hartley House")}, {0});
    EXPECT_EQ(Area->GetTailText(), QStringLiteral(": Front Desk - Hartley House"));
    txtEndWidth().setText(QStringLiteral("   "));
    EXPECT_EQ(Area->GetTailText(), QStringLiteral(" - Hartley House"));
}

TEST_F(MessageDisplayTest, PastingTwoHundredBracketsCutsThemTo78AndBeeps) {
    ShowWindow();
    QMimeData data;
    data.setText(QString(200, u'['));
    QApplication::clipboard()->setText(data.text());
    txtMessage().paste();
    EXPECT_EQ(txtMessage().Text(), QString(78, u'['));
    EXPECT_EQ(Used(), QStringLiteral("156"));
    EXPECT_EQ(Left(), QStringLiteral("0"));
    EXPECT_GT(Office.Sound.Beeps, 0);
}

TEST_F(MessageDisplayTest, ATextTooLongToBeMeasuredCountsAsNoneInEveryNumber) {
    SetMaxMessageSize(0);  // the office's System table has no row: no limit on what is pasted
    txtMessage().SetText(QStringLiteral("Hello"));
    ASSERT_EQ(Used(), QStringLiteral("5"));
    QApplication::clipboard()->setText(QString(32768, u'x'));
    txtMessage().selectAll();
    txtMessage().paste();
    ASSERT_EQ(txtMessage().Text().size(), 32768);
    EXPECT_EQ(Left(), QStringLiteral("156"));
    EXPECT_EQ(Used(), QStringLiteral("0"));
    EXPECT_EQ(pbMsgSize().Position(), 0);
}

TEST_F(MessageDisplayTest, TheCutPutsTheCaretBehindTheTextAndGivesTheBoxTheFocus) {
    ShowWindow();
    txtEndWidth().setFocus();
    txtMessage().SetText(QString(157, u'x'));
    EXPECT_EQ(txtMessage().Text().size(), 156);
    EXPECT_EQ(txtMessage().textCursor().position(), 156);
    EXPECT_FALSE(txtMessage().textCursor().hasSelection());
    EXPECT_TRUE(txtMessage().hasFocus());
}

TEST_F(MessageDisplayTest, DroppingAnExtensionCharacterLeavesOneAndDoesNotBeep) {
    txtMessage().SetText(QString(154, u'x'));
    EXPECT_EQ(Left(), QStringLiteral("2"));
    // 155 plain characters and a bracket make 157 units, one too many.
    txtMessage().SetText(QString(155, u'x') + u'[');
    EXPECT_EQ(txtMessage().Text(), QString(155, u'x'));
    EXPECT_EQ(Left(), QStringLiteral("1"));
    EXPECT_EQ(Office.Sound.Beeps, 0);
}

TEST_F(MessageDisplayTest, ALongerTailShortensTheMessageAtOnceAndAShorterOneDoesNotBringItBack) {
    SetTails({QStringLiteral("A"), QStringLiteral("A tail of twenty-six chars")}, {0});
    txtMessage().SetText(QString(155, u'x'));
    EXPECT_EQ(Left(), QStringLiteral("0"));
    cbTails().setCurrentIndex(1);
    EXPECT_EQ(txtMessage().Text().size(), 130);
    EXPECT_EQ(Left(), QStringLiteral("0"));
    cbTails().setCurrentIndex(0);
    EXPECT_EQ(txtMessage().Text().size(), 130);
    EXPECT_EQ(Left(), QStringLiteral("25"));
}

TEST_F(MessageDisplayTest, ASelectedTailRefreshesTheSizeButNotTheRecipientCount) {
    SetTails({QStringLiteral("A"), QStringLiteral("Longer")}, {0});
    lvRecipients().Rows().Add({QStringLiteral("C1"), QStringLiteral("x"), {}, 0, false});
    cbTails().setCurrentIndex(1);
    EXPECT_EQ(Left(), QString::number(160 - 10));
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List"));
}

TEST_F(MessageDisplayTest, AChangedSignatureRefreshesTheWholeDisplay) {
    txtMessage().SetText(QStringLiteral("Hello"));
    lvRecipients().Rows().Add({QStringLiteral("C1"), QStringLiteral("x"), {}, 0, false});
    ASSERT_EQ(RecipientCaption(), QStringLiteral("Recipient List"));
    txtEndWidth().setText(QStringLiteral("Desk"));
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List [1]"));
    EXPECT_EQ(Left(), QString::number(160 - 10 - 5));
    EXPECT_TRUE(cmdSendNow().isEnabled());
}

TEST_F(MessageDisplayTest, TheDisplayShowsRecipientsThenTheSizeThenTheButtons) {
    txtMessage().SetText(QString(156, u'x'));
    lvRecipients().Rows().Add({QStringLiteral("C1"), QStringLiteral("x"), {}, 0, false});
    QString caption;
    bool isEnabled = true;
    Office.Sound.OnBeep = [&] {  // a part of the size
        caption = RecipientCaption();
        isEnabled = cmdSendNow().isEnabled();
    };
    Area->UpdateStateDisplay();
    EXPECT_EQ(caption, QStringLiteral("Recipient List [1]"));
    EXPECT_FALSE(isEnabled);
    EXPECT_TRUE(cmdSendNow().isEnabled());
}

TEST_F(MessageDisplayTest, ACountThatCannotBeShownLeavesSizeAndButtonsToFollow) {
    /// Lays out no frame while it refuses.
    class RefusingStyle final : public QProxyStyle {
    public:
        bool IsRefusing = false;
        QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                             const QWidget* widget) const override {
            if (IsRefusing) {
                throw std::runtime_error("no frame");
            }
            return QProxyStyle::subControlRect(control, option, part, widget);
        }
    };
    const UncountedLeaks toolkits;
    RefusingStyle style;
    auto& frame = Find<QGroupBox>("fraRecipients");
    frame.setStyle(&style);
    frame.setPalette(QPalette(DarkRed));  // its own: what is lost is made here
    lvRecipients().Rows().Add({QStringLiteral("C1"), QStringLiteral("x"), {}, 0, false});
    style.IsRefusing = true;
    txtMessage().SetText(QStringLiteral("Hello"));
    style.IsRefusing = false;
    EXPECT_EQ(Used(), QStringLiteral("5"));
    EXPECT_TRUE(cmdSendNow().isEnabled());
    frame.setStyle(nullptr);
}

TEST_F(MessageDisplayTest, ANumberThatStaysIsNotWrittenAgain) {
    ShowWindow();
    txtMessage().SetText(QStringLiteral("Hello"));
    QCoreApplication::processEvents();
    auto& label = Find<QLabel>("lblUsed");
    PaintCount paints(label);
    Area->UpdateStateDisplay();
    QCoreApplication::processEvents();
    EXPECT_EQ(paints.Count, 0);
    txtMessage().SetText(QStringLiteral("Hello!"));
    QCoreApplication::processEvents();
    EXPECT_GT(paints.Count, 0);
}

TEST_F(MessageDisplayTest, ATailLongerThanTheWholeMessageEmptiesTheBoxAndLeavesNegativeNumbers) {
    txtMessage().SetText(QStringLiteral("Hello"));
    SetTails({QString(170, u't')}, {0});
    EXPECT_TRUE(txtMessage().Text().isEmpty());
    EXPECT_EQ(Used(), QStringLiteral("0"));
    EXPECT_EQ(Left(), QStringLiteral("-14"));
    EXPECT_EQ(pbMsgSize().Maximum(), -14);
    EXPECT_EQ(pbMsgSize().Position(), 0);
    EXPECT_EQ(Parts(), QStringLiteral("2"));
}

TEST_F(MessageDisplayTest, TheBarTurnsDarkRedWithTheSecondPartAndBackWhenTheTextShrinks) {
    SetMaxMessageSize(480);
    const QColor usual = pbMsgSize().BarColour();
    txtMessage().SetText(QString(155, u'x'));
    EXPECT_EQ(Parts(), QStringLiteral("1"));
    EXPECT_EQ(pbMsgSize().BarColour(), usual);
    txtMessage().SetText(QString(156, u'x'));
    EXPECT_EQ(Parts(), QStringLiteral("2"));
    EXPECT_EQ(pbMsgSize().BarColour(), DarkRed);
    txtMessage().SetText(QString(155, u'x'));
    EXPECT_EQ(Parts(), QStringLiteral("1"));
    EXPECT_EQ(pbMsgSize().BarColour(), usual);
}

TEST_F(MessageDisplayTest, ABoxFilledToTheLastCharacterShowsTwoPartsAndOneLessShowsOne) {
    SetTails({QStringLiteral("1234567")}, {0});  // a tail text of 10 characters
    txtMessage().SetText(QString(149, u'x'));
    EXPECT_EQ(Left(), QStringLiteral("0"));
    EXPECT_EQ(Parts(), QStringLiteral("2"));
    txtMessage().SetText(QString(148, u'x'));
    EXPECT_EQ(Parts(), QStringLiteral("1"));
}

TEST_F(MessageDisplayTest, ExactlyNothingLeftBeepsAgainOnEveryRefresh) {
    txtMessage().SetText(QString(156, u'x'));
    EXPECT_EQ(Office.Sound.Beeps, 1);
    Area->UpdateStateDisplay();
    EXPECT_EQ(Office.Sound.Beeps, 2);
    txtMessage().SetText(QString(155, u'x'));
    EXPECT_EQ(Office.Sound.Beeps, 2);
}

TEST_F(MessageDisplayTest, WithNothingLeftEachChangeOfTheRecipientsByTheUserBeepsOnce) {
    txtMessage().SetText(QString(156, u'x'));
    ShowWindow();
    const QString key = ShowContact(1, QStringLiteral("Byrne"));
    Office.Sound.Beeps = 0;
    Q_EMIT lvRecipients().TextDropped(key + QStringLiteral("\r\n"), QStringLiteral("lvContacts"));
    EXPECT_EQ(Office.Sound.Beeps, 1) << "added";
    lvRecipients().SelectKey(key);
    QTest::keyClick(&lvRecipients(), Qt::Key_Delete);
    EXPECT_EQ(lvRecipients().Rows().Count(), 0);
    EXPECT_EQ(Office.Sound.Beeps, 2) << "removed";
    QTest::mouseClick(&Find<QPushButton>("cmdClearRecipients"), Qt::LeftButton);
    EXPECT_EQ(Office.Sound.Beeps, 3) << "cleared";
}

TEST_F(MessageDisplayTest, ACutToExactlyNothingBeepsInTheInnerAndInTheOuterRun) {
    txtMessage().SetText(QString(160, u'x'));
    EXPECT_EQ(Left(), QStringLiteral("0"));
    EXPECT_EQ(Office.Sound.Beeps, 2);
}

TEST_F(MessageDisplayTest, TheSignatureCutsTheMessageWhileItIsTyped) {
    ShowWindow();
    txtMessage().SetText(QString(156, u'x'));
    txtEndWidth().setFocus();
    QTest::keyClicks(&txtEndWidth(), QStringLiteral("A"));
    EXPECT_EQ(txtMessage().Text().size(), 153);
    EXPECT_EQ(Used(), QStringLiteral("153"));
}

TEST_F(MessageDisplayTest, ClearEmptiesTheMessageAndShowsTheState) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    QTest::keyClicks(&txtMessage(), QStringLiteral("Hello"));
    EXPECT_TRUE(cmdSendNow().isEnabled());
    QTest::mouseClick(&Find<QPushButton>("cmdClearMessage"), Qt::LeftButton);
    EXPECT_TRUE(txtMessage().Text().isEmpty());
    EXPECT_EQ(Used(), QStringLiteral("0"));
    EXPECT_FALSE(cmdSendNow().isEnabled());
}

TEST_F(MessageDisplayTest, ClearRefreshesTheDisplayAlsoWhereThereIsNothingToClear) {
    ShowWindow();
    AddRecipient(1, QStringLiteral("Byrne"));
    lvRecipients().Rows().Clear();
    ASSERT_EQ(RecipientCaption(), QStringLiteral("Recipient List [1]"));
    QTest::mouseClick(&Find<QPushButton>("cmdClearMessage"), Qt::LeftButton);
    EXPECT_EQ(RecipientCaption(), QStringLiteral("Recipient List"));
}

TEST_F(MessageDisplayTest, AMessageClearedByAccidentComesBackWithUndo) {
    ShowWindow();
    QTest::keyClicks(&txtMessage(), QStringLiteral("Hello"));
    QTest::mouseClick(&Find<QPushButton>("cmdClearMessage"), Qt::LeftButton);
    txtMessage().undo();
    EXPECT_EQ(txtMessage().Text(), QStringLiteral("Hello"));
    EXPECT_EQ(Used(), QStringLiteral("5"));
}

TEST_F(MessageDisplayTest, UndoGoesBackBehindACharacterThatPushedAnotherOut) {
    ShowWindow();
    QTest::keyClicks(&txtMessage(), QString(155, u'x') + u'y');
    EXPECT_EQ(Left(), QStringLiteral("0"));
    txtMessage().moveCursor(QTextCursor::Start);
    QTest::keyClicks(&txtMessage(), QStringLiteral("a"));
    EXPECT_EQ(txtMessage().Text(), u'a' + QString(155, u'x'));
    txtMessage().undo();
    EXPECT_EQ(txtMessage().Text(), QString(155, u'x') + u'y');
    for (int step = 0; step < 4; ++step) {
        txtMessage().undo();
    }
    EXPECT_EQ(txtMessage().Text(), QString());
}

TEST_F(MessageDisplayTest, TheToolTipsTellWhatTheNumbersAre) {
    EXPECT_EQ(Find<QLabel>("lblUsed").toolTip(), QStringLiteral(" Number of characters used "));
    EXPECT_EQ(Find<QLabel>("lblSMSPageCount").toolTip(),
              QStringLiteral(" Number of SMS's  required to deliver your message "));
    EXPECT_EQ(Find<QLabel>("lblCharsRemaining").toolTip(),
              QStringLiteral(" No. of chars remaining in this message "));
    EXPECT_EQ(Find<QGroupBox>("fraTail").title(), QStringLiteral("Signature"));
}

TEST_F(MessageDisplayTest, TheLastOfSeveralDefaultTailsIsSelected) {
    SetTails({QStringLiteral("One"), QStringLiteral("Two"), QStringLiteral("Three"), QStringLiteral("Four")},
             {1, 2});
    EXPECT_EQ(cbTails().count(), 4);
    EXPECT_EQ(cbTails().itemText(0), QStringLiteral("One"));
    EXPECT_EQ(cbTails().currentText(), QStringLiteral("Three"));
    EXPECT_EQ(Left(), QString::number(160 - 9));
}

TEST_F(MessageDisplayTest, WithoutADefaultTailNoneIsSelected) {
    SetTails({QStringLiteral("One"), QStringLiteral("Two")});
    EXPECT_EQ(cbTails().currentIndex(), -1);
    EXPECT_EQ(Area->GetTailText(), QStringLiteral(" - "));
}

TEST_F(MessageDisplayTest, TailsReadAgainReplaceTheOldOnes) {
    SetTails({QStringLiteral("One")}, {0});
    Office.ExecuteOnPhonebook(QStringLiteral("DELETE FROM MessageTail"));
    SetTails({QStringLiteral("Two")}, {0});
    EXPECT_EQ(cbTails().count(), 1);
    EXPECT_EQ(Area->GetTailText(), QStringLiteral(" - Two"));
}

TEST_F(MessageDisplayTest, TailsThatCannotBeReadAreLoggedUnderTheirOldName) {
    LogToFile();
    Office.PhonebookDB().CloseDatabase();
    Area->InitMessageTails();
    EXPECT_TRUE(
        LogText().contains(QRegularExpression(QStringLiteral("InitGrouptabs_Error : 3704 \\S[^\n]*\\S\n"))))
        << "number and description, nothing behind them: " << LogText().toStdString();
    EXPECT_EQ(cbTails().count(), 0);
}

TEST_F(MessageDisplayTest, TheSignatureIsKeptTrimmedInTheSettings) {
    Area->LoadSignature();
    EXPECT_EQ(txtEndWidth().text(), QString());
    txtEndWidth().setText(QStringLiteral(" Front Desk "));
    Area->SaveSignature();
    EXPECT_EQ(Office.AppSettings.GetValue(QStringLiteral("Defaults"), QStringLiteral("EndWith"), QString()),
              QStringLiteral("Front Desk"));
    txtEndWidth().clear();
    Area->LoadSignature();
    EXPECT_EQ(txtEndWidth().text(), QStringLiteral("Front Desk"));
}

TEST_F(MessageDisplayTest, CountCharCountsOneCharacterAndSMSLengthDoublesOnlyTheEuroSign) {
    EXPECT_EQ(ComposeArea::CountChar(QStringLiteral("a[b["), u'['), 2);
    EXPECT_EQ(ComposeArea::SMSLength(QStringLiteral("a[€€")), 6);
}

TEST_F(MessageDisplayTest, AKeyInTheMessageReadsNoData) {
    SetTails({QStringLiteral("Tail")}, {0});
    Office.PhonebookDB().CloseDatabase();
    const QByteArray outbox = Office.Files.Read(Office.OutboxPath()).value_or(QByteArray());
    ShowWindow();
    QTest::keyClicks(&txtMessage(), QStringLiteral("Hello"));
    EXPECT_EQ(Left(), QString::number(160 - 8 - 5));
    EXPECT_EQ(Office.OutboxDB().Connection(), nullptr);
    EXPECT_EQ(Office.Files.Read(Office.OutboxPath()).value_or(QByteArray()), outbox);
}

TEST_F(MessageDisplayTest, ASoundThatFailsDoesNotStopTheDisplay) {
    AddRecipient(1, QStringLiteral("Byrne"));
    Office.Sound.OnBeep = [] { throw std::runtime_error("no sound"); };
    txtMessage().SetText(QString(156, u'x'));
    EXPECT_EQ(Left(), QStringLiteral("0"));
    EXPECT_TRUE(cmdSendNow().isEnabled());
}

TEST_F(MessageDisplayTest, TheBarFollowsAChangeOfPalette) {
    QPalette palette = Window.palette();
    palette.setColor(QPalette::Highlight, QColor(10, 120, 60));
    Window.setPalette(palette);
    EXPECT_EQ(pbMsgSize().BarColour(), QColor(10, 120, 60));
    SetMaxMessageSize(480);
    txtMessage().SetText(QString(200, u'x'));
    palette.setColor(QPalette::Highlight, QColor(90, 20, 160));
    Window.setPalette(palette);
    EXPECT_EQ(pbMsgSize().BarColour(), DarkRed);
    txtMessage().SetText(QStringLiteral("x"));
    EXPECT_EQ(pbMsgSize().BarColour(), QColor(90, 20, 160));
}

}  // namespace
