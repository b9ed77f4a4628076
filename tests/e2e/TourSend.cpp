#include "e2e/Tour.h"

#include "app/AppContext.h"
#include "app/Machine.h"
#include "controls/ListView.h"
#include "platform/Folders.h"
#include "platform/LocalFiles.h"
#include "shell/frmMain.h"
#include "tracking/History.h"

#include <QDateTimeEdit>

#include <cstdio>

namespace {

QString StatusWord(qint32 status) {
    switch (status) {
        case 0:
            return QStringLiteral("waiting");
        case 1:
            return QStringLiteral("being handed over");
        case 2:
            return QStringLiteral("canceled");
        case 3:
            return QStringLiteral("en route");
        case 4:
            return QStringLiteral("could not be sent");
        case 5:
            return QStringLiteral("delivered");
        case 6:
            return QStringLiteral("delivery unconfirmed");
        case 7:
            return QStringLiteral("not delivered");
        default:
            return QStringLiteral("unknown");
    }
}

}  // namespace

int Tour::Recipients() {
    return Driver::Find<ListView>(QStringLiteral("lvRecipients")).Rows().Count();
}

QStringList Tour::Names(const std::function<bool(const Contact&)>& isWanted, int count) const {
    QStringList names;
    for (const Contact& contact : m_context.AddressContacts.list()) {
        if (isWanted(contact) && names.size() < count) {
            names.append(contact.DisplayName(m_context.SortBy));
        }
    }
    if (names.size() < count) {
        throw DriverError(
            QStringLiteral("the address book has %1 such people of %2").arg(names.size()).arg(count));
    }
    return names;
}

QStringList Tour::NamesWithConfirmation(bool isConfirm, int count) const {
    return Names([isConfirm](const Contact& contact) { return contact.IsConfirmSend == isConfirm; }, count);
}

QString Tour::NameOutOfReach() const {
    const auto isOutOfReach = [](const Contact& contact) {
        return contact.PhoneNumber.endsWith(u'7') && !contact.IsConfirmSend && !contact.IsPrivate;
    };
    return Names(isOutOfReach, 1).first();
}

void Tour::PickPeople() {
    const QString list = QStringLiteral("lvContacts");
    const QString outOfReach = NameOutOfReach();
    QStringList people = NamesWithConfirmation(false, 3);
    people.removeOne(outOfReach);
    Driver::ClickRow(list, people[0]);
    Driver::ClickRow(list, people[1], Qt::ControlModifier);
    Driver::ClickRow(list, outOfReach, Qt::ControlModifier);
    Driver::Press(list, Qt::Key_Return);
    Driver::WaitFor(QStringLiteral("three recipients"), [] { return Recipients() == 3; });
    Driver::DoubleClickRow(list, NamesWithConfirmation(true, 1)[0]);
    Driver::WaitFor(QStringLiteral("a fourth recipient"), [] { return Recipients() == 4; });

    // A double click on a group's tab adds the group.
    const auto groups = mdlPhonebook::GetGroups(m_context);
    const QString group = groups->Value(u"grpName").toString();
    Driver::DoubleClickTab(QStringLiteral("tabGroup"), group);
    Driver::WaitFor(QStringLiteral("the members of ") + group, [] { return Recipients() > 4; });
    m_hand.Picture(QStringLiteral("2-recipients"));
}

void Tour::Compose() {
    Driver::Type(QStringLiteral("txtMessage"),
                 QStringLiteral(
                     "Dear @FN @SN, the canteen closes at 14:00 on @TD. Please collect orders before then."));
    m_hand.Picture(QStringLiteral("3-message"));
}

void Tour::SendNow() {
    m_expected += Recipients();
    Driver::WhenDialog(QStringLiteral("frmConfirmRecipient"), [this] {
        m_hand.Picture(QStringLiteral("4-confirm"));
        Driver::Click(QStringLiteral("cmdOkay"));
    });
    Driver::Click(QStringLiteral("cmdSendNow"));
    Driver::WaitFor(QStringLiteral("an empty composition"), [] { return Recipients() == 0; });
    m_hand.Picture(QStringLiteral("5-sent"));
}

