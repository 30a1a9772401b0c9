// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The reply parser: which signals each reply gives, in which order, and what is logged.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"

using Session = zytest::Session<zytest::ScriptedPrinter>;

class RepliesTest : public QObject
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

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

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
                           .arg(zytest::compactText(zytest::objectIn(s(reply)))));
    QTest::newRow(tag) << s(reply) << signalLines << logLines;
}

} // namespace

void RepliesTest::givesSignalsAndLog()
{
    QFETCH(QString, reply);
    QFETCH(QStringList, signalLines);
    QFETCH(QStringList, logLines);
    Session session;
    QVERIFY(session.open());

    session.printer.sendText(reply);

    WAIT_COMPARE(session.trace.count(s("jsonMessageReceived")), 1);
    QCOMPARE(session.trace.lines(), signalLines);
    QCOMPARE(session.logLines(), logLines);
    QCOMPARE(session.printer.texts(), QStringList());
}

void RepliesTest::turnsPrintRepliesIntoSignals_data()
{
    addColumns();
    addRow("print started", R"({"cmd":"START_PRINT","filename":"a.zydlp","status":"STARTED"})",
           {s("printErrorCode(0, a.zydlp)")}, {s(R"(print start cmd = "STARTED")")});
    addRow("print paused", R"({"cmd":"PRINT_PAUSE","status":"CMD_SUCCES"})", {},
           {s(R"(PRINT_PAUSE received status= QJsonValue(string, "CMD_SUCCES"))")});
    addRow("pause without status", R"({"cmd":"PRINT_PAUSE"})", {},
           {s("PRINT_PAUSE received status= QJsonValue(undefined)")});
    addRow("print stopped", R"({"cmd":"PRINT_STOP","status":"CMD_SUCCES"})", {},
           {s(R"(PRINT_STOP received status= QJsonValue(string, "CMD_SUCCES"))")});
    addRow(
        "print status", R"({"cmd":"GET_PRINT_STATUS","printStatus":"PRINT_GENERAL"})",
        {s(R"(getPrinterStatusInfo({"cmd":"GET_PRINT_STATUS","printStatus":"PRINT_GENERAL"}))")});
    addRow(
        "parameters set", R"({"cmd":"PRINT_PARA_SET","status":"CMD_SUCCES"})", {},
        {s(R"(PRINT_PARA_SET status= QJsonObject({"cmd":"PRINT_PARA_SET","status":"CMD_SUCCES"}))")});
    addRow("working life", R"({"cmd":"PRINT_WORKING_LIFE","life":"12"})",
           {s(R"(slotGetPrinterWorkingLife({"cmd":"PRINT_WORKING_LIFE","life":"12"}))")});
}

void RepliesTest::mapsStartPrintStatus_data()
{
    QTest::addColumn<QString>("status");
    QTest::addColumn<QString>("signalLine");

    QTest::newRow("started") << s("STARTED") << s("printErrorCode(0, a.zydlp)");
    QTest::newRow("busy") << s("BUSY") << s("printErrorCode(1, a.zydlp)");
    QTest::newRow("checking") << s("CHECKING") << s("printErrorCode(2, a.zydlp)");
    QTest::newRow("check failed") << s("CHECK_FALSE") << s("printErrorCode(3, a.zydlp)");
    QTest::newRow("token rejected") << s("PRINT_TOKEN_ERROR") << s("printErrorCode(4, a.zydlp)");
    QTest::newRow("not started") << s("UN_START") << QString();
    QTest::newRow("lower case") << s("started") << QString();
    QTest::newRow("with a space") << s("STARTED ") << QString();
    QTest::newRow("another word") << s("TOKEN_ERROR") << QString();
    QTest::newRow("empty") << QString() << QString();
}

void RepliesTest::mapsStartPrintStatus()
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
    WAIT_COMPARE(session.trace.count(s("jsonMessageReceived")), 1);
    QCOMPARE(session.trace.lines(), expected);
    QCOMPARE(session.logLines(),
             QStringList{QStringLiteral("print start cmd = \"%1\"").arg(status)});
}

