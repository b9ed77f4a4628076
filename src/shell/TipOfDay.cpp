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
#include "platform/Clock.h"
#include "platform/LocalFiles.h"
#include "platform/SuppliedFiles.h"
#include "ui_TipOfDay.h"

#include <QEvent>

#include <utility>

namespace {

constexpr int PictureSide = 40;

}  // namespace

TipOfDay::TipOfDay(QStringList tips, const QString& company, const QString& application, Settings& settings,
                   int year, QWidget* parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::TipOfDay>()), m_tips(std::move(tips)), m_settings(settings) {
    m_ui->setupUi(this);
    FormTools::ExpandPlaceholders(*this, year);
    FormTools::KeepTitleWhole(*this);
    ShowPicture();
    m_ui->lblHead->setText(company + u' ' + application);
    m_ui->chkShowAtStartup->setChecked(IsWanted(settings));
    connect(m_ui->cmdNextTip, &QAbstractButton::clicked, this, &TipOfDay::ShowNextTip);
    connect(m_ui->chkShowAtStartup, &QCheckBox::toggled, this, [this](bool isOn) {
        m_settings.SetValue(SettingNames::SectionTip, SettingNames::Startup,
                            isOn ? QStringLiteral("0") : QStringLiteral("1"));
    });
    ShowNextTip();
}

TipOfDay::~TipOfDay() = default;

void TipOfDay::ShowIfDue(const Machine& machine, Settings& settings, const CommandLine& commandLine) {
    const auto bytes =
        machine.Files.Read(FindSuppliedFile(machine.Places, machine.Files, QStringLiteral("tips.txt")));
    const QStringList tips = bytes ? TipsOf(machine.Page.Decode(*bytes)) : QStringList();
    if (tips.isEmpty() || (!commandLine.IsTipOfTheDay() && !IsWanted(settings))) {
        return;
    }
    TipOfDay dialog(tips, Product::Company, Product::AppTitle, settings, machine.Time.Now().date().year());
    machine.Door.ShowModal(dialog, nullptr);
}

bool TipOfDay::IsWanted(const Settings& settings) {
    return Numbers::Read(settings.GetValue(SettingNames::SectionTip, SettingNames::Startup,
                                           QStringLiteral("0"))) == 0.0;
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
    const double stored =
        Numbers::Read(m_settings.GetValue(SettingNames::SectionTip, SettingNames::Next, QStringLiteral("0")));
    const bool isLine = stored >= 0 && stored < static_cast<double>(m_tips.size());
    const qsizetype tip = isLine ? static_cast<qsizetype>(stored) : 0;
    m_ui->lblTip->setText(m_tips[tip]);
    m_ui->lblTip->setAccessibleName(m_tips[tip]);
    m_settings.SetValue(SettingNames::SectionTip, SettingNames::Next,
                        QString::number((tip + 1) % m_tips.size()));
    GrowToTip();
}

void TipOfDay::ShowPicture() {
    m_ui->imgTip->setPixmap(
        Icons::Get(QStringLiteral("info")).pixmap(QSize(PictureSide, PictureSide), devicePixelRatioF()));
}

bool TipOfDay::event(QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange) {
        ShowPicture();
    }
    return QDialog::event(event);
}

void TipOfDay::GrowToTip() {
    // The layout keeps the dialog from being too small only for texts that are not wrapped.
    layout()->activate();
    const int needed = layout()->totalHeightForWidth(width());
    if (needed > height()) {
        resize(width(), needed);
    }
}
