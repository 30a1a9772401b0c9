// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The file of the saved printers: what is read from it, written to it, and kept from it.

#include "modelfiles.h"
#include "savedprinters.h"
#include "testprogram.h"
#include "tlsidentity.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

using namespace zysession;
using zytest::readFile;
using zytest::TlsIdentity;
using zytest::writeFile;

namespace
{

constexpr QFile::Permissions ownersOnly
    = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
constexpr QFile::Permissions everybodys = ownersOnly | QFile::ReadGroup | QFile::ReadOther;

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

Printer bench(const char *token = "")
{
    return {s("bench1"), QUrl(s("ws://10.0.0.1:80")), s(token)};
}

} // namespace

class TestSavedPrinters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatVersion1Saved();
    void readsAddressesThatEarlyVersionsSaved();
    void leavesWhatVersion1CanRead();
    void keepsAnyToken_data();
    void keepsAnyToken();
    void keepsAFileWithTokensToItsOwner_data();
    void keepsAFileWithTokensToItsOwner();
    void leavesThePermissionsOfAFileWithoutTokens();
    void keepsACertificateWithItsPrinter();
    void saysWhichCertificateCannotBeChecked();
    void forgetsATokenWithItsPrinter();
    void resolvesNamesAndAddresses();
    void sortsByName();
    void keepsOtherSettings();
    void usesTheFileThatTheEnvironmentNames();
    void knowsWhatAnotherProgramSavedOnceReadAnew();
    void refusesAFileThatHoldsNoSettings_data();
    void refusesAFileThatHoldsNoSettings();
    void refusesWhatIsNoRegularFile();
    void saysThatAFileIsNotWritable();

private:
    QString path(const char *name) const { return m_directory.filePath(s(name)); }

    QTemporaryDir m_directory;
};

void TestSavedPrinters::readsWhatVersion1Saved()
{
    SavedPrinters saved(
        writeFile(path("1.0.ini"), "[printers]\nbench1=ws://10.0.0.1:80\nlab-2=wss://lab:443\n"));
    QVERIFY(saved.printers().isEmpty()); // not touched yet
    QCOMPARE(saved.read(), SettingsFault::None);
    QCOMPARE(saved.printers().size(), 2);
    QCOMPARE(saved.find(s("lab-2")).url, QUrl(s("wss://lab:443")));
    QCOMPARE(saved.find(s("lab-2")).token, QString());
}

void TestSavedPrinters::readsAddressesThatEarlyVersionsSaved()
{
    SavedPrinters saved(
        writeFile(path("early.ini"),
                  "[printers]\nx=@Variant(\\0\\0\\0\\x11\\0\\0\\0\\bws://a:1)\ny=http://b\n"));
    QCOMPARE(saved.read(), SettingsFault::None);
    QCOMPARE(saved.find(s("x")).url, QUrl(s("ws://a:1")));
    QVERIFY(saved.find(s("y")).url.isEmpty());
}

void TestSavedPrinters::leavesWhatVersion1CanRead()
{
    SavedPrinters saved(path("new.ini"));
    QCOMPARE(saved.save(bench()), SettingsFault::None);
    QCOMPARE(readFile(saved.file()), QByteArray("[printers]\nbench1=ws://10.0.0.1:80\n"));
    QCOMPARE(saved.save(bench("secret")), SettingsFault::None);
    QVERIFY(readFile(saved.file()).contains("[printers]\nbench1=ws://10.0.0.1:80\n"));
}

void TestSavedPrinters::keepsAnyToken_data()
{
    QTest::addColumn<QString>("token");
    for (const char *token : {"secret", " spaces around ", "a,b;c=d\"e\"", "@Invalid()", "[x]",
                              "two\nlines", "größer", "\\x41"})
        QTest::newRow(token) << s(token);
}

void TestSavedPrinters::keepsAnyToken()
{
    QFETCH(QString, token);
    Printer printer = bench();
    printer.token = token;
    const QString file = path("tokens.ini");
    QCOMPARE(SavedPrinters(file).save(printer), SettingsFault::None);
    SavedPrinters saved(file);
    QCOMPARE(saved.read(), SettingsFault::None);
    QCOMPARE(saved.find(s("bench1")).token, token);
}

