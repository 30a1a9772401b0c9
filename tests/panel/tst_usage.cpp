// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// zypanel's command line, as a process.

#include <testprogram.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TestPanelUsage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysItsVersionAndItsHelp_data();
    void saysItsVersionAndItsHelp();

    void saysWhatIsWrong_data();
    void saysWhatIsWrong();

private:
    bool run(const QStringList &arguments);

    QTemporaryDir m_runtime;
    QProcess m_panel;
};

bool TestPanelUsage::run(const QStringList &arguments)
{
    constexpr int patience = 60000; // ms
    // Without one Qt says on standard error that it makes one.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtime.path());
    m_panel.setProcessEnvironment(environment);
    m_panel.start(QStringLiteral(ZYPANEL), arguments);
    if (m_panel.waitForFinished(patience))
        return m_panel.exitStatus() == QProcess::NormalExit;
    m_panel.kill();
    m_panel.waitForFinished();
    return false;
}

void TestPanelUsage::saysItsVersionAndItsHelp_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("version") << QStringLiteral("--version") << QByteArray("zypanel ");
    QTest::newRow("help") << QStringLiteral("--help") << QByteArray("--token");
    QTest::newRow("Qt's help") << QStringLiteral("--help-all") << QByteArray("--platform");
}

void TestPanelUsage::saysItsVersionAndItsHelp()
{
    QFETCH(const QString, option);
    QFETCH(const QByteArray, output);
    QVERIFY(run({option}));
    QCOMPARE(m_panel.exitCode(), 0);
    const QByteArray said = m_panel.readAllStandardOutput();
    QVERIFY2(said.contains(output), said.constData());
}

void TestPanelUsage::saysWhatIsWrong_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("what");
    const auto words
        = [](const char *text) { return QString::fromUtf8(text).split(QLatin1Char(' ')); };
    QTest::newRow("one argument too many")
        << words("ws://127.0.0.1:1 model bogus") << QByteArray("too many arguments: bogus");
    QTest::newRow("two too many") << words("a b c d") << QByteArray("too many arguments: c d");
    QTest::newRow("unknown option") << words("--bogus") << QByteArray("Unknown option 'bogus'");
    QTest::newRow("no authorities") << words("--ca /none.pem wss://127.0.0.1:1")
                                    << QByteArray("--ca '/none.pem': No such file or directory");
    QTest::newRow("no fingerprint")
        << words("--fingerprint F2:5B wss://127.0.0.1:1")
        << QByteArray("--fingerprint 'F2:5B' is no SHA-256: 64 hex digits, with or without colons");
    QTest::newRow("a certificate of no printer")
        << QStringList{QStringLiteral("--fingerprint"), QString(64, QLatin1Char('a'))}
        << QByteArray("--ca and --fingerprint need a printer");
    QTest::newRow("no token") << words("--token") << QByteArray("Missing value after '--token'");
}

void TestPanelUsage::saysWhatIsWrong()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, what);
    QVERIFY(run(arguments));
    QCOMPARE(m_panel.exitCode(), 2);
    QCOMPARE(m_panel.readAllStandardError(), "zypanel: " + what + "; see zypanel --help\n");
    QCOMPARE(m_panel.readAllStandardOutput(), QByteArray());
}

ZY_TEST(TestPanelUsage)
#include "tst_usage.moc"
