// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The table of the messages: spelled as on the wire, described in the document, and equal to the
// handle's enumerations, which hosts look up by name.

#include "testprogram.h"
#include "vocabulary.h"

#include <QFile>
#include <QMetaEnum>
#include <QRegularExpression>
#include <QTest>

#include <zyfiletranshandle.h>

#include <iterator>

namespace
{

QJsonObject objectIn(QLatin1String text)
{
    return QJsonDocument::fromJson(QByteArray(text.data(), text.size())).object();
}

/// "number word" for each key of the handle's enumeration, looked up as a host does.
QStringList enumerated(const char *name)
{
    const QMetaObject &meta = ZyFileTransHandle::staticMetaObject;
    const QMetaEnum enumeration = meta.enumerator(meta.indexOfEnumerator(name));
    QStringList words;
    for (int i = 0; i < enumeration.keyCount(); ++i)
        words += QStringLiteral("%1 %2")
                     .arg(enumeration.value(i))
                     .arg(QLatin1String(enumeration.key(i)));
    return words;
}

/// "number word" for each row.
template <typename Range, typename Word> QStringList numbered(const Range &rows, Word wordOf)
{
    QStringList words;
    for (const auto &row : rows)
        words += QStringLiteral("%1 %2").arg(words.size()).arg(wordOf(row));
    return words;
}

} // namespace

class TestVocabulary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void spellsMessagesAsOnTheWire_data();
    void spellsMessagesAsOnTheWire();
    void spellsTheOtherWordsAsOnTheWire();
    void hasTheCommandsOfTheHandle();
    void hasThePrintStartAnswersOfTheHandle();
    void hasTheErrorNumbersOfTheHandle();
    void isDescribedInTheDocument();
};

void TestVocabulary::spellsMessagesAsOnTheWire_data()
{
    // A second time, on purpose: a slip in the table would change both ends at once.
    QTest::addColumn<QString>("request");
    QTest::addColumn<QString>("reply");
    int rows = 0;
    const auto row = [&rows](const char *word, const char *request, const char *reply) {
        QTest::newRow(word) << QString::fromLatin1(request) << QString::fromLatin1(reply);
        ++rows;
    };
    row("0 TRANSCMD_NULL", "", "");
    row("1 START_FILE",
        R"({"cmd":"START_FILE","filename":"model.zydlp","key":"78563412","offset":"0","size":"5"})",
        R"({"cmd":"START_FILE","compress":true,"errorcode":0,"filename":"model.zydlp",)"
        R"("key":"78563412","offset":"0","size":"5"})");
    row("2 CANCEL_FILE", R"({"cmd":"CANCEL_FILE"})", R"({"cmd":"CANCEL_FILE","errorcode":0})");
    row("3 START_DATA", "",
        R"({"cmd":"START_DATA","errorcode":0,"key":"78563412","received":"5","size":"5"})");
    row("4 CHECK_DATA", "", R"({"checkstate":1,"cmd":"CHECK_DATA","key":"78563412"})");
    row("5 START_PRINT", R"({"cmd":"START_PRINT","filename":"model.zydlp","token":"t"})",
        R"({"cmd":"START_PRINT","filename":"model.zydlp","status":"CHECKING"})");
    row("6 PRINT_PAUSE", R"({"cmd":"PRINT_PAUSE","token":"t"})",
        R"({"cmd":"PRINT_PAUSE","status":"CMD_SUCCES"})");
    row("7 PRINT_STOP", R"({"cmd":"PRINT_STOP","token":"t"})",
        R"({"cmd":"PRINT_STOP","status":"CMD_SUCCES"})");
    row("8 GET_PRINT_STATUS", R"({"cmd":"GET_PRINT_STATUS","token":"t"})",
        R"({"bottomExposureNum":"6","cmd":"GET_PRINT_STATUS","curSliceLayer":"7",)"
        R"("delayLight":"0.5","eleSpeed":"120","filename":"model.zydlp","initExposure":"30",)"
        R"("layerThickness":"0.05","printExposure":"2.5","printHeight":"5",)"
        R"("printRemainTime":"3600","printStatus":"PRINT_PROCESSING","resin":"grey",)"
        R"("sliceLayerCount":"120"})");
    row("9 VERSION_CHECK", R"({"cmd":"VERSION_CHECK"})", R"({"version":"1"})");
    row("10 PRINT_PARA_SET",
        R"({"bottomExposureNum":"6","cmd":"PRINT_PARA_SET","delayLight":"0.5","eleSpeed":"120",)"
        R"("initExposure":"30","printExposure":"2.5","printHeight":"5","token":"t"})",
        R"({"cmd":"PRINT_PARA_SET","status":""})");
    row("11 PRINT_WORKING_LIFE", R"({"cmd":"PRINT_WORKING_LIFE","token":"t"})", "");
    QCOMPARE(rows, int(std::size(zyws::messages)));
}

