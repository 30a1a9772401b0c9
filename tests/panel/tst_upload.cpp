// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The panel's upload without widgets, against the library's server and worse printers.

#include "listener.h"
#include "restartableprinter.h"
#include "words.h"

#include <modelfiles.h>
#include <scriptedprinter.h>
#include <testprogram.h>

#include <QCryptographicHash>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWebSocketServer>

using namespace zypanel;
using zytest::patience;
using zytest::readFile;
using Ending = ZySendResult::Ending;
using FileFault = ZySendResult::FileFault;
using Link = PrinterControl::Link;
using State = Upload::State;

namespace
{

constexpr qint64 mebibyte = zytest::chunkBytes;
const QString name = QStringLiteral("part.zydlp");

} // namespace

class TestPanelUpload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsAFileWhileCommandsGoOn();
    void cancelLeavesNothingOnThePrinter();
    void aWholeFileIsNotCancelled();
    void resumesAfterThePrinterWasGone();
    void aResumedFileKeepsItsFirstName();
    void endingItOnPurposeCanBeResumedToo();
    void aResumedFileTakesTheNewToken();
    void refusalsAreExplained_data();
    void refusalsAreExplained();
    void aPrinterThatCannotStoreIsExplained_data();
    void aPrinterThatCannotStoreIsExplained();
    void sendsTheDigestAndExplainsThatItDiffers();
    void saysThatTheFileIsRead();
    void anEmptyFileIsNotOffered();
    void aFileThatVanishesIsReported();
    void aStalledUploadCanBeResumed();
    void anUnconfirmedCancelIsReported();
    void mayBeDeletedWhileSending();

private:
    /// Sends a file and interrupts it with the first part that arrives.
    bool sendAPart(Listener &listener);
    QString create(qint64 size)
    {
        m_content = zytest::randomBytes(size);
        return zytest::writeFile(m_directory.filePath(QStringLiteral("model")), m_content);
    }

    QTemporaryDir m_directory;
    QByteArray m_content;
};

void TestPanelUpload::sendsAFileWhileCommandsGoOn()
{
    RestartablePrinter printer;
    Listener listener(1);
    QVERIFY(listener.connectTo(printer.url()));
    int requestsAtStart = -1;
    int requestsAtEnd = 0;
    QVector<qint64> received;
    connect(&listener.upload, &Upload::progressed, &printer, [&](qint64 bytes, qint64 total) {
        QCOMPARE(total, 5 * mebibyte + 1);
        if (received.isEmpty()) {
            requestsAtStart = printer.statusRequests;
            listener.control.pausePrint();
        }
        requestsAtEnd = printer.statusRequests;
        received.append(bytes);
    });
    const QSignalSpy stored(&listener.upload, &Upload::stored);
    QVERIFY(listener.send(create(5 * mebibyte + 1), name));
    QVERIFY(listener.awaitUpload(State::Sent));
    QCOMPARE(stored.count(), 1);
    QCOMPARE(stored.first().first().toString(), name);
    QCOMPARE(received.size(), 6);
    QCOMPARE(received.last(), 5 * mebibyte + 1);
    QVERIFY(requestsAtEnd > requestsAtStart);
    QVERIFY(readFile(printer.pathOf(name)) == m_content);
    QVERIFY(listener.said.contains(
        QStringLiteral("%1 is on %2 and ready to print.").arg(name, printer.url().authority())));
    QTRY_VERIFY_WITH_TIMEOUT(
        listener.hasSaid(
            commandNotice(PrinterCommand::Pause, zysession::Exchange::Ending::Done, QString())),
        patience);
}

void TestPanelUpload::cancelLeavesNothingOnThePrinter()
{
    RestartablePrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    connect(&listener.upload, &Upload::progressed, &listener.upload, [&](qint64 bytes) {
        if (bytes == 2 * mebibyte)
            listener.upload.cancel();
    });
    QVERIFY(listener.send(create(32 * mebibyte), name));
    QVERIFY(listener.awaitUpload(State::Cancelled));
    QVERIFY(!listener.said.filter(QStringLiteral("has deleted what it had received")).isEmpty());
    QVERIFY(QDir(printer.pathOf(QString())).isEmpty());
    // And the printer is ready for the next file.
    QVERIFY(listener.send(create(mebibyte), name));
    QVERIFY(listener.awaitUpload(State::Sent));
}

