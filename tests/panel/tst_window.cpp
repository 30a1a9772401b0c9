// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The window itself: what it shows of long texts, small screens, drops, and what it tells outside.

#include "elidedlabel.h"
#include "eventlog.h"
#include "printerpanel.h"
#include "printerprocess.h"
#include "programs.h"
#include "restartableprinter.h"
#include "testsettings.h"
#include "windowdriver.h"

#include <modelfiles.h>
#include <testprogram.h>
#include <waiting.h>

#include <QDBusConnection>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHelpEvent>
#include <QMimeData>
#include <QProcess>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextDocumentFragment>
#include <QToolTip>

using namespace zypanel;
using zytest::patience;
using State = Upload::State;

/// The desktop's half of its notifications.
class Desktop : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    QStringList shown;

public Q_SLOTS:
    uint Notify(const QString &application, uint replaces, const QString &icon,
                const QString &summary, const QString &body, const QStringList &actions,
                const QVariantMap &hints, int timeout)
    {
        Q_UNUSED(application)
        Q_UNUSED(replaces)
        Q_UNUSED(icon)
        Q_UNUSED(actions)
        Q_UNUSED(hints)
        Q_UNUSED(timeout)
        shown.append(summary + QLatin1Char('|') + body);
        return static_cast<uint>(shown.size());
    }
};

class TestPanelWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theLogFollowsItsEnd();
    void theLogLetsItsUserReadBack();
    void longNamesDoNotWidenTheWindow();
    void aTooltipShowsALongNameAsItIs();
    void aFileDroppedOnAFieldIsOffered_data();
    void aFileDroppedOnAFieldIsOffered();
    void aSmallWindowScrollsToEveryButton_data();
    void aSmallWindowScrollsToEveryButton();
    void theSizeIsRemembered();
    void aNoticeGoesWithWhatItIsAbout();
    void aNoticeMovesNothing();
    void theTitleNamesThePrinterAndThePercentage();
    void theDesktopIsNotifiedOfAnEnd();

private:
    void finishAPrintUnseen();

    QString randomFile(qint64 size)
    {
        return zytest::writeFile(m_directory.filePath(QStringLiteral("random.zydlp")),
                                 zytest::randomBytes(size));
    }

    TestSettings m_settings;
    QTemporaryDir m_directory;
};

namespace
{

bool isLastLineWhole(const EventLog &log)
{
    const QRect line = log.cursorRect(QTextCursor(log.document()->lastBlock()));
    QTextCursor end(log.document());
    end.movePosition(QTextCursor::End);
    return log.viewport()->rect().contains(line | log.cursorRect(end));
}

void fill(EventLog &log)
{
    for (int i = 0; i < 60; ++i) {
        const QString text = QStringLiteral("Line %1 ").arg(i)
            + QStringLiteral("with many words ").repeated(i % 7);
        log.append({Severity::Info, Topic::Print, text});
    }
}

} // namespace

void TestPanelWindow::theLogFollowsItsEnd()
{
    WindowDriver user;
    auto &log = user.find<EventLog>("eventLog");
    fill(log);
    QVERIFY(isLastLineWhole(log));
    user.window().resize(900, 640);
    QCoreApplication::processEvents();
    QVERIFY(isLastLineWhole(log));
    log.append({Severity::Error, Topic::Print, QStringLiteral("The newest ").repeated(6)});
    QVERIFY(isLastLineWhole(log));
    QCOMPARE(log.blockCount(), 61);
}

void TestPanelWindow::theLogLetsItsUserReadBack()
{
    WindowDriver user;
    auto &log = user.find<EventLog>("eventLog");
    fill(log);
    log.verticalScrollBar()->setValue(3);
    log.append({Severity::Info, Topic::Print, QStringLiteral("The newest")});
    QCOMPARE(log.verticalScrollBar()->value(), 3);
    for (int i = 0; i < 600; ++i)
        log.append({Severity::Info, Topic::Print, QString::number(i)});
    QCOMPARE(log.blockCount(), EventLog::maximumEvents);
}

