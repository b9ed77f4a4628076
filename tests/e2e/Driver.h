#pragma once

#include <QPoint>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <stdexcept>

class ListView;
class QMenu;
class TabControl;

/// What a person at the screen cannot find or waits for in vain.
class DriverError : public std::runtime_error {
public:
    explicit DriverError(const QString& text) : std::runtime_error(text.toStdString()) {}
};

/// A person in front of the program: finds controls by their names, presses the mouse and the keys, waits for
/// what is to come, and takes pictures of the screen. Every routine throws DriverError where the person would
/// be at a loss.
class Driver {
public:
    explicit Driver(QString pictureFolder) : m_pictureFolder(std::move(pictureFolder)) {}

    /// A visible control by its object name, in the topmost window that has it; the message of a failure
    /// lists the names that exist.
    [[nodiscard]] static QWidget& Find(const QString& name);
    template <typename Control>
    [[nodiscard]] static Control& Find(const QString& name) {
        auto* control = dynamic_cast<Control*>(&Find(name));
        if (control == nullptr) {
            throw DriverError(name + QStringLiteral(" is a control of another kind"));
        }
        return *control;
    }

    static void Click(const QString& name, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// On the row of this text; it is scrolled into view first.
    static void ClickRow(const QString& list, const QString& text,
                         Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    static void DoubleClickRow(const QString& list, const QString& text);
    static void ClickTab(const QString& tabs, const QString& caption);
    static void DoubleClickTab(const QString& tabs, const QString& caption);
    static void Type(const QString& name, const QString& text);
    static void Press(const QString& name, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    /// Global position of the middle of a row or tab.
    [[nodiscard]] static QPoint RowPosition(const QString& list, const QString& text);
    [[nodiscard]] static QPoint TabPosition(const QString& tabs, const QString& caption);

    /// Runs the event loop until `condition` holds; throws after `seconds` with `what`.
    static void WaitFor(const QString& what, const std::function<bool()>& condition, int seconds = 20);
    /// When a dialog of this name is next in front, does this with it.
    static void WhenDialog(const QString& name, std::function<void()> answer);
    /// When a menu is next open, does this with it.
    static void WhenMenu(std::function<void(QMenu&)> answer);
    /// Forgets the dialogs and menus that have not come.
    static void StopWatching();
    /// Lets the windows come and paint what they have to, until nothing changes any more.
    static void Settle();

    /// The whole screen, as "NAME.png" in the picture folder; nothing without a folder.
    void Picture(const QString& name) const;
    /// A window alone, at its own resolution.
    void PictureOf(QWidget& window, const QString& name) const;

private:
    QString m_pictureFolder;
};