void TestSavedPrinters::keepsAFileWithTokensToItsOwner_data()
{
    QTest::addColumn<QByteArray>("before"); // null: there is no file
    QTest::addColumn<bool>("isSaving"); // otherwise reading
    QTest::newRow("new file") << QByteArray() << true;
    QTest::newRow("file that others may read") << QByteArray("[printers]\na=ws://b:1\n") << true;
    QTest::newRow("copied file with a token")
        << QByteArray("[printers]\na=ws://b:1\n[tokens]\na=secret\n") << false;
}

void TestSavedPrinters::keepsAFileWithTokensToItsOwner()
{
    QFETCH(QByteArray, before);
    QFETCH(bool, isSaving);
    const QTemporaryDir directory;
    const QString file = directory.filePath(s("new folder/settings.ini"));
    if (!before.isNull()) {
        QVERIFY(QDir().mkpath(QFileInfo(file).path()));
        writeFile(file, before);
        QVERIFY(QFile::setPermissions(file, everybodys));
    }
    SavedPrinters saved(file);
    QCOMPARE(isSaving ? saved.save(bench("secret")) : saved.read(), SettingsFault::None);
    QCOMPARE(QFile::permissions(file), ownersOnly);
    QVERIFY(readFile(file).contains("=secret"));
}

void TestSavedPrinters::leavesThePermissionsOfAFileWithoutTokens()
{
    SavedPrinters saved(writeFile(path("open.ini"), "[printers]\na=ws://b:1\n"));
    QVERIFY(QFile::setPermissions(saved.file(), everybodys));
    QCOMPARE(saved.save(bench()), SettingsFault::None);
    QCOMPARE(QFile::permissions(saved.file()), everybodys);
}

void TestSavedPrinters::keepsACertificateWithItsPrinter()
{
    const TlsIdentity identity = TlsIdentity::localhost();
    const Printer printer{s("bench1"),
                          QUrl(s("wss://10.0.0.1:80")),
                          {},
                          identity.certificate,
                          identity.fingerprint()};
    const QString file = path("certificates.ini");
    QCOMPARE(SavedPrinters(file).save(printer), SettingsFault::None);
    SavedPrinters saved(file);
    QCOMPARE(saved.read(), SettingsFault::None);
    QCOMPARE(saved.find(s("bench1")).authorities, printer.authorities);
    QCOMPARE(saved.find(s("bench1")).fingerprint, printer.fingerprint);
    QCOMPARE(saved.find(s("bench1")).trust().fingerprint(), printer.fingerprint);
    QCOMPARE(saved.remove(s("bench1")), SettingsFault::None);
    QCOMPARE(readFile(file), QByteArray());
}

void TestSavedPrinters::saysWhichCertificateCannotBeChecked()
{
    const TlsIdentity identity = TlsIdentity::localhost();
    const QUrl plain(s("ws://10.0.0.1:80"));
    const QUrl encrypted(s("wss://10.0.0.1:80"));
    const QVector<std::pair<Printer, QString>> unusable{
        {{s("a"), plain, {}, {}, identity.fingerprint()}, s("ws://10.0.0.1:80")},
        {{s("a"), encrypted, {}, s("/none.pem"), {}}, s("/none.pem: No such file")},
        {{s("a"), encrypted, {}, {}, s("F2")}, s("no SHA-256 fingerprint: F2")},
    };
    for (const auto &[printer, part] : unusable) {
        ZyTlsTrust trust;
        const QString fault = printer.readTrust(trust);
        QVERIFY2(fault.contains(part), qPrintable(fault));
        QVERIFY(trust.isRestricted());
    }
    ZyTlsTrust trust;
    QCOMPARE(bench().readTrust(trust), QString());
    QVERIFY(!trust.isRestricted());
}

void TestSavedPrinters::forgetsATokenWithItsPrinter()
{
    SavedPrinters saved(path("forget.ini"));
    QCOMPARE(saved.save(bench("secret")), SettingsFault::None);
    QCOMPARE(saved.save(bench()), SettingsFault::None);
    QVERIFY(!readFile(saved.file()).contains("secret"));
    QCOMPARE(saved.save(bench("secret")), SettingsFault::None);
    QCOMPARE(saved.remove(s("bench1")), SettingsFault::None);
    QCOMPARE(readFile(saved.file()).trimmed(), QByteArray());
    QVERIFY(saved.printers().isEmpty());
}