void TestVocabulary::spellsMessagesAsOnTheWire()
{
    QFETCH(QString, request);
    QFETCH(QString, reply);
    const QStringList tag = QString::fromLatin1(QTest::currentDataTag()).split(QLatin1Char(' '));
    const zyws::Message &message = zyws::messages[tag.first().toInt()];
    QCOMPARE(QString(message.word), tag.last());
    const auto compact = [](QLatin1String sample) {
        const QJsonObject object = objectIn(sample);
        return object.isEmpty()
            ? QString(sample)
            : QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact));
    };
    QCOMPARE(compact(message.request), request);
    QCOMPARE(compact(message.reply), reply);
}

void TestVocabulary::spellsTheOtherWordsAsOnTheWire()
{
    const auto joined = [](const auto &words) {
        return QStringList(std::begin(words), std::end(words)).join(QLatin1Char(' '));
    };
    QCOMPARE(joined(zyws::printstates::all),
             QStringLiteral("PRINT_GENERAL PRINT_PROCESSING PRINT_COMPLETE PRINT_FAIL PRINT_END "
                            "PRINT_STOP PRINT_STOPING PRINT_COMPLETING TOKEN_ERROR"));
    QCOMPARE(joined(zyws::printstart::all),
             QStringLiteral("UN_START BUSY CHECKING CHECK_FALSE STARTED PRINT_TOKEN_ERROR"));
    QCOMPARE(zyws::results::done, QLatin1String("CMD_SUCCES"));
    QCOMPARE(zyws::results::failed, QLatin1String("CMD_FAIL"));
    QCOMPARE(zyws::results::tokenError, QLatin1String("TOKEN_ERROR"));
    QCOMPARE(zyws::keys::wifistate, QLatin1String("wifistate"));
    QCOMPARE(zyws::keys::sha256, QLatin1String("sha256"));
}

void TestVocabulary::hasTheCommandsOfTheHandle()
{
    QCOMPARE(numbered(zyws::messages, [](const zyws::Message &row) { return row.word; }),
             enumerated("TRANSCMD"));
}

void TestVocabulary::hasThePrintStartAnswersOfTheHandle()
{
    QCOMPARE(numbered(zyws::printstart::all, [](QLatin1String word) { return word; }),
             enumerated("STAET_PRINT_STATUS"));
}

void TestVocabulary::hasTheErrorNumbersOfTheHandle()
{
    QCOMPARE(int(zyws::NoError), int(ZyFileTransHandle::NO_ERROR));
    QCOMPARE(int(zyws::ServerBusy), int(ZyFileTransHandle::SERVER_BUSY));
    QCOMPARE(int(zyws::FileBusy), int(ZyFileTransHandle::FILE_BUSY));
    QCOMPARE(int(zyws::UnknownError), int(ZyFileTransHandle::UNKNOW_ERROR));
    QCOMPARE(int(zyws::TokenError), int(ZyFileTransHandle::TOKEN_ERROR));
}

void TestVocabulary::isDescribedInTheDocument()
{
    QFile file(QStringLiteral(ZYTEST_PROTOCOL_DOCUMENT));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString document = QString::fromUtf8(file.readAll());
    const auto describes = [&document](const QString &word) {
        return QRegularExpression(QStringLiteral("\\b%1\\b").arg(word)).match(document).hasMatch();
    };
    for (const zyws::Message &message : zyws::messages) {
        if (message.request.isEmpty() && message.reply.isEmpty())
            continue;
        const QStringList words = QStringList{message.word} + objectIn(message.request).keys()
            + objectIn(message.reply).keys();
        for (const QString &word : words)
            QVERIFY2(describes(word), qPrintable(word));
    }
}

ZY_TEST(TestVocabulary)
#include "tst_vocabulary.moc"
