#include "PhonebookOffice.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>

PhonebookOffice::PhonebookOffice() : AppLog(Office.Files, Office.Time) {
    AppLog.LogToFile(Office.DataFolder.filePath(QStringLiteral("applog.txt")));
}

void PhonebookOffice::Start() {
    Area = std::make_unique<PhonebookArea>(
        PhonebookSide{Office.Phonebook(), AddressContacts, SortBy, LocaleCountry, IsInitialising, Host, Door,
                      Boxes, Office.Pump, AppLog, Office.Time, Office.Sound, Office.AppSettings});
    Area->resize(440, 560);
    IsInitialising = true;
    Area->InitAlphaTabs();
    Area->InitGroupTabs();
    Area->InitUserHeaders();
    Area->InitSortBy();
    IsInitialising = false;
    Area->ShowGroup();
    Area->show();
    QApplication::processEvents();
}

QStringList PhonebookOffice::TabCaptions() {
    QStringList captions;
    for (int tab = 0; tab < tabGroup().Count(); ++tab) {
        captions.append(tabGroup().Caption(tab));
    }
    return captions;
}

QStringList PhonebookOffice::TabTags() {
    QStringList tags;
    for (int tab = 0; tab < tabGroup().Count(); ++tab) {
        tags.append(tabGroup().Tag(tab));
    }
    return tags;
}

int PhonebookOffice::TabNamed(const QString& caption) {
    const int tab = static_cast<int>(TabCaptions().indexOf(caption));
    EXPECT_GE(tab, 0) << "no tab " << caption.toStdString();
    return qMax(0, tab);
}

void PhonebookOffice::ClickTab(const QString& caption, Qt::MouseButton button) {
    Office.Time.Time = Office.Time.Time.addSecs(10);
    QTest::mouseClick(&tabGroup(), button, Qt::NoModifier, tabGroup().TabRect(TabNamed(caption)).center());
}

void PhonebookOffice::DoubleClickTab(const QString& caption) {
    ClickTab(caption);
    const QPoint place = tabGroup().TabRect(TabNamed(caption)).center();
    QTest::mouseDClick(&tabGroup(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseRelease(&tabGroup(), Qt::LeftButton, Qt::NoModifier, place);
}

void PhonebookOffice::ClickLetter(const QString& letter) {
    for (int tab = 0; tab < tabAlpha().Count(); ++tab) {
        if (tabAlpha().Caption(tab) == letter) {
            QTest::mouseClick(&tabAlpha(), Qt::LeftButton, Qt::NoModifier, tabAlpha().TabRect(tab).center());
            return;
        }
    }
    ADD_FAILURE() << "no letter " << letter.toStdString();
}

void PhonebookOffice::DropOn(const QString& caption, const QString& text) {
    Q_EMIT tabGroup().TextDropped(text, caption.isEmpty() ? -1 : TabNamed(caption));
}

QStringList PhonebookOffice::Names() {
    QStringList names;
    for (int row = 0; row < lvContacts().Rows().Count(); ++row) {
        names.append(lvContacts().Rows().At(row).Text);
    }
    return names;
}

void PhonebookOffice::SelectRows(std::initializer_list<int> rows) {
    lvContacts().UnselectAllRows();
    for (const int row : rows) {
        lvContacts().selectionModel()->select(lvContacts().Rows().index(row), QItemSelectionModel::Select);
    }
}

void PhonebookOffice::ClickRow(int row, Qt::MouseButton button) {
    const QPoint place = lvContacts().visualRect(lvContacts().Rows().index(row)).center();
    QTest::mouseClick(lvContacts().viewport(), button, Qt::NoModifier, place);
}

void PhonebookOffice::DoubleClickRow(int row) {
    ClickRow(row);
    const QPoint place = lvContacts().visualRect(lvContacts().Rows().index(row)).center();
    QTest::mouseDClick(lvContacts().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseRelease(lvContacts().viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

void PhonebookOffice::Press(QStringView button) {
    QTest::mouseClick(&Control<QAbstractButton>(button), Qt::LeftButton);
}

void PhonebookOffice::PostClick(QWidget& target, const QPoint& place) {
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QCoreApplication::postEvent(
            &target, new QMouseEvent(type, QPointF(place), QPointF(target.mapToGlobal(place)), Qt::LeftButton,
                                     type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                                     Qt::NoModifier));
    }
}

QString PhonebookOffice::LogText() {
    return QString::fromUtf8(
        Office.Files.Read(Office.DataFolder.filePath(QStringLiteral("applog.txt"))).value_or(QByteArray()));
}

void PhonebookOffice::ExpectName(const QString& name, Qt::Key end) {
    Door.ExpectDialog([name, end](QDialog& dialog) {
        auto* box = dialog.findChild<QLineEdit*>(QStringLiteral("txtName"));
        ASSERT_NE(box, nullptr);
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Backspace);
        QTest::keyClicks(box, name);
        QTest::keyClick(box, end);
    });
}