void Tour::SendAtTime() {
    Driver::ClickTab(QStringLiteral("tabGroup"), QStringLiteral("*"));
    Driver::DoubleClickRow(QStringLiteral("lvContacts"), NamesWithConfirmation(false, 4)[3]);
    Driver::WaitFor(QStringLiteral("one recipient"), [] { return Recipients() == 1; });
    Driver::Type(QStringLiteral("txtMessage"), QStringLiteral("Your parcel is at the front desk."));
    ++m_expected;
    Driver::WhenDialog(QStringLiteral("frmGetTime"), [this] {
        m_hand.Picture(QStringLiteral("6-schedule"));
        // Due at once: a tour does not wait for an hour.
        Driver::Find<QDateTimeEdit>(QStringLiteral("dtTime")).setTime(QTime(0, 0));
        Driver::Click(QStringLiteral("cmdOK"));
    });
    Driver::Click(QStringLiteral("cmdSendLater"));
    Driver::WaitFor(QStringLiteral("an empty composition"), [] { return Recipients() == 0; });
}

QList<SentMessage> Tour::Sent() const {
    mdlHistory history(m_parts.Files, m_parts.Places, m_parts.Boxes, m_parts.Page);
    QString filter;
    for (const HistoryRecord& record : history.ReadHistory().mid(0, m_expected)) {
        filter += QStringLiteral(" OR msgID = ") + QString::number(record.MessageID);
    }
    // Past the client's own connection, as the gateway sees it.
    DB outbox(m_context.Database);
    outbox.Filename = m_context.OutboxDB->Filename;
    QList<SentMessage> messages;
    if (filter.isEmpty() || !outbox.OpenDatabase(engine::Mode::ReadShared)) {
        return messages;
    }
    const auto rows = outbox.OpenDynaset(
        QStringLiteral("SELECT msgID, msgRecipient, msgStatus FROM Message WHERE ") + filter.mid(4),
        engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    for (; rows != nullptr && !rows->EndOfFile(); rows->MoveNext()) {
        messages.append({rows->Value(u"msgID").toInt(), rows->Value(u"msgRecipient").toString(),
                         rows->Value(u"msgStatus").toInt()});
    }
    return messages;
}

bool Tour::HasPending() const {
    for (int slot = 0; slot < MessageTracker::SlotCount; ++slot) {
        const MessageTracker::Slot& message = m_context.MessageTracker.SlotAt(slot);
        if (message.msgID != 0 && !mdlOutbox::IsMessageFinal(message.status)) {
            return true;
        }
    }
    return false;
}

void Tour::SeeItFinal() {
    Driver::WaitFor(
        QStringLiteral("every message at its final status"), [this] { return !HasPending(); }, 90);
    const QList<SentMessage> messages = Sent();
    for (const SentMessage& message : messages) {
        if (!mdlOutbox::IsMessageFinal(message.Status)) {
            throw DriverError(QStringLiteral("message %1 is not final").arg(message.ID));
        }
        std::printf("    message %-4d to %-28s %s\n", message.ID, qUtf8Printable(message.Recipient),
                    qUtf8Printable(StatusWord(message.Status)));
    }
    if (messages.size() != m_expected) {
        throw DriverError(
            QStringLiteral("%1 messages of %2 stand in the outbox").arg(messages.size()).arg(m_expected));
    }
}

void Tour::CheckFiles() const {
    const QByteArray log =
        m_parts.Files.Read(m_parts.Places.ApplicationFolder() + QStringLiteral("messagelog.sms"))
            .value_or(QByteArray());
    for (const SentMessage& message : Sent()) {
        if (!("\n" + log).contains("\n" + QByteArray::number(message.ID) + ',')) {
            throw DriverError(QStringLiteral("message %1 is not in messagelog.sms").arg(message.ID));
        }
    }
    std::printf("    %d messages, all in history.sms and messagelog.sms\n", m_expected);
}

void Tour::ComposeForPictures() {
    const QString list = QStringLiteral("lvContacts");
    Driver::ClickTab(QStringLiteral("tabGroup"), QStringLiteral("*"));
    const QStringList people = NamesWithConfirmation(false, 6);
    Driver::ClickRow(list, people[2]);
    Driver::ClickRow(list, people[4], Qt::ControlModifier);
    Driver::Press(list, Qt::Key_Return);
    Driver::DoubleClickRow(list, NamesWithConfirmation(true, 1)[0]);
    Driver::ClickRow(list, people[5]);
    Driver::Type(
        QStringLiteral("txtMessage"),
        QStringLiteral("Dear @FN, the canteen closes at 14:00 on @TD. Please collect orders before then."));
}