void TestPanelWindow::longNamesDoNotWidenTheWindow()
{
    RestartablePrinter printer;
    const QString name = QString(QLatin1Char('x')).repeated(240) + QStringLiteral(".zydlp");
    printer.status.printStatus = 1;
    printer.status.filename = name;
    printer.status.resin = name;
    printer.modelCheck = 2; // whose notice names the file
    WindowDriver user;
    user.window().resize(1000, 700);
    const int before = user.window().minimumSizeHint().width();
    QVERIFY(user.connectTo(printer.url().toString()));
    QTRY_COMPARE_WITH_TIMEOUT(user.textOf("jobLabel"), name, patience);
    QVERIFY(user.drop(zytest::writeFile(m_directory.filePath(name), QByteArray(1000, 'x'))));
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitUpload(State::Sent));
    QVERIFY(user.notice().contains(name));
    QVERIFY(user.click("stopPrint"));
    auto &dialog = user.find<QWidget>("confirmation");
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(dialog.width() < 800);
    QCOMPARE(user.window().minimumSizeHint().width(), before);
    const int contentNow
        = user.find<QScrollArea>("panelScroll").widget()->minimumSizeHint().width();
    // In one row of columns, and in a window of 800 pixels.
    QVERIFY2(contentNow < 800, qPrintable(QString::number(contentNow)));
    QCOMPARE(user.window().width(), 1000);
}

void TestPanelWindow::aTooltipShowsALongNameAsItIs()
{
    const QString name = QString(100, QLatin1Char('x')) + QStringLiteral("R&D.zydlp");
    ElidedLabel label;
    label.resize(label.minimumSizeHint());
    label.setText(name);
    label.show();
    QVERIFY(QTest::qWaitForWindowExposed(&label));
    QHelpEvent asking(QEvent::ToolTip, QPoint(), label.mapToGlobal(QPoint()));
    QApplication::sendEvent(&label, &asking);
    QVERIFY(Qt::mightBeRichText(QToolTip::text()));
    QCOMPARE(QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText(), name);
}

void TestPanelWindow::aFileDroppedOnAFieldIsOffered_data()
{
    QTest::addColumn<QString>("field");
    for (const char *field :
         {"address", "token", "filePath", "fileName", "printFile", "printExposure", "eventLog"})
        QTest::newRow(field) << QString(QLatin1String(field));
}

void TestPanelWindow::aFileDroppedOnAFieldIsOffered()
{
    QFETCH(QString, field);
    WindowDriver user;
    const QString path = randomFile(100);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    data.setText(QUrl::fromLocalFile(path).toString());
    auto *widget = user.window().findChild<QWidget *>(field);
    // As the system delivers them: to the innermost widget, from where they go up.
    if (QWidget *inner = widget->childAt(widget->rect().center()))
        widget = inner;
    QDragEnterEvent enter(QPoint(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &enter);
    QDropEvent drop(QPoint(2, 2), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &drop);
    QCOMPARE(user.find<QLineEdit>("filePath").text(), path);
    QCOMPARE(user.find<QLineEdit>("fileName").text(), QStringLiteral("random.zydlp"));
    QVERIFY(!user.find<EventLog>("eventLog").toPlainText().contains(QStringLiteral("file:")));
}

void TestPanelWindow::aSmallWindowScrollsToEveryButton_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("800x600") << QSize(800, 600);
    QTest::newRow("800x600 at 200 %") << QSize(400, 300);
}

void TestPanelWindow::aSmallWindowScrollsToEveryButton()
{
    QFETCH(QSize, size);
    WindowDriver user;
    user.window().resize(size);
    QTRY_COMPARE(user.window().size(), size);
    auto &area = user.find<QScrollArea>("panelScroll");
    for (const char *name :
         {"connect", "send", "startPrint", "pausePrint", "stopPrint", "applyParameters"}) {
        auto &button = user.find<QPushButton>(name);
        area.ensureWidgetVisible(&button);
        QCoreApplication::processEvents();
        const QRect place(button.mapTo(area.viewport(), QPoint()), button.size());
        QVERIFY2(area.viewport()->rect().contains(place), name);
    }
}

void TestPanelWindow::theSizeIsRemembered()
{
    {
        WindowDriver user;
        user.window().resize(777, 555);
        QCoreApplication::processEvents();
        QVERIFY(user.window().close());
    }
    WindowDriver user;
    QCOMPARE(user.window().size(), QSize(777, 555));
}

