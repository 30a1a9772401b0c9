// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The model container: what is written is read back, and every kind of damage is found and named.

#include "checksum.h"
#include "modelreader.h"
#include "models.h"
#include "modelwriter.h"
#include "runlength.h"
#include "testprogram.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTest>

using namespace zymodel;

class TestModelFormat : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsBackWhatWasWritten();
    void codesMasks_data();
    void codesMasks();
    void codesTheLargestMaskInOneShade();
    void keepsTheDocumentedBytes();
    void refusesMoreLayersThanAnnounced();
    void refusesToFinishWithoutAllLayers();
    void refusesAResinTooLong();

    void findsEveryChangedByte();
    void findsEveryCutOff();
    void namesTheFault_data();
    void namesTheFault();
    void namesABadLayer_data();
    void namesABadLayer();
    void rejectsLayersThatDoNotExist();
    void saysWhenThereIsNoFile();
    void rejectsBadCode_data();
    void rejectsBadCode();

private:
    QString store(const QByteArray &bytes);
    QString faultOf(const QByteArray &bytes);

    QTemporaryDir m_dir;
};

QString TestModelFormat::store(const QByteArray &bytes)
{
    const QString path = m_dir.filePath(QStringLiteral("model.zydlp"));
    writeFile(path, bytes);
    return path;
}

QString TestModelFormat::faultOf(const QByteArray &bytes)
{
    ModelReader reader;
    return reader.open(store(bytes)) && reader.checkAllLayers() ? QString() : reader.error();
}

void TestModelFormat::readsBackWhatWasWritten()
{
    ModelReader reader;
    QVERIFY2(reader.open(store(smallModel(5))), qPrintable(reader.error()));
    const ModelHeader wanted = smallHeader(5);
    const ModelHeader &header = reader.header();
    QCOMPARE(reader.layerCount(), 5);
    QCOMPARE(header.width, wanted.width);
    QCOMPARE(header.height, wanted.height);
    QCOMPARE(header.pixelPitch, wanted.pixelPitch);
    QCOMPARE(header.layerThickness, wanted.layerThickness);
    QCOMPARE(header.exposure, wanted.exposure);
    QCOMPARE(header.bottomExposure, wanted.bottomExposure);
    QCOMPARE(header.bottomLayers, wanted.bottomLayers);
    QCOMPARE(header.lightDelay, wanted.lightDelay);
    QCOMPARE(header.liftHeight, wanted.liftHeight);
    QCOMPARE(header.liftSpeed, wanted.liftSpeed);
    QCOMPARE(header.resin, wanted.resin);
    QVERIFY2(reader.checkAllLayers(), qPrintable(reader.error()));
    for (int layer = 5; layer >= 1; --layer) {
        QByteArray mask;
        QVERIFY2(reader.readLayer(layer, mask), qPrintable(reader.error()));
        QCOMPARE(mask, smallMask(layer));
    }
}

void TestModelFormat::codesMasks_data()
{
    QTest::addColumn<QByteArray>("mask");
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("one pixel") << QByteArray::fromHex("80") << QByteArray::fromHex("8001");
    QTest::newRow("five lit") << QByteArray(5, '\xff') << QByteArray::fromHex("ff05");
    QTest::newRow("127 dark") << QByteArray(127, '\0') << QByteArray::fromHex("007f");
    QTest::newRow("128 dark") << QByteArray(128, '\0') << QByteArray::fromHex("008001");
    QTest::newRow("16384 dark") << QByteArray(16384, '\0') << QByteArray::fromHex("00808001");
    QTest::newRow("alternating") << QByteArray::fromHex("00ff00ff")
                                 << QByteArray::fromHex("0001ff010001ff01");
    QTest::newRow("nine equal, then another")
        << QByteArray(9, 'a') + 'b' << QByteArray::fromHex("61096201");
}

void TestModelFormat::codesMasks()
{
    QFETCH(const QByteArray, mask);
    QFETCH(const QByteArray, code);
    QCOMPARE(encodeMask(mask), code);
    QByteArray decoded(mask.size(), 'x');
    QVERIFY(decodeMask(code, decoded));
    QCOMPARE(decoded, mask);
}

void TestModelFormat::codesTheLargestMaskInOneShade()
{
    constexpr int side = 16384;
    const QByteArray code = encodeMask(QByteArray(side * side, '\0'));
    QCOMPARE(code, QByteArray::fromHex("00ffffff7f0001"));
    QVERIFY(isMaskCode(code, qint64(side) * side));
}

