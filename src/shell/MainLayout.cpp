#include "shell/MainLayout.h"

#include "controls/KeySplitter.h"
#include "core/Settings.h"

#include <QVBoxLayout>
#include <QWidget>

namespace {

constexpr QSize FirstSize(1100, 740);
constexpr int Gap = 10;
constexpr int EdgeGap = 7;  // above and below: height is scarcer than width
constexpr int LeftShare = 9;
constexpr int RightShare = 13;

QByteArray Read(const Settings& settings, const QString& key) {
    return QByteArray::fromBase64(settings.GetValue(SettingNames::SectionDisplay, key, QString()).toLatin1());
}

void Write(Settings& settings, const QString& key, const QByteArray& state) {
    settings.SetValue(SettingNames::SectionDisplay, key, QString::fromLatin1(state.toBase64()));
}

}  // namespace

MainLayout::MainLayout(QWidget& form, QWidget* top, QWidget* left, QWidget* right, QWidget* bottom)
    : QObject(&form), m_form(form), m_splitter(new KeySplitter(Qt::Horizontal, form, Qt::Key_F8)) {
    m_splitter->setObjectName(QStringLiteral("splitMain"));
    m_splitter->setChildrenCollapsible(false);
    m_splitter->setHandleWidth(Gap);
    m_splitter->addWidget(left);
    // The warning stands below the side that has height to spare: below both, it would make the least height
    // of the window larger by its own.
    auto* rightSide = new QWidget;
    rightSide->setObjectName(QStringLiteral("fraRightSide"));
    auto* rightColumn = new QVBoxLayout(rightSide);
    rightColumn->setContentsMargins(0, 0, 0, 0);
    rightColumn->setSpacing(Gap);
    rightColumn->addWidget(right, 1);
    rightColumn->addWidget(bottom);
    m_splitter->addWidget(rightSide);
    m_splitter->SetBarName(QStringLiteral("Division between address book and message"),
                           QStringLiteral("The arrow keys move it."));
    m_splitter->setStretchFactor(0, LeftShare);
    m_splitter->setStretchFactor(1, RightShare);
    auto* column = new QVBoxLayout(&form);
    column->setContentsMargins(Gap, EdgeGap, Gap, EdgeGap);
    column->setSpacing(EdgeGap);
    column->addWidget(top);
    column->addWidget(m_splitter, 1);
}

void MainLayout::Activate() {
    m_form.layout()->activate();
}

void MainLayout::Restore(const Settings& settings) {
    m_form.resize(FirstSize);
    m_splitter->setSizes({LeftShare * FirstSize.width(), RightShare * FirstSize.width()});
    m_form.restoreGeometry(Read(settings, SettingNames::Window));
    m_splitter->restoreState(Read(settings, SettingNames::Splitter));
}

void MainLayout::Save(Settings& settings) const {
    Write(settings, SettingNames::Window, m_form.saveGeometry());
    Write(settings, SettingNames::Splitter, m_splitter->saveState());
}
