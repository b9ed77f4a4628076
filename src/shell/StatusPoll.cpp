#include "shell/StatusPoll.h"

#include "core/BusyState.h"
#include "core/Trap.h"
#include "tracking/MessageTracker.h"

#include <QTimer>

#include <utility>

StatusPoll::StatusPoll(const BusyState& busy, MessageTracker& tracker, std::function<void()> showAlert,
                       QObject* parent)
    : QObject(parent),
      m_busy(busy),
      m_tracker(tracker),
      m_showAlert(std::move(showAlert)),
      m_tmrCheckMsgStatus(new QTimer(this)) {
    m_tmrCheckMsgStatus->setObjectName(QStringLiteral("tmrCheckMsgStatus"));
    m_tmrCheckMsgStatus->setInterval(CheckInterval);
    connect(m_tmrCheckMsgStatus, &QTimer::timeout, this, &StatusPoll::Check);
}

void StatusPoll::Start() {
    if (!m_tmrCheckMsgStatus->isActive()) {
        m_tmrCheckMsgStatus->start();
    }
}

void StatusPoll::Stop() {
    m_tmrCheckMsgStatus->stop();
}

void StatusPoll::Check() {
    if (!m_busy.IsIdle()) {
        return;
    }
    Trap([this] {
        if (m_tracker.Update() > 0) {
            m_showAlert();
        }
    });
}