void TestModelFormat::keepsTheDocumentedBytes()
{
    const QByteArray bytes = smallModel(1);
    QCOMPARE(bytes.left(60).toHex(),
             QByteArray("5a59444c500d0a1a00000001000000010000001000000008"
                        "0000c3500000c350000009c4000075300000000100 0001f4"
                        "000013880001d4c000000007")
                 .replace(' ', ""));
    QCOMPARE(bytes.mid(60, 7), QByteArray("Grau \xc2\xb5"));
    QCOMPARE(bytes.mid(67, 12).toHex(),
             QByteArray("0000000000000053"
                        "00000008"));
    // 9 dark, 1 grey of 2, 2 lit, 116 dark
    const QByteArray code = QByteArray::fromHex("0009"
                                                "0201"
                                                "ff02"
                                                "0074");
    QCOMPARE(bytes.mid(83, 8).toHex(), code.toHex());
    QCOMPARE(bytes.right(4).toHex(),
             QByteArray::number(checksum(bytes.left(83)), 16).rightJustified(8, '0'));
}

void TestModelFormat::refusesMoreLayersThanAnnounced()
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    ModelWriter writer(&buffer, smallHeader(1));
    QVERIFY(writer.addLayer(smallMask(1)));
    QVERIFY(!writer.addLayer(smallMask(2)));
}

void TestModelFormat::refusesToFinishWithoutAllLayers()
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    ModelWriter writer(&buffer, smallHeader(2));
    QVERIFY(writer.addLayer(smallMask(1)));
    QVERIFY(!writer.finish());
}

void TestModelFormat::refusesAResinTooLong()
{
    for (const int bytes : {maxResinBytes, maxResinBytes + 1}) {
        QBuffer buffer;
        QVERIFY(buffer.open(QIODevice::ReadWrite));
        ModelHeader header = smallHeader(1);
        header.resin = QString(bytes, QLatin1Char('r'));
        ModelWriter writer(&buffer, header);
        QVERIFY(writer.addLayer(smallMask(1)));
        QCOMPARE(writer.finish(), bytes == maxResinBytes);
    }
}

void TestModelFormat::findsEveryChangedByte()
{
    const QByteArray model = smallModel(3);
    for (int i = 0; i < model.size(); ++i) {
        QByteArray changed = model;
        changed[i] = char(changed.at(i) ^ 0x10);
        QVERIFY2(!faultOf(changed).isEmpty(), qPrintable(QStringLiteral("byte %1").arg(i)));
    }
}

void TestModelFormat::findsEveryCutOff()
{
    const QByteArray model = smallModel(3);
    for (int size = 0; size < model.size(); ++size)
        QVERIFY2(!faultOf(model.left(size)).isEmpty(),
                 qPrintable(QStringLiteral("%1 bytes").arg(size)));
}

void TestModelFormat::namesTheFault_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("fault");
    const QByteArray model = smallModel(3);
    const QByteArray code = encodeMask(smallMask(1));
    const auto patched = [&model](int offset, const char *hex) {
        const QByteArray patch = QByteArray::fromHex(hex);
        return QByteArray(model).replace(offset, patch.size(), patch);
    };
    const auto header = [&code](quint32 ModelHeader::*field, quint32 value) {
        ModelHeader changed = smallHeader(1);
        changed.*field = value;
        return craftedModel(changed, {code});
    };

    QTest::newRow("empty file") << QByteArray()
                                << QStringLiteral("no sliced model: the magic number is missing");
    QTest::newRow("other content")
        << QByteArray(1000, 'x') << QStringLiteral("no sliced model: the magic number is missing");
    QTest::newRow("line ends converted")
        << QByteArray(model).replace("\r\n", "\n")
        << QStringLiteral("no sliced model: the magic number is missing");
    QTest::newRow("only the magic number")
        << model.left(8) << QStringLiteral("header is cut off after 8 of 60 bytes");
    QTest::newRow("newer version")
        << patched(8, "00000002") << QStringLiteral("format version 2 is not known (1 is)");
    QTest::newRow("no layers") << patched(12, "00000000")
                               << QStringLiteral("layer count 0 is outside 1 to 100000");
    QTest::newRow("too many layers")
        << patched(12, "000186a1") << QStringLiteral("layer count 100001 is outside 1 to 100000");
    QTest::newRow("no width") << header(&ModelHeader::width, 0)
                              << QStringLiteral("width 0 is outside 1 to 16384");
    QTest::newRow("huge height") << header(&ModelHeader::height, 16385)
                                 << QStringLiteral("height 16385 is outside 1 to 16384");
    QTest::newRow("no exposure") << header(&ModelHeader::exposure, 0)
                                 << QStringLiteral("exposure (ms) 0 is outside 1 to 3600000");
    QTest::newRow("lift without speed")
        << header(&ModelHeader::liftSpeed, 0)
        << QStringLiteral("lift speed (um/min) 0 is outside 1 to 100000000");
    QTest::newRow("more bottom layers than layers")
        << header(&ModelHeader::bottomLayers, 2)
        << QStringLiteral("bottom layers 2 is outside 0 to 1");
    QTest::newRow("endless resin") << patched(56, "ffffffff")
                                   << QStringLiteral("length of the resin's name 4294967295 is "
                                                     "outside 0 to 255");
    QTest::newRow("cut in the table")
        << model.left(90)
        << QStringLiteral("file is cut off in the layer table: 55 bytes wanted, 30 there");
    QTest::newRow("cut in the layers")
        << model.left(model.size() - 1)
        << QStringLiteral("file is cut off in the layers: %1 bytes wanted, %2 there")
               .arg(model.size())
               .arg(model.size() - 1);
    QTest::newRow("something behind")
        << model + "xy" << QStringLiteral("2 bytes too many after the last layer");
    QTest::newRow("header changed")
        << patched(60, "67")
        << QStringLiteral("header: CRC mismatch (stated %1, computed %2)")
               .arg(checksum(model.left(115)), 8, 16, QLatin1Char('0'))
               .arg(checksum(patched(60, "67").left(115)), 8, 16, QLatin1Char('0'));
    QTest::newRow("layer moved") << patched(67 + 16, "0000000000000000")
                                 << QStringLiteral("layer 2: starts at byte 0 instead of 123");
    QTest::newRow("layer longer than its pixels can take")
        << craftedModel(smallHeader(1), {QByteArray(257, 'x')})
        << QStringLiteral("layer 1: 257 bytes are more than 128 pixels take");
}