void TestPanelWindow::aNoticeGoesWithWhatItIsAbout()
{
    RestartablePrinter printer;
    printer.mayReceive = 0;
    printer.pauseAnswer = 0;
    printer.status.printStatus = 1;
    WindowDriver user;
    user.type("address", QStringLiteral("the one upstairs"));
    QVERIFY(user.click("connect"));
    QVERIFY(!user.notice().isEmpty());
    QVERIFY(user.connectTo(printer.url().toString()));
    QCOMPARE(user.notice(), QString());

    QVERIFY(user.drop(randomFile(1000)));
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitUpload(State::Failed));
    QVERIFY(user.notice().contains(QStringLiteral("does not accept files now")));
    // Something else goes wrong, and is over again.
    QVERIFY(user.click("pausePrint"));
    QTRY_VERIFY_WITH_TIMEOUT(user.notice().contains(QStringLiteral("cannot pause now")), patience);
    printer.pauseAnswer = 1;
    QVERIFY(user.click("pausePrint"));
    QTRY_VERIFY_WITH_TIMEOUT(user.notice().contains(QStringLiteral("does not accept files now")),
                             patience);
    printer.mayReceive = 1;
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitUpload(State::Sent));
    QCOMPARE(user.notice(), QString());
    QCOMPARE(user.textOf("transferDetail"), QStringLiteral("Sent: 1,000 bytes"));
}

void TestPanelWindow::aNoticeMovesNothing()
{
    WindowDriver user;
    const auto &choose = user.find<QPushButton>("chooseFile");
    const QPoint before = choose.mapTo(&user.window(), QPoint());
    user.type("address", QStringLiteral("the one upstairs"));
    QVERIFY(user.click("connect"));
    QVERIFY(!user.notice().isEmpty());
    QCoreApplication::processEvents();
    QCOMPARE(choose.mapTo(&user.window(), QPoint()), before);
}

void TestPanelWindow::theTitleNamesThePrinterAndThePercentage()
{
    RestartablePrinter printer;
    WindowDriver user;
    QCOMPARE(user.window().windowTitle(), QStringLiteral("Printer panel"));
    QVERIFY(user.connectTo(printer.url().toString()));
    const QString name = printer.url().authority();
    QTRY_COMPARE(user.window().windowTitle(), name + QStringLiteral(" – Printer panel"));
    printer.status.printStatus = 1;
    printer.status.sliceLayerCount = QStringLiteral("200");
    printer.status.curSliceLayer = QStringLiteral("199");
    QTRY_COMPARE_WITH_TIMEOUT(user.window().windowTitle(),
                              QStringLiteral("99 % – %1 – Printer panel").arg(name), patience);
}

/// In a process of its own, since libdbus reads the bus's address from the environment only once.
void TestPanelWindow::theDesktopIsNotifiedOfAnEnd()
{
    if (qEnvironmentVariableIsSet("ZYPANEL_TEST_CHILD")) {
        finishAPrintUnseen();
        return;
    }
    const QString program = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
    if (program.isEmpty())
        QSKIP("dbus-daemon is not installed");
    QProcess bus;
    bus.start(program,
              {QStringLiteral("--session"), QStringLiteral("--nofork"),
               QStringLiteral("--print-address")});
    QVERIFY(bus.waitForReadyRead());
    const QString address = QString::fromUtf8(bus.readLine().trimmed());
    const QString name = QStringLiteral("desktop");
    Desktop desktop;
    {
        auto connection = QDBusConnection::connectToBus(address, name);
        QVERIFY(connection.registerObject(QStringLiteral("/org/freedesktop/Notifications"),
                                          &desktop, QDBusConnection::ExportAllSlots));
        QVERIFY(connection.registerService(QStringLiteral("org.freedesktop.Notifications")));
    }
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), address);
    environment.insert(QStringLiteral("ZYPANEL_TEST_CHILD"), QStringLiteral("1"));
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(),
                {QStringLiteral("tst_window"), QStringLiteral("theDesktopIsNotifiedOfAnEnd")});
    QTRY_COMPARE_WITH_TIMEOUT(child.state(), QProcess::NotRunning, patience);
    QVERIFY2(child.exitCode() == 0, child.readAll().constData());
    QTRY_COMPARE(desktop.shown.size(), 1);
    QVERIFY2(desktop.shown.first().endsWith(
                 QStringLiteral("|The print of a&lt;b&gt;.zydlp is complete.")),
             qPrintable(desktop.shown.first()));
    QDBusConnection::disconnectFromBus(name);
    bus.kill();
    bus.waitForFinished();
}

void TestPanelWindow::finishAPrintUnseen()
{
    RestartablePrinter printer;
    printer.status.printStatus = 1;
    printer.status.filename = QStringLiteral("a<b>.zydlp");
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.awaitTitle(QStringLiteral("Printing")));
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    printer.status.printStatus = 2;
    QVERIFY(user.awaitTitle(QStringLiteral("Print complete")));
}

ZY_TEST(TestPanelWindow)
#include "tst_window.moc"
