#include "SqlCheck.h"

#include "support/Printing.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace {

QList<QByteArray> Corpus() {
    const QDir folder(QStringLiteral(FUZZ_CORPUS));
    QList<QByteArray> corpus;
    for (const QString& name : folder.entryList(QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        corpus.append(file.readAll());
    }
    return corpus;
}

TEST(FuzzCorpus, NoStatementOfTheCorpusIsReadAsWhatItIsNot) {
    SqlCheck check;
    const QList<QByteArray> corpus = Corpus();
    ASSERT_GE(corpus.size(), 19);
    for (const QByteArray& bytes : corpus) {
        EXPECT_EQ(check.Run(bytes), QString()) << bytes.constData();
    }
}

TEST(FuzzCorpus, NoMutationOfTheCorpusIsEither) {
    SqlCheck check;
    const QList<QByteArray> corpus = Corpus();
    constexpr quint32 Seed = 20260307;
    QRandomGenerator random(Seed);
    constexpr int Mutations = 20000;
    for (int i = 0; i < Mutations; ++i) {
        QByteArray bytes = corpus.at(random.bounded(static_cast<int>(corpus.size())));
        const int changes = random.bounded(1, 4);
        for (int change = 0; change < changes; ++change) {
            const int position = random.bounded(static_cast<int>(bytes.size()));
            const QByteArray& other = corpus.at(random.bounded(static_cast<int>(corpus.size())));
            switch (random.bounded(4)) {
                case 0:
                    bytes[position] = static_cast<char>(random.bounded(256));
                    break;
                case 1:
                    bytes.remove(position, random.bounded(1, 9));
                    bytes.append(' ');
                    break;
                case 2:
                    bytes.insert(position, other.mid(random.bounded(static_cast<int>(other.size())),
                                                     random.bounded(30)));
                    break;
                default:
                    bytes.insert(position, "()'\"[]#;,.*-/=<>@ "[random.bounded(18)]);
            }
        }
        ASSERT_EQ(check.Run(bytes), QString()) << bytes.constData();
    }
}

}  // namespace
