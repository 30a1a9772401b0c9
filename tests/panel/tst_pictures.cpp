// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Pictures of the window in its typical states, in a light and a dark palette, to be looked at.

#include "elidedlabel.h"
#include "mainwindow.h"
#include "printercontrol.h"
#include "printerpanel.h"
#include "printerprocess.h"
#include "programs.h"
#include "testsettings.h"
#include "upload.h"

#include <modelfiles.h>
#include <testprogram.h>
#include <tlsidentity.h>
#include <waiting.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
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

/// Buttons whose text is cut off, and what a scroll bar does not reach.
QStringList cutOffTexts(const QWidget &window)
{
    QStringList cut;
    for (const QPushButton *button : window.findChildren<QPushButton *>()) {
        if (button->isVisible() && button->width() < button->sizeHint().width())
            cut.append(button->text());
    }
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        const bool isElided = qobject_cast<const ElidedLabel *>(label) != nullptr;
        if (label->isVisible() && !isElided && !label->wordWrap()
            && label->width() < label->sizeHint().width())
            cut.append(label->text());
    }
    const auto *area = window.findChild<QScrollArea *>();
    if (area->widget()->minimumSizeHint().width() > area->viewport()->width())
        cut.append(QStringLiteral("the panel is wider than its window"));
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
    void cleanupTestCase() { QDir::setCurrent(QDir::tempPath()); }
    void init();
    void cleanup();

    void idle_data() { looks(); }
    void idle();
    void sending_data() { looks(); }
    void sending();
    void printing_data() { looks(); }
    void printing();
    void checking_data() { looks(); }
    void checking();
    void error_data() { looks(); }
    void error();
    void certificate_data() { looks(); }
    void certificate();

    void everyStateFitsTwiceAsLarge();

private:
    static void looks();
    QString look() const { return QLatin1String(QTest::currentDataTag()); }
    void takePicture(const char *state) { takePicture(state, *m_window); }
    void takePicture(const char *state, QWidget &of);
    void open(const QString &address);
    QString saved(const PrinterProcess &printer);

    TestSettings m_settings;
    QTemporaryDir m_directory;
    std::unique_ptr<InstalledLanguage> m_language;
    std::unique_ptr<MainWindow> m_window;
};

void TestPanelPictures::looks()
{
    QTest::addColumn<QSize>("size");
    const QSize usual(1000, 700);
    QTest::newRow("light") << usual;
    QTest::newRow("dark") << usual;
    QTest::newRow("german") << usual;
    QTest::newRow("800x600") << QSize(800, 600);
}

void TestPanelPictures::initTestCase()
{
    QVERIFY(QDir().mkpath(QStringLiteral(PICTURES)));
    // So that the pictures show no path.
    QVERIFY(QDir::setCurrent(m_directory.path()));
    QVERIFY(!makeModel(m_directory.filePath(QStringLiteral("sphere.zydlp")), 240).isEmpty());
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(13);
    QApplication::setFont(font);
}

void TestPanelPictures::init()
{
    if (look().isEmpty())
        return;
    QFETCH(const QSize, size);
    QApplication::setPalette(look() == QLatin1String("dark") ? darkPalette() : lightPalette());
    if (look() == QLatin1String("german"))
        m_language = std::make_unique<InstalledLanguage>(QLocale::German);
    m_window = std::make_unique<MainWindow>();
    // Of a display with twice the scale there is half as much place.
    m_window->resize(size / qRound(qApp->devicePixelRatio()));
    PrinterControl::Timing timing;
    timing.polling = 50;
    timing.firstPause = 60000;
    m_window->panel()->control()->setTiming(timing);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void TestPanelPictures::cleanup()
{
    m_window.reset();
    m_language.reset();
}

void TestPanelPictures::open(const QString &address)
{
    m_window->panel()->connectTo(address);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->panel()->control()->link(), PrinterControl::Link::Open,
                              patience);
}

QString TestPanelPictures::saved(const PrinterProcess &printer)
{
    const QString name = QStringLiteral("bench1");
    zysession::SavedPrinters().save({name, printer.url(), {}});
    return name;
}

void TestPanelPictures::takePicture(const char *state, QWidget &of)
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const QImage picture = of.grab().toImage();
    const bool isLarge = picture.devicePixelRatio() > 1;
    const QString name
        = QStringLiteral("%1-%2%3.png")
              .arg(QLatin1String(state), look(), isLarge ? QStringLiteral("-200%") : QString());
    QVERIFY(picture.save(QStringLiteral(PICTURES "/") + name));
    QVERIFY(look() == QLatin1String("dark") ? lightnessOf(picture) < 0.4
                                            : lightnessOf(picture) > 0.7);
    const QStringList cut = cutOffTexts(*m_window);
    QVERIFY2(cut.isEmpty(), qPrintable(cut.join(QLatin1Char('\n'))));
}

