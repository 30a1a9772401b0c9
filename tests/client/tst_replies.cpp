// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The reply parser: which signals each reply gives, in which order, and what is logged.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

using Session = zytest::Session<zytest::ScriptedPrinter>;

class TestReplies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void turnsPrintRepliesIntoSignals_data();
    void turnsPrintRepliesIntoSignals() { givesSignalsAndLog(); }
    void mapsStartPrintStatus_data();
    void mapsStartPrintStatus();
    void noticesVersionOne_data();
    void noticesVersionOne() { givesSignalsAndLog(); }
    void turnsTransferRepliesIntoSignals_data();
    void turnsTransferRepliesIntoSignals() { givesSignalsAndLog(); }
    void keepsTheOrderOfReplies();
    void handlesAnInvokedMessageAtOnce();
    void passesOnRepliesItDoesNotKnow_data();
    void passesOnRepliesItDoesNotKnow() { givesSignalsAndLog(); }

private:
    static void givesSignalsAndLog();
};

namespace
{

void addColumns()
{
    QTest::addColumn<QString>("reply");
    QTest::addColumn<QStringList>("signalLines");
    QTest::addColumn<QStringList>("logLines");
}

/// Every row ends with jsonMessageReceived, which carries the whole reply.
void addRow(const char *tag, const char *reply, QStringList signalLines = {},
            const QStringList &logLines = {})
{
    signalLines.append(QStringLiteral("jsonMessageReceived(%1)")
                           .arg(zytest::compactText(zytest::objectIn(QString::fromUtf8(reply)))));
    QTest::newRow(tag) << QString::fromUtf8(reply) << signalLines << logLines;
}

} // namespace

void TestReplies::givesSignalsAndLog()
{
    QFETCH(QString, reply);
    QFETCH(QStringList, signalLines);
    QFETCH(QStringList, logLines);
    Session session;
    QVERIFY(session.open());

    session.printer.sendText(reply);

    WAIT_COMPARE(session.trace.count("jsonMessageReceived"_s), 1);
    QCOMPARE(session.trace.lines(), signalLines);
    QCOMPARE(session.logLines(), logLines);
    QCOMPARE(session.printer.texts(), QStringList());
}

void TestReplies::turnsPrintRepliesIntoSignals_data()
{
    addColumns();
    addRow("print started", R"({"cmd":"START_PRINT","filename":"a.zydlp","status":"STARTED"})",
           {"printErrorCode(0, a.zydlp)"_s}, {R"(print start cmd = "STARTED")"_s});
    addRow("print paused", R"({"cmd":"PRINT_PAUSE","status":"CMD_SUCCES"})", {},
           {R"(PRINT_PAUSE received status= QJsonValue(string, "CMD_SUCCES"))"_s});
    addRow("pause without status", R"({"cmd":"PRINT_PAUSE"})", {},
           {"PRINT_PAUSE received status= QJsonValue(undefined)"_s});
    addRow("print stopped", R"({"cmd":"PRINT_STOP","status":"CMD_SUCCES"})", {},
           {R"(PRINT_STOP received status= QJsonValue(string, "CMD_SUCCES"))"_s});
    addRow("print status", R"({"cmd":"GET_PRINT_STATUS","printStatus":"PRINT_GENERAL"})",
           {R"(getPrinterStatusInfo({"cmd":"GET_PRINT_STATUS","printStatus":"PRINT_GENERAL"}))"_s});
    addRow(
        "parameters set", R"({"cmd":"PRINT_PARA_SET","status":"CMD_SUCCES"})", {},
        {R"(PRINT_PARA_SET status= QJsonObject({"cmd":"PRINT_PARA_SET","status":"CMD_SUCCES"}))"_s});
    addRow("working life", R"({"cmd":"PRINT_WORKING_LIFE","life":"12"})",
           {R"(slotGetPrinterWorkingLife({"cmd":"PRINT_WORKING_LIFE","life":"12"}))"_s});
}

void TestReplies::mapsStartPrintStatus_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("signalLine");

    QTest::newRow("started") << "STARTED"_s
                             << "printErrorCode(0, a.zydlp)"_s;
    QTest::newRow("busy") << "BUSY"_s
                          << "printErrorCode(1, a.zydlp)"_s;
    QTest::newRow("checking") << "CHECKING"_s
                              << "printErrorCode(2, a.zydlp)"_s;
    QTest::newRow("check failed") << "CHECK_FALSE"_s
                                  << "printErrorCode(3, a.zydlp)"_s;
    QTest::newRow("token rejected") << "PRINT_TOKEN_ERROR"_s
                                    << "printErrorCode(4, a.zydlp)"_s;
    QTest::newRow("not started") << "UN_START"_s << QString();
    QTest::newRow("lower case") << "started"_s << QString();
    QTest::newRow("with a space") << "STARTED "_s << QString();
    QTest::newRow("another word") << "TOKEN_ERROR"_s << QString();
    QTest::newRow("empty") << QString() << QString();
}

void TestReplies::mapsStartPrintStatus()
{
    QFETCH(QString, status);
    QFETCH(QString, signalLine);
    Session session;
    QVERIFY(session.open());

    const QString reply
        = QStringLiteral(R"({"cmd":"START_PRINT","filename":"a.zydlp","status":"%1"})").arg(status);
    session.printer.sendText(reply);

    QStringList expected{QStringLiteral("jsonMessageReceived(%1)").arg(reply)};
    if (!signalLine.isEmpty())
        expected.prepend(signalLine);
    WAIT_COMPARE(session.trace.count("jsonMessageReceived"_s), 1);
    QCOMPARE(session.trace.lines(), expected);
    QCOMPARE(session.logLines(),
             QStringList{QStringLiteral("print start cmd = \"%1\"").arg(status)});
}

