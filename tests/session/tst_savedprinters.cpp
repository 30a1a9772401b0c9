// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The file of the saved printers: what is read from it, written to it, and kept from it.

#include "modelfiles.h"
#include "savedprinters.h"
#include "testprogram.h"
#include "texts.h"
#include "tlsidentity.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

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

Printer bench(const char *token = "")
{
    return {"bench1"_s, QUrl("ws://10.0.0.1:80"_s), QString::fromUtf8(token)};
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
    void readsWhatHasACommaWithoutQuotes();
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
    QString path(const char *name) const { return m_directory.filePath(QString::fromUtf8(name)); }

    QTemporaryDir m_directory;
};

void TestSavedPrinters::readsWhatVersion1Saved()
{
    SavedPrinters saved(
        writeFile(path("1.0.ini"), "[printers]\nbench1=ws://10.0.0.1:80\nlab-2=wss://lab:443\n"));
    QVERIFY(saved.printers().isEmpty()); // not touched yet
    QCOMPARE(saved.read(), SettingsFault::None);
    QCOMPARE(saved.printers().size(), 2);
    QCOMPARE(saved.find("lab-2"_s).url, QUrl("wss://lab:443"_s));
    QCOMPARE(saved.find("lab-2"_s).token, QString());
}

void TestSavedPrinters::readsAddressesThatEarlyVersionsSaved()
{
    SavedPrinters saved(
        writeFile(path("early.ini"),
                  "[printers]\nx=@Variant(\\0\\0\\0\\x11\\0\\0\\0\\bws://a:1)\ny=http://b\n"));
    QCOMPARE(saved.read(), SettingsFault::None);
    QCOMPARE(saved.find("x"_s).url, QUrl("ws://a:1"_s));
    QVERIFY(saved.find("y"_s).url.isEmpty());
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
        QTest::newRow(token) << QString::fromUtf8(token);
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
    QCOMPARE(saved.find("bench1"_s).token, token);
}

void TestSavedPrinters::readsWhatHasACommaWithoutQuotes()
{
    SavedPrinters saved(writeFile(path("comma.ini"),
                                  "[printers]\nbench1=wss://10.0.0.1:80\n[tokens]\nbench1=a,b\n"
                                  "[authorities]\nbench1=/none,2.pem\n"));
    QCOMPARE(saved.read(), SettingsFault::None);
    const Printer printer = saved.find("bench1"_s);
    QCOMPARE(printer.token, "a,b"_s);
    QCOMPARE(printer.authorities, "/none,2.pem"_s);
    QVERIFY(printer.trust().isRestricted()); // not to whom the system trusts
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
    const QString file = directory.filePath("new folder/settings.ini"_s);
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
    const Printer printer{
        "bench1"_s, QUrl("wss://10.0.0.1:80"_s), {}, identity.certificate, identity.fingerprint()};
    const QString file = path("certificates.ini");
    QCOMPARE(SavedPrinters(file).save(printer), SettingsFault::None);
    SavedPrinters saved(file);
    QCOMPARE(saved.read(), SettingsFault::None);
    QCOMPARE(saved.find("bench1"_s).authorities, printer.authorities);
    QCOMPARE(saved.find("bench1"_s).fingerprint, printer.fingerprint);
    QCOMPARE(saved.find("bench1"_s).trust().fingerprint(), printer.fingerprint);
    QCOMPARE(saved.remove("bench1"_s), SettingsFault::None);
    QCOMPARE(readFile(file), QByteArray());
}

void TestSavedPrinters::saysWhichCertificateCannotBeChecked()
{
    const TlsIdentity identity = TlsIdentity::localhost();
    const QUrl plain("ws://10.0.0.1:80"_s);
    const QUrl encrypted("wss://10.0.0.1:80"_s);
    const QVector<std::pair<Printer, QString>> unusable{
        {{"a"_s, plain, {}, {}, identity.fingerprint()}, "ws://10.0.0.1:80"_s},
        {{"a"_s, encrypted, {}, "/none.pem"_s, {}}, "/none.pem: No such file"_s},
        {{"a"_s, encrypted, {}, {}, "F2"_s}, "no SHA-256 fingerprint: F2"_s},
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
    QCOMPARE(saved.remove("bench1"_s), SettingsFault::None);
    QCOMPARE(readFile(saved.file()).trimmed(), QByteArray());
    QVERIFY(saved.printers().isEmpty());
}

void TestSavedPrinters::resolvesNamesAndAddresses()
{
    SavedPrinters saved(path("resolve.ini"));
    QCOMPARE(saved.save(bench("secret")), SettingsFault::None);
    const Printer byName = saved.resolve(" bench1 "_s);
    QCOMPARE(byName.label(), "bench1"_s);
    QCOMPARE(byName.description(), "bench1 (ws://10.0.0.1:80)"_s);
    QCOMPARE(byName.token, "secret"_s);
    const Printer byAddress = saved.resolve("10.0.0.2:80"_s);
    QCOMPARE(byAddress.description(), "ws://10.0.0.2:80"_s);
    QVERIFY(byAddress.token.isEmpty());
    QVERIFY(saved.resolve("bench2"_s).url.isEmpty());
    QVERIFY(saved.resolve("http://host"_s).url.isEmpty());
}

void TestSavedPrinters::sortsByName()
{
    SavedPrinters saved(
        writeFile(path("order.ini"), "[printers]\nb=ws://b:1\nC=ws://c:1\na=ws://a:1\n"));
    QCOMPARE(saved.read(), SettingsFault::None);
    QString names;
    for (const Printer &printer : saved.printers())
        names += printer.name;
    QCOMPARE(names, "abC"_s);
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
    QVERIFY(SavedPrinters().file().endsWith("/zyWebsocket/zyslicer.ini"_s));
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
    QCOMPARE(saved.find("a"_s).url, QUrl("ws://printer:1"_s));
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
    QCOMPARE(saved.remove("a"_s), SettingsFault::NotSettings);
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
