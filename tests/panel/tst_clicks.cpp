// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The whole window, clicked and typed into, against a real printer process.

#include "layerplot.h"
#include "printerprocess.h"
#include "programs.h"
#include "restartableprinter.h"
#include "testsettings.h"
#include "windowdriver.h"

#include <modelfiles.h>
#include <testprogram.h>
#include <waiting.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QFileDialog>
#include <QMessageBox>
#include <QProgressBar>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace zypanel;
using Link = PrinterControl::Link;
using State = Upload::State;

class TestPanelClicks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void sendsPrintsPausesAndStops();
    void theQuestionWhetherToStopIsAboutOneJob();
    void aFileIsChosenInTheDialog();
    void parametersAreShownAndApplied();
    void parametersThatWereNotTakenAreNotShown();
    void aPrinterIsSavedUnderAName();
    void cancelIsConfirmedFirst();
    void resumeIsOfferedAfterADrop();
    void closingWhileSendingIsConfirmed();
    void everyControlIsReachedByTheTabKey();

    void mnemonicsAndNamesAreComplete_data();
    void mnemonicsAndNamesAreComplete();

private:
    QString randomFile(qint64 size);

    TestSettings m_settings;
    QTemporaryDir m_directory;
    QString m_model;
    QByteArray m_content;
};

void TestPanelClicks::initTestCase()
{
    m_model = makeModel(m_directory.filePath(QStringLiteral("sphere.zydlp")), 400);
    QVERIFY(!m_model.isEmpty());
}

QString TestPanelClicks::randomFile(qint64 size)
{
    const QString path = m_directory.filePath(QStringLiteral("random.zydlp"));
    m_content = zytest::randomBytes(size);
    return zytest::writeFile(path, m_content);
}

void TestPanelClicks::sendsPrintsPausesAndStops()
{
    PrinterProcess printer({QStringLiteral("--speed"), QStringLiteral("1000")});
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QCOMPARE(user.textOf("linkBadge"), QStringLiteral("Connected"));
    QVERIFY(user.awaitTitle(QStringLiteral("Ready")));

    QVERIFY(user.drop(m_model));
    QCOMPARE(user.find<QLineEdit>("fileName").text(), QStringLiteral("sphere.zydlp"));
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitEvent(QStringLiteral("and ready to print.")));
    QCOMPARE(user.find<QProgressBar>("transferProgress").value(),
             user.find<QProgressBar>("transferProgress").maximum());
    QVERIFY(zytest::readFile(printer.pathOf(QStringLiteral("sphere.zydlp")))
            == zytest::readFile(m_model));

    QVERIFY(user.click("startPrint"));
    QVERIFY(user.awaitEvent(QStringLiteral("The print of sphere.zydlp has started.")));
    QVERIFY(user.awaitTitle(QStringLiteral("Printing")));
    auto &layers = user.find<QProgressBar>("layerProgress");
    QCOMPARE(layers.maximum(), 400);
    QTRY_VERIFY_WITH_TIMEOUT(layers.value() > 3, zytest::patience);
    QVERIFY(user.find<LayerPlot>("layerPlot").pointCount() > 1);

    QVERIFY(user.click("pausePrint"));
    QVERIFY(user.awaitTitle(QStringLiteral("Paused")));
    QCOMPARE(user.find<QPushButton>("pausePrint").text(), QStringLiteral("Co&ntinue"));
    QVERIFY(user.click("pausePrint"));
    QVERIFY(user.awaitTitle(QStringLiteral("Printing")));

    QVERIFY(user.click("stopPrint"));
    QVERIFY(user.click("confirmationReject"));
    QVERIFY(user.click("pausePrint"));
    QVERIFY(user.awaitTitle(QStringLiteral("Paused")));
    QVERIFY(user.click("stopPrint"));
    QTRY_VERIFY(user.window().findChildren<QMessageBox *>().size() == 1);
    QVERIFY(user.click("confirmationAccept"));
    QVERIFY(user.awaitTitle(QStringLiteral("Print ended")));
    QVERIFY(user.find<QPushButton>("startPrint").isEnabled());
}

void TestPanelClicks::theQuestionWhetherToStopIsAboutOneJob()
{
    RestartablePrinter printer;
    printer.status.filename = QStringLiteral("mine.zydlp");
    printer.status.printStatus = 1; // printing
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    const auto questions = [&user] { return user.window().findChildren<QMessageBox *>().size(); };
    QVERIFY(user.click("stopPrint"));
    QTRY_COMPARE(questions(), 1);
    // Between two status requests the job has ended and another slicer's has begun.
    printer.status.filename = QStringLiteral("yours.zydlp");
    QTRY_COMPARE_WITH_TIMEOUT(questions(), 0, zytest::patience);

    QVERIFY(user.click("stopPrint"));
    QTRY_COMPARE(questions(), 1);
    printer.stop(); // and nothing can be sent
    QTRY_COMPARE_WITH_TIMEOUT(questions(), 0, zytest::patience);
    QCOMPARE(user.control().link(), Link::Lost);
}

