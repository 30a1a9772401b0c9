// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// What the panel says and computes without a printer: words, numbers, layers.

#include "formatting.h"
#include "layerhistory.h"
#include "testsettings.h"
#include "words.h"

#include <testprogram.h>

#include <QCoreApplication>
#include <QMetaEnum>
#include <QSet>
#include <QTest>

using namespace zypanel;
using zysession::PrinterStatus;
using Answer = zysession::Exchange::Ending;
using State = PrinterStatus::State;

namespace
{

constexpr State states[]
    = {State::Unknown, State::Ready,  State::Printing, State::Complete,   State::Failed,
       State::Ended,   State::Paused, State::Halting,  State::Completing, State::TokenRejected};

constexpr PrinterCommand commands[]
    = {PrinterCommand::Print, PrinterCommand::Continue, PrinterCommand::Pause, PrinterCommand::Stop,
       PrinterCommand::SetParameters};

/// What may come of @p command.
QVector<Answer> answersTo(PrinterCommand command)
{
    QVector<Answer> answers{Answer::Done, Answer::TokenRejected, Answer::NoAnswer,
                            Answer::ConnectionLost};
    if (command == PrinterCommand::Print || command == PrinterCommand::Continue)
        return answers << Answer::Busy << Answer::CheckFailed;
    if (command == PrinterCommand::SetParameters)
        answers << Answer::NotTaken;
    return answers << Answer::Refused;
}

template <typename Enum> QVector<Enum> allOf()
{
    const auto meta = QMetaEnum::fromType<Enum>();
    QVector<Enum> all;
    for (int i = 0; i < meta.keyCount(); ++i)
        all.append(static_cast<Enum>(meta.value(i)));
    return all;
}

/// Every sentence for a code, word or fault that there is.
QStringList allSentences()
{
    const QString file = QStringLiteral("part.zydlp");
    const QString printer = QStringLiteral("bench1");
    QStringList all;
    for (PrinterCommand command : commands) {
        for (Answer answer : answersTo(command))
            all.append(commandNotice(command, answer, file).text);
    }
    for (ZySendResult::ConnectionFault fault : allOf<ZySendResult::ConnectionFault>()) {
        if (fault != ZySendResult::ConnectionFault::None)
            all.append(connectionFaultNotice(fault, printer).text);
    }
    for (ZySendResult::FileFault fault : allOf<ZySendResult::FileFault>()) {
        if (fault != ZySendResult::FileFault::None)
            all.append(fileFaultNotice(fault, file).text);
    }
    for (State state : states) {
        all.append(stateTitle(state));
        all.append(stateNotice(state, file).text);
    }
    for (const QString &key : parameterOrder())
        all.append(parameterTerms(key).title);
    return all;
}

PrinterStatus printing(int layer, int layerCount)
{
    PrinterStatus status;
    status.state = State::Printing;
    status.filename = QStringLiteral("part.zydlp");
    status.layer = layer;
    status.layerCount = layerCount;
    return status;
}

} // namespace

class TestPanelWords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCodeAndWordHasASentenceOfItsOwn();
    void fileNamesAreNoPlacesForOthers();
    void theParametersAreThoseThatAPrinterTakes();
    void numbersOfThePrinterBecomeReadable_data();
    void numbersOfThePrinterBecomeReadable();
    void layersOfOneJobAreKept();
    void theLastLayerBelongsToTheJob();
    void aPauseIsNoRise();
    void theRemainingTimeIsThatOfTheClock();
    void aLongPrintKeepsItsPlotBounded();
    void typedNumbersAreUnderstood_data();
    void typedNumbersAreUnderstood();

    void germanSaysEverySentenceInGerman();
};

void TestPanelWords::everyCodeAndWordHasASentenceOfItsOwn()
{
    const QStringList all = allSentences();
    for (const QString &sentence : all)
        QVERIFY2(!sentence.isEmpty() && !sentence.contains(QLatin1String("%1")),
                 qPrintable(sentence));
    QCOMPARE(QSet<QString>(all.begin(), all.end()).size(), all.size());
}

void TestPanelWords::fileNamesAreNoPlacesForOthers()
{
    QCOMPARE(fileFaultNotice(ZySendResult::FileFault::Empty, QStringLiteral("a%1b%2")).text,
             QStringLiteral("a%1b%2 is empty; there is nothing to send."));
}

void TestPanelWords::theParametersAreThoseThatAPrinterTakes()
{
    const QStringList order = parameterOrder();
    QCOMPARE(QSet<QString>(order.begin(), order.end()),
             QSet<QString>(zysession::parameterKeys().begin(), zysession::parameterKeys().end()));
}

