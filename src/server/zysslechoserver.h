// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The printer's end: accepts connections and puts every decision to the host application.

#ifndef ZYSSLECHOSERVER_H
#define ZYSSLECHOSERVER_H

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSslError>
#include <QString>

#include <functional>
#include <memory>

#include "printstatuspara.h"
#include "zyserveroptions.h"
#include "zywebsocket_export.h"

class QWebSocket;
class QWebSocketServer;
class WifiFileState;
class ZyWebHandle;

namespace zyws
{
class Admission;
class DeliveryQueue;
class Liveness;
} // namespace zyws

/**
 * The WebSocket server in the printer's host application.
 *
 * It accepts any number of connections, receives model files and answers print commands. It owns no
 * printer logic: the host connects to the signals below and writes its answers into their reference
 * arguments.
 *
 * What the host must do:
 * - Connect directly (`Qt::DirectConnection`, or `Qt::AutoConnection` from an object in the
 * server's thread). A queued connection cannot carry a reference: the initial value would be the
 * answer.
 * - Pass an absolute receive directory. The process's current directory is changed to it whenever a
 *   transfer or a print is accepted, and must not be relied upon elsewhere.
 * - Copy a finished model elsewhere if it is to be kept: the next accepted transfer deletes
 *   the files in the receive directory that end in ".zydlp", ".zyline" or ".bak".
 *
 * Everything runs in the thread that created the server, on its event loop, and the library starts
 * no threads. A host's slot may spin the event loop and may delete the server.
 *
 * In spite of its name the server speaks plain `ws://`, as deployed slicers expect, unless its
 * options hold a certificate; the files given to the first constructor are read and not used.
 */
class ZYWEBSOCKET_EXPORT ZySslEchoServer : public QObject
{
    Q_OBJECT

public:
    /**
     * Listens on @p port of every address; 0 lets the system choose (see serverPort()).
     *
     * A port that cannot be had is not reported: the object lives on and isListening() is false.
     *
     * @param port from 0 to 65535.
     * @param certFile path of a PEM certificate; may be missing.
     * @param keyFile path of a PEM RSA key without pass phrase; may be missing.
     * @param fileDir absolute path of the directory for received files and for prints.
     * @param wifiFileState kept and never used; may be null.
     * @param parent the owner, if any.
     */
    ZySslEchoServer(quint16 port, QString certFile, QString keyFile, QString fileDir,
                    WifiFileState *wifiFileState, QObject *parent = nullptr);
    /**
     * The same with the protection that @p options ask for.
     *
     * `ZySslEchoServer server(8080, directory, ZyServerOptions::hardened());` is what a new
     * printer wants.
     */
    ZySslEchoServer(quint16 port, const QString &fileDir, const ZyServerOptions &options,
                    QObject *parent = nullptr);
    /// Stops listening and drops every connection; a reception under way keeps its resume record.
    ~ZySslEchoServer() override;

    /// True when the port given to the constructor could be had.
    bool isListening() const;
    /// The port listened on, 0 when not listening.
    quint16 serverPort() const;
    /// What the server was made with; default-constructed after the first constructor.
    const ZyServerOptions &options() const;

    /**
     * Sends @p json to the connection whose message is being handled at this moment. Anywhere
     * else, and inside checkFile(), finish(), cancle() and fileTranStart(), it sends nothing.
     */
    void sendJsonMessage(const QJsonObject &json);
    /// The object in a text message; empty for anything that is not one JSON object.
    QJsonObject messageToJson(QString message) const;
    /// The compact JSON text of @p json.
    QString JsonToString(const QJsonObject &json) const;

