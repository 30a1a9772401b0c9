// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Pictures of the window in its typical states, in a light and a dark palette, to be looked at.

#include "mainwindow.h"
#include "printercontrol.h"
#include "printerpanel.h"
#include "printerprocess.h"
#include "restartableprinter.h"
#include "samplemodel.h"
#include "testsettings.h"
#include "upload.h"

#include <modelfiles.h>
#include <testprogram.h>
#include <waiting.h>

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace zypanel;

namespace
{

using zytest::patience;

QPalette lightPalette()
{
    return QPalette(QColor(0xef, 0xef, 0xef));
}

QPalette darkPalette()
{
    QPalette palette(QColor(0x35, 0x37, 0x3b));
    palette.setColor(QPalette::Window, QColor(0x2b, 0x2d, 0x30));
    palette.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x24));
    palette.setColor(QPalette::AlternateBase, QColor(0x27, 0x29, 0x2c));
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xa8));
    for (QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText})
        palette.setColor(role, QColor(0xe4, 0xe6, 0xe9));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x7d, 0x80, 0x85));
    palette.setColor(QPalette::PlaceholderText, QColor(0x8a, 0x8d, 0x92));
    return palette;
}

double lightnessOf(const QImage &picture)
{
    const QImage small = picture.scaled(32, 32, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    double sum = 0;
    for (int y = 0; y < small.height(); ++y) {
        for (int x = 0; x < small.width(); ++x)
            sum += small.pixelColor(x, y).lightnessF();
    }
    return sum / (small.width() * small.height());
}

/// Buttons and one-line labels whose text is cut off.
QStringList cutOffTexts(const QWidget &window)
{
    QStringList cut;
    for (const QPushButton *button : window.findChildren<QPushButton *>()) {
        if (button->isVisible() && button->width() < button->sizeHint().width())
            cut.append(button->text());
    }
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        if (label->isVisible() && !label->wordWrap() && label->width() < label->sizeHint().width())
            cut.append(label->text());
    }
    return cut;
}

template <typename Widget> Widget *child(const QWidget &window, const char *name)
{
    return window.findChild<Widget *>(QLatin1String(name));
}

} // namespace

class TestPanelPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void idle_data() { palettes(); }
    void idle();
    void sending_data() { palettes(); }
    void sending();
    void printing_data() { palettes(); }
    void printing();
    void error_data() { palettes(); }
    void error();

    void german();

private:
    static void palettes();
    void takePicture(const char *state);
    void open(const QString &address);

    TestSettings m_settings;
    QTemporaryDir m_directory;
    std::unique_ptr<MainWindow> m_window;
};

void TestPanelPictures::palettes()
{
    QTest::addColumn<bool>("isDark");
    QTest::newRow("light") << false;
    QTest::newRow("dark") << true;
}

void TestPanelPictures::initTestCase()
{
    QVERIFY(QDir().mkpath(QStringLiteral(PICTURES)));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    QApplication::setFont(font);
}

void TestPanelPictures::init()
{
    const bool isDark = QByteArray(QTest::currentDataTag()) == "dark";
    QApplication::setPalette(isDark ? darkPalette() : lightPalette());
    m_window = std::make_unique<MainWindow>();
    m_window->resize(1000, 680);
    PrinterControl::Timing timing;
    timing.polling = 50;
    m_window->panel()->control()->setTiming(timing);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestPanelPictures::cleanup()
{
    m_window.reset();
}

void TestPanelPictures::open(const QString &address)
{
    m_window->panel()->connectTo(address);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->panel()->control()->link(), PrinterControl::Link::Open,
                              patience);
}

void TestPanelPictures::takePicture(const char *state)
{
    // What is still to be laid out, but no other events: a transfer may be under way.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const QImage picture = m_window->grab().toImage();
    const QString tag = QLatin1String(QTest::currentDataTag());
    const QString name = tag.isEmpty() ? QLatin1String(state)
                                       : QStringLiteral("%1-%2").arg(QLatin1String(state), tag);
    QVERIFY(picture.save(QStringLiteral(PICTURES "/%1.png").arg(name)));
    const bool isDark = tag == QLatin1String("dark");
    QVERIFY(isDark ? lightnessOf(picture) < 0.4 : lightnessOf(picture) > 0.7);
    const QStringList cut = cutOffTexts(*m_window);
    QVERIFY2(cut.isEmpty(), qPrintable(cut.join(QLatin1Char('\n'))));
}

void TestPanelPictures::idle()
{
    takePicture("idle");
}

void TestPanelPictures::sending()
{
    RestartablePrinter printer;
    printer.status.printStatus = 0;
    open(printer.url().toString());
    const QString path = m_directory.filePath(QStringLiteral("gyroid-sphere.zydlp"));
    zytest::writeFile(path, zytest::randomBytes(24 * zytest::chunkBytes));
    m_window->panel()->setFile(path);
    int pictures = 0;
    connect(m_window->panel()->upload(), &Upload::progressed, this, [&](qint64 received) {
        if (received == 14 * zytest::chunkBytes) {
            takePicture("sending");
            ++pictures;
        }
    });
    child<QPushButton>(*m_window, "send")->click();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->panel()->upload()->state(), Upload::State::Sent, patience);
    QCOMPARE(pictures, 1);
}

void TestPanelPictures::printing()
{
    PrinterProcess printer({QStringLiteral("--speed"), QStringLiteral("900")});
    open(printer.url().toString());
    m_window->panel()->setFile(sampleModel(m_directory, 240));
    child<QPushButton>(*m_window, "send")->click();
    auto *start = child<QPushButton>(*m_window, "startPrint");
    QTRY_VERIFY_WITH_TIMEOUT(start->isEnabled(), patience);
    start->click();
    QTRY_VERIFY_WITH_TIMEOUT(child<QProgressBar>(*m_window, "layerProgress")->value() > 140,
                             patience);
    takePicture("printing");
    m_window->panel()->disconnectFromPrinter();
}

void TestPanelPictures::error()
{
    RestartablePrinter printer;
    open(printer.url().toString());
    const QString path = m_directory.filePath(QStringLiteral("gyroid-sphere.zydlp"));
    zytest::writeFile(path, zytest::randomBytes(16 * zytest::chunkBytes));
    m_window->panel()->setFile(path);
    connect(m_window->panel()->upload(), &Upload::progressed, this, [&](qint64 received) {
        if (received == 6 * zytest::chunkBytes)
            printer.stop();
    });
    child<QPushButton>(*m_window, "send")->click();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->panel()->upload()->state(), Upload::State::Interrupted,
                              patience);
    takePicture("error");
}

void TestPanelPictures::german()
{
    const InstalledLanguage installed(QLocale::German);
    init();
    QCOMPARE(child<QPushButton>(*m_window, "connect")->text(), QStringLiteral("&Verbinden"));
    takePicture("german");
}

ZY_TEST(TestPanelPictures)
#include "tst_pictures.moc"
