#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QMap>
#include <QObject>
#include <QStringList>

/// A desktop's host for StatusNotifier items, and their watcher as well: what a panel does, without a panel.
/// Words on its standard input are its user's hand; it answers each with one line:
///   items            how many items there are
///   tip              the tip of the first item
///   activate         a click on the first item; "done"
///   contextmenu      a right click on it, by a panel that leaves the menu to the program; "done"
///   leave, come      the panel goes and comes, while the watcher stays; "done"
///   menu             the entries of its menu that show, with "|" between them
///   choose TEXT      a click on an entry; "done", or "none" if there is no such entry
class StatusHost final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ Items)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ HasHost)
    Q_PROPERTY(int ProtocolVersion READ Version)
public:
    StatusHost();

    [[nodiscard]] bool Open();
    [[nodiscard]] QStringList Items() const { return m_items; }
    [[nodiscard]] bool HasHost() const { return m_hasHost; }
    [[nodiscard]] int Version() const { return 0; }
    [[nodiscard]] QString Answer(const QString& word);

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString& service);
    Q_SCRIPTABLE void RegisterStatusNotifierHost(const QString&) {}

Q_SIGNALS:
    Q_SCRIPTABLE void StatusNotifierItemRegistered(const QString& service);
    Q_SCRIPTABLE void StatusNotifierItemUnregistered(const QString& service);
    Q_SCRIPTABLE void StatusNotifierHostRegistered();
    Q_SCRIPTABLE void StatusNotifierHostUnregistered();

private:
    [[nodiscard]] QVariant ItemProperty(const QString& name) const;
    /// Text and number of each entry that shows, in order.
    [[nodiscard]] QList<QPair<QString, int>> MenuEntries() const;
    /// Calls a method of the item with a place on the screen; "done".
    [[nodiscard]] QString Click(const QString& method) const;
    void SetHost(bool isThere);
    [[nodiscard]] QString Choose(const QString& text) const;

    QDBusConnection m_bus;
    QStringList m_items;
    bool m_hasHost = true;
};
