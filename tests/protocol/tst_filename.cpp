// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Which names a file may have on the printer.

#include "filetransfer.h"
#include "testprogram.h"

#include <QTest>

using zyws::NameFault;

class TestFileName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isPlain_data();
    void isPlain();
};

void TestFileName::isPlain_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("fault");
    const auto row = [](const char *tag, const QString &name, NameFault fault) {
        QTest::newRow(tag) << name << static_cast<int>(fault);
    };
    row("usual", QStringLiteral("part.zydlp"), NameFault::None);
    row("hidden", QStringLiteral(".part"), NameFault::None);
    row("three dots", QStringLiteral("..."), NameFault::None);
    row("like the temporary file", QStringLiteral("wifi_transfer.tmp"), NameFault::None);
    row("255 bytes", QString(255, QLatin1Char('a')), NameFault::None);
    row("256 bytes", QString(256, QLatin1Char('a')), NameFault::TooLong);
    row("256 bytes in 64 letters", QString::fromUtf8("\xf0\x9f\x98\x80").repeated(64),
        NameFault::TooLong);
    row("nothing", QString(), NameFault::Empty);
    row("absolute", QStringLiteral("/part"), NameFault::Separator);
    row("outside", QStringLiteral("../part"), NameFault::Separator);
    row("Windows path", QStringLiteral("C:\\part"), NameFault::Separator);
    row("this directory", QStringLiteral("."), NameFault::Directory);
    row("the directory above", QStringLiteral(".."), NameFault::Directory);
    row("tabulator", QStringLiteral("a\tb"), NameFault::ControlCharacter);
    row("delete", QString(QChar(0x7f)), NameFault::ControlCharacter);
    row("C1 control", QString(QChar(0x85)), NameFault::ControlCharacter);
    row("temporary file", QStringLiteral("wifi_tranfer.tmp"), NameFault::Reserved);
    row("temporary file, shouted", QStringLiteral("WIFI_TRANFER.TMP"), NameFault::Reserved);
}

void TestFileName::isPlain()
{
    QFETCH(QString, name);
    QFETCH(int, fault);
    QCOMPARE(static_cast<int>(zyws::nameFault(name)), fault);
}

ZY_TEST(TestFileName)
#include "tst_filename.moc"
