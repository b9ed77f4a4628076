#pragma once

#include "controls/ModalDoor.h"

#include <QAction>
#include <QDialog>
#include <QList>
#include <QMenu>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>

/// Answers dialogs and menus in the order that was prepared. A dialog is really shown, and the answer drives
/// its controls until it hides. What was not expected fails the test, and so does a prepared answer that was
/// not used.
class RecordingDoor final : public ModalDoor {
public:
    using DialogAnswer = std::function<void(QDialog&)>;

    /// Window titles of the dialogs and texts of the menus, in the order in which they came. An entry of a
    /// submenu is "text > entry", a separator "-", and a greyed entry stands in brackets.
    QStringList Dialogs;
    QList<QStringList> Menus;
    /// The owner and position given with the last of each.
    QWidget* Owner = nullptr;
    QPoint MenuPosition;
    /// Runs while a menu stands.
    std::function<void()> OnMenu;

    ~RecordingDoor() override {
        EXPECT_TRUE(m_dialogAnswers.isEmpty())
            << m_dialogAnswers.size() << " expected dialog(s) did not come";
        EXPECT_TRUE(m_menuAnswers.isEmpty()) << m_menuAnswers.size() << " expected menu(s) did not come";
    }

    void ExpectDialog(DialogAnswer answer) { m_dialogAnswers.append(std::move(answer)); }
    /// The text of the entry to choose, as above; empty dismisses the menu.
    void ExpectMenu(const QString& choice) { m_menuAnswers.append(choice); }

    void ShowModal(QDialog& dialog, QWidget* owner) override {
        Dialogs.append(dialog.windowTitle());
        Owner = owner;
        if (m_dialogAnswers.isEmpty()) {
            ADD_FAILURE() << "unexpected dialog: " << dialog.windowTitle().toStdString();
            return;
        }
        dialog.setModal(true);
        dialog.show();
        m_dialogAnswers.takeFirst()(dialog);
        EXPECT_FALSE(dialog.isVisible()) << "the answer left the dialog open";
        dialog.hide();
    }

    QAction* ShowMenu(QMenu& menu, const QPoint& position) override {
        QStringList texts;
        QAction* chosen = nullptr;
        const QString choice = m_menuAnswers.isEmpty() ? QString() : m_menuAnswers.first();
        Read(menu, QString(), choice, texts, chosen);
        Menus.append(texts);
        MenuPosition = position;
        if (OnMenu) {
            OnMenu();
        }
        if (m_menuAnswers.isEmpty()) {
            ADD_FAILURE() << "unexpected menu: " << texts.join(u'|').toStdString();
            return nullptr;
        }
        m_menuAnswers.removeFirst();
        EXPECT_TRUE(choice.isEmpty() || chosen != nullptr) << "no such entry: " << choice.toStdString();
        return chosen;
    }

private:
    static void Read(const QMenu& menu, const QString& prefix, const QString& choice, QStringList& texts,
                     QAction*& chosen) {
        const QList<QAction*> entries = menu.actions();
        for (QAction* entry : entries) {
            const QString text =
                prefix + QString(entry->text()).replace(QStringLiteral("&&"), QStringLiteral("&"));
            if (entry->menu() != nullptr) {
                Read(*entry->menu(), text + QStringLiteral(" > "), choice, texts, chosen);
            } else if (entry->isSeparator()) {
                texts.append(prefix + u'-');
            } else {
                texts.append(entry->isEnabled() ? text : u'(' + text + u')');
                chosen = !choice.isEmpty() && entry->isEnabled() && text == choice ? entry : chosen;
            }
        }
    }

    QList<DialogAnswer> m_dialogAnswers;
    QStringList m_menuAnswers;
};