void TestPanelUpload::aWholeFileIsNotCancelled()
{
    RestartablePrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    connect(&listener.upload, &Upload::progressed, &listener.upload, [&](qint64 bytes) {
        if (bytes == mebibyte)
            listener.upload.cancel();
    });
    QVERIFY(listener.send(create(mebibyte), name));
    QVERIFY(listener.awaitUpload(State::Sent));
    QVERIFY(readFile(printer.pathOf(name)) == m_content);
}

void TestPanelUpload::resumesAfterThePrinterWasGone()
{
    RestartablePrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    const auto dropping
        = connect(&listener.upload, &Upload::progressed, &printer, [&](qint64 bytes) {
              if (bytes == 3 * mebibyte)
                  printer.stop();
          });
    QVERIFY(listener.send(create(24 * mebibyte), name));
    QVERIFY(listener.awaitUpload(State::Interrupted));
    QVERIFY(!listener.said.filter(QStringLiteral("Resume sends only")).isEmpty());
    disconnect(dropping);

    // Nobody there yet: still offered.
    listener.upload.resume({});
    QCOMPARE(listener.upload.state(), State::Offered);
    QVERIFY(listener.awaitUpload(State::Interrupted));

    printer.start();
    qint64 held = 0;
    connect(&listener.upload, &Upload::resumed, &printer, [&](qint64 from) { held = from; });
    listener.upload.resume({});
    QVERIFY(listener.awaitUpload(State::Sent));
    QVERIFY(held >= 3 * mebibyte);
    QVERIFY(readFile(printer.pathOf(name)) == m_content);
}

bool TestPanelUpload::sendAPart(Listener &listener)
{
    const auto leaving = connect(&listener.upload, &Upload::progressed, &listener.upload,
                                 [&] { listener.upload.interrupt(); });
    const bool isInterrupted
        = listener.send(create(4 * mebibyte), name) && listener.awaitUpload(State::Interrupted);
    disconnect(leaving);
    return isInterrupted;
}

void TestPanelUpload::aResumedFileKeepsItsFirstName()
{
    RestartablePrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(sendAPart(listener));
    listener.upload.forget();
    QTRY_COMPARE_WITH_TIMEOUT(printer.connections(), 1, patience);

    const QSignalSpy stored(&listener.upload, &Upload::stored);
    const QString path = m_directory.filePath(QStringLiteral("model"));
    QVERIFY(listener.send(path, QStringLiteral("other.zydlp")));
    QVERIFY(listener.awaitUpload(State::Sent));
    QCOMPARE(stored.first().first().toString(), name);
    QVERIFY(readFile(printer.pathOf(name)) == m_content);
    QVERIFY(!listener.said.filter(QStringLiteral("first sent: part.zydlp")).isEmpty());
}

void TestPanelUpload::endingItOnPurposeCanBeResumedToo()
{
    RestartablePrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    const auto leaving = connect(&listener.upload, &Upload::progressed, &listener.upload, [&] {
        listener.upload.interrupt();
        listener.control.disconnectFromPrinter();
    });
    QVERIFY(listener.send(create(4 * mebibyte), name));
    QVERIFY(listener.awaitUpload(State::Interrupted));
    disconnect(leaving);
    QTRY_COMPARE_WITH_TIMEOUT(printer.connections(), 0, patience);
    listener.upload.resume({});
    QVERIFY(listener.awaitUpload(State::Sent));
    QVERIFY(readFile(printer.pathOf(name)) == m_content);
}

