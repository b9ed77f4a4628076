#include "shell/PlantedRoads.h"

#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

TEST_F(PlantedSecrets, NoTextNameNumberPasswordOrGroupIsSeenOutsideOnAnyRoadThroughTheProgram) {
    m_window.Open();
    const QList<Road> roads = Roads();
    for (qsizetype turn = 0; turn < m_secrets.size() && !HasFailure(); ++turn) {
        const Road& road = roads[turn % roads.size()];
        SCOPED_TRACE(road.Name);
        road.Walk(m_secrets[turn]);
        Look(road.Name);
    }
    m_window.Form->close();
    const QStringList findings = m_outside.Findings();
    EXPECT_TRUE(findings.isEmpty()) << findings.size() << " findings, such as\n"
                                    << findings.mid(0, 10).join(u'\n').toStdString();

    const QString log = m_window.Machine.LogLines();
    for (const char* failure : {"GetContacts Error:", "GetGroupMembers(", "Application Terminated"}) {
        EXPECT_TRUE(log.contains(Q(failure))) << failure << ": a failing road was not walked";
    }
}

TEST_F(PlantedSecrets, WhatLeaksIsFoundAlsoInAFileThatLivesForAMoment) {
    const QString folder = m_outside.TempFolder();
    const QString file = folder + Q("/moment.tmp");
    ASSERT_TRUE(Office().Files.Replace(file, "draft of " + m_secrets[0].Text.toLatin1()));
    ASSERT_TRUE(QTest::qWaitFor([&] { return m_outside.Files().value(file).contains("draft"); }));
    ASSERT_TRUE(QFile::remove(file));
    m_window.Machine.AppLog.Write(m_secrets[1].Number);
    QWidget window;
    window.setWindowTitle(m_secrets[2].Name.toUpper());
    window.setWindowTitle(QString());
    QProcess other;
    other.start(Q("cat"), {Q("-"), m_secrets[3].Password});  // waits for its input
    // A process that has just started is in the list before its command line is: it has one when it answers.
    other.write("here");
    ASSERT_TRUE(other.waitForReadyRead());
    const QString found = m_outside.Findings().join(u'\n');
    other.kill();
    other.waitForFinished();
    for (const char* place : {"/moment.tmp: ", "/test.log: ", "standard error: ", "changed title: ",
                              "/cmdline: ", "nobody knows: "}) {
        EXPECT_TRUE(found.contains(Q(place))) << place << '\n' << found.toStdString();
    }
}

TEST_F(PlantedSecrets, TheHistoryAndTheMessageLogDoHoldWhatWasSent) {
    m_window.Open();
    SendWell(m_secrets[0]);
    QFile log(Office().Folders.ApplicationFolder() + Q("messagelog.sms"));
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    EXPECT_TRUE(log.readAll().contains(m_secrets[0].Text.toLatin1()));
}
