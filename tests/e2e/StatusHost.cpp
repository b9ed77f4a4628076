#include "e2e/StatusHost.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <string>

namespace {

const QString Watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString ItemPath = QStringLiteral("/StatusNotifierItem");
const QString ItemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString MenuInterface = QStringLiteral("com.canonical.dbusmenu");

/// The title of a tip: it stands behind the name of an icon and the icon's pictures.
QString TipOf(const QDBusArgument& tip) {
    QString text;
    tip.beginStructure();
    tip >> text;
    tip.beginArray();
    while (!tip.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray picture;
        tip.beginStructure();
        tip >> width >> height >> picture;
        tip.endStructure();
    }
    tip.endArray();
    tip >> text;
    return text;
}

}  // namespace

StatusHost::StatusHost() : m_bus(QDBusConnection::sessionBus()) {
    auto* leaving = new QDBusServiceWatcher(this);
    leaving->setConnection(m_bus);
    leaving->setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    leaving->setObjectName(QStringLiteral("leaving"));
    connect(leaving, &QDBusServiceWatcher::serviceUnregistered, this, [this](const QString& service) {
        m_items.removeAll(service);
        Q_EMIT StatusNotifierItemUnregistered(service);
    });
}

bool StatusHost::Open() {
    const bool isOpen = m_bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                                             QDBusConnection::ExportScriptableContents |
                                                 QDBusConnection::ExportAllProperties) &&
                        m_bus.registerService(Watcher);
    Q_EMIT StatusNotifierHostRegistered();
    return isOpen;
}

void StatusHost::RegisterStatusNotifierItem(const QString& service) {
    m_items.append(service);
    findChild<QDBusServiceWatcher*>(QStringLiteral("leaving"))->addWatchedService(service);
    Q_EMIT StatusNotifierItemRegistered(service);
}

QVariant StatusHost::ItemProperty(const QString& name) const {
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_items.value(0), ItemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call.setArguments({ItemInterface, name});
    const QDBusMessage reply = m_bus.call(call);
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

QList<QPair<QString, int>> StatusHost::MenuEntries() const {
    QDBusMessage call = QDBusMessage::createMethodCall(
        m_items.value(0), ItemProperty(QStringLiteral("Menu")).value<QDBusObjectPath>().path(), MenuInterface,
        QStringLiteral("GetLayout"));
    call.setArguments({0, -1, QStringList()});
    const QDBusMessage reply = m_bus.call(call);
    QList<QPair<QString, int>> entries;
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().size() < 2) {
        return entries;
    }
    // The root: its number, its properties, and its children, each of the same shape in a variant.
    const auto root = reply.arguments().at(1).value<QDBusArgument>();
    int id = 0;
    QVariantMap properties;
    QVariantList children;
    root.beginStructure();
    root >> id >> properties >> children;
    root.endStructure();
    for (const QVariant& child : children) {
        const auto entry = child.value<QDBusArgument>();
        QVariantList inner;
        entry.beginStructure();
        entry >> id >> properties >> inner;
        entry.endStructure();
        if (properties.value(QStringLiteral("visible"), true).toBool()) {
            entries.append({properties.value(QStringLiteral("label")).toString(), id});
        }
    }
    return entries;
}

QString StatusHost::Choose(const QString& text) const {
    for (const auto& [label, id] : MenuEntries()) {
        if (label == text) {
            QDBusMessage call = QDBusMessage::createMethodCall(
                m_items.value(0), ItemProperty(QStringLiteral("Menu")).value<QDBusObjectPath>().path(),
                MenuInterface, QStringLiteral("Event"));
            call.setArguments(
                {id, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(QString())), 0U});
            m_bus.asyncCall(call);
            return QStringLiteral("done");
        }
    }
    return QStringLiteral("none");
}

QString StatusHost::Click(const QString& method) const {
    QDBusMessage call = QDBusMessage::createMethodCall(m_items.value(0), ItemPath, ItemInterface, method);
    call.setArguments({1, 1});
    m_bus.asyncCall(call);
    return QStringLiteral("done");
}

void StatusHost::SetHost(bool isThere) {
    m_hasHost = isThere;
    if (isThere) {
        Q_EMIT StatusNotifierHostRegistered();
    } else {
        Q_EMIT StatusNotifierHostUnregistered();
    }
}

QString StatusHost::Answer(const QString& word) {
    if (word == QStringLiteral("items")) {
        return QString::number(m_items.size());
    }
    if (word == QStringLiteral("tip")) {
        return TipOf(ItemProperty(QStringLiteral("ToolTip")).value<QDBusArgument>());
    }
    if (word == QStringLiteral("activate")) {
        return Click(QStringLiteral("Activate"));
    }
    if (word == QStringLiteral("contextmenu")) {
        return Click(QStringLiteral("ContextMenu"));
    }
    if (word == QStringLiteral("leave") || word == QStringLiteral("come")) {
        SetHost(word == QStringLiteral("come"));
        return QStringLiteral("done");
    }
    if (word == QStringLiteral("menu")) {
        QStringList texts;
        for (const auto& entry : MenuEntries()) {
            texts.append(entry.first);
        }
        return texts.join(u'|');
    }
    const QString choose = QStringLiteral("choose ");
    return word.startsWith(choose) ? Choose(word.mid(choose.size())) : QStringLiteral("what?");
}

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    StatusHost host;
    if (!host.Open()) {
        std::fputs("the watcher's name cannot be had\n", stderr);
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &host, [&host] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
            return;
        }
        std::puts(host.Answer(QString::fromStdString(line)).toUtf8().constData());
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
}
