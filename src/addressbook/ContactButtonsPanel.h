#pragma once

#include <QWidget>

class ShrinkButton;

/// The buttons that add, edit and delete contacts.
class ContactButtonsPanel : public QWidget {
    Q_OBJECT
public:
    explicit ContactButtonsPanel(QWidget* parent = nullptr);

Q_SIGNALS:
    void DeleteClicked();

private:
    ShrinkButton* m_cmdAddContact;
    ShrinkButton* m_cmdEditContact;
    ShrinkButton* m_cmdDeleteContact;
};
