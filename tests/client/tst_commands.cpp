// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The command builders: the exact text of each message.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"

#include <QJsonArray>

#include <functional>

using zytest::ScriptedPrinter;
using Session = zytest::Session<ScriptedPrinter>;
using Command = std::function<void(ZySslEchoClient &)>;

Q_DECLARE_METATYPE(Command)

class CommandsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sendsOneCompactMessage_data();
    void sendsOneCompactMessage();
    void sendsParametersUnchanged_data();
    void sendsParametersUnchanged();
    void keepsTheOrderOfCommands();
    void readsOneObjectFromAText_data();
    void readsOneObjectFromAText();
    void losesCommandsSilentlyBeforeTheConnection();
    void losesCommandsSilentlyAfterTheConnection();

private:
    static void addCommandRows();
    static void addOtherRows();
};

namespace
{

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

void row(const char *tag, const Command &command, const char *text)
{
    QTest::newRow(tag) << command << s(text);
}

} // namespace

void CommandsTest::sendsOneCompactMessage_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QString>("text");
    addCommandRows();
    addOtherRows();
}

void CommandsTest::addCommandRows()
{
    row(
        "version check", [](auto &c) { c.versionCheckCmd(); }, R"({"cmd":"VERSION_CHECK"})");
    row(
        "start print", [](auto &c) { c.printStartCmd(s("model.zydlp"), s("t0ken")); },
        R"({"cmd":"START_PRINT","filename":"model.zydlp","token":"t0ken"})");
    row(
        "start print with an empty token", [](auto &c) { c.printStartCmd(s("m"), QString()); },
        R"({"cmd":"START_PRINT","filename":"m","token":""})");
    row(
        "pause", [](auto &c) { c.printPauseCmd(s("t0ken")); },
        R"({"cmd":"PRINT_PAUSE","token":"t0ken"})");
    row(
        "pause with an empty token", [](auto &c) { c.printPauseCmd(QString()); },
        R"({"cmd":"PRINT_PAUSE","token":""})");
    row(
        "stop", [](auto &c) { c.printStopCmd(s("t0ken")); },
        R"({"cmd":"PRINT_STOP","token":"t0ken"})");
    row(
        "print status", [](auto &c) { c.getPrintStatusCmd(s("t0ken")); },
        R"({"cmd":"GET_PRINT_STATUS","token":"t0ken"})");
    row(
        "working life", [](auto &c) { c.getPrintworkingLife(s("t0ken")); },
        R"({"cmd":"PRINT_WORKING_LIFE","token":"t0ken"})");
}

void CommandsTest::addOtherRows()
{
    row(
        "start print of a file named in other letters",
        [](auto &c) {
            c.printStartCmd(s("Zahnr\xc3\xa4"
                              "der \"7\"\\.zydlp"),
                            s("t"));
        },
        "{\"cmd\":\"START_PRINT\",\"filename\":\"Zahnr\xc3\xa4"
        "der \\\"7\\\"\\\\.zydlp\","
        "\"token\":\"t\"}");
    row(
        "any message",
        [](auto &c) {
            c.sendJsonMessage({{s("list"), QJsonArray{1, s("a b")}}, {s("a"), 0.5}});
        },
        R"({"a":0.5,"list":[1,"a b"]})");
    row(
        "empty message", [](auto &c) { c.sendJsonMessage({}); }, "{}");
}

void CommandsTest::sendsOneCompactMessage()
{
    QFETCH(Command, command);
    QFETCH(QString, text);
    Session session;
    QVERIFY(session.open());

    command(session.client);

    WAIT_COMPARE(session.printer.texts(), QStringList{text});
    QCOMPARE(session.trace.lines(), QStringList());
    QCOMPARE(session.logLines(), QStringList());
}