void TestPanelClicks::aFileIsChosenInTheDialog()
{
    WindowDriver user;
    QVERIFY(user.click("chooseFile"));
    auto &dialog = user.find<QFileDialog>("fileDialog");
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    auto *name = dialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    QVERIFY(name != nullptr);
    QTest::keyClicks(name, m_model);
    QTest::keyClick(name, Qt::Key_Return);
    QTRY_COMPARE(user.find<QLineEdit>("filePath").text(), m_model);
    // Not connected: nothing can be sent.
    QVERIFY(!user.find<QPushButton>("send").isEnabled());
}

void TestPanelClicks::parametersAreShownAndApplied()
{
    PrinterProcess printer;
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    auto &exposure = user.find<QLineEdit>("printExposure");
    QTRY_VERIFY_WITH_TIMEOUT(!exposure.text().isEmpty(), zytest::patience);
    const QString before = exposure.text();
    user.type("printExposure", QStringLiteral("3.75"));
    QVERIFY(user.click("revertParameters"));
    QCOMPARE(exposure.text(), before);

    user.type("printExposure", QStringLiteral("3.75"));
    QVERIFY(user.click("applyParameters"));
    QVERIFY(user.awaitEvent(QStringLiteral("The printer uses the new print parameters.")));
    QCOMPARE(exposure.text(), QStringLiteral("3.75"));
    QVERIFY(!user.find<QPushButton>("applyParameters").isEnabled());

    for (const char *wrong : {"-1", "4000", "long", "1.000,5"}) {
        user.type("printExposure", QLatin1String(wrong));
        QVERIFY(!user.find<QPushButton>("applyParameters").isEnabled());
        QCOMPARE(user.textOf("printExposureHint"), QStringLiteral("0.1 to 3600"));
    }
    user.type("bottomExposureNum", QStringLiteral("2.5"));
    QCOMPARE(user.textOf("bottomExposureNumHint"), QStringLiteral("0 to 1000"));
    QVERIFY(user.click("revertParameters"));
    QCOMPARE(exposure.text(), QStringLiteral("3.75"));
    user.type("printExposure", QStringLiteral("28,5"));
    QVERIFY(user.click("applyParameters"));
    QTRY_COMPARE(exposure.text(), QStringLiteral("28.5"));
}

void TestPanelClicks::parametersThatWereNotTakenAreNotShown()
{
    RestartablePrinter printer;
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    auto &exposure = user.find<QLineEdit>("printExposure");
    QTRY_COMPARE_WITH_TIMEOUT(exposure.text(), QStringLiteral("2.5"), zytest::patience);
    user.type("printExposure", QStringLiteral("5"));
    QVERIFY(user.click("applyParameters"));
    printer.stop();
    QVERIFY(user.awaitLink(Link::Lost));
    QTRY_COMPARE_WITH_TIMEOUT(exposure.text(), QStringLiteral("2.5"), zytest::patience);
    QCOMPARE(printer.status.printExposure, QStringLiteral("2.5"));
}

void TestPanelClicks::aPrinterIsSavedUnderAName()
{
    PrinterProcess printer;
    {
        WindowDriver user;
        user.type("address", printer.url().toString());
        QVERIFY(user.click("saveName"));
        QVERIFY(QTest::qWaitForWindowExposed(&user.find<QDialog>("nameDialog")));
        QTest::keyClicks(&user.find<QLineEdit>("printerName"), QStringLiteral("bench1"));
        QTest::keyClick(&user.find<QLineEdit>("printerName"), Qt::Key_Return);
        QTRY_COMPARE(user.find<QComboBox>("address").currentText(), QStringLiteral("bench1"));
        QVERIFY(user.click("connect"));
        QTRY_COMPARE_WITH_TIMEOUT(user.control().link(), Link::Open, zytest::patience);
    }
    // A later run remembers the name and offers the printer last used.
    WindowDriver user;
    auto &address = user.find<QComboBox>("address");
    QCOMPARE(address.currentText(), QStringLiteral("bench1"));
    QVERIFY(user.click("connect"));
    QTRY_COMPARE_WITH_TIMEOUT(user.control().link(), Link::Open, zytest::patience);
    QVERIFY(user.click("connect"));
    QTRY_COMPARE(user.control().link(), Link::Closed);
    QVERIFY(user.click("forgetName"));
    QVERIFY(user.click("confirmationReject"));
    QCOMPARE(address.currentText(), QStringLiteral("bench1"));
    QVERIFY(user.click("forgetName"));
    QTRY_COMPARE(user.window().findChildren<QMessageBox *>().size(), 1);
    QVERIFY(user.click("confirmationAccept"));
    QCOMPARE(address.currentText(), printer.url().toString());
    QCOMPARE(address.findText(QStringLiteral("bench1")), -1);
}

void TestPanelClicks::cancelIsConfirmedFirst()
{
    PrinterProcess printer;
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.drop(randomFile(32 * zytest::chunkBytes)));
    const auto clicking = connect(&user.upload(), &Upload::progressed, this, [&](qint64 received) {
        if (received == 2 * zytest::chunkBytes) {
            QVERIFY(user.click("cancel"));
            QVERIFY(user.click("confirmationAccept"));
        }
    });
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitEvent(QStringLiteral("was cancelled")));
    disconnect(clicking);
    QCOMPARE(user.upload().state(), State::Cancelled);
    QVERIFY(!user.find<QProgressBar>("transferProgress").isVisible());
    QCOMPARE(user.textOf("transferDetail"), QStringLiteral("Cancelled"));
    QVERIFY(printer.pathOf(QStringLiteral("random.zydlp")).isEmpty());
}

