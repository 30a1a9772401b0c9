// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The command builders: the exact text of each message.

#include "scriptedprinter.h"
#include "session.h"
#include "testprogram.h"
#include "texts.h"

#include <QJsonArray>

#include <functional>

using zytest::ScriptedPrinter;
using Session = zytest::Session<ScriptedPrinter>;
using Command = std::function<void(ZySslEchoClient &)>;

Q_DECLARE_METATYPE(Command)

class TestCommands : public QObject
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

void row(const char *tag, const Command &command, const char *text)
{
    QTest::newRow(tag) << command << QString::fromUtf8(text);
}

} // namespace

void TestCommands::sendsOneCompactMessage_data()
{
    QTest::addColumn<Command>("command");
    QTest::addColumn<QString>("text");
    addCommandRows();
    addOtherRows();
}

void TestCommands::addCommandRows()
{
    row(
        "version check", [](auto &c) { c.versionCheckCmd(); }, R"({"cmd":"VERSION_CHECK"})");
    row(
        "start print", [](auto &c) { c.printStartCmd("model.zydlp"_s, "t0ken"_s); },
        R"({"cmd":"START_PRINT","filename":"model.zydlp","token":"t0ken"})");
    row(
        "start print with an empty token", [](auto &c) { c.printStartCmd("m"_s, QString()); },
        R"({"cmd":"START_PRINT","filename":"m","token":""})");
    row(
        "pause", [](auto &c) { c.printPauseCmd("t0ken"_s); },
        R"({"cmd":"PRINT_PAUSE","token":"t0ken"})");
    row(
        "pause with an empty token", [](auto &c) { c.printPauseCmd(QString()); },
        R"({"cmd":"PRINT_PAUSE","token":""})");
    row(
        "stop", [](auto &c) { c.printStopCmd("t0ken"_s); },
        R"({"cmd":"PRINT_STOP","token":"t0ken"})");
    row(
        "print status", [](auto &c) { c.getPrintStatusCmd("t0ken"_s); },
        R"({"cmd":"GET_PRINT_STATUS","token":"t0ken"})");
    row(
        "working life", [](auto &c) { c.getPrintworkingLife("t0ken"_s); },
        R"({"cmd":"PRINT_WORKING_LIFE","token":"t0ken"})");
}

void TestCommands::addOtherRows()
{
    row(
        "start print of a file named in other letters",
        [](auto &c) {
            c.printStartCmd("Zahnr\xc3\xa4"
                            "der \"7\"\\.zydlp"_s,
                            "t"_s);
        },
        "{\"cmd\":\"START_PRINT\",\"filename\":\"Zahnr\xc3\xa4"
        "der \\\"7\\\"\\\\.zydlp\","
        "\"token\":\"t\"}");
    row(
        "any message",
        [](auto &c) {
            c.sendJsonMessage({{"list"_s, QJsonArray{1, "a b"_s}}, {"a"_s, 0.5}});
        },
        R"({"a":0.5,"list":[1,"a b"]})");
    row(
        "empty message", [](auto &c) { c.sendJsonMessage({}); }, "{}");
}

void TestCommands::sendsOneCompactMessage()
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

void TestCommands::sendsParametersUnchanged_data()
{
    QTest::addColumn<QString>("parameters");
    QTest::addColumn<QString>("text");

    QTest::newRow("every type of value")
        << R"({"a":"x","b":1,"c":true,"d":null,"e":{"f":[2]}})"_s
        << R"({"a":"x","b":1,"c":true,"cmd":"PRINT_PARA_SET","d":null,"e":{"f":[2]},"token":"t"})"_s;
    QTest::newRow("the printer's six parameters")
        << R"({"bottomExposureNum":"6","delayLight":"1.5","eleSpeed":"60","initExposure":"40",)"
           R"("printExposure":"2.5","printHeight":"8"})"_s
        << R"({"bottomExposureNum":"6","cmd":"PRINT_PARA_SET","delayLight":"1.5","eleSpeed":"60",)"
           R"("initExposure":"40","printExposure":"2.5","printHeight":"8","token":"t"})"_s;
    QTest::newRow("a command and a token among the parameters")
        << R"({"cmd":"PRINT_STOP","token":"stolen","x":"1"})"_s
        << R"({"cmd":"PRINT_PARA_SET","token":"t","x":"1"})"_s;
    QTest::newRow("none") << "{}"_s
                          << R"({"cmd":"PRINT_PARA_SET","token":"t"})"_s;
}

void TestCommands::sendsParametersUnchanged()
{
    QFETCH(QString, parameters);
    QFETCH(QString, text);
    Session session;
    QVERIFY(session.open());

    session.client.setPrintParaCmd(zytest::objectIn(parameters), "t"_s);

    WAIT_COMPARE(session.printer.texts(), QStringList{text});
}

void TestCommands::keepsTheOrderOfCommands()
{
    Session session;
    QVERIFY(session.open());

    session.client.printStopCmd("1"_s);
    session.client.versionCheckCmd();
    session.client.printPauseCmd("2"_s);

    WAIT_COMPARE(
        session.printer.texts(),
        (QStringList{R"({"cmd":"PRINT_STOP","token":"1"})"_s, R"({"cmd":"VERSION_CHECK"})"_s,
                     R"({"cmd":"PRINT_PAUSE","token":"2"})"_s}));
}

void TestCommands::readsOneObjectFromAText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("object");

    QTest::newRow("object") << R"({"cmd":"X","n":1})"_s
                            << R"({"cmd":"X","n":1})"_s;
    QTest::newRow("object with spaces") << " { \"n\" : [ 1 ] } "_s
                                        << R"({"n":[1]})"_s;
    QTest::newRow("empty object") << "{}"_s
                                  << "{}"_s;
    QTest::newRow("array") << "[1,2]"_s
                           << "{}"_s;
    QTest::newRow("string") << "\"x\""_s
                            << "{}"_s;
    QTest::newRow("empty text") << QString() << "{}"_s;
    QTest::newRow("truncated object") << R"({"cmd":"START_PRINT")"_s
                                      << "{}"_s;
    QTest::newRow("object with something after it") << "{} x"_s
                                                    << "{}"_s;
}

void TestCommands::readsOneObjectFromAText()
{
    QFETCH(QString, text);
    QFETCH(QString, object);
    Session session;

    QCOMPARE(session.client.messageToJson(text), zytest::objectIn(object));
    QCOMPARE(session.logLines(), QStringList());
}

void TestCommands::losesCommandsSilentlyBeforeTheConnection()
{
    Session session;
    session.client.versionCheckCmd();
    session.client.printStartCmd("m"_s, "t"_s);
    QVERIFY(session.open());

    session.client.printStopCmd("t"_s);

    WAIT_COMPARE(session.printer.texts(), QStringList{R"({"cmd":"PRINT_STOP","token":"t"})"_s});
    QCOMPARE(session.trace.lines(), QStringList());
}

void TestCommands::losesCommandsSilentlyAfterTheConnection()
{
    Session session;
    QVERIFY(session.open());
    session.client.close();
    session.trace.clear();
    session.log.clear();

    session.client.printStopCmd("t"_s);
    WAIT_VERIFY(!session.printer.peer());

    QCOMPARE(session.printer.texts(), QStringList());
    QCOMPARE(session.trace.lines(), QStringList());
    QCOMPARE(session.logLines(), QStringList());
}

ZY_TEST(TestCommands)

#include "tst_commands.moc"
