#include "e2e/Driver.h"

#include "controls/ListView.h"
#include "controls/TabControl.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QMenu>
#include <QPixmap>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace {

constexpr int DialogPatience = 20000;
const QString WatchName = QStringLiteral("DriverWatch");
constexpr int SettlePatience = 60000;
/// Turns of the event loop without a change after which nothing more is on its way.
constexpr int QuietTurns = 3;

/// Notes the events by which windows change what they show.
class ChangeWatch final : public QObject {
public:
    ChangeWatch() { QCoreApplication::instance()->installEventFilter(this); }
    [[nodiscard]] bool TakeChanged() { return std::exchange(m_isChanged, false); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
            case QEvent::Paint:
            case QEvent::UpdateRequest:
            case QEvent::LayoutRequest:
            case QEvent::Expose:
            case QEvent::Resize:
            case QEvent::Move:
            case QEvent::Show:
            case QEvent::Hide:
            case QEvent::WindowActivate:
            case QEvent::WindowDeactivate:
                m_isChanged = true;
                break;
            default:
                break;
        }
        return QObject::eventFilter(watched, event);
    }

private:
    bool m_isChanged = false;
};

/// True when the window manager has put every window of ours on the screen, and an open dialog in front.
bool AreWindowsThere() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    const bool isAllThere = std::all_of(windows.cbegin(), windows.cend(), [](const QWidget* window) {
        return !window->isVisible() || window->isMinimized() || window->windowHandle() == nullptr ||
               window->windowHandle()->isExposed();
    });
    const QWidget* const dialog = QApplication::activeModalWidget();
    return isAllThere && (dialog == nullptr || dialog->isActiveWindow());
}

/// Windows from the front: the modal one, the active one, then the others.
QWidgetList WindowsFromTheFront() {
    QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* front : {QApplication::activeWindow(), QApplication::activeModalWidget()}) {
        if (front != nullptr && windows.removeOne(front)) {
            windows.prepend(front);
        }
    }
    return windows;
}

int RowOfText(const ListView& list, const QString& text) {
    for (int row = 0; row < list.Rows().Count(); ++row) {
        if (list.Rows().At(row).Text == text) {
            return row;
        }
    }
    throw DriverError(QStringLiteral("no row \"%1\" in %2").arg(text, list.objectName()));
}

QPoint RowPoint(ListView& list, const QString& text) {
    const int row = RowOfText(list, text);
    list.EnsureVisible(row);
    QApplication::processEvents();
    const QRect place = list.visualRect(list.model()->index(row, 0));
    return {std::min(place.left() + 60, place.right()), place.center().y()};
}

QPoint TabPoint(const TabControl& tabs, const QString& caption) {
    for (int position = 0; position < tabs.Count(); ++position) {
        if (tabs.Caption(position) == caption) {
            return tabs.TabRect(position).center();
        }
    }
    throw DriverError(QStringLiteral("no tab \"%1\" in %2").arg(caption, tabs.objectName()));
}

/// Looks again and again, in whatever event loop is running, and does `answer` once.
void WhenInFront(std::function<bool()> isThere, std::function<void()> answer) {
    auto* watch = new QTimer(qApp);
    watch->setObjectName(WatchName);
    watch->setInterval(20);
    QElapsedTimer patience;
    patience.start();
    QObject::connect(watch, &QTimer::timeout, watch,
                     [watch, patience, isThere = std::move(isThere), answer = std::move(answer)] {
                         const bool isNow = isThere();
                         if (isNow || patience.elapsed() > DialogPatience) {
                             watch->stop();
                             watch->deleteLater();
                         }
                         if (isNow) {
                             Driver::Settle();
                             answer();
                         }
                     });
    watch->start();
}

}  // namespace

QWidget& Driver::Find(const QString& name) {
    QStringList names;
    for (QWidget* window : WindowsFromTheFront()) {
        if (!window->isVisible()) {
            continue;
        }
        if (window->objectName() == name) {
            return *window;
        }
        for (QWidget* control : window->findChildren<QWidget*>()) {
            if (control->objectName() == name && control->isVisible()) {
                return *control;
            }
            if (!control->objectName().isEmpty() && !control->objectName().startsWith(u"qt_")) {
                names.append(control->objectName());
            }
        }
    }
    throw DriverError(QStringLiteral("no control %1; there are: %2").arg(name, names.join(u' ')));
}