void TestPanelUpload::aResumedFileTakesTheNewToken()
{
    RestartablePrinter printer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(sendAPart(listener));
    QCOMPARE(printer.offeredToken, QStringLiteral("secret"));
    QTRY_COMPARE_WITH_TIMEOUT(printer.connections(), 1, patience);

    // A wrong one may be corrected.
    printer.mayReceive = -1;
    listener.upload.resume(QStringLiteral("misspelt"));
    QCOMPARE(listener.upload.state(), State::Offered);
    QVERIFY(listener.awaitUpload(State::Interrupted));
    QVERIFY(listener.said.last().contains(QStringLiteral("only with an access token")));
    QCOMPARE(printer.offeredToken, QStringLiteral("misspelt"));
    QTRY_COMPARE_WITH_TIMEOUT(printer.connections(), 1, patience);

    printer.mayReceive = 1;
    listener.upload.resume(QStringLiteral("right"));
    QVERIFY(listener.awaitUpload(State::Sent));
    QCOMPARE(printer.offeredToken, QStringLiteral("right"));
}

void TestPanelUpload::refusalsAreExplained_data()
{
    QTest::addColumn<int>("answer");
    QTest::addColumn<QString>("words");
    QTest::newRow("not now") << 0 << QStringLiteral("does not accept files now");
    QTest::newRow("token wanted") << -1 << QStringLiteral("only with an access token");
}

void TestPanelUpload::refusalsAreExplained()
{
    QFETCH(int, answer);
    QFETCH(QString, words);
    RestartablePrinter printer;
    printer.mayReceive = answer;
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(listener.send(create(100), name));
    QVERIFY(listener.awaitUpload(State::Failed));
    QVERIFY2(listener.said.last().contains(words), qPrintable(listener.said.last()));
    QCOMPARE(listener.control.link(), Link::Open);
}

void TestPanelUpload::aPrinterThatCannotStoreIsExplained_data()
{
    QTest::addColumn<bool>("isDangling");
    QTest::newRow("not creatable") << true;
    QTest::newRow("a folder in its place") << false;
}

void TestPanelUpload::aPrinterThatCannotStoreIsExplained()
{
    QFETCH(bool, isDangling);
    RestartablePrinter printer;
    const QString place = printer.pathOf(QStringLiteral("wifi_tranfer.tmp"));
    if (isDangling)
        QVERIFY(QFile::link(printer.pathOf(QStringLiteral("missing/file")), place));
    else
        QVERIFY(QDir().mkdir(place));
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(listener.send(create(100), name));
    QVERIFY(listener.awaitUpload(State::Failed));
    QVERIFY(listener.said.last().contains(QStringLiteral("cannot store part.zydlp")));
}

void TestPanelUpload::sendsTheDigestAndExplainsThatItDiffers()
{
    zytest::ScriptedPrinter printer;
    zytest::TransferRules rules;
    rules.checkState = -1;
    printer.answerTransfers(rules);
    Listener listener;
    QVERIFY(listener.upload.send(Listener::printerAt(printer.url()), create(1000), name));
    QVERIFY(listener.awaitUpload(State::Sent));
    const QJsonObject offer = printer.messages(QStringLiteral("START_FILE")).value(0);
    QCOMPARE(offer.value(QStringLiteral("sha256")).toString().toLatin1(),
             QCryptographicHash::hash(m_content, QCryptographicHash::Sha256).toHex());
    QVERIFY(listener.said.last().contains(QStringLiteral("did not get part.zydlp as it is here")));
}

void TestPanelUpload::saysThatTheFileIsRead()
{
    zytest::ScriptedPrinter printer;
    Listener listener;
    const QSignalSpy reading(&listener.upload, &Upload::reading);
    const QString path = create(1000);
    QVERIFY(QFile::resize(path, 65536 * mebibyte)); // sparse: of no use but to be read
    QVERIFY(listener.upload.send(Listener::printerAt(printer.url()), path, name));
    QTRY_VERIFY_WITH_TIMEOUT(reading.count() > 0, patience);
    QCOMPARE(listener.upload.state(), State::Offered);
    listener.upload.cancel();
    QVERIFY(listener.awaitUpload(State::Cancelled));
    QVERIFY(QFile::resize(path, 0));
}

