#pragma once

#include <QWidget>

class ContactButtonsPanel;
class ContactList;
class ListView;
class QGridLayout;
class ShrinkButton;

/// The list of contacts, and below it the row of buttons that belong to it and to its contacts.
class ContactListPanel : public QWidget {
    Q_OBJECT
public:
    explicit ContactListPanel(QWidget* parent = nullptr);

    /// Places `column` in front of the list; it is exactly as high as the list.
    void PutBesideList(QWidget& column);

    [[nodiscard]] ListView& lvContacts() { return *m_lvContacts; }
    [[nodiscard]] const ListView& lvContacts() const { return *m_lvContacts; }
    [[nodiscard]] ContactButtonsPanel& Buttons() { return *m_buttons; }
    [[nodiscard]] ShrinkButton& cmdSortBy() { return *m_cmdSortBy; }

    /// One row a contact, in the order of the list. `contacts` is what stands behind the rows until the next
    /// fill: a row is made of its contact when it is first looked at.
    void FillContactList(const ContactList& contacts, qint32 sortBy);
    /// The sort button names what a click on it will do.
    void ShowSortBy(qint32 sortBy);

private:
    QGridLayout* m_places;
    ListView* m_lvContacts;
    ShrinkButton* m_cmdSortBy;
    ContactButtonsPanel* m_buttons;
    ShrinkButton* m_cmdSearch;
    ShrinkButton* m_cmdPrint;
};
