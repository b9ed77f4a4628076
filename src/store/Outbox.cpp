#include "store/Outbox.h"

#include "core/Dates.h"
#include "core/Numbers.h"
#include "core/Product.h"
#include "core/Settings.h"
#include "core/TextRules.h"
#include "core/Trap.h"
#include "platform/MessageBoxes.h"

#include <QLocale>

#include <algorithm>
#include <utility>

namespace {

constexpr int RecipientWidth = 30;
constexpr int AddressWidth = 30;
constexpr int StationWidth = 32;
constexpr qint16 SmallestMessageSize = 160;

void ReplaceDatabase(const OutboxServices& services) {
    OutboxState& state = services.State;
    if (state.OutboxDB != nullptr) {
        state.OutboxDB->CloseDatabase();
        if (state.OutboxDB->IsBusy()) {
            state.Replaced.push_back(std::move(state.OutboxDB));
        }
    }
    state.OutboxDB = std::make_unique<DB>(services.Database);
}

DB& Outbox(const OutboxServices& services) {
    if (services.State.OutboxDB == nullptr) {
        ReplaceDatabase(services);
    }
    return *services.State.OutboxDB;
}

bool ReadSystemOnce(const OutboxServices& services) {
    if (!Outbox(services).OpenDatabase(engine::Mode::ReadShared)) {
        return false;
    }
    mdlOutbox::ReadSystemRecord(services);
    Outbox(services).CloseDatabase();
    return true;
}

QString Quoted(const QString& text) {
    return u'\'' + mdlOutbox::QuoteSQL(text) + u'\'';
}

void ShowCritical(MessageBoxes& boxes, const QString& text) {
    boxes.Show({Product::AppTitle, text, BoxIcon::Critical, BoxButtons::Ok});
}

}  // namespace

namespace mdlOutbox {

QString QuoteSQL(const QString& text) {
    QString quoted = text;
    return quoted.replace(u'\'', QStringLiteral("''"));
}

QString QuoteDate(const QDateTime& value, const QString& pattern) {
    return u'#' + Dates::Format(value, pattern, QLocale::c()) + u'#';
}

bool IsMessageFinal(qint32 status) {
    return status != 0 && status != 1 && status != 3 && status != 4;
}

QString OutboxFile(const QString& setting) {
    if (setting.isEmpty() || setting.contains(QStringLiteral(".mdb"))) {
        return setting;
    }
    return Text::WithBackslash(setting) + QStringLiteral("smsmessages.mdb");
}

bool OpenOutbox(const OutboxServices& services) {
    ReplaceDatabase(services);
    const QString setting =
        services.AppSettings.GetValue(SettingNames::SectionDB, SettingNames::Outbox, QString());
    if (setting.isEmpty()) {
        return false;
    }
    Outbox(services).Filename = OutboxFile(setting);

    const bool isFirstFine = ReadSystemOnce(services);
    const QString drive = Outbox(services).GetDrive();
    if (!drive.isEmpty()) {
        Outbox(services).ResetNetworkDrive(0, drive);
    }
    const bool isSecondFine = ReadSystemOnce(services);
    return isFirstFine || isSecondFine;
}

void ReadSystemRecord(const OutboxServices& services) {
    services.State.MaxMessageSize = SmallestMessageSize;
    const auto rows = Outbox(services).OpenDynaset(
        QStringLiteral("SELECT * FROM System"), engine::CursorType::ForwardOnly, engine::LockType::ReadOnly);
    if (rows == nullptr) {
        return;
    }
    Trap([&] {
        qint16 size = 0;
        if (!rows->EndOfFile()) {
            size = std::max(Numbers::ToInt16(rows->Value(u"sysSMSMaxMessageSize")), SmallestMessageSize);
        }
        services.State.MaxMessageSize = size;
    });
    Trap([&] { rows->Close(); });
}

QString BuildInsertMessageSQL(const OutgoingMessage& message) {
    return QStringLiteral(
               "INSERT INTO Message (msgRecipient, msgAddress, msgText, msgSendTime, msgSignature, "
               "msgStation, "
               "msgBodyTextSize) VALUES (") +
           Quoted(message.Recipient) + u',' + Quoted(message.Address) + u',' + Quoted(message.Text) + u',' +
           QuoteDate(message.SendTime) + u',' + Quoted(message.Signature) + u',' + Quoted(message.Station) +
           u',' + QString::number(message.BodyTextSize) + u')';
}

qint16 InsertMessage(const OutboxServices& services, OutgoingMessage message) {
    message.Recipient = Text::Trim(message.Recipient).left(RecipientWidth);
    message.Address = Text::Trim(message.Address).left(AddressWidth);
    message.Text = Text::Trim(message.Text).left(services.State.MaxMessageSize);
    message.Station = Text::Trim(message.Station).left(StationWidth);

    if (!Outbox(services).Execute(BuildInsertMessageSQL(message))) {
        ShowCritical(services.Boxes, QStringLiteral("Insert Message Failed\r\n") +
                                         Outbox(services).LastError() + QStringLiteral("\r\nMSGLEN:") +
                                         QString::number(message.Text.size()));
        return 0;
    }
    const auto identity = Outbox(services).ExecuteRecordset(QStringLiteral("SELECT @@IDENTITY AS ID"));
    if (identity == nullptr || identity->EndOfFile()) {
        ShowCritical(services.Boxes,
                     QStringLiteral("Could not retrieve Message ID\r\n") + Outbox(services).LastError());
        return 0;
    }
    return Numbers::ToInt16(identity->Value(u"ID"));
}

std::optional<bool> CancelMessage(const OutboxServices& services, qint32 id) {
    const bool wasConnected = Outbox(services).IsConnected();
    if (!wasConnected && !Outbox(services).OpenDatabase(engine::Mode::ReadWriteShared)) {
        return std::nullopt;
    }
    const qint32 count = Outbox(services).ExecuteRecordResult(
        QStringLiteral(
            "UPDATE Message SET msgComplete = TRUE, msgStatus = 2, msgErrorReason ='Canceled by user' "
            "WHERE msgID = ") +
        QString::number(id) + QStringLiteral(" AND msgStatus = 0"));
    if (!wasConnected) {
        Outbox(services).CloseDatabase();
    }
    return count == 1;
}

}  // namespace mdlOutbox
