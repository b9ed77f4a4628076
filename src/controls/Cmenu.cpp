#include "controls/Cmenu.h"

#include "controls/ModalDoor.h"
#include "core/NumberedFailure.h"

#include <QApplication>
#include <QCursor>

namespace {

/// The first window of this program that is not a menu; null if there is none.
const QWidget* FirstTopWindow() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* window : windows) {
        if (window->windowType() != Qt::Popup && window->windowType() != Qt::Desktop) {
            return window;
        }
    }
    return nullptr;
}

/// Entries show the names of groups and texts of messages: an "&" in them is no mnemonic, and what stands
/// behind a tab character no shortcut.
QString Escaped(const QString& text) {
    return QString(text).replace(u'&', QStringLiteral("&&")).replace(u'\t', u' ');
}

QString Unescaped(const QString& text) {
    return QString(text).replace(QStringLiteral("&&"), QStringLiteral("&"));
}

QStringList TextsOf(const QMenu& menu) {
    QStringList texts;
    const QList<QAction*> entries = menu.actions();
    for (const QAction* entry : entries) {
        if (entry->isSeparator()) {
            texts.append(QStringLiteral("-"));
        } else if (entry->menu() != nullptr) {
            const QStringList inner = TextsOf(*entry->menu());
            for (const QString& text : inner) {
                texts.append(Unescaped(entry->text()) + QStringLiteral(" > ") + text);
            }
        } else {
            texts.append(Unescaped(entry->text()));
        }
    }
    return texts;
}

}  // namespace

Cmenu::Cmenu(const QString& caption) : m_menu(std::make_unique<QMenu>(Escaped(caption))) {}

void Cmenu::AddItem(int id, const QString& text, bool isDefault, int flag, bool isGrayed, bool isDisabled,
                    bool isChecked) {
    if (text == QStringLiteral("-")) {
        m_menu->addSeparator()->setData(id);
        return;
    }
    if ((flag & ColumnBreak) != 0 && !m_menu->isEmpty()) {
        m_menu->addSeparator();
    }
    SetState(*AddText(id, text, isChecked), isDefault, isGrayed, isDisabled);
}

void Cmenu::AddName(int id, const QString& name, bool isChecked) {
    AddText(id, name, isChecked);
}

QAction* Cmenu::AddText(int id, const QString& text, bool isChecked) {
    QAction* entry = m_menu->addAction(Escaped(text));
    entry->setData(id);
    entry->setCheckable(isChecked);
    entry->setChecked(isChecked);
    return entry;
}

void Cmenu::AddItem(Cmenu menu, bool isDefault, bool isGrayed, bool isDisabled) {
    QMenu* inner = menu.m_menu.release();
    inner->setParent(m_menu.get(), inner->windowFlags());
    SetState(*m_menu->addMenu(inner), isDefault, isGrayed, isDisabled);
}

void Cmenu::SetState(QAction& entry, bool isDefault, bool isGrayed, bool isDisabled) {
    if (isDefault) {
        m_menu->setDefaultAction(&entry);
    }
    entry.setEnabled(!isGrayed && !isDisabled);
}

int Cmenu::TrackPopup(ModalDoor& door, const QPoint& position) const {
    const QAction* chosen = door.ShowMenu(*m_menu, position);
    return chosen != nullptr ? chosen->data().toInt() : 0;
}

int Cmenu::TrackPopup(ModalDoor& door, const QWidget* window, int x, int y, const QWidget* anchor) const {
    constexpr qint32 UserError = 513;
    if (window == nullptr && FirstTopWindow() == nullptr) {
        throw NumberedFailure(UserError, QStringLiteral("Cannot find top window of current process!"),
                              QStringLiteral("cMenu.TrackPopup"));
    }
    if (anchor != nullptr) {
        return TrackPopup(door, anchor->mapToGlobal(QPoint(0, anchor->height())));
    }
    const QPoint pointer = QCursor::pos();
    return TrackPopup(door, QPoint(x == AtPointer ? pointer.x() : x, y == AtPointer ? pointer.y() : y));
}

QStringList Cmenu::Texts() const {
    return TextsOf(*m_menu);
}
