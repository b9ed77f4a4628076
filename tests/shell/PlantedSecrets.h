#pragma once

#include "shell/MainWindow.h"
#include "store/Outbox.h"
#include "support/FilesSeen.h"

#include <QCoreApplication>
#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>

/// What belongs to one person and must never be seen outside the places that are made for it.
struct Secret {
    QString Name;
    QString Number;
    QString Text;
    QString Password;
    QString Group;  // the name of a group, which may be a person's as well
    qint32 ID = 0;  // cntID
    QString Key;
};

/// So many of them. Each word has one of these two marks in it, which nothing else has: the first not even
/// another run of these tests, whose processes stand in the process list as well.
namespace Secrets {
inline const QString Mark = [] {
    QString mark = QStringLiteral("Z");
    for (qint64 number = QCoreApplication::applicationPid(); mark.size() < 6; number /= 26) {
        mark += QChar(static_cast<char16_t>(u'a' + number % 26));
    }
    return mark;
}();
inline const QString NumberMark = QStringLiteral("+35386590");

inline QList<Secret> Plant(int people) {
    QRandomGenerator random(19640703);
    QList<Secret> secrets;
    for (int i = 0; i < people; ++i) {
        const auto word = [&random](const QString& before) {
            return before + QString::number(random.generate() % 900000 + 100000);
        };
        Secret secret;
        secret.Name = word(Mark + u'\'');
        secret.Number = word(NumberMark);
        secret.Text = Mark + word(QStringLiteral(" plan 'B' #7/Mar# %") + Mark) + u'"';
        secret.Password = word(Mark + QStringLiteral("'pass"));
        secret.Group = word(Mark).left(10);  // as much of a name as a phonebook stores
        secrets.append(secret);
    }
    return secrets;
}
}  // namespace Secrets

/// Everything that others can look at while the program runs: the log, standard error, the files of the
/// application, the temporary and the settings folder except for the three that hold texts on purpose, the
/// titles of windows, and the process list.
class Outside final : public QObject {
public:
    /// Standard error and temporary files are redirected as long as it lives.
    explicit Outside(MainWindow& window)
        : m_window(window), m_before(qgetenv("TMPDIR")), m_hadBefore(qEnvironmentVariableIsSet("TMPDIR")) {
        window.Machine.Office.Folders.Temp = m_temp.path() + u'/';
        qputenv("TMPDIR", QFile::encodeName(m_temp.path()));
        m_files = std::make_unique<FilesSeen>(
            QStringList{window.Machine.Office.Folders.Root.path(), m_temp.path(),
                        QFileInfo(window.Context.AppSettings.FileName()).path()},
            QStringList{QStringLiteral("history.sms"), QStringLiteral(".larkspan-history"),
                        QStringLiteral("messagelog.sms")});
        qApp->installEventFilter(this);
        ::testing::internal::CaptureStderr();
    }
    ~Outside() override {
        static_cast<void>(Report());
        m_hadBefore ? qputenv("TMPDIR", m_before) : qunsetenv("TMPDIR");
    }
    Outside(const Outside&) = delete;
    Outside& operator=(const Outside&) = delete;

    /// What is there only for a moment: the windows and the processes of now.
    void Look(const QString& occasion) {
        const QWidgetList windows = QApplication::topLevelWidgets();
        for (const QWidget* window : windows) {
            See(occasion + QStringLiteral(": title"), window->windowTitle().toUtf8());
            See(occasion + QStringLiteral(": icon text"), window->windowIconText().toUtf8());
        }
        const QStringList processes = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
        for (const QString& process : processes) {
            for (const char* file : {"cmdline", "environ", "comm"}) {
                const QString path = QStringLiteral("/proc/%1/%2").arg(process, QString::fromLatin1(file));
                if (process.front().isDigit()) {
                    See(occasion + u' ' + path, Bytes(path));
                }
            }
        }
    }
    /// Places where something planted was seen, with what stands around it. Looks at everything that was
    /// kept.
    [[nodiscard]] QStringList Findings() {
        Look(QStringLiteral("end"));
        const QMap<QString, QByteArray> files = m_files->Contents();
        for (auto file = files.begin(); file != files.end(); ++file) {
            See(file.key(), *file);
            // What a file held that was gone at once is not known for certain, but that it was there is.
            if (!IsKnown(file.key())) {
                m_findings.append(QStringLiteral("a file that nobody knows: ") + file.key());
            }
        }
        See(QStringLiteral("standard error"), Report());
        See(QStringLiteral("dialogs"), m_window.Machine.Door.Dialogs.join(u'\n').toUtf8());
        return m_findings;
    }
    [[nodiscard]] QMap<QString, QByteArray> Files() const { return m_files->Contents(); }
    [[nodiscard]] QString TempFolder() const { return m_temp.path(); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::WindowTitleChange && watched->isWidgetType()) {
            See(QStringLiteral("changed title"), static_cast<QWidget*>(watched)->windowTitle().toUtf8());
        }
        return false;
    }

private:
    /// The files that the program is known to make in these folders, and the names that they have while they
    /// are not yet whole. A file that is made without a name shows as "#" and a number.
    [[nodiscard]] bool IsKnown(const QString& path) const {
        static const QRegularExpression names(QStringLiteral(
            "/(test\\.log|\\.larkspan-[0-9a-z]+|#[0-9]+|Larkspan Messenger[^/]*\\.ini[^/]*)$"));
        return !path.startsWith(m_temp.path()) && path.contains(names);
    }
    static QByteArray Bytes(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// Words end up in the code page, in UTF-8 and in UTF-16; the marks are the same in the first two.
    void See(const QString& place, const QByteArray& bytes) {
        const QByteArray lowerBytes = bytes.toLower();
        for (const QString& mark : {Secrets::Mark, Secrets::NumberMark}) {
            const QString lower = mark.toLower();
            const QByteArray wide(reinterpret_cast<const char*>(lower.utf16()), lower.size() * 2);
            for (const QByteArray& form : {lower.toLatin1(), wide}) {
                const qsizetype at = lowerBytes.indexOf(form);
                if (at >= 0) {
                    m_findings.append(place + QStringLiteral(": ") +
                                      QString::fromLatin1(bytes.mid(std::max<qsizetype>(0, at - 40), 100)));
                }
            }
        }
    }
    QByteArray Report() {
        if (!m_isReported) {
            m_stderr = QByteArray::fromStdString(::testing::internal::GetCapturedStderr());
            m_isReported = true;
        }
        return m_stderr;
    }

    MainWindow& m_window;
    QTemporaryDir m_temp;
    QByteArray m_before;
    bool m_hadBefore;
    bool m_isReported = false;
    QByteArray m_stderr;
    QStringList m_findings;
    std::unique_ptr<FilesSeen> m_files;
};