void RepliesTest::noticesVersionOne_data()
{
    addColumns();
    const QStringList noticed{s("checkVersion()")};
    addRow("one, without a command", R"({"version":"1"})", noticed);
    addRow("one, spelled with a zero", R"({"version":"01"})", noticed);
    addRow("one before a status", R"({"cmd":"GET_PRINT_STATUS","version":"1"})",
           {s("checkVersion()"),
            s(R"(getPrinterStatusInfo({"cmd":"GET_PRINT_STATUS","version":"1"}))")});
    addRow("one, as a number", R"({"version":1})");
    addRow("one, as a number before a status", R"({"cmd":"GET_PRINT_STATUS","version":1})",
           {s(R"(getPrinterStatusInfo({"cmd":"GET_PRINT_STATUS","version":1}))")});
    addRow("two", R"({"version":"2"})");
    addRow("a decimal fraction", R"({"version":"1.0"})");
    addRow("a name", R"({"version":"V1"})");
    addRow("empty", R"({"version":""})");
    addRow("the command's own word", R"({"cmd":"VERSION_CHECK"})");
}

void RepliesTest::turnsTransferRepliesIntoSignals_data()
{
    addColumns();
    addRow("printer busy", R"({"cmd":"START_FILE","compress":true,"errorcode":1,"wifistate":3})",
           {s("transError(1, )")});
    addRow("no temporary file", R"({"cmd":"START_FILE","compress":true,"errorcode":2})",
           {s("transError(2, )")});
    addRow("token rejected", R"({"cmd":"START_FILE","errorcode":4,"wifistate":6})",
           {s("transError(4, )")});
    addRow("chunk received", R"({"cmd":"START_DATA","key":"7","received":"200","size":"1000"})",
           {s("fileTransProgress(, 1000, 200)")});
    addRow("chunk received, sizes as numbers",
           R"({"cmd":"START_DATA","key":"7","received":200,"size":1000})",
           {s("fileTransProgress(, 0, 0)")});
    addRow("chunk received, nothing said", R"({"cmd":"START_DATA"})",
           {s("fileTransProgress(, 0, 0)")});
    addRow("chunk received of a large file",
           R"({"cmd":"START_DATA","received":"9223372036854775807","size":"-1"})",
           {s("fileTransProgress(, -1, 9223372036854775807)")});
    addRow("file complete", R"({"checkstate":1,"cmd":"CHECK_DATA","key":"7"})", {s("finish(, 1)")},
           {s(R"(check_data key = "7")"), s("check_data checkstate = 1")});
    addRow("file complete, verdict as text", R"({"checkstate":"1","cmd":"CHECK_DATA","key":"7"})",
           {s("finish(, 0)")}, {s(R"(check_data key = "7")"), s("check_data checkstate = 0")});
    addRow("file complete, nothing said", R"({"cmd":"CHECK_DATA"})", {s("finish(, 0)")},
           {s(R"(check_data key = "")"), s("check_data checkstate = 0")});
    addRow("cancelled", R"({"cmd":"CANCEL_FILE","errorcode":0})", {s("cancelFinished()")});
    addRow("cancelled, no code", R"({"cmd":"CANCEL_FILE"})", {s("cancelFinished()")});
    addRow("not cancelled", R"({"cmd":"CANCEL_FILE","errorcode":3})");
}

void RepliesTest::keepsTheOrderOfReplies()
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

void RepliesTest::handlesAnInvokedMessageAtOnce()
{
    Session session;

    QVERIFY(session.invoke("onTextMessageReceived", Q_ARG(QString, s(R"({"version":"1"})"))));

    QCOMPARE(session.trace.lines(),
             (QStringList{s("checkVersion()"), s(R"(jsonMessageReceived({"version":"1"}))")}));
}

void RepliesTest::passesOnRepliesItDoesNotKnow_data()
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

ZY_TEST(RepliesTest)

#include "tst_replies.moc"
