#pragma once

#include "addressbook/ContactList.h"
#include "addressbook/PhonebookArea.h"
#include "addressbook/PhonebookHost.h"
#include "addressbook/PhonebookSide.h"
#include "addressbook/frmTabName.h"
#include "controls/ListView.h"
#include "controls/TabControl.h"
#include "core/Log.h"
#include "support/RecordingDoor.h"
#include "support/TempOffice.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>

/// Texts that a failing comparison can be read by.
inline void PrintTo(const QString& text, std::ostream* stream) {
    *stream << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& texts, std::ostream* stream) {
    *stream << '[' << texts.join(QStringLiteral(" | ")).toStdString() << ']';
}

/// Boxes that a test can look behind: `OnShow` runs while one is on the screen.
class WatchedBoxes final : public MessageBoxes {
public:
    explicit WatchedBoxes(MessageBoxes& boxes) : m_boxes(boxes) {}
    std::function<void()> OnShow;

    BoxAnswer Show(const BoxRequest& request) override {
        if (OnShow) {
            OnShow();
        }
        return m_boxes.Show(request);
    }

private:
    MessageBoxes& m_boxes;
};

/// The rest of the window: writes down what it is asked.
class RecordingHost final : public PhonebookHost {
public:
    QList<QStringList> Added;
    /// Runs within AddKeysToRecipients.
    std::function<void()> OnAdd;
    QList<qint32> DroppedGroups;
    QList<int> ScrolledTo;
    struct Updated {
        QString Key;
        QString ToolTip;
    };
    QList<Updated> UpdatedRecipients;
    int Refreshes = 0;
    int StateUpdates = 0;
    QList<bool> PasswordsAsked;
    bool IsPasswordRight = true;

    void AddKeysToRecipients(const QStringList& keys) override {
        Added.append(keys);
        if (OnAdd) {
            OnAdd();
        }
    }
    void DropGroupByID(qint32 groupID) override { DroppedGroups.append(groupID); }
    void ScrollRecipientsTo(int index) override { ScrolledTo.append(index); }
    void UpdateRecipient(const Contact& contact, const QString& toolTip) override {
        UpdatedRecipients.append({contact.Key, toolTip});
    }
    void RefreshRecipientList() override { ++Refreshes; }
    void UpdateStateDisplay() override { ++StateUpdates; }
    bool IsPasswordOK(bool hidden) override {
        PasswordsAsked.append(hidden);
        return IsPasswordRight;
    }
};

/// The phonebook side of the window on a real office, started as the main window starts it.
class PhonebookOffice : public ::testing::Test {
protected:
    PhonebookOffice();

    /// Shows the area and fills it; called again it is the next run of the program.
    void Start();

    template <typename T>
    T& Control(QStringView name) {
        T* found = Area->findChild<T*>(name.toString());
        EXPECT_NE(found, nullptr) << "no control " << name.toString().toStdString();
        return *found;
    }
    TabControl& tabGroup() { return Control<TabControl>(u"tabGroup"); }
    TabControl& tabAlpha() { return Control<TabControl>(u"tabAlpha"); }
    ListView& lvContacts() { return Control<ListView>(u"lvContacts"); }
    [[nodiscard]] QString LabelText(QStringView name) { return Control<QLabel>(name).text(); }

    [[nodiscard]] QStringList TabCaptions();
    [[nodiscard]] QStringList TabTags();
    [[nodiscard]] int TabNamed(const QString& caption);
    /// Presses and releases on a tab, long after the press before.
    void ClickTab(const QString& caption, Qt::MouseButton button = Qt::LeftButton);
    void DoubleClickTab(const QString& caption);
    void ClickLetter(const QString& letter);
    /// Drops text that comes from the contact list on a tab, or beside the tabs.
    void DropOn(const QString& caption, const QString& text);

    [[nodiscard]] QStringList Names();
    void SelectRows(std::initializer_list<int> rows);
    void ClickRow(int row, Qt::MouseButton button = Qt::LeftButton);
    void DoubleClickRow(int row);
    void Press(QStringView button);
    /// A click of the left button that has happened and was not looked at yet.
    void PostClick(QWidget& target, const QPoint& place);
    [[nodiscard]] QString LogText();
    /// Types into the next name dialog as a person does, then presses the key.
    void ExpectName(const QString& name, Qt::Key end = Qt::Key_Return);

    TempOffice Office;
    ContactList AddressContacts;
    qint32 SortBy = 0;
    QString LocaleCountry = QStringLiteral("IE");
    bool IsInitialising = false;
    RecordingHost Host;
    RecordingDoor Door;
    WatchedBoxes Boxes{Office.Boxes};
    Log AppLog;
    std::unique_ptr<PhonebookArea> Area;
};
