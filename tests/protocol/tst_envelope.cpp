// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The message envelope: text to object and back, decimal texts.

#include "envelope.h"
#include "testprogram.h"

#include <QJsonArray>
#include <QTest>

#include <limits>

class TestEnvelope : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesCompactText();
    void writesUnicodeAsItIs();
    void readsAnObject();
    void readsBackWhatItWrote();
    void writesDecimals_data();
    void writesDecimals();
    void readsDecimals_data();
    void readsDecimals();

    void readsAnythingElseAsAnEmptyObject_data();
    void readsAnythingElseAsAnEmptyObject();
    void keepsANulInsideAText();
    void knowsAFlatMessage_data();
    void knowsAFlatMessage();
};

void TestEnvelope::writesCompactText()
{
    const QJsonObject message{
        {QStringLiteral("cmd"), QStringLiteral("START_DATA")},
        {QStringLiteral("errorcode"), 0},
        {QStringLiteral("compress"), true},
        {QStringLiteral("list"), QJsonArray{1, 2}},
    };
    QCOMPARE(zyws::messageText(message),
             QStringLiteral(R"({"cmd":"START_DATA","compress":true,"errorcode":0,"list":[1,2]})"));
    QCOMPARE(zyws::messageText({}), QStringLiteral("{}"));
}

void TestEnvelope::writesUnicodeAsItIs()
{
    QCOMPARE(zyws::messageText({{QStringLiteral("f"), QStringLiteral("\u00e4\u6a21 \"x\"")}}),
             QStringLiteral("{\"f\":\"\u00e4\u6a21 \\\"x\\\"\"}"));
}

void TestEnvelope::readsAnObject()
{
    const QJsonObject message
        = zyws::parseMessage(QStringLiteral(" {\n \"cmd\" : \"START_FILE\", \"size\": \"7\" } "));
    QCOMPARE(message.keys(), QStringList({QStringLiteral("cmd"), QStringLiteral("size")}));
    QCOMPARE(message.value(QStringLiteral("size")), QJsonValue(QStringLiteral("7")));
}

void TestEnvelope::readsBackWhatItWrote()
{
    const QJsonObject message{
        {QStringLiteral("text"), QStringLiteral("\u00e4\U0001f5a8\n\t")},
        {QStringLiteral("number"), -1},
        {QStringLiteral("null"), QJsonValue()},
        {QStringLiteral("object"), QJsonObject{{QStringLiteral("x"), false}}},
    };
    QCOMPARE(zyws::parseMessage(zyws::messageText(message)), message);
}

void TestEnvelope::writesDecimals_data()
{
    QTest::addColumn<qint64>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << qint64(0) << QStringLiteral("0");
    QTest::newRow("three chunks") << Q_INT64_C(3145728) << QStringLiteral("3145728");
    QTest::newRow("more than 32 bits") << Q_INT64_C(5000000000) << QStringLiteral("5000000000");
    QTest::newRow("negative") << Q_INT64_C(-1) << QStringLiteral("-1");
    QTest::newRow("largest") << std::numeric_limits<qint64>::max()
                             << QStringLiteral("9223372036854775807");
    QTest::newRow("smallest") << std::numeric_limits<qint64>::min()
                              << QStringLiteral("-9223372036854775808");
}

void TestEnvelope::writesDecimals()
{
    QFETCH(qint64, value);
    QTEST(zyws::decimal(value), "text");
}

void TestEnvelope::readsDecimals_data()
{
    QTest::addColumn<QJsonValue>("value");
    QTest::addColumn<qint64>("number");
    const auto row = [](const char *name, const QJsonValue &value, qint64 number) {
        QTest::newRow(name) << value << number;
    };
    row("digits", QStringLiteral("1048576"), 1048576);
    row("more than 32 bits", QStringLiteral("5000000000"), Q_INT64_C(5000000000));
    row("negative", QStringLiteral("-5"), -5);
    row("largest", QStringLiteral("9223372036854775807"), std::numeric_limits<qint64>::max());
    row("a JSON number", 100, 0);
    row("missing", QJsonValue(QJsonValue::Undefined), 0);
    row("null", QJsonValue(), 0);
    row("true", true, 0);
    row("an object", QJsonObject(), 0);
    row("empty", QStringLiteral(""), 0);
    row("letters", QStringLiteral("abc"), 0);
    row("trailing letters", QStringLiteral("100x"), 0);
    row("hexadecimal", QStringLiteral("0x10"), 0);
    row("a fraction", QStringLiteral("1.5"), 0);
    row("too large", QStringLiteral("9223372036854775808"), 0);
}

void TestEnvelope::readsDecimals()
{
    QFETCH(QJsonValue, value);
    QTEST(zyws::decimalValue(value), "number");
}

void TestEnvelope::readsAnythingElseAsAnEmptyObject_data()
{
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *text) {
        QTest::newRow(name) << QString::fromUtf8(text);
    };
    row("an array", "[1,2]");
    row("an array of objects", R"([{"cmd":"START_FILE"}])");
    row("a string", R"("x")");
    row("a number", "1");
    row("true", "true");
    row("null", "null");
    row("empty", "");
    row("white space", " \n");
    row("truncated", R"({"cmd":"START_FILE")");
    row("truncated inside a text", R"({"cmd":"START_)");
    row("single quotes", "{'cmd':'START_FILE'}");
    row("a trailing comma", R"({"cmd":"START_FILE",})");
    row("two objects", R"({"cmd":"START_FILE"}{"cmd":"START_FILE"})");
    row("something after the object", R"({"cmd":"START_FILE"} x)");
    row("plain text", "START_FILE");
    QTest::newRow("deeper than the parser goes")
        << QString(5000, QLatin1Char('[')) + QString(5000, QLatin1Char(']'));
}

void TestEnvelope::readsAnythingElseAsAnEmptyObject()
{
    QFETCH(QString, text);
    QVERIFY(zyws::parseMessage(text).isEmpty());
}

void TestEnvelope::keepsANulInsideAText()
{
    // The serialiser escapes it, so the text of the message does not end there.
    const QString text = zyws::messageText({{QStringLiteral("f"), QString(QChar(0))}});
    QCOMPARE(text, QStringLiteral(R"({"f":"\u0000"})"));
}

void TestEnvelope::knowsAFlatMessage_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isFlat");
    const auto row = [](const char *text, bool isFlat) {
        QTest::newRow(text) << QString::fromUtf8(text) << isFlat;
    };
    row(R"({"cmd":"VERSION_CHECK"})", true);
    row(R"({"filename":"{[}]"})", true);
    row(R"({"filename":"\"{[\\"})", true);
    row(R"({"filename":"\\\\","size":{}})", false);
    row(R"({"filename":[]})", false);
    row(R"({"filename":{}})", false);
    row(R"([{}])", false);
    row("", true);
}

void TestEnvelope::knowsAFlatMessage()
{
    QFETCH(QString, text);
    QTEST(zyws::isFlat(text), "isFlat");
}

ZY_TEST(TestEnvelope)
#include "tst_envelope.moc"