void TestSavedPrinters::resolvesNamesAndAddresses()
{
    SavedPrinters saved(path("resolve.ini"));
    QCOMPARE(saved.save(bench("secret")), SettingsFault::None);
    const Printer byName = saved.resolve(s(" bench1 "));
    QCOMPARE(byName.label(), s("bench1"));
    QCOMPARE(byName.description(), s("bench1 (ws://10.0.0.1:80)"));
    QCOMPARE(byName.token, s("secret"));
    const Printer byAddress = saved.resolve(s("10.0.0.2:80"));
    QCOMPARE(byAddress.description(), s("ws://10.0.0.2:80"));
    QVERIFY(byAddress.token.isEmpty());
    QVERIFY(saved.resolve(s("bench2")).url.isEmpty());
    QVERIFY(saved.resolve(s("http://host")).url.isEmpty());
}

void TestSavedPrinters::sortsByName()
{
    SavedPrinters saved(
        writeFile(path("order.ini"), "[printers]\nb=ws://b:1\nC=ws://c:1\na=ws://a:1\n"));
    QCOMPARE(saved.read(), SettingsFault::None);
    QString names;
    for (const Printer &printer : saved.printers())
        names += printer.name;
    QCOMPARE(names, s("abC"));
}

void TestSavedPrinters::keepsOtherSettings()
{
    SavedPrinters saved(writeFile(path("other.ini"), "; comment\n\n[other]\nkey=value\n"));
    QCOMPARE(saved.save(bench()), SettingsFault::None);
    QVERIFY(readFile(saved.file()).contains("[other]\nkey=value\n"));
}

void TestSavedPrinters::usesTheFileThatTheEnvironmentNames()
{
    qputenv("ZYSLICER_SETTINGS", path("named.ini").toUtf8());
    QCOMPARE(SavedPrinters().file(), path("named.ini"));
    QCOMPARE(SavedPrinters(path("given.ini")).file(), path("given.ini"));
    qunsetenv("ZYSLICER_SETTINGS");
    QVERIFY(SavedPrinters().file().endsWith(s("/zyWebsocket/zyslicer.ini")));
}

void TestSavedPrinters::knowsWhatAnotherProgramSavedOnceReadAnew()
{
    SavedPrinters saved(path("shared.ini"));
    QCOMPARE(saved.read(), SettingsFault::None);
    writeFile(saved.file(), "[printers]\na=ws://b:1\n");
    QVERIFY(saved.printers().isEmpty());
    QCOMPARE(saved.read(), SettingsFault::None);
    QCOMPARE(saved.printers().size(), 1);
    writeFile(saved.file(), "[printers]\na=ws://printer:1\n");
    QCOMPARE(saved.save(bench()), SettingsFault::None);
    QCOMPARE(saved.find(s("a")).url, QUrl(s("ws://printer:1")));
}

void TestSavedPrinters::refusesAFileThatHoldsNoSettings_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("notes") << QByteArray("Dear diary,\n\ntoday = a good day\n");
    QTest::newRow("assignment outside a section") << QByteArray("PATH=/bin\n");
    QTest::newRow("text after settings") << QByteArray("[printers]\na=ws://b:1\nand text\n");
    QTest::newRow("model") << zytest::randomBytes(100000);
}

void TestSavedPrinters::refusesAFileThatHoldsNoSettings()
{
    QFETCH(QByteArray, bytes);
    SavedPrinters saved(writeFile(path("notes.txt"), bytes));
    QCOMPARE(saved.read(), SettingsFault::NotSettings);
    QCOMPARE(saved.save(bench("secret")), SettingsFault::NotSettings);
    QCOMPARE(saved.remove(s("a")), SettingsFault::NotSettings);
    QVERIFY(saved.printers().isEmpty());
    QVERIFY(readFile(saved.file()) == bytes);
}

void TestSavedPrinters::refusesWhatIsNoRegularFile()
{
    QCOMPARE(mkfifo(path("pipe").toUtf8().constData(), 0600), 0);
    QCOMPARE(SavedPrinters(path("pipe")).save(bench("secret")), SettingsFault::NotAFile);
    QCOMPARE(SavedPrinters(m_directory.path()).read(), SettingsFault::NotAFile);
}

void TestSavedPrinters::saysThatAFileIsNotWritable()
{
    writeFile(path("file"), "x");
    SavedPrinters saved(path("file/settings.ini"));
    QCOMPARE(saved.save(bench()), SettingsFault::NotWritable);
    QCOMPARE(saved.save(bench("secret")), SettingsFault::NotWritable);
}

ZY_TEST(TestSavedPrinters)

#include "tst_savedprinters.moc"
