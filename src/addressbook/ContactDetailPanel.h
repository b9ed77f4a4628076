#pragma once

#include <QGroupBox>
#include <QStringList>

#include <array>

class Contact;
class ElidedLabel;
class QLabel;

/// The details of the contact in focus: number, note and the three fields that the office has named
/// (fraContactDetail). A screen reader hears each caption together with its value.
class ContactDetailPanel : public QGroupBox {
    Q_OBJECT
public:
    explicit ContactDetailPanel(QWidget* parent = nullptr);

    /// Each caption is shown with " :" behind it. Fewer than three leave the others as they are.
    void ShowHeaders(const QStringList& captions);
    /// A private number is not shown.
    void Show(const Contact& contact);
    /// Empties number, note and the three values; the captions stay.
    void Clear();

private:
    struct Field {
        QLabel* Caption = nullptr;
        ElidedLabel* Value = nullptr;
    };

    Field AddRow(const QString& captionName, const QString& caption, const QString& valueName);
    static void SetValue(const Field& field, const QString& value);

    Field m_phone;
    Field m_note;
    std::array<Field, 3> m_user;
};
