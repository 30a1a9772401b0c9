// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Whole transfers between two processes: this one holds the client, zyprinter the server.

#include "printerprocess.h"
#include "testprogram.h"

#include <zysslechoclient.h>

#include <QCryptographicHash>
#include <QFile>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

namespace
{

constexpr qint64 mebibyte = 1024 * 1024;
constexpr int patience = 60000; // ms
const QString remoteName = QStringLiteral("part.bin");

QByteArray sha256(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

/// Writes a file chunk by chunk: random bytes, or lines that compress well.
void writeFile(const QString &path, qint64 size, bool compressible)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QRandomGenerator random(static_cast<quint32>(size));
    while (file.size() < size) {
        QByteArray block(static_cast<int>(qMin(mebibyte, size - file.size())), 'z');
        if (compressible)
            block.replace(0, 9,
                          QByteArray::number(file.size()).rightJustified(9).left(block.size()));
        else
            random.generate(block.begin(), block.end());
        QCOMPARE(file.write(block), qint64(block.size()));
        file.flush();
    }
}

} // namespace

class TestTransfer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void arrivesByteIdentical_data();
    void arrivesByteIdentical();
    void resumesAfterTheSenderIsGone();
    void cancelLeavesThePrinterReady();
    void emptyFileKeepsThePrinterReceivingUntilCancelled();
    void anotherSlicerIsRefusedMeanwhile();

private:
    QString localFile(const QString &name) const { return m_directory.filePath(name); }

    QTemporaryDir m_directory;
};

void TestTransfer::arrivesByteIdentical_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("compressible");
    const QList<QPair<const char *, qint64>> sizes{
        {"1 byte", 1},
        {"1 MiB - 1", mebibyte - 1},
        {"1 MiB", mebibyte},
        {"1 MiB + 1", mebibyte + 1},
        {"2.5 MiB", 5 * mebibyte / 2},
        {"64 MiB", 64 * mebibyte},
    };
    for (const auto &[name, size] : sizes) {
        QTest::addRow("%s, compressible", name) << size << true;
        QTest::addRow("%s, random", name) << size << false;
    }
}

void TestTransfer::arrivesByteIdentical()
{
    QFETCH(qint64, size);
    QFETCH(bool, compressible);
    const QString path = localFile(QStringLiteral("sent.bin"));
    writeFile(path, size, compressible);
    QCOMPARE(QFileInfo(path).size(), size);

    PrinterProcess printer;
    ZySslEchoClient client(printer.url());
    QSignalSpy connected(&client, &ZySslEchoClient::connected);
    QVERIFY(connected.wait());
    QSignalSpy progress(&client, &ZySslEchoClient::fileTransProgress);
    QSignalSpy finished(&client, &ZySslEchoClient::finish);
    client.sendFile(path, remoteName);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, patience);

    // Not a model, so the printer stores it and says that it is none.
    QCOMPARE(finished.first(), (QVariantList{path, 2}));
    QCOMPARE(progress.count(), static_cast<int>((size + mebibyte - 1) / mebibyte));
    QCOMPARE(progress.last(), (QVariantList{path, size, size}));
    QCOMPARE(sha256(printer.pathOf(remoteName)), sha256(path));
}

void TestTransfer::resumesAfterTheSenderIsGone()
{
    const QString path = localFile(QStringLiteral("resumed.bin"));
    writeFile(path, 5 * mebibyte / 2, false);
    PrinterProcess printer;

    {
        ZySslEchoClient first(printer.url());
        connect(&first, &ZySslEchoClient::connected, &first,
                [&] { first.sendFile(path, remoteName); });
        QSignalSpy progress(&first, &ZySslEchoClient::fileTransProgress);
        connect(&first, &ZySslEchoClient::fileTransProgress, &first, &ZySslEchoClient::close);
        QTRY_VERIFY_WITH_TIMEOUT(progress.count() == 1, patience);
    }

    ZySslEchoClient second(printer.url());
    QSignalSpy progress(&second, &ZySslEchoClient::fileTransProgress);
    QSignalSpy finished(&second, &ZySslEchoClient::finish);
    const auto offer = [&] { second.sendFile(path, remoteName); };
    connect(&second, &ZySslEchoClient::connected, &second, offer);
    // Refused as long as the printer has not noticed that the first connection is gone.
    connect(&second, &ZySslEchoClient::transError, &second, offer);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, patience);
    QCOMPARE(progress.count(), 2);
    QCOMPARE(progress.first(), (QVariantList{path, 5 * mebibyte / 2, 2 * mebibyte}));
    QCOMPARE(sha256(printer.pathOf(remoteName)), sha256(path));
}

