#include "store/office/OfficeReport.h"

#include "core/Numbers.h"

#include <QJsonArray>
#include <QLocale>

namespace {

QString Grouped(qint64 number) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(number);
}

QString SizeText(qint64 bytes) {
    return bytes < 0 ? QStringLiteral("missing") : Numbers::FileSize(bytes);
}

QString Row(const QString& name, const QString& value) {
    return QStringLiteral("  %1 %2\n").arg(name.leftJustified(22), value.rightJustified(9));
}

QString FilesText(const OfficeReport& report) {
    QString text;
    for (const OfficeReport::File& file : report.Files) {
        text += QStringLiteral("%1: %2%3\n")
                    .arg(file.Path, SizeText(file.Size),
                         file.IsSound    ? QStringLiteral(", sound")
                         : file.Size < 0 ? QString()
                                         : QStringLiteral(", NOT sound"));
    }
    return text;
}

QString NumbersText(const OfficeReport& report) {
    QString text = QStringLiteral("\nRecord numbers (32,767 is the last one that works)\n");
    for (const NumberUse& use : report.Numbers) {
        text += Row(use.Name, Grouped(use.Last)).chopped(1) +
                QStringLiteral("   %1% used, %2 left\n")
                    .arg(QString::number(use.Percent(), 'f', 1), Grouped(use.Left()));
    }
    return text;
}

QString ListText(const QString& title, const QStringList& lines) {
    if (lines.isEmpty()) {
        return {};
    }
    QString text = u'\n' + title + u'\n';
    for (const QString& line : lines) {
        text += QStringLiteral("  - %1\n").arg(line);
    }
    return text;
}

QJsonArray FilesJson(const OfficeReport& report) {
    QJsonArray files;
    for (const OfficeReport::File& file : report.Files) {
        files.append(QJsonObject{{QStringLiteral("path"), file.Path},
                                 {QStringLiteral("bytes"), file.Size},
                                 {QStringLiteral("sound"), file.IsSound}});
    }
    return files;
}

QJsonObject NumbersJson(const OfficeReport& report) {
    QJsonObject numbers;
    for (const NumberUse& use : report.Numbers) {
        numbers.insert(use.Name, QJsonObject{{QStringLiteral("last"), use.Last},
                                             {QStringLiteral("limit"), NumberUse::Limit},
                                             {QStringLiteral("left"), use.Left()}});
    }
    return numbers;
}

}  // namespace

QString StatusName(qint32 status) {
    static constexpr QStringView Names[] = {u"waiting",  u"being sent", u"canceled",    u"en route",
                                            u"not sent", u"delivered",  u"unconfirmed", u"not delivered"};
    const bool isKnown = status >= 0 && static_cast<std::size_t>(status) < std::size(Names);
    return (isKnown ? Names[status] : QStringView(u"unusual")).toString();
}

QString OfficeReport::ToText() const {
    QString text = FilesText(*this) + QStringLiteral("\nRows\n");
    for (const auto& [table, count] : Rows) {
        text += Row(table, Grouped(count));
    }
    if (!MessagesByStatus.empty()) {
        text += QStringLiteral("\nMessages\n");
    }
    for (const auto& [status, count] : MessagesByStatus) {
        text += Row(QStringLiteral("%1 %2").arg(status).arg(StatusName(status)), Grouped(count));
    }
    text += NumbersText(*this) + ListText(QStringLiteral("Worth knowing"), Notes) +
            ListText(QStringLiteral("Problems"), Problems);
    return text + (IsFine() ? QStringLiteral("\nNo problem found.\n") : QString());
}

QJsonObject OfficeReport::ToJson() const {
    QJsonObject rows;
    for (const auto& [table, count] : Rows) {
        rows.insert(table, count);
    }
    QJsonObject statuses;
    for (const auto& [status, count] : MessagesByStatus) {
        statuses.insert(QString::number(status), count);
    }
    return {{QStringLiteral("fine"), IsFine()},
            {QStringLiteral("files"), FilesJson(*this)},
            {QStringLiteral("rows"), rows},
            {QStringLiteral("messagesByStatus"), statuses},
            {QStringLiteral("numbers"), NumbersJson(*this)},
            {QStringLiteral("orphanedMembers"), OrphanedMembers},
            {QStringLiteral("duplicateMembers"), DuplicateMembers},
            {QStringLiteral("duplicateContacts"), DuplicateContacts},
            {QStringLiteral("badPhoneNumbers"), BadPhoneNumbers},
            {QStringLiteral("notes"), QJsonArray::fromStringList(Notes)},
            {QStringLiteral("problems"), QJsonArray::fromStringList(Problems)}};
}
