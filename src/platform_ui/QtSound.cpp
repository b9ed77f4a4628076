#include "platform_ui/QtSound.h"

#include "core/Log.h"

#include <QApplication>
#include <QAudioDevice>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QUrl>

#include <utility>

QtSound::QtSound(Log& log) : m_log(log) {}

QtSound::~QtSound() = default;

void QtSound::Beep() {
    QApplication::beep();
}

void QtSound::Play(const QString& path) {
    if (path.isEmpty()) {
        return;
    }
    if (QMediaDevices::defaultAudioOutput().isNull()) {
        TellOnce(QStringLiteral("No sound: the machine has no sound output"));
        return;
    }
    if (m_effect == nullptr) {
        m_effect = std::make_unique<QSoundEffect>();
        QObject::connect(m_effect.get(), &QSoundEffect::statusChanged, m_effect.get(), [this] {
            if (m_effect->status() == QSoundEffect::Error) {
                TellOnce(QStringLiteral("No sound: the file cannot be played"));
            }
        });
    }
    // It loads in the background, and plays when it is there.
    m_effect->setSource(QUrl::fromLocalFile(path));
    m_effect->play();
}

void QtSound::TellOnce(const QString& line) {
    if (!std::exchange(m_hasTold, true)) {
        m_log.Write(line);
    }
}
