#include "shell/TipOfDay.h"

#include "app/CommandLine.h"
#include "app/Machine.h"
#include "controls/FormTools.h"
#include "controls/Icons.h"
#include "controls/ModalDoor.h"
#include "core/CodePage.h"
#include "core/Numbers.h"
#include "core/Product.h"
#include "core/Settings.h"
#include "core/TextRules.h"
#include "platform/LocalFiles.h"
#include "platform/SuppliedFiles.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace {

const QString Section = QStringLiteral("Tip");
const QString StartupKey = QStringLiteral("Startup");
const QString NextKey = QStringLiteral("Next");
constexpr int PictureSide = 40;
constexpr QSize TipSize(360, 110);

}  // namespace

TipOfDay::TipOfDay(QStringList tips, const QString& company, const QString& application, Settings& settings,
                   QWidget* parent)
    : QDialog(parent),
      m_tips(std::move(tips)),
      m_settings(settings),
      m_lblTip(new QLabel(this)),
      m_chkShowAtStartup(new QCheckBox(QStringLiteral("&Show tips at start-up"), this)) {
    setObjectName(QStringLiteral("dlgTipOfDay"));
    FormTools::SetFormCaption(*this, QStringLiteral("Tip of the Day"));
    auto* picture = new QLabel(this);
    picture->setPixmap(
        Icons::Get(QStringLiteral("info")).pixmap(QSize(PictureSide, PictureSide), devicePixelRatioF()));
    picture->setAlignment(Qt::AlignTop);
    auto* head = new QLabel(company + u' ' + application, this);
    QFont bold = head->font();
    bold.setBold(true);
    head->setFont(bold);
    m_lblTip->setObjectName(QStringLiteral("lblTip"));
    m_lblTip->setTextFormat(Qt::PlainText);
    m_lblTip->setWordWrap(true);
    m_lblTip->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_lblTip->setMinimumSize(TipSize);
    m_chkShowAtStartup->setObjectName(QStringLiteral("chkShowAtStartup"));
    m_chkShowAtStartup->setChecked(IsWanted(settings));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* next = buttons->addButton(QStringLiteral("&Next Tip"), QDialogButtonBox::ActionRole);
    next->setObjectName(QStringLiteral("cmdNextTip"));

    auto* words = new QVBoxLayout;
    words->addWidget(head);
    words->addWidget(m_lblTip, 1);
    auto* top = new QHBoxLayout;
    top->addWidget(picture);
    top->addLayout(words, 1);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_chkShowAtStartup);
    bottom->addWidget(buttons);
    auto* all = new QVBoxLayout(this);
    all->addLayout(top, 1);
    all->addLayout(bottom);

    connect(next, &QAbstractButton::clicked, this, &TipOfDay::ShowNextTip);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_chkShowAtStartup, &QCheckBox::toggled, this, [this](bool isOn) {
        m_settings.SetValue(Section, StartupKey, isOn ? QStringLiteral("0") : QStringLiteral("1"));
    });
    ShowNextTip();
}

void TipOfDay::ShowIfDue(const Machine& machine, Settings& settings, const CommandLine& commandLine) {
    const auto bytes =
        machine.Files.Read(FindSuppliedFile(machine.Places, machine.Files, QStringLiteral("tips.txt")));
    const QStringList tips = bytes ? TipsOf(machine.Page.Decode(*bytes)) : QStringList();
    if (tips.isEmpty() || (!commandLine.IsTipOfTheDay() && !IsWanted(settings))) {
        return;
    }
    TipOfDay dialog(tips, Product::Company, Product::AppTitle, settings);
    machine.Door.ShowModal(dialog, nullptr);
}

bool TipOfDay::IsWanted(const Settings& settings) {
    return Numbers::Read(settings.GetValue(Section, StartupKey, QStringLiteral("0"))) == 0.0;
}

QStringList TipOfDay::TipsOf(const QString& fileText) {
    QStringList tips;
    const QStringList lines = fileText.split(u'\n');
    for (QString line : lines) {
        line = Text::Trim(line.remove(u'\r'));
        if (!line.isEmpty()) {
            tips.append(line);
        }
    }
    return tips;
}

void TipOfDay::ShowNextTip() {
    const double stored = Numbers::Read(m_settings.GetValue(Section, NextKey, QStringLiteral("0")));
    const bool isLine = stored >= 0 && stored < static_cast<double>(m_tips.size());
    const qsizetype tip = isLine ? static_cast<qsizetype>(stored) : 0;
    m_lblTip->setText(m_tips[tip]);
    m_lblTip->setAccessibleName(m_tips[tip]);
    m_settings.SetValue(Section, NextKey, QString::number((tip + 1) % m_tips.size()));
}