    /// May a file be received? 0 yes, 3 a connection is receiving, 4 a connection is checking a
    /// print file, 5 the host refused, 6 the host rejected the token.
    int getFileTransStatus(QString token, bool needCheckToken);
    /// May a print start? The codes of getFileTransStatus().
    int getFilePrintStatus(QString token, bool needCheckToken);
    /// Asks the host to pause: 7 done, 6 token rejected, 8 failed.
    int getPrintPauseStatus(QString token);
    /// Asks the host to stop: 7 done, 6 token rejected, 8 failed.
    int getPrintStopStatus(QString token);
    /// Overwrites @p printStatusPara with the host's record.
    void getPrinterStatus(PrintStatusPara &printStatusPara, QString token);
    /// Hands the host a copy of @p printStatusPara; nothing comes back.
    void setPrintPara(PrintStatusPara &printStatusPara, QString token);
    /// The host's version text, empty when it gives none.
    QString getVersionCheck();

Q_SIGNALS:
    /**
     * A file has arrived whole. @p FilePath is the name the slicer gave, relative to the receive
     * directory; "wifi_tranfer.tmp" when the renaming failed. The answer (initially 0) travels as
     * "checkstate" in CHECK_DATA; the library attaches no meaning to it.
     */
    void finish(QString FilePath, int &checkState);
    /**
     * START_PRINT: check this file and start printing it. Answer 1: started; 2: the printer is
     * busy; anything else, the initial 0 included: the check failed.
     */
    void checkFile(QString FilePath, int &checkState);
    /**
     * START_FILE: may a file be received? Answer 1: yes; -1: the token is not accepted; anything
     * else, the initial 0 included: no.
     * @param printState the answer.
     * @param token the request's token, empty when it had none.
     * @param needCheckToken whether the request carried a token at all.
     */
    void getPrintState(int &printState, QString token, bool needCheckToken);
    /// START_PRINT: may a print start? Answers as for getPrintState(); @p needCheckToken is true.
    void getFilePrintState(int &printState, QString token, bool needCheckToken);
    /// CANCEL_FILE has ended a transfer. Deliberate spelling: hosts connect by name.
    void cancle();
    /// A connection ended while it was receiving; its transfer can be resumed. Deliberate
    /// spelling: hosts connect by name.
    void fileTranDisconnet();
    /// A transfer, new or resumed, was accepted; the temporary file is not touched yet.
    void fileTranStart();
    /// VERSION_CHECK: write the version text; slicers recognise "1". Initially empty. Deliberate
    /// spelling: hosts connect by name.
    void sifGetVersionCheck(QString &version);
    /// PRINT_PAUSE. Answer 1: paused; -1: token not accepted; else, the initial 0 included: failed.
    void sigDoPrintPause(int &pauseState, QString token);
    /// PRINT_STOP. Answer 1: stopped; -1: token not accepted; else, the initial 0 included: failed.
    void sigDoPrintStop(int &stopState, QString token);
    /// GET_PRINT_STATUS: fill the record; reject the token by setting its `printStatus` to 8.
    void sigGetPrinterStatus(PrintStatusPara &printStatusPara, QString token);
    /// PRINT_PARA_SET: the record holds the request's six parameters; nothing written is read back.
    void sigSetPrintPara(PrintStatusPara &printStatusPara, QString token);

public Q_SLOTS:
    /// Accepts one waiting connection; does nothing when none waits.
    void onNewConnection();
    /// A text message of the connection that is being served: handled by its handle.
    void processTextMessage(QString message);
    /// A binary message: handed to every handle, whichever connection it came from. Deliberate:
    /// the handle that is receiving takes it, and the sender gets the acknowledgement.
    void processBinaryMessage(QByteArray message);
    /// Does nothing: frames are used only as whole messages.
    void binaryFrameReceived(const QByteArray &frame, bool isLastFrame);
    /// The connection that is being served has ended.
    void socketDisconnected();
    /// Only logs; never called, since the server does not speak TLS.
    void onSslErrors(const QList<QSslError> &errors);
    /// Hands a text message to every handle. Connected to nothing in the library.
    void onTextMessageReceived(QString message);
    /// Re-emits a handle's finish() with the very same @p checkState.
    void onFinish(QString filePath, int &checkState);

private:
    class Serving;

    void readUnusedTlsConfiguration(const QString &certFile, const QString &keyFile) const;
    void listen(quint16 port);
    bool isAdmitted(QWebSocket *socket);
    void connectSocket(QWebSocket *socket);
    ZyWebHandle *createHandle(QWebSocket *socket);
    void deliver(QWebSocket *socket, std::function<void()> work);
    QWebSocket *servedSocket() const;
    QList<QPointer<ZyWebHandle>> watchedHandles() const;
    bool endHandle(QWebSocket *socket);
    void flushReplies();
    int busyAnswer() const;
    void endIdleReception();

    QWebSocketServer *m_pWebSocketServer;
    QList<QWebSocket *> m_clients;
    QList<ZyWebHandle *> m_handles;
    QMap<ZyWebHandle *, QWebSocket *> m_handleMap; // never filled
    QHash<const QWebSocket *, ZyWebHandle *> m_handleOf;
    QString m_fileDir;
    [[maybe_unused]] WifiFileState *m_wifiFileState;

    const ZyServerOptions m_options;
    zyws::Admission *m_admission = nullptr; ///< null when the QWebSocketServer itself listens
    zyws::Liveness *m_liveness = nullptr; ///< null when peers may be silent
    std::unique_ptr<zyws::DeliveryQueue> m_deliveries;
    Serving *m_serving = nullptr; ///< the innermost scope
    QList<QPointer<QWebSocket>> m_replied; ///< sockets that may still buffer replies
};

#endif // ZYSSLECHOSERVER_H