void Driver::Click(const QString& name, Qt::KeyboardModifiers modifiers) {
    QWidget& control = Find(name);
    if (!control.isEnabled()) {
        throw DriverError(name + QStringLiteral(" is disabled"));
    }
    QTest::mouseClick(&control, Qt::LeftButton, modifiers, control.rect().center());
}

void Driver::ClickRow(const QString& list, const QString& text, Qt::KeyboardModifiers modifiers) {
    auto& view = Find<ListView>(list);
    const QPoint point = RowPoint(view, text);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, point);
}

void Driver::DoubleClickRow(const QString& list, const QString& text) {
    auto& view = Find<ListView>(list);
    const QPoint point = RowPoint(view, text);
    QTest::mouseClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, point);
    QTest::mouseDClick(view.viewport(), Qt::LeftButton, Qt::NoModifier, point);
}

void Driver::ClickTab(const QString& tabs, const QString& caption) {
    auto& control = Find<TabControl>(tabs);
    QTest::mouseClick(&control, Qt::LeftButton, Qt::NoModifier, TabPoint(control, caption));
}

void Driver::DoubleClickTab(const QString& tabs, const QString& caption) {
    auto& control = Find<TabControl>(tabs);
    const QPoint point = TabPoint(control, caption);
    QTest::mouseClick(&control, Qt::LeftButton, Qt::NoModifier, point);
    QTest::mouseDClick(&control, Qt::LeftButton, Qt::NoModifier, point);
}

void Driver::Type(const QString& name, const QString& text) {
    QWidget& control = Find(name);
    control.setFocus();
    QTest::keyClicks(&control, text);
}

void Driver::Press(const QString& name, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(&Find(name), key, modifiers);
}

QPoint Driver::RowPosition(const QString& list, const QString& text) {
    auto& view = Find<ListView>(list);
    return view.viewport()->mapToGlobal(RowPoint(view, text));
}

QPoint Driver::TabPosition(const QString& tabs, const QString& caption) {
    auto& control = Find<TabControl>(tabs);
    return control.mapToGlobal(TabPoint(control, caption));
}

void Driver::WaitFor(const QString& what, const std::function<bool()>& condition, int seconds) {
    if (!QTest::qWaitFor(condition, seconds * 1000)) {
        throw DriverError(QStringLiteral("waited %1 s in vain: %2").arg(seconds).arg(what));
    }
}

void Driver::WhenDialog(const QString& name, std::function<void()> answer) {
    WhenInFront(
        [name] {
            const QWidget* const dialog = QApplication::activeModalWidget();
            return dialog != nullptr && dialog->objectName() == name && dialog->isVisible();
        },
        std::move(answer));
}

void Driver::WhenMenu(std::function<void(QMenu&)> answer) {
    const auto menu = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
    WhenInFront([menu] { return menu() != nullptr && menu()->isVisible(); },
                [menu, answer = std::move(answer)] { answer(*menu()); });
}

void Driver::StopWatching() {
    qDeleteAll(qApp->findChildren<QTimer*>(WatchName, Qt::FindDirectChildrenOnly));
}

void Driver::Settle() {
    ChangeWatch watch;
    QElapsedTimer patience;
    patience.start();
    for (int quietTurns = 0; quietTurns < QuietTurns;) {
        if (patience.elapsed() > SettlePatience) {
            throw DriverError(QStringLiteral("the windows do not come to rest"));
        }
        QGuiApplication::sync();  // what the screen has to say is here when it returns
        quietTurns = watch.TakeChanged() || !AreWindowsThere() ? 0 : quietTurns + 1;
    }
}

void Driver::Picture(const QString& name) const {
    if (m_pictureFolder.isEmpty()) {
        return;
    }
    Settle();
    if (!QApplication::primaryScreen()->grabWindow(0).save(m_pictureFolder + u'/' + name +
                                                           QStringLiteral(".png"))) {
        throw DriverError(QStringLiteral("the picture %1 could not be written").arg(name));
    }
}

void Driver::PictureOf(QWidget& window, const QString& name) const {
    if (m_pictureFolder.isEmpty()) {
        return;
    }
    Settle();
    if (!window.grab().save(m_pictureFolder + u'/' + name + QStringLiteral(".png"))) {
        throw DriverError(QStringLiteral("the picture %1 could not be written").arg(name));
    }
}
