// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The host's answers to everything that the server asks: the part that a printer maker copies.

#ifndef HOSTBRIDGE_H
#define HOSTBRIDGE_H

#include <QObject>
#include <QString>

#include <memory>

class PrintStatusPara;
class ZySslEchoServer;

namespace zymodel
{
class ModelReader;
}

namespace zyprinter
{

class Machine;
class ModelStore;
class PrinterLog;

/**
 * One slot for each of the server's signals. Each answers through its reference argument before it
 * returns, so every connection is direct; the library reads the initial value as "no".
 */
class HostBridge : public QObject
{
    Q_OBJECT

public:
    struct Policy {
        QString token; ///< empty: every token is accepted
        bool refuse = false; ///< say no to everything
        double slowCheck = 0; ///< seconds that the check before a print takes at least
    };

    HostBridge(ZySslEchoServer *server, Machine *machine, ModelStore *store, PrinterLog *log,
               Policy policy, QObject *parent = nullptr);

private:
    enum Answer { TokenRejected = -1, No = 0, Yes = 1 };
    enum CheckState { CheckFailed = 0, Started = 1, Busy = 2 };
    enum ModelState { ValidModel = 1, NoModel = 2 };

    // File transfer.
    void answerTransfer(int &answer, const QString &token, bool needCheckToken);
    void answerFinish(const QString &receivedName, int &modelState);

    // Print jobs.
    void answerPrint(int &answer, const QString &token, bool needCheckToken);
    void answerCheckFile(const QString &name, int &checkState);
    void answerPause(int &answer, const QString &token);
    void answerStop(int &answer, const QString &token);

    // Status, parameters, version.
    void answerStatus(PrintStatusPara &status, const QString &token);
    void takeParameters(const PrintStatusPara &wanted, const QString &token);
    void answerVersion(QString &version);

    bool isAccepted(const QString &token) const;
    Answer permission(const char *what, const QString &token, bool needCheckToken, bool isPossible,
                      const QString &obstacle = QStringLiteral("not possible now"));
    CheckState checkAndStart(const QString &name);
    std::unique_ptr<zymodel::ModelReader> openChecked(const QString &name, QString &fault) const;
    bool spinSlowCheck();

    Machine *m_machine;
    ModelStore *m_store;
    PrinterLog *m_log;
    const Policy m_policy;
};

} // namespace zyprinter

#endif // HOSTBRIDGE_H