void TestModelFormat::namesTheFault()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QString, fault);
    QCOMPARE(faultOf(bytes), fault);
}

void TestModelFormat::namesABadLayer_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("too few pixels") << QByteArray::fromHex("007f");
    QTest::newRow("too many pixels") << QByteArray::fromHex("008101");
    QTest::newRow("no code at all") << QByteArray();
    QTest::newRow("value without a length") << QByteArray::fromHex("00800100");
}

void TestModelFormat::namesABadLayer()
{
    QFETCH(const QByteArray, code);
    const QByteArray good = encodeMask(smallMask(1));
    const QByteArray bytes = craftedModel(smallHeader(3), {good, code, good});
    QCOMPARE(faultOf(bytes), QStringLiteral("layer 2: its runs do not make 128 pixels"));

    ModelReader reader;
    QByteArray mask;
    QVERIFY(reader.open(store(bytes)));
    QVERIFY(reader.readLayer(1, mask));
    QVERIFY(!reader.readLayer(2, mask));
    QCOMPARE(reader.error(), QStringLiteral("layer 2: its runs do not make 128 pixels"));
    QVERIFY(reader.readLayer(3, mask));
    QCOMPARE(mask, smallMask(1));
}

void TestModelFormat::rejectsLayersThatDoNotExist()
{
    ModelReader reader;
    QByteArray mask;
    QVERIFY(reader.open(store(smallModel(2))));
    QVERIFY(!reader.readLayer(0, mask));
    QCOMPARE(reader.error(), QStringLiteral("layer 0: does not exist"));
    QVERIFY(!reader.checkLayer(3));
    QCOMPARE(reader.error(), QStringLiteral("layer 3: does not exist"));
}

void TestModelFormat::saysWhenThereIsNoFile()
{
    ModelReader reader;
    QVERIFY(!reader.open(m_dir.filePath(QStringLiteral("missing"))));
    QCOMPARE(reader.error(), QStringLiteral("No such file or directory"));
}

void TestModelFormat::rejectsBadCode_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("run of no pixels") << QByteArray::fromHex("0000008001");
    QTest::newRow("length without an end") << QByteArray::fromHex("0080");
    QTest::newRow("length of five bytes") << QByteArray::fromHex("008080808001");
    QTest::newRow("one pixel too many") << QByteArray::fromHex("008101");
    QTest::newRow("one run too many") << QByteArray::fromHex("0080010001");
    QTest::newRow("one pixel missing") << QByteArray::fromHex("007f");
}

void TestModelFormat::rejectsBadCode()
{
    QFETCH(const QByteArray, code);
    QByteArray mask(128, 'x');
    QVERIFY(!isMaskCode(code, mask.size()));
    QVERIFY(!decodeMask(code, mask));
    QCOMPARE(mask.size(), 128);
}

ZY_TEST(TestModelFormat)
#include "tst_modelformat.moc"