void TestPanelUpload::anEmptyFileIsNotOffered()
{
    RestartablePrinter printer;
    bool isOffered = false;
    printer.onOffer = [&isOffered] { isOffered = true; };
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    const QString path = create(0);
    QVERIFY(!listener.send(path, name));
    QCOMPARE(listener.said.last(), fileFaultNotice(FileFault::Empty, path).text);
    QVERIFY(!listener.send(create(1), QStringLiteral("a/b")));
    QCOMPARE(listener.said.last(),
             fileFaultNotice(FileFault::NameHasSeparator, QStringLiteral("a/b")).text);
    QCOMPARE(listener.upload.state(), State::Idle);
    // A round trip later, the printer would have seen it.
    const int requests = printer.statusRequests;
    QTRY_VERIFY_WITH_TIMEOUT(printer.statusRequests > requests + 1, patience);
    QVERIFY(!isOffered);
}

void TestPanelUpload::aFileThatVanishesIsReported()
{
    RestartablePrinter printer;
    const QString path = create(3 * mebibyte);
    printer.onOffer = [&path] { QFile::remove(path); };
    Listener listener;
    QVERIFY(listener.connectTo(printer.url()));
    QVERIFY(listener.send(path, name));
    QVERIFY(listener.awaitUpload(State::Failed));
    QCOMPARE(listener.said.last(), fileFaultNotice(FileFault::Missing, path).text);
    printer.onOffer = nullptr;
    QTRY_COMPARE_WITH_TIMEOUT(printer.connections(), 1, patience);
    QVERIFY(listener.send(create(2 * mebibyte), name));
    QVERIFY(listener.awaitUpload(State::Sent));
    QVERIFY(readFile(printer.pathOf(name)) == m_content);
}

void TestPanelUpload::aStalledUploadCanBeResumed()
{
    QWebSocketServer silent(QStringLiteral("silent"), QWebSocketServer::NonSecureMode);
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    Listener listener;
    ZySendOptions options;
    options.setStallTimeout(200);
    listener.upload.setOptions(options);
    QVERIFY(listener.connectTo(silent.serverUrl()));
    QVERIFY(listener.send(create(100), name));
    QVERIFY(listener.awaitUpload(State::Interrupted));
    QVERIFY(listener.said.last().contains(QStringLiteral("has stopped answering")));
    listener.upload.forget();
    QCOMPARE(listener.upload.state(), State::Idle);
}

void TestPanelUpload::anUnconfirmedCancelIsReported()
{
    QWebSocketServer silent(QStringLiteral("silent"), QWebSocketServer::NonSecureMode);
    QVERIFY(silent.listen(QHostAddress::LocalHost));
    Listener listener;
    ZySendOptions options;
    options.setCancelTimeout(200);
    listener.upload.setOptions(options);
    QVERIFY(listener.connectTo(silent.serverUrl()));
    // So large that the first chunk is not the last.
    QVERIFY(listener.send(create(3 * mebibyte), name));
    QVERIFY(QTest::qWaitFor(
        [&] {
            listener.upload.cancel();
            return listener.upload.state() == State::Cancelling;
        },
        patience));
    QVERIFY(listener.awaitUpload(State::Cancelled));
}

void TestPanelUpload::mayBeDeletedWhileSending()
{
    RestartablePrinter printer;
    auto *upload = new Upload;
    const QSignalSpy gone(upload, &QObject::destroyed);
    connect(upload, &Upload::progressed, &printer, [upload](qint64 bytes) {
        if (bytes == 2 * mebibyte)
            upload->deleteLater();
    });
    QVERIFY(upload->send(Listener::printerAt(printer.url()), create(6 * mebibyte), name));
    QTRY_COMPARE_WITH_TIMEOUT(gone.count(), 1, patience);
}

ZY_TEST(TestPanelUpload)
#include "tst_upload.moc"
