#pragma once

#include "platform_ui/Tray.h"
#include "platform_ui/TrayWatch.h"

#include <QObject>
#include <QPointer>
#include <QSystemTrayIcon>
#include <QWidget>

#include <memory>

/// The notification area through the toolkit. The toolkit decides once in a process which kind of area it
/// serves, so its icon is made when an area is found, and never before; from then on that kind counts.
class QtTray final : public QObject, public Tray {
    Q_OBJECT
public:
    QtTray();
    ~QtTray() override;

    void Open(TrayEvents events) override;
    void Close() override;
    [[nodiscard]] bool IsThere() const override;
    void SetNeeded(bool on) override;
    void SetIcon(const QIcon& icon) override;
    void SetToolTip(const QString& text) override;
    void SetHostMenu(QMenu* menu) override;
    [[nodiscard]] QRect Place() const override;
    void ShowBalloonTip(int timeValue, const QString& title, const QString& text, BalloonIcon icon) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Kind { None, Embedding, Host };

    /// What could take an icon now. The toolkit prefers a host.
    [[nodiscard]] Kind Found() const;
    [[nodiscard]] bool IsAreaThere() const;
    void Update();
    void MakeIcon(Kind kind);
    void ShowIcon(bool on);
    void Activate(QSystemTrayIcon::ActivationReason reason);
    void AskForMenu();

    TrayWatch m_watch;
    TrayEvents m_events;
    std::unique_ptr<QSystemTrayIcon> m_trayIcon;
    QIcon m_picture;
    QString m_toolTip;
    QMenu* m_hostMenu = nullptr;
    /// Where other programs' trays embed it, the toolkit's window for the icon.
    QPointer<QWidget> m_iconWindow;
    Kind m_kind = Kind::None;
    bool m_isOpen = false;
    bool m_isNeeded = false;
};
