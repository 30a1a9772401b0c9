// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The handle of one connection: its file reception, its print commands, the protocol's words.

#ifndef ZYFILETRANSHANDLE_H
#define ZYFILETRANSHANDLE_H

#include <QFile>
#include <QMetaEnum>
#include <QString>

#include <memory>
#include <optional>

#include "zywebhandle.h"

class PrintStatusPara;

namespace zyws
{
class Digest;
}

/**
 * Everything the printer knows about one connection, and the answer to each of its commands.
 *
 * A host application never makes one: ZySslEchoServer does, and relays the four signals. Its
 * enumerations are the protocol's vocabulary; their key names travel on the wire and are looked up
 * at run time through the meta-object.
 *
 * Every operation runs in the server's thread inside the handling of one message and answers
 * before it returns. A host slot that it calls may spin the event loop; when the peer or the server
 * is gone afterwards, the operation stops silently.
 */
class ZYWEBSOCKET_EXPORT ZyFileTransHandle : public ZyWebHandle
{
    Q_OBJECT

public:
    /// The commands. The key name, never the number, travels under "cmd".
    enum TRANSCMD {
        TRANSCMD_NULL = 0,
        START_FILE = 1,
        CANCEL_FILE = 2,
        START_DATA = 3,
        CHECK_DATA = 4,
        START_PRINT = 5,
        PRINT_PAUSE = 6,
        PRINT_STOP = 7,
        GET_PRINT_STATUS = 8,
        VERSION_CHECK = 9,
        PRINT_PARA_SET = 10,
        /// Deliberate: known to both ends and never answered; deployed slicers send it all the
        /// same.
        PRINT_WORKING_LIFE = 11,
    };
    Q_ENUM(TRANSCMD)

    /// Error codes of file transfers; the number travels under "errorcode".
    enum TRANS_ERROR {
        NO_ERROR = 0,
        SERVER_BUSY = 1, ///< START_FILE refused for any reason but the token
        FILE_BUSY = 2, ///< the temporary file could not be created, sized or opened
        UNKNOW_ERROR = 3, ///< never sent
        TOKEN_ERROR = 4, ///< the host rejected the token
    };
    Q_ENUM(TRANS_ERROR)

    /// The answers to START_PRINT; the key name travels under "status".
    /// Deliberate spelling: peers and hosts look the enumeration up by this name.
    enum STAET_PRINT_STATUS {
        UN_START = 0,
        BUSY = 1,
        CHECKING = 2,
        CHECK_FALSE = 3,
        STARTED = 4,
        PRINT_TOKEN_ERROR = 5,
    };
    Q_ENUM(STAET_PRINT_STATUS)

    /// @param parent the ZySslEchoServer. @param socket the connection, not owned.
    ZyFileTransHandle(QObject *parent, QWebSocket *socket);
    ~ZyFileTransHandle() override;

    /// Calls the handler of the command under "cmd"; does nothing for an unknown word.
    void processJson(QJsonObject json) override;
    /// One data message: writes it and answers START_DATA, at the end CHECK_DATA as well. Does
    /// nothing unless this handle is receiving.
    void processBinary(QByteArray message) override;
    /// Closes the temporary file and, if a reception was running, writes its resume record.
    void onDisconnect() override;
    /// 2 while receiving a file, otherwise 3 while the host checks a print file, otherwise 0.
    int status() override;

    /// START_FILE: begins or resumes a reception, or says why not.
    void startFile(QJsonObject request);
    /// CANCEL_FILE: ends the reception, deletes the temporary file, echoes the request.
    void cancelFile(QJsonObject request);

    /// START_PRINT: one reply when refused, otherwise "CHECKING" and, after the host's check, the
    /// outcome.
    void startPrint(QJsonObject request);
    /// PRINT_PAUSE: one reply with the host's outcome.
    void printPause(QJsonObject request);
    /// PRINT_STOP: one reply with the host's outcome.
    void printStop(QJsonObject request);

