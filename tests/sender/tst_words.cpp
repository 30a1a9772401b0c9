// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What people and programs read of a sender that has nothing to report yet: texts, options, faults.

#include "scriptedprinter.h"
#include "sending.h"
#include "testprogram.h"

#include <zysslechoclient.h>
#include <zytlstrust.h>

#include <QMetaEnum>
#include <QSet>
#include <QSslCertificate>

using namespace zytest;

class TestSenderWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void haveATextOfItsOwnForEachFault();
    void readBackTheOptions();
    void findNoFaultWithAConnectionThatIsThere();
    void sayWhyAFileHoldsNoAuthorities();
};

namespace
{

/// Texts for the values of an enumeration but for None, which has none.
template <typename Enum> QSet<QString> textsOf()
{
    QSet<QString> texts;
    const QMetaEnum values = QMetaEnum::fromType<Enum>();
    for (int i = 0; i < values.keyCount(); ++i) {
        const QString text = ZySendResult::text(static_cast<Enum>(values.value(i)));
        const bool isNone = qstrcmp(values.key(i), "None") == 0;
        if (text.isEmpty() != isNone)
            qFatal("the text for %s: %s", values.key(i), qPrintable(text));
        texts.insert(text);
    }
    return texts;
}

} // namespace

void TestSenderWords::haveATextOfItsOwnForEachFault()
{
    const auto count = [](const QMetaEnum &values) { return values.keyCount(); };
    QCOMPARE(textsOf<ZySendResult::ConnectionFault>().size(),
             count(QMetaEnum::fromType<ZySendResult::ConnectionFault>()));
    QCOMPARE(textsOf<ZySendResult::FileFault>().size(),
             count(QMetaEnum::fromType<ZySendResult::FileFault>()));
    QCOMPARE(textsOf<ZySendResult::Interruption>().size(),
             count(QMetaEnum::fromType<ZySendResult::Interruption>()));
}

void TestSenderWords::readBackTheOptions()
{
    ZyFileSender sender(QUrl(deadUrl()), QStringLiteral("part"));
    QCOMPARE(sender.options().stallTimeout(), ZySendOptions().stallTimeout());
    sender.setOptions(impatient(17));
    QCOMPARE(sender.options().stallTimeout(), 17);
}

void TestSenderWords::findNoFaultWithAConnectionThatIsThere()
{
    const ScriptedPrinter printer;
    const ZySslEchoClient client(printer.url());
    QVERIFY(
        waitUntil([&] { return client.socketConnectStatus() == QAbstractSocket::ConnectedState; }));
    QCOMPARE(ZyFileSender::connectionFault(client), ZySendResult::ConnectionFault::None);
}

void TestSenderWords::sayWhyAFileHoldsNoAuthorities()
{
    ZyTlsTrust trust;
    QCOMPARE(trust.useAuthorities(QString()), QStringLiteral("no file is named"));
    QVERIFY(trust.isRestricted()); // to nobody
    QCOMPARE(trust.authorities().size(), 0);
    QCOMPARE(ZyTlsTrust::fingerprintOf(QSslCertificate()), QString());
}

ZY_TEST(TestSenderWords)
#include "tst_words.moc"