void TestReplies::noticesVersionOne_data()
{
    addColumns();
    const QStringList noticed{"checkVersion()"_s};
    addRow("one, without a command", R"({"version":"1"})", noticed);
    addRow("one, spelled with a zero", R"({"version":"01"})", noticed);
    addRow("one before a status", R"({"cmd":"GET_PRINT_STATUS","version":"1"})",
           {"checkVersion()"_s,
            R"(getPrinterStatusInfo({"cmd":"GET_PRINT_STATUS","version":"1"}))"_s});
    addRow("one, as a number", R"({"version":1})");
    addRow("one, as a number before a status", R"({"cmd":"GET_PRINT_STATUS","version":1})",
           {R"(getPrinterStatusInfo({"cmd":"GET_PRINT_STATUS","version":1}))"_s});
    addRow("two", R"({"version":"2"})");
    addRow("a decimal fraction", R"({"version":"1.0"})");
    addRow("a name", R"({"version":"V1"})");
    addRow("empty", R"({"version":""})");
    addRow("the command's own word", R"({"cmd":"VERSION_CHECK"})");
}

void TestReplies::turnsTransferRepliesIntoSignals_data()
{
    addColumns();
    addRow("printer busy", R"({"cmd":"START_FILE","compress":true,"errorcode":1,"wifistate":3})",
           {"transError(1, )"_s});
    addRow("no temporary file", R"({"cmd":"START_FILE","compress":true,"errorcode":2})",
           {"transError(2, )"_s});
    addRow("token rejected", R"({"cmd":"START_FILE","errorcode":4,"wifistate":6})",
           {"transError(4, )"_s});
    addRow("chunk received", R"({"cmd":"START_DATA","key":"7","received":"200","size":"1000"})",
           {"fileTransProgress(, 1000, 200)"_s});
    addRow("chunk received, sizes as numbers",
           R"({"cmd":"START_DATA","key":"7","received":200,"size":1000})",
           {"fileTransProgress(, 0, 0)"_s});
    addRow("chunk received, nothing said", R"({"cmd":"START_DATA"})",
           {"fileTransProgress(, 0, 0)"_s});
    addRow("chunk received of a large file",
           R"({"cmd":"START_DATA","received":"9223372036854775807","size":"-1"})",
           {"fileTransProgress(, -1, 9223372036854775807)"_s});
    addRow("file complete", R"({"checkstate":1,"cmd":"CHECK_DATA","key":"7"})", {"finish(, 1)"_s},
           {R"(check_data key = "7")"_s, "check_data checkstate = 1"_s});
    addRow("file complete, verdict as text", R"({"checkstate":"1","cmd":"CHECK_DATA","key":"7"})",
           {"finish(, 0)"_s}, {R"(check_data key = "7")"_s, "check_data checkstate = 0"_s});
    addRow("file complete, nothing said", R"({"cmd":"CHECK_DATA"})", {"finish(, 0)"_s},
           {R"(check_data key = "")"_s, "check_data checkstate = 0"_s});
    addRow("cancelled", R"({"cmd":"CANCEL_FILE","errorcode":0})", {"cancelFinished()"_s});
    addRow("cancelled, no code", R"({"cmd":"CANCEL_FILE"})", {"cancelFinished()"_s});
    addRow("not cancelled", R"({"cmd":"CANCEL_FILE","errorcode":3})");
}

void TestReplies::keepsTheOrderOfReplies()
{
    constexpr int count = 500;
    Session session;
    QVERIFY(session.open());

    QStringList expected;
    for (int i = 0; i < count; ++i) {
        const QString reply = QStringLiteral(R"({"n":%1})").arg(i);
        session.printer.sendText(reply);
        expected.append(QStringLiteral("jsonMessageReceived(%1)").arg(reply));
    }

    WAIT_COMPARE(session.trace.lines().size(), count);
    QCOMPARE(session.trace.lines(), expected);
}

void TestReplies::handlesAnInvokedMessageAtOnce()
{
    Session session;

    QVERIFY(session.invoke("onTextMessageReceived", Q_ARG(QString, R"({"version":"1"})"_s)));

    QCOMPARE(session.trace.lines(),
             (QStringList{"checkVersion()"_s, R"(jsonMessageReceived({"version":"1"}))"_s}));
}

void TestReplies::passesOnRepliesItDoesNotKnow_data()
{
    addColumns();
    addRow("unknown word", R"({"cmd":"PRINT_RESUME","status":"STARTED"})");
    addRow("lower case", R"({"cmd":"start_data","key":"7"})");
    addRow("with a space", R"({"cmd":" CHECK_DATA","key":"7"})");
    addRow("null command", R"({"cmd":"TRANSCMD_NULL"})");
    addRow("command as a number", R"({"cmd":5,"status":"STARTED"})");
    addRow("no command", R"({"status":"STARTED"})");
    addRow("empty object", "{}");
    addRow("array", R"([{"cmd":"CANCEL_FILE"}])");
    addRow("not JSON", "CANCEL_FILE");
    addRow("truncated", R"({"cmd":"CANCEL_FILE")");
    addRow("empty text", "");
}

ZY_TEST(TestReplies)

#include "tst_replies.moc"
