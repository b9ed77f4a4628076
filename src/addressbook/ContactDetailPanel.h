#pragma once

#include <QGroupBox>
#include <QStringList>

#include <array>

class Contact;
class ElidedLabel;
class QLabel;

/// The details of the contact in focus: number, note and the three fields that the office has named
/// (fraContactDetail).
class ContactDetailPanel : public QGroupBox {
    Q_OBJECT
public:
    explicit ContactDetailPanel(QWidget* parent = nullptr);

    /// Each caption is shown with " :" behind it. Fewer than three leave the others as they are.
    void ShowHeaders(const QStringList& captions);
    /// A private number is not shown.
    void Show(const Contact& contact);
    void Clear();

private:
    QLabel* AddRow(const QString& captionName, const QString& caption, ElidedLabel* value,
                   const QString& valueName);

    ElidedLabel* m_lblPhone;
    ElidedLabel* m_lblNote;
    std::array<QLabel*, 3> m_lblUserHeader{};
    std::array<ElidedLabel*, 3> m_userData{};
};
