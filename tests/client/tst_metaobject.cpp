// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The client's meta-object: signals and private slots, in the order hosts were built against.

#include "testprogram.h"

#include <zysslechoclient.h>

#include <QMetaMethod>
#include <QTest>

class TestMetaObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void declaresItsMethodsInOrder_data();
    void declaresItsMethodsInOrder();
    void declaresNothingElse();
};

namespace
{

const QMetaObject &meta()
{
    return ZySslEchoClient::staticMetaObject;
}

const char *const signalSignatures[] = {
    "disconnected()",
    "connected()",
    "jsonMessageReceived(QJsonObject)",
    "fileTransProgress(QString,qlonglong,qlonglong)",
    "finish(QString,int)",
    "transError(int,QString)",
    "cancelFinished()",
    "pauseSuccess()",
    "printErrorCode(int,QString)",
    "printBusy(QString)",
    "printFileChecking(QString)",
    "printFileCheckFailed(QString)",
    "startPrintSuccess(QString)",
    "checkVersion()",
    "getPrinterStatusInfo(QJsonObject)",
    "slotGetPrinterWorkingLife(QJsonObject)",
};

const char *const slotSignatures[] = {
    "onConnected()",
    "onDisConnected()",
    "onTextMessageReceived(QString)",
    "onSslErrors(QList<QSslError>)",
    "trying()",
    "onPong(qulonglong,QByteArray)",
    "onStateChanged(QAbstractSocket::SocketState)",
};

} // namespace

void TestMetaObject::declaresItsMethodsInOrder_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<int>("kind");

    int index = 0;
    for (const char *signature : signalSignatures)
        QTest::newRow(signature) << index++ << QByteArray(signature) << int(QMetaMethod::Signal);
    for (const char *signature : slotSignatures)
        QTest::newRow(signature) << index++ << QByteArray(signature) << int(QMetaMethod::Slot);
}

void TestMetaObject::declaresItsMethodsInOrder()
{
    QFETCH(int, index);
    QFETCH(QByteArray, signature);
    QFETCH(int, kind);

    const QMetaMethod method = meta().method(meta().methodOffset() + index);
    QCOMPARE(method.methodSignature(), signature);
    QCOMPARE(int(method.methodType()), kind);
    const bool isSlot = kind == QMetaMethod::Slot;
    QCOMPARE(method.access(), isSlot ? QMetaMethod::Private : QMetaMethod::Public);
}

void TestMetaObject::declaresNothingElse()
{
    QCOMPARE(meta().methodCount() - meta().methodOffset(), 16 + 7);
    QCOMPARE(meta().superClass(), &QObject::staticMetaObject);
    QCOMPARE(QByteArray(meta().className()), QByteArray("ZySslEchoClient"));
}

ZY_TEST(TestMetaObject)

#include "tst_metaobject.moc"