void TestPanelWords::numbersOfThePrinterBecomeReadable_data()
{
    QTest::addColumn<QString>("read");
    QTest::addColumn<QString>("expected");
    QTest::newRow("seconds") << timeText(QStringLiteral("59")) << "59 s";
    QTest::newRow("minutes") << timeText(QStringLiteral("200")) << "3 min 20 s";
    QTest::newRow("hours") << timeText(QStringLiteral("3900")) << "1 h 5 min";
    QTest::newRow("a text of its own") << timeText(QStringLiteral("02:10")) << "02:10";
    QTest::newRow("length") << lengthText(QStringLiteral("0.05")) << "0.05 mm";
    QTest::newRow("length as text") << lengthText(QStringLiteral("50 µm")) << "50 µm";
    QTest::newRow("progress") << progressText(12 * 1024 * 1024, 40 * 1024 * 1024, 2097152, 14)
                              << QStringLiteral("12.0 MiB of 40.0 MiB · 2.0 MiB/s · 14 s left");
    QTest::newRow("progress without a rate")
        << progressText(512, 1024, 0, -1) << QStringLiteral("512 bytes of 1.0 KiB");
}

void TestPanelWords::numbersOfThePrinterBecomeReadable()
{
    QFETCH(QString, read);
    QFETCH(QString, expected);
    QCOMPARE(read, expected);
}

void TestPanelWords::layersOfOneJobAreKept()
{
    LayerHistory history;
    history.add(PrinterStatus(), 0);
    QVERIFY(history.points().isEmpty());
    history.add(printing(1, 100), 5000);
    history.add(printing(3, 100), 7000);
    QCOMPARE(history.points().size(), 2);
    QCOMPARE(history.points().last().seconds, 2.0);
    QCOMPARE(history.points().last().layer, 3);
    // The same file printed again.
    history.add(printing(0, 100), 9000);
    QCOMPARE(history.points().size(), 1);
}

void TestPanelWords::theLastLayerBelongsToTheJob()
{
    LayerHistory history;
    history.add(printing(1, 100), 0);
    history.add(printing(97, 100), 4000);
    PrinterStatus complete = printing(100, 100);
    complete.state = State::Complete;
    history.add(complete, 6000);
    history.add(complete, 60000);
    QCOMPARE(history.points().last().layer, 100);
    QCOMPARE(history.points().last().seconds, 6.0);
    QCOMPARE(history.elapsed(60000), 6.0);
    QCOMPARE(history.remaining(), 0.0);
}

void TestPanelWords::aPauseIsNoRise()
{
    LayerHistory history;
    history.add(printing(10, 100), 0);
    PrinterStatus paused = printing(10, 100);
    paused.state = State::Paused;
    history.add(paused, 1000);
    history.add(printing(11, 100), 61000);
    QCOMPARE(history.points().size(), 2);
    // Layer 10 lasted the whole pause: a step, not a slope.
    QCOMPARE(history.points().first().layer, 10);
    QCOMPARE(history.points().last().seconds, 61.0);
    QCOMPARE(history.elapsed(65000), 65.0);
}

void TestPanelWords::theRemainingTimeIsThatOfTheClock()
{
    const auto after = [](int speed) {
        LayerHistory history;
        for (int second = 0; second <= 10; ++second) {
            PrinterStatus status = printing(second + 1, 100);
            status.remainingTime = QString::number(20000 - speed * second);
            history.add(status, second * 1000);
        }
        return history.remaining();
    };
    QCOMPARE(after(1), 19990.0);
    // A virtual printer a thousand times as fast.
    QCOMPARE(after(1000), 10.0);
}

void TestPanelWords::typedNumbersAreUnderstood_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<double>("number");
    QTest::newRow("point") << "28.5" << 28.5;
    QTest::newRow("comma") << "28,5" << 28.5;
    QTest::newRow("spaces") << " 3 " << 3.0;
    QTest::newRow("a word") << "long" << -1.0;
    QTest::newRow("both") << "1.000,5" << -1.0;
    QTest::newRow("empty") << "" << -1.0;
}

void TestPanelWords::typedNumbersAreUnderstood()
{
    QFETCH(QString, typed);
    QFETCH(double, number);
    QCOMPARE(numberIn(typed).value_or(-1), number);
}

void TestPanelWords::aLongPrintKeepsItsPlotBounded()
{
    LayerHistory history;
    constexpr int layers = 10000;
    for (int layer = 1; layer <= layers; ++layer)
        history.add(printing(layer, layers), layer * 1000);
    QVERIFY(history.points().size() <= LayerHistory::maximumPoints);
    QVERIFY(history.points().size() >= LayerHistory::maximumPoints / 2);
    QCOMPARE(history.points().first().layer, 1);
    QCOMPARE(history.points().last().layer, layers);
}

void TestPanelWords::germanSaysEverySentenceInGerman()
{
    const QStringList english = allSentences();
    const InstalledLanguage german(QLocale::German);
    const QStringList translated = allSentences();
    for (int i = 0; i < english.size(); ++i)
        QVERIFY2(translated.at(i) != english.at(i), qPrintable(english.at(i)));
    QCOMPARE(stateTitle(State::Printing), QStringLiteral("Druckt"));
}

ZY_TEST(TestPanelWords)
#include "tst_words.moc"
