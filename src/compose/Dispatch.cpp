#include "compose/Dispatch.h"

#include "addressbook/ContactList.h"
#include "core/Dates.h"
#include "core/Product.h"
#include "core/TextRules.h"
#include "platform/Clock.h"
#include "platform/MessageBoxes.h"
#include "store/Outbox.h"
#include "tracking/History.h"
#include "tracking/MessageTracker.h"

#include <stdexcept>

namespace {

/// What is the same for every recipient of one send.
struct Letter {
    QDateTime Today;
    QDateTime SendTime;
    QString Template;
    QString TailBlock;
    QString Signature;
    QString Station;
};

bool OpenOutboxForWriting(const OutboxServices& outbox) {
    DB* const database = outbox.State.OutboxDB.get();
    if (database != nullptr && database->OpenDatabase(engine::Mode::ReadWriteShared)) {
        return true;
    }
    const QString reason = database != nullptr ? database->LastError() : QString();
    outbox.Boxes.Show({Product::AppTitle, QStringLiteral("Could not open Outbox Database\r\n") + reason,
                       BoxIcon::Critical, BoxButtons::Ok});
    return false;
}

/// A copy: the statements pump events, and those may change the list.
Contact ContactOf(const ContactList& contacts, const QString& key) {
    const Contact* const contact = contacts.ContactByKey(key);
    if (contact == nullptr) {
        throw std::out_of_range("a recipient without a contact");
    }
    return *contact;
}

/// True if a row was written for this contact.
bool SendTo(const DispatchServices& services, const Letter& letter, const Contact& contact) {
    const QString name = contact.DisplayName(1);
    const QString numberShown = contact.IsPrivate ? QStringLiteral("(Private Number)") : contact.PhoneNumber;
    const QString merged =
        Dispatch::UpdateFields(letter.Template, contact.Surname, contact.Firstnames, letter.Today);
    const QString full = merged + letter.TailBlock;
    if (full.size() > services.Outbox.State.MaxMessageSize) {
        return false;
    }
    const auto bodySize = static_cast<qint16>(merged.size());  // fits: `full` passed a 16-bit limit
    const qint16 id = mdlOutbox::InsertMessage(
        services.Outbox,
        {name, contact.PhoneNumber, full, letter.SendTime, letter.Station, letter.Signature, bodySize});
    if (id <= 0) {
        return false;
    }
    services.History.AddToHistory(id, name, letter.Template, letter.SendTime);
    services.Tracker.Track(id, name, numberShown, merged);
    return true;
}

void RemoveSent(ContactList& contacts, Composition& composition, const QStringList& sentKeys) {
    for (const QString& key : sentKeys) {
        // One that events took out meanwhile must not keep the sent rows on screen: they would be sent again.
        if (contacts.ContactByKey(key) != nullptr) {
            contacts.RemoveByKey(key);
        }
    }
    composition.RemoveRecipientRows(sentKeys);
    if (composition.RecipientKeys().isEmpty()) {
        composition.Reset();
    }
}

}  // namespace

namespace Dispatch {

QString GetStation() {
    return qEnvironmentVariable("COMPUTERNAME") + u'\\' + qEnvironmentVariable("USERNAME").toUpper();
}

QString UpdateFields(const QString& text, const QString& surname, const QString& firstnames,
                     const QDateTime& date) {
    QString merged = text;
    merged.replace(QStringLiteral("@SN"), Text::Trim(surname));
    merged.replace(QStringLiteral("@FN"), Text::Trim(firstnames));
    merged.replace(QStringLiteral("@TD"), Dates::Format(date, QStringLiteral("DD.Mmm")));
    merged.replace(QStringLiteral("@MN"), Dates::Format(date, QStringLiteral("Mmm")));
    return merged;
}

void DoSend(const DispatchServices& services, Composition& composition, const QDateTime& sendTime,
            bool removeSent) {
    const QStringList keys = composition.RecipientKeys();
    if (keys.isEmpty()) {
        return;
    }
    Letter letter;
    letter.Today = services.Time.Now();
    letter.SendTime = sendTime;
    if (!OpenOutboxForWriting(services.Outbox)) {
        return;
    }
    letter.Signature = Text::Trim(composition.SignatureText());
    letter.TailBlock = u' ' + composition.GetTailText();
    letter.Template = Text::Trim(composition.MessageText());
    letter.Station = GetStation();

    QStringList sentKeys;
    {
        const mdlHistory::Batch additions(services.History);
        for (const QString& key : keys) {
            if (SendTo(services, letter, ContactOf(services.RecipientContacts, key))) {
                sentKeys.append(key);
            }
        }
    }
    services.Outbox.State.OutboxDB->CloseDatabase();
    if (removeSent) {
        RemoveSent(services.RecipientContacts, composition, sentKeys);
    }
}

}  // namespace Dispatch
