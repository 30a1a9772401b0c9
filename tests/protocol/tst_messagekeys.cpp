// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Every JSON key is spelled as on the wire.

#include "messagekeys.h"

#include <QtTest>

namespace keys = zyws::keys;

class tst_MessageKeys : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areSpelledAsOnTheWire_data();
    void areSpelledAsOnTheWire();
};

void tst_MessageKeys::areSpelledAsOnTheWire_data()
{
    QTest::addColumn<QString>("key");
    const auto row
        = [](const char *spelling, QLatin1String key) { QTest::newRow(spelling) << QString(key); };
    row("cmd", keys::cmd);
    row("token", keys::token);
    row("filename", keys::filename);
    row("size", keys::size);
    row("offset", keys::offset);
    row("key", keys::key);
    row("errorcode", keys::errorcode);
    row("compress", keys::compress);
    row("wifistate", keys::wifistate);
    row("received", keys::received);
    row("checkstate", keys::checkstate);
    row("status", keys::status);
    row("printStatus", keys::printStatus);
    row("sliceLayerCount", keys::sliceLayerCount);
    row("curSliceLayer", keys::curSliceLayer);
    row("printRemainTime", keys::printRemainTime);
    row("initExposure", keys::initExposure);
    row("delayLight", keys::delayLight);
    row("printExposure", keys::printExposure);
    row("printHeight", keys::printHeight);
    row("eleSpeed", keys::eleSpeed);
    row("bottomExposureNum", keys::bottomExposureNum);
    row("layerThickness", keys::layerThickness);
    row("resin", keys::resin);
    row("version", keys::version);
}

void tst_MessageKeys::areSpelledAsOnTheWire()
{
    QFETCH(QString, key);
    QCOMPARE(key, QString::fromLatin1(QTest::currentDataTag()));
}

QTEST_GUILESS_MAIN(tst_MessageKeys)
#include "tst_messagekeys.moc"
