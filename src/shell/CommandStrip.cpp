#include "shell/CommandStrip.h"

#include "controls/ShrinkButton.h"
#include "shell/AdBanner.h"

#include <QHBoxLayout>

CommandStrip::CommandStrip(QWidget* parent) : QFrame(parent), m_banner(new AdBanner(this)) {
    setObjectName(QStringLiteral("fraCommands"));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    const QList<ShrinkButton*> left = {
        NewButton(QStringLiteral("cmdHistory"), QStringLiteral("history"), QStringLiteral("&History"),
                  QStringLiteral(" Message History "), true),
        NewButton(QStringLiteral("cmdReports"), QStringLiteral("reports"), QStringLiteral("Re&ports"),
                  QStringLiteral(" Message Reports "), false),
        NewButton(QStringLiteral("cmdConfig"), QStringLiteral("configuration"),
                  QStringLiteral("Confi&guration"), QStringLiteral(" Configuration "), false),
    };
    const QList<ShrinkButton*> right = {
        NewButton(QStringLiteral("cmdAbout"), QStringLiteral("about"), QStringLiteral("&About"),
                  QStringLiteral(" About this Program "), true),
        NewButton(QStringLiteral("cmdMinimize"), QStringLiteral("tray"), QStringLiteral("&To Tray"),
                  QStringLiteral(" Hide in the Notification Area "), true),
        NewButton(QStringLiteral("cmdExit"), QStringLiteral("exit"), QStringLiteral("E&xit"),
                  QStringLiteral(" Exit "), true),
    };
    m_cmdExit = right.last();
    for (ShrinkButton* button : left) {
        row->addWidget(button);
        m_buttonWidth += button->sizeHint().width() + row->spacing();
    }
    row->addStretch(1);
    row->addWidget(m_banner);
    row->addStretch(1);
    for (ShrinkButton* button : right) {
        row->addWidget(button);
        m_buttonWidth += button->sizeHint().width() + row->spacing();
    }
    connect(left.first(), &QAbstractButton::clicked, this, &CommandStrip::HistoryPressed);
    connect(right.at(0), &QAbstractButton::clicked, this, &CommandStrip::AboutPressed);
    connect(right.at(1), &QAbstractButton::clicked, this, &CommandStrip::MinimizePressed);
    connect(m_cmdExit, &QAbstractButton::clicked, this, &CommandStrip::ExitPressed);
}

ShrinkButton* CommandStrip::NewButton(const QString& name, const QString& icon, const QString& word,
                                      const QString& toolTip, bool isEnabled) {
    auto* button = new ShrinkButton(name, icon, word, toolTip, this);
    button->setEnabled(isEnabled);
    return button;
}

void CommandStrip::PressExit() {
    m_cmdExit->click();
}

void CommandStrip::StopBanner() {
    m_banner->StopUpdates();
}

void CommandStrip::resizeEvent(QResizeEvent* event) {
    QFrame::resizeEvent(event);
    // The words on the buttons matter more than the picture.
    m_banner->setVisible(width() >= m_buttonWidth + m_banner->sizeHint().width());
}