void CommandsTest::sendsParametersUnchanged_data()
{
    QTest::addColumn<QString>("parameters");
    QTest::addColumn<QString>("text");

    QTest::newRow("every type of value")
        << s(R"({"a":"x","b":1,"c":true,"d":null,"e":{"f":[2]}})")
        << s(R"({"a":"x","b":1,"c":true,"cmd":"PRINT_PARA_SET","d":null,"e":{"f":[2]},"token":"t"})");
    QTest::newRow("the printer's six parameters")
        << s(R"({"bottomExposureNum":"6","delayLight":"1.5","eleSpeed":"60","initExposure":"40",)"
             R"("printExposure":"2.5","printHeight":"8"})")
        << s(R"({"bottomExposureNum":"6","cmd":"PRINT_PARA_SET","delayLight":"1.5","eleSpeed":"60",)"
             R"("initExposure":"40","printExposure":"2.5","printHeight":"8","token":"t"})");
    QTest::newRow("a command and a token among the parameters")
        << s(R"({"cmd":"PRINT_STOP","token":"stolen","x":"1"})")
        << s(R"({"cmd":"PRINT_PARA_SET","token":"t","x":"1"})");
    QTest::newRow("none") << s("{}") << s(R"({"cmd":"PRINT_PARA_SET","token":"t"})");
}

void CommandsTest::sendsParametersUnchanged()
{
    QFETCH(QString, parameters);
    QFETCH(QString, text);
    Session session;
    QVERIFY(session.open());

    session.client.setPrintParaCmd(zytest::objectIn(parameters), s("t"));

    WAIT_COMPARE(session.printer.texts(), QStringList{text});
}

void CommandsTest::keepsTheOrderOfCommands()
{
    Session session;
    QVERIFY(session.open());

    session.client.printStopCmd(s("1"));
    session.client.versionCheckCmd();
    session.client.printPauseCmd(s("2"));

    WAIT_COMPARE(
        session.printer.texts(),
        (QStringList{s(R"({"cmd":"PRINT_STOP","token":"1"})"), s(R"({"cmd":"VERSION_CHECK"})"),
                     s(R"({"cmd":"PRINT_PAUSE","token":"2"})")}));
}

void CommandsTest::readsOneObjectFromAText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("object");

    QTest::newRow("object") << s(R"({"cmd":"X","n":1})") << s(R"({"cmd":"X","n":1})");
    QTest::newRow("object with spaces") << s(" { \"n\" : [ 1 ] } ") << s(R"({"n":[1]})");
    QTest::newRow("empty object") << s("{}") << s("{}");
    QTest::newRow("array") << s("[1,2]") << s("{}");
    QTest::newRow("string") << s("\"x\"") << s("{}");
    QTest::newRow("empty text") << QString() << s("{}");
    QTest::newRow("truncated object") << s(R"({"cmd":"START_PRINT")") << s("{}");
    QTest::newRow("object with something after it") << s("{} x") << s("{}");
}

void CommandsTest::readsOneObjectFromAText()
{
    QFETCH(QString, text);
    QFETCH(QString, object);
    Session session;

    QCOMPARE(session.client.messageToJson(text), zytest::objectIn(object));
    QCOMPARE(session.logLines(), QStringList());
}

void CommandsTest::losesCommandsSilentlyBeforeTheConnection()
{
    Session session;
    session.client.versionCheckCmd();
    session.client.printStartCmd(s("m"), s("t"));
    QVERIFY(session.open());

    session.client.printStopCmd(s("t"));

    WAIT_COMPARE(session.printer.texts(), QStringList{s(R"({"cmd":"PRINT_STOP","token":"t"})")});
    QCOMPARE(session.trace.lines(), QStringList());
}

void CommandsTest::losesCommandsSilentlyAfterTheConnection()
{
    Session session;
    QVERIFY(session.open());
    session.client.close();
    session.trace.clear();
    session.log.clear();

    session.client.printStopCmd(s("t"));
    WAIT_VERIFY(!session.printer.peer());

    QCOMPARE(session.printer.texts(), QStringList());
    QCOMPARE(session.trace.lines(), QStringList());
    QCOMPARE(session.logLines(), QStringList());
}

ZY_TEST(CommandsTest)

#include "tst_commands.moc"