    /// GET_PRINT_STATUS: one reply with the host's record.
    void getPrintStatus(QJsonObject request);
    /// VERSION_CHECK: one reply with the single key "version".
    void verSionCheck(QJsonObject request);
    /// PRINT_PARA_SET: hands the host six parameters; the reply's "status" is always empty.
    void setPrintPara(QJsonObject request);

    /// Reads the resume record after the announced size into the members and returns it as a
    /// START_FILE reply; an empty object when the temporary file cannot be opened.
    QJsonObject getKeyInfo();
    /// Writes the resume record after the announced size. Failures are silent: the next
    /// START_FILE then starts from the beginning.
    void saveKeyInfo();
    /// Deletes the files directly in @p dir whose names end in ".zydlp", ".zyline" or ".bak".
    void removePcModelFile(QString dir);

    /// The "status" word for a bridge function's code; empty for codes other than 6, 7 and 8.
    QString getCmdExeStatusKey(int code);
    /// The "printStatus" word for PrintStatusPara::printStatus; empty outside 0 to 8.
    QString getPrintStatusKey(int code);

Q_SIGNALS:
    /// A file is complete. @p FilePath is its name relative to the receive directory (still
    /// "wifi_tranfer.tmp" when the renaming failed). The answer travels as "checkstate".
    void finish(QString FilePath, int &checkState);
    /// START_PRINT wants this file checked and printed: 1 started, 2 busy, anything else failed.
    void checkFile(QString FilePath, int &checkState);
    /// A transfer was cancelled. Deliberate spelling: hosts connect by name.
    void cancle();
    /// A transfer was accepted and is about to begin.
    void fileTranStart();

private:
    friend class ZySslEchoServer;

    QString commandWord(int command) const;
    QJsonObject printStartReply(int result, const QString &fileName) const;
    QJsonObject commandReply(int command, const QString &status) const;
    void beginReception(const QJsonObject &request);
    bool resumeReception(const QJsonObject &request, QJsonObject &reply);
    void sendAcceptance(const QJsonObject &request, QJsonObject reply);
    bool createTemporaryFile(const QString &size);
    bool writeChunk(const QByteArray &message);
    bool openForData();
    void noteLoss(qint64 position);
    std::optional<QByteArray> unpacked(const QByteArray &message);
    void completeReception();
    void storeFile();
    void finishReception(int checkState);

    // With protection only, see ZyServerOptions.
    bool passes(const QJsonObject &request);
    QJsonObject refusal(const QJsonObject &request, bool isToken);
    QJsonObject transferRefusal(int answer) const;
    QJsonObject statusReply(const PrintStatusPara &record);
    bool hasSpaceFor(qint64 size) const;
    bool secureStorage();
    void keepRecord();
    void appendRecord();
    void writeRecord();
    bool hasWholeRecord(const QString &key) const;
    bool restoreRecord(const QString &key, const QString &name) const;
    void onReceptionInterrupted();
    void reportUselessFile() const;
    bool isUndamaged();
    void storeDurably();

    QFile m_file;
    QString m_fileDir;
    QString m_key;
    QString m_fileName;
    QString m_peer; ///< "address:port"
    QString m_tmpFileName;
    qint64 m_transFileSize = 0;
    qint64 m_transOffset = 0;
    bool m_isReceiving = false;
    bool m_isCompress = true;
    QMetaEnum m_transCmdEnum;
    QMetaEnum m_printStatusEnum;
    int m_printState = UN_START;
    std::optional<qint64> m_lostFrom; ///< where the temporary file stops being what was sent
    bool m_isCompleted = false; ///< all bytes are in; the host is checking the finished file

    static constexpr int statusOfWrongToken = 8; ///< PrintStatusPara::printStatus
    bool m_isStarting = false; ///< the host is being asked about a transfer, with protection
    int m_wrongTokens = 0; ///< in a row
    qint64 m_recordedOffset = 0; ///< what the resume record on disk vouches for
    std::unique_ptr<zyws::Digest> m_digest;
};

#endif // ZYFILETRANSHANDLE_H