void TestPanelPictures::idle()
{
    takePicture("idle");
}

void TestPanelPictures::sending()
{
    const QString large = zytest::writeFile(QStringLiteral("gyroid-sphere.zydlp"),
                                            zytest::randomBytes(24 * zytest::chunkBytes));
    PrinterProcess printer({QStringLiteral("--speed"), QStringLiteral("200")});
    open(saved(printer));
    m_window->panel()->setFile(QStringLiteral("sphere.zydlp"));
    child<QPushButton>(*m_window, "send")->click();
    auto *start = child<QPushButton>(*m_window, "startPrint");
    QTRY_VERIFY_WITH_TIMEOUT(start->isEnabled(), patience);
    start->click();
    QTRY_VERIFY_WITH_TIMEOUT(child<QProgressBar>(*m_window, "layerProgress")->value() > 10,
                             patience);
    m_window->panel()->setFile(large);
    bool isTaken = false;
    connect(m_window->panel()->upload(), &Upload::progressed, this, [&](qint64 received) {
        if (received == 12 * zytest::chunkBytes) {
            takePicture("sending");
            isTaken = true;
        }
    });
    child<QPushButton>(*m_window, "send")->click();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->panel()->upload()->state(), Upload::State::Sent, patience);
    QVERIFY(isTaken);
}

void TestPanelPictures::printing()
{
    PrinterProcess printer({QStringLiteral("--speed"), QStringLiteral("900")});
    open(saved(printer));
    m_window->panel()->setFile(QStringLiteral("sphere.zydlp"));
    child<QPushButton>(*m_window, "send")->click();
    auto *start = child<QPushButton>(*m_window, "startPrint");
    QTRY_VERIFY_WITH_TIMEOUT(start->isEnabled(), patience);
    start->click();
    QTRY_VERIFY_WITH_TIMEOUT(child<QProgressBar>(*m_window, "layerProgress")->value() > 140,
                             patience);
    takePicture("printing");
}

void TestPanelPictures::checking()
{
    PrinterProcess printer({QStringLiteral("--slow-check"), QStringLiteral("600")});
    open(saved(printer));
    m_window->panel()->setFile(QStringLiteral("sphere.zydlp"));
    child<QPushButton>(*m_window, "send")->click();
    auto *start = child<QPushButton>(*m_window, "startPrint");
    QTRY_VERIFY_WITH_TIMEOUT(start->isEnabled(), patience);
    start->click();
    QTRY_VERIFY_WITH_TIMEOUT(m_window->panel()->control()->isChecking(), patience);
    takePicture("checking");
}

void TestPanelPictures::error()
{
    PrinterProcess printer;
    open(saved(printer));
    m_window->panel()->setFile(zytest::writeFile(QStringLiteral("gyroid-sphere.zydlp"),
                                                 zytest::randomBytes(24 * zytest::chunkBytes)));
    connect(m_window->panel()->upload(), &Upload::progressed, this, [&](qint64 received) {
        if (received == 6 * zytest::chunkBytes)
            printer.kill();
    });
    child<QPushButton>(*m_window, "send")->click();
    QTRY_COMPARE_WITH_TIMEOUT(m_window->panel()->upload()->state(), Upload::State::Interrupted,
                              patience);
    QTRY_COMPARE_WITH_TIMEOUT(m_window->panel()->control()->link(), PrinterControl::Link::Lost,
                              patience);
    takePicture("error");
}

void TestPanelPictures::certificate()
{
    const PrinterProcess printer(zytest::TlsIdentity::localhost().options());
    m_window->panel()->connectTo(saved(printer));
    QTRY_VERIFY_WITH_TIMEOUT(child<QMessageBox>(*m_window, "confirmation"), patience);
    auto *question = child<QMessageBox>(*m_window, "confirmation");
    QVERIFY(QTest::qWaitForWindowExposed(question));
    takePicture("certificate", *question);
}

/// The scale is a matter of the whole process.
void TestPanelPictures::everyStateFitsTwiceAsLarge()
{
    if (qApp->devicePixelRatio() > 1)
        return;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2"));
    QProcess twice;
    twice.setProcessEnvironment(environment);
    twice.setProcessChannelMode(QProcess::MergedChannels);
    const QString eachWith[] = {QStringLiteral(":light"), QStringLiteral(":800x600")};
    QStringList arguments{QStringLiteral("tst_pictures")};
    for (const char *state : {"idle", "sending", "printing", "checking", "error", "certificate"}) {
        for (const QString &with : eachWith)
            arguments.append(QLatin1String(state) + with);
    }
    twice.start(QCoreApplication::applicationFilePath(), arguments);
    QVERIFY(twice.waitForFinished(5 * patience));
    QVERIFY2(twice.exitCode() == 0, twice.readAll().constData());
}

ZY_TEST(TestPanelPictures)
#include "tst_pictures.moc"
