// Start to a usable window with 1,000 contacts, and the memory that is then resident, against a bare Qt
// window with one list.
//
// usage: bench_start DATAFOLDER          measures both, each in processes of its own
//        bench_start --client DATAFOLDER | --bare
//
// A child process ends when its window can be used: the list of contacts has been painted, the picture is
// with the window system, and the event loop waits for the user. It prints its resident kilobytes then.

#include "support/Ratio.h"

#include "app/AppContext.h"
#include "app/CommandLine.h"
#include "app/EntryRoutine.h"
#include "app/RealMachine.h"
#include "shell/Application.h"
#include "shell/Look.h"
#include "shell/MainScreens.h"
#include "shell/frmMain.h"

#include <QFile>
#include <QListView>
#include <QProcess>
#include <QStringListModel>

#include <functional>
#include <utility>

#include <unistd.h>

namespace {

constexpr double StartAim = 2.0;
constexpr double MemoryAim = 60.0;  // MB
constexpr int Rounds = 9;

int ResidentKilobytes() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) {
        return 0;
    }
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:")) {
            return line.mid(6).trimmed().split(' ').constFirst().toInt();
        }
    }
    return 0;
}

/// Says how much is resident and ends at once: what ending costs is no part of the start.
void TellAndEnd() {
    std::printf("%d\n", ResidentKilobytes());
    std::fflush(stdout);
    ::_exit(0);
}

/// Waits for the first painting of a list by its object name. Made before the list is.
class FirstPainting final : public QObject {
public:
    explicit FirstPainting(QString list) : m_list(std::move(list)) { qApp->installEventFilter(this); }

    /// Called by an event loop that has nothing to do before this: runs `done` when the list has been painted
    /// and the window system has what was painted.
    void Await(const std::function<void()>& done) {
        m_done = done;
        EndIfPainted();
    }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->parent() != nullptr &&
            watched->parent()->objectName() == m_list) {
            qApp->removeEventFilter(this);
            // Behind the painting and the flush of the window's picture, which follows it at once.
            QMetaObject::invokeMethod(
                this,
                [this] {
                    m_isPainted = true;
                    EndIfPainted();
                },
                Qt::QueuedConnection);
        }
        return false;
    }

private:
    void EndIfPainted() {
        if (m_isPainted && m_done) {
            QGuiApplication::sync();
            m_done();
        }
    }

    QString m_list;
    bool m_isPainted = false;
    std::function<void()> m_done;
};

/// Runs the event loop until the list is on the screen; ends the process.
int EndWhenPainted(FirstPainting& painting) {
    QMetaObject::invokeMethod(
        &painting, [&painting] { painting.Await(TellAndEnd); }, Qt::QueuedConnection);
    return QApplication::exec();
}

int RunBare(int argc, char** argv) {
    QApplication application(argc, argv);
    FirstPainting painting(QStringLiteral("list"));
    QListView list;
    list.setObjectName(QStringLiteral("list"));
    QStringListModel model(QStringList(1000, QStringLiteral("Ahern, Aoife")));
    list.setUniformItemSizes(true);
    list.setModel(&model);
    list.resize(1100, 740);
    list.show();
    return EndWhenPainted(painting);
}

int RunClient(int argc, char** argv) {
    const CommandLine commandLine({QStringLiteral("--data"), QString::fromLocal8Bit(argv[2])});
    CompleteEnvironment();
    Application application(argc, argv);
    FirstPainting painting(QStringLiteral("lvContacts"));
    Look::Apply(QStringLiteral("light"));
    RealMachine real;
    const Machine machine = real.Seams();
    AppContext context(machine);
    MainScreens screens(context, machine, commandLine);
    EntryRoutine entry(context, machine, screens, commandLine);
    if (!entry.Run()) {
        return 1;
    }
    return EndWhenPainted(painting);
}

struct Child {
    double Milliseconds = 0;
    double Megabytes = 0;
};

Child RunChild(const QStringList& arguments) {
    Child child;
    child.Milliseconds = Ratio::Time([&] {
        QProcess process;
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationFilePath(), arguments);
        process.waitForFinished(30000);
        child.Megabytes = process.readAllStandardOutput().trimmed().toInt() / 1024.0;
        if (process.exitCode() != 0 || child.Megabytes <= 0) {
            qFatal("the child did not come up");
        }
    });
    return child;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc == 2 && qstrcmp(argv[1], "--bare") == 0) {
        return RunBare(argc, argv);
    }
    if (argc == 3 && qstrcmp(argv[1], "--client") == 0) {
        return RunClient(argc, argv);
    }
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_start DATAFOLDER\n");
        return 2;
    }
    const QCoreApplication application(argc, argv);
    const QStringList client{QStringLiteral("--client"), QString::fromLocal8Bit(argv[1])};
    double megabytes = 0;
    const Ratio::Result result = Ratio::Measure(
        Rounds,
        [&] {
            const Child child = RunChild(client);
            megabytes = std::max(megabytes, child.Megabytes);
            return child.Milliseconds;
        },
        [] { return RunChild({QStringLiteral("--bare")}).Milliseconds; });
    Ratio::Print("start to a usable window, 1,000 contacts", result, StartAim);
    std::printf("%-52s %10.1f MB (a bare window: %.1f MB)  aim %5.1f MB  %s\n",
                "resident memory, 1,000 contacts", megabytes, RunChild({QStringLiteral("--bare")}).Megabytes,
                MemoryAim, megabytes <= MemoryAim ? "met" : "MISSED");
    return 0;
}