void TestTransfer::cancelLeavesThePrinterReady()
{
    const QString path = localFile(QStringLiteral("cancelled.bin"));
    writeFile(path, 4 * mebibyte, false);
    PrinterProcess printer;
    ZySslEchoClient client(printer.url());
    QSignalSpy cancelled(&client, &ZySslEchoClient::cancelFinished);
    QSignalSpy finished(&client, &ZySslEchoClient::finish);
    connect(&client, &ZySslEchoClient::connected, &client,
            [&] { client.sendFile(path, remoteName); });
    auto atFirstChunk
        = connect(&client, &ZySslEchoClient::fileTransProgress, &client, &ZySslEchoClient::cancel);
    QTRY_COMPARE_WITH_TIMEOUT(cancelled.count(), 1, patience);
    QCOMPARE(finished.count(), 0);
    QVERIFY(printer.pathOf(remoteName).isEmpty());
    QVERIFY(printer.pathOf(QStringLiteral("wifi_tranfer.tmp")).isEmpty());

    disconnect(atFirstChunk);
    client.sendFile(path, remoteName);
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, patience);
    QCOMPARE(sha256(printer.pathOf(remoteName)), sha256(path));
}

void TestTransfer::emptyFileKeepsThePrinterReceivingUntilCancelled()
{
    const QString path = localFile(QStringLiteral("empty.bin"));
    writeFile(path, 0, false);
    PrinterProcess printer;
    ZySslEchoClient client(printer.url());
    QSignalSpy replies(&client, &ZySslEchoClient::jsonMessageReceived);
    QSignalSpy finished(&client, &ZySslEchoClient::finish);
    connect(&client, &ZySslEchoClient::connected, &client,
            [&] { client.sendFile(path, remoteName); });
    QTRY_COMPARE_WITH_TIMEOUT(replies.count(), 1, patience);

    ZySslEchoClient other(printer.url());
    QSignalSpy refused(&other, &ZySslEchoClient::transError);
    connect(&other, &ZySslEchoClient::connected, &other, [&] { other.sendFile(path, remoteName); });
    QTRY_COMPARE_WITH_TIMEOUT(refused.count(), 1, patience);
    QCOMPARE(refused.first(), (QVariantList{1, QString()}));

    QSignalSpy cancelled(&client, &ZySslEchoClient::cancelFinished);
    client.cancel();
    QTRY_COMPARE_WITH_TIMEOUT(cancelled.count(), 1, patience);
    QCOMPARE(finished.count(), 0);
}

void TestTransfer::anotherSlicerIsRefusedMeanwhile()
{
    const QString path = localFile(QStringLiteral("first.bin"));
    writeFile(path, 3 * mebibyte, false);
    PrinterProcess printer;
    ZySslEchoClient other(printer.url());
    QSignalSpy otherConnected(&other, &ZySslEchoClient::connected);
    QVERIFY(otherConnected.wait());
    QSignalSpy otherReplies(&other, &ZySslEchoClient::jsonMessageReceived);

    ZySslEchoClient client(printer.url());
    QSignalSpy finished(&client, &ZySslEchoClient::finish);
    connect(&client, &ZySslEchoClient::connected, &client,
            [&] { client.sendFile(path, remoteName); });
    auto atFirstChunk = std::make_shared<QMetaObject::Connection>();
    *atFirstChunk
        = connect(&client, &ZySslEchoClient::fileTransProgress, &other, [&, atFirstChunk] {
              disconnect(*atFirstChunk);
              other.sendFile(path, QStringLiteral("second.bin"));
              // In this slot the first transfer stands still until the second is answered.
              QTRY_COMPARE_WITH_TIMEOUT(otherReplies.count(), 1, patience);
          });
    QTRY_COMPARE_WITH_TIMEOUT(finished.count(), 1, patience);
    QCOMPARE(otherReplies.first().first().toJsonObject(),
             (QJsonObject{{QStringLiteral("cmd"), QStringLiteral("START_FILE")},
                          {QStringLiteral("errorcode"), 1},
                          {QStringLiteral("wifistate"), 3},
                          {QStringLiteral("compress"), true}}));
    QCOMPARE(sha256(printer.pathOf(remoteName)), sha256(path));
}

ZY_TEST(TestTransfer)
#include "tst_transfer.moc"
