// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What a host may look up by name: signals, slots and enumerations, in their order.

#include "testprogram.h"

#include <QMetaEnum>
#include <QMetaMethod>
#include <QTest>

#include <zyfiletranshandle.h>
#include <zysslechoserver.h>

namespace
{

QStringList signaturesOf(const QMetaObject &meta, QMetaMethod::MethodType type)
{
    QStringList signatures;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        if (method.methodType() == type)
            signatures.append(QString::fromLatin1(method.methodSignature()));
    }
    return signatures;
}

QStringList words(const char *spaced)
{
    return QString::fromLatin1(spaced).split(QLatin1Char(' '));
}

} // namespace

class TestMetaObject : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void serverHasTwelveSignalsInOrder();
    void serverHasItsSlotsInOrder();
    void serverNamesTheSignalArguments();
    void everySlotIsPublic();
    void handleHasFourSignalsInOrder();
    void handleHasThreeEnumerationsInOrder();
    void enumeratesTheTransferErrors();
    void baseHandleHasNoMetaObjectOfItsOwn();
    void connectsByName();
};

void TestMetaObject::serverHasTwelveSignalsInOrder()
{
    QCOMPARE(signaturesOf(ZySslEchoServer::staticMetaObject, QMetaMethod::Signal),
             words("finish(QString,int&) checkFile(QString,int&) "
                   "getPrintState(int&,QString,bool) getFilePrintState(int&,QString,bool) "
                   "cancle() fileTranDisconnet() fileTranStart() sifGetVersionCheck(QString&) "
                   "sigDoPrintPause(int&,QString) sigDoPrintStop(int&,QString) "
                   "sigGetPrinterStatus(PrintStatusPara&,QString) "
                   "sigSetPrintPara(PrintStatusPara&,QString)"));
}

void TestMetaObject::serverHasItsSlotsInOrder()
{
    QCOMPARE(signaturesOf(ZySslEchoServer::staticMetaObject, QMetaMethod::Slot),
             words("onNewConnection() processTextMessage(QString) "
                   "processBinaryMessage(QByteArray) binaryFrameReceived(QByteArray,bool) "
                   "socketDisconnected() onSslErrors(QList<QSslError>) "
                   "onTextMessageReceived(QString) onFinish(QString,int&)"));
    // Signals come first, so the indices of both are fixed.
    const QMetaObject &meta = ZySslEchoServer::staticMetaObject;
    QCOMPARE(meta.indexOfSignal("finish(QString,int&)"), meta.methodOffset());
    QCOMPARE(meta.indexOfSlot("onNewConnection()"), meta.methodOffset() + 12);
    QCOMPARE(meta.indexOfSlot("onFinish(QString,int&)"), meta.methodCount() - 1);
}

void TestMetaObject::serverNamesTheSignalArguments()
{
    const QMetaObject &meta = ZySslEchoServer::staticMetaObject;
    const auto names = [&meta](const char *signature) {
        return meta.method(meta.indexOfSignal(signature)).parameterNames();
    };
    QCOMPARE(names("finish(QString,int&)"), QList<QByteArray>({"FilePath", "checkState"}));
    QCOMPARE(names("checkFile(QString,int&)"), QList<QByteArray>({"FilePath", "checkState"}));
    QCOMPARE(names("getPrintState(int&,QString,bool)"),
             QList<QByteArray>({"printState", "token", "needCheckToken"}));
    QCOMPARE(names("sifGetVersionCheck(QString&)"), QList<QByteArray>({"version"}));
    QCOMPARE(names("sigDoPrintPause(int&,QString)"), QList<QByteArray>({"pauseState", "token"}));
    QCOMPARE(names("sigDoPrintStop(int&,QString)"), QList<QByteArray>({"stopState", "token"}));
    QCOMPARE(names("sigSetPrintPara(PrintStatusPara&,QString)"),
             QList<QByteArray>({"printStatusPara", "token"}));
}

void TestMetaObject::everySlotIsPublic()
{
    const QMetaObject &meta = ZySslEchoServer::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
}

void TestMetaObject::handleHasFourSignalsInOrder()
{
    QCOMPARE(signaturesOf(ZyFileTransHandle::staticMetaObject, QMetaMethod::Signal),
             words("finish(QString,int&) checkFile(QString,int&) cancle() fileTranStart()"));
    QCOMPARE(signaturesOf(ZyFileTransHandle::staticMetaObject, QMetaMethod::Slot), QStringList());
}

void TestMetaObject::handleHasThreeEnumerationsInOrder()
{
    const QMetaObject &meta = ZyFileTransHandle::staticMetaObject;
    QStringList names;
    for (int i = meta.enumeratorOffset(); i < meta.enumeratorCount(); ++i)
        names.append(QString::fromLatin1(meta.enumerator(i).name()));
    QCOMPARE(names, words("TRANSCMD TRANS_ERROR STAET_PRINT_STATUS"));
}

/// The words of the other two are compared with the vocabulary.
void TestMetaObject::enumeratesTheTransferErrors()
{
    const auto errors = QMetaEnum::fromType<ZyFileTransHandle::TRANS_ERROR>();
    const QStringList keys = words("NO_ERROR SERVER_BUSY FILE_BUSY UNKNOW_ERROR TOKEN_ERROR");
    QCOMPARE(errors.keyCount(), keys.size());
    for (int value = 0; value < keys.size(); ++value)
        QCOMPARE(QString::fromLatin1(errors.valueToKey(value)), keys.at(value));
}

void TestMetaObject::baseHandleHasNoMetaObjectOfItsOwn()
{
    QCOMPARE(ZyFileTransHandle::staticMetaObject.superClass(), &QObject::staticMetaObject);
    QCOMPARE(&ZyWebHandle::staticMetaObject, &QObject::staticMetaObject);
    QCOMPARE(ZySslEchoServer::staticMetaObject.superClass(), &QObject::staticMetaObject);
}

void TestMetaObject::connectsByName()
{
    ZySslEchoServer server(0, {}, {}, {}, nullptr);
    // A host that connects with the macros is connected directly, references included.
    ZyFileTransHandle host(nullptr, nullptr);
    QVERIFY(
        connect(&server, SIGNAL(finish(QString, int &)), &host, SIGNAL(finish(QString, int &))));
    QVERIFY(connect(&server, SIGNAL(fileTranDisconnet()), &host, SIGNAL(cancle())));
    connect(&host, &ZyFileTransHandle::finish, &host,
            [](const QString &path, int &checkState) { checkState += int(path.size()); });
    int checkState = 3;
    QVERIFY(QMetaObject::invokeMethod(&server, "onFinish", Qt::DirectConnection,
                                      Q_ARG(QString, QStringLiteral("abcd")),
                                      QGenericArgument("int&", &checkState)));
    QCOMPARE(checkState, 7);
}

ZY_TEST(TestMetaObject)
#include "tst_metaobject.moc"