void TestPanelClicks::resumeIsOfferedAfterADrop()
{
    RestartablePrinter printer;
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.drop(randomFile(8 * zytest::chunkBytes)));
    const auto dropping = connect(&user.upload(), &Upload::progressed, this, [&](qint64 received) {
        if (received == 3 * zytest::chunkBytes)
            printer.stop();
    });
    QVERIFY(user.click("send"));
    QVERIFY(user.awaitUpload(State::Interrupted));
    disconnect(dropping);
    QVERIFY(user.awaitEvent(QStringLiteral("was lost while random.zydlp")));
    QVERIFY(user.textOf("transferDetail").startsWith(QStringLiteral("Interrupted at ")));
    // No other file meanwhile.
    QVERIFY(!user.drop(m_model));

    printer.start();
    QVERIFY(user.click("resume"));
    QVERIFY(user.awaitEvent(QStringLiteral("already holds ")));
    QVERIFY(user.awaitUpload(State::Sent));
    QVERIFY(zytest::readFile(printer.pathOf(QStringLiteral("random.zydlp"))) == m_content);
    QCOMPARE(user.notice(), QString());
}

void TestPanelClicks::closingWhileSendingIsConfirmed()
{
    PrinterProcess printer;
    WindowDriver user;
    QVERIFY(user.connectTo(printer.url().toString()));
    QVERIFY(user.drop(randomFile(32 * zytest::chunkBytes)));
    bool isClosedAtOnce = true;
    connect(&user.upload(), &Upload::progressed, this, [&](qint64 received) {
        if (received == 2 * zytest::chunkBytes) {
            isClosedAtOnce = user.window().close();
            QVERIFY(user.click("confirmationAccept"));
        }
    });
    QVERIFY(user.click("send"));
    QVERIFY(QTest::qWaitFor([&] { return !user.window().isVisible(); }, zytest::patience));
    QVERIFY(!isClosedAtOnce);
    QCOMPARE(user.control().link(), Link::Closed);
}

void TestPanelClicks::everyControlIsReachedByTheTabKey()
{
    WindowDriver user;
    user.type("address", QStringLiteral("ws://127.0.0.1:1"));
    QStringList visited;
    for (int i = 0; i < 40; ++i) {
        QWidget *focused = QApplication::focusWidget();
        QVERIFY(focused != nullptr);
        const QString name = focused->objectName();
        if (!visited.isEmpty() && name == visited.first())
            break;
        visited.append(name);
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    const QStringList expected{
        QStringLiteral("address"),           QStringLiteral("token"),
        QStringLiteral("connect"),           QStringLiteral("saveName"),
        QStringLiteral("filePath"),          QStringLiteral("chooseFile"),
        QStringLiteral("fileName"),          QStringLiteral("printFile"),
        QStringLiteral("printExposure"),     QStringLiteral("initExposure"),
        QStringLiteral("bottomExposureNum"), QStringLiteral("delayLight"),
        QStringLiteral("printHeight"),       QStringLiteral("eleSpeed"),
        QStringLiteral("eventLog"),
    };
    QCOMPARE(visited, expected);
}

void TestPanelClicks::mnemonicsAndNamesAreComplete_data()
{
    QTest::addColumn<QLocale::Language>("language");
    QTest::newRow("English") << QLocale::English;
    QTest::newRow("German") << QLocale::German;
}

void TestPanelClicks::mnemonicsAndNamesAreComplete()
{
    QFETCH(QLocale::Language, language);
    const InstalledLanguage installed(language);
    WindowDriver user;
    QSet<QString> used;
    const auto take = [&used](const QString &text) {
        const QString key = QKeySequence::mnemonic(text).toString();
        const bool isNew = !key.isEmpty() && !used.contains(key);
        used.insert(key);
        return isNew;
    };
    for (const QPushButton *button : user.window().findChildren<QPushButton *>()) {
        if (button->isVisible())
            QVERIFY2(take(button->text()), qPrintable(button->text()));
    }
    for (const QLabel *label : user.window().findChildren<QLabel *>()) {
        if (label->text().contains(QLatin1Char('&')))
            QVERIFY2(take(label->text()), qPrintable(label->text()));
    }
    for (QWidget *widget : user.window().findChildren<QWidget *>()) {
        const bool takesFocus
            = (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->focusProxy() == nullptr;
        if (!widget->isVisible() || !takesFocus)
            continue;
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(widget);
        QVERIFY2(!accessible->text(QAccessible::Name).isEmpty(),
                 qPrintable(widget->objectName() + QLatin1Char(' ')
                            + QLatin1String(widget->metaObject()->className())));
    }
}

ZY_TEST(TestPanelClicks)
#include "tst_clicks.moc"
