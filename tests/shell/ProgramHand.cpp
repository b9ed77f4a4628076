// A hand inside the real program: a plugin that the toolkit loads at the start when the environment names it.
// Sends two messages to the first contact, one after the other, and presses Exit; or, where the environment's
// HAND_TASK is "end over a dialog", opens the about box and lets the session end. A hand that waits in vain
// ends the program with its own exit code.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QElapsedTimer>
#include <QGenericPlugin>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <cstdio>
#include <functional>

#include <unistd.h>

namespace {

constexpr int Pace = 30;          // ms between two looks at the window
constexpr int Patience = 100000;  // ms for everything
constexpr int GivenUp = 99;       // exit code

template <typename Control>
Control* Find(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets()) {
        auto* control =
            window->isVisible() ? window->findChild<Control*>(QString::fromLatin1(name)) : nullptr;
        if (control != nullptr) {
            return control;
        }
    }
    return nullptr;
}

bool HasRows(const char* list, int rows) {
    const auto* view = Find<QAbstractItemView>(list);
    return view != nullptr && view->model()->rowCount() == rows;
}

/// Each returns whether its moment had come.
bool PickFirstContact() {
    auto* contacts = Find<QAbstractItemView>("lvContacts");
    if (contacts == nullptr || contacts->model()->rowCount() == 0 || !HasRows("lvRecipients", 0)) {
        return false;
    }
    const QPoint place = contacts->visualRect(contacts->model()->index(0, 0)).center();
    QTest::mouseClick(contacts->viewport(), Qt::LeftButton, {}, place);
    QTest::mouseDClick(contacts->viewport(), Qt::LeftButton, {}, place);
    return true;
}

bool Write() {
    auto* text = Find<QWidget>("txtMessage");
    if (text == nullptr || !HasRows("lvRecipients", 1)) {
        return false;
    }
    QTest::keyClicks(text, QStringLiteral("Lunch at noon"));
    return true;
}

bool Press(const char* name) {
    auto* button = Find<QAbstractButton>(name);
    if (button == nullptr || !button->isEnabled()) {
        return false;
    }
    QTest::mouseClick(button, Qt::LeftButton);
    return true;
}

bool OpenAboutBox() {
    auto* button = Find<QAbstractButton>("cmdAbout");
    if (button != nullptr) {
        // The press returns when the box is closed.
        QTimer::singleShot(0, button, [button] { button->click(); });
    }
    return button != nullptr;
}

bool EndOverAboutBox() {
    return QApplication::activeModalWidget() != nullptr && std::raise(SIGTERM) == 0;
}

class Hand final : public QObject {
    Q_OBJECT
public:
    Hand() {
        if (qgetenv("HAND_TASK") == "end over a dialog") {
            m_steps.append({OpenAboutBox, EndOverAboutBox});
        } else {
            for (int message = 0; message < 2; ++message) {
                m_steps.append({PickFirstContact, Write, [] { return Press("cmdSendNow"); }});
            }
            m_steps.append([] { return HasRows("lvRecipients", 0) && Press("cmdExit"); });
        }
        connect(&m_timer, &QTimer::timeout, this, &Hand::Act);
        m_patience.start();
        m_timer.start(Pace);
    }

private:
    void Act() {
        if (m_patience.elapsed() > Patience) {
            std::fprintf(stderr, "the hand waits in vain for step %lld\n", static_cast<long long>(m_step));
            ::_exit(GivenUp);
        }
        // A step may run an event loop of its own, and so this routine again.
        if (m_isActing || m_step == m_steps.size()) {
            return;
        }
        m_isActing = true;
        m_step += m_steps[m_step]() ? 1 : 0;
        m_isActing = false;
    }

    QList<std::function<bool()>> m_steps;
    qsizetype m_step = 0;
    bool m_isActing = false;
    QTimer m_timer;
    QElapsedTimer m_patience;
};

}  // namespace

class ProgramHand final : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "ProgramHand.json")
public:
    QObject* create(const QString&, const QString&) override { return new Hand; }
};

#include "ProgramHand.moc"
