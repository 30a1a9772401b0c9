// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The bridge's answers about status, parameters and version.

#include "hostbridge.h"

#include "machine.h"
#include "modelreader.h"
#include "printerlog.h"

#include <printstatuspara.h>

#include <array>
#include <cmath>

namespace zyprinter
{

namespace
{

// The codes of PrintStatusPara::printStatus.
enum StatusCode {
    General = 0,
    Processing = 1,
    Complete = 2,
    Fail = 3,
    End = 4,
    Stop = 5,
    Stoping = 6,
    Completing = 7,
    TokenError = 8,
};

/// The protocol has no word for a pause: a print that stands still is PRINT_STOP, one that was
/// ended early is PRINT_END.
StatusCode statusCode(Machine::State state)
{
    switch (state) {
    case Machine::State::Idle:
    case Machine::State::Checking:
        return General;
    case Machine::State::Printing:
        return Processing;
    case Machine::State::Pausing:
    case Machine::State::Stopping:
        return Stoping;
    case Machine::State::Paused:
        return Stop;
    case Machine::State::Completing:
        return Completing;
    case Machine::State::Complete:
        return Complete;
    case Machine::State::Stopped:
        return End;
    case Machine::State::Failed:
        return Fail;
    }
    return General;
}

struct Field {
    PrintParameters::Id id;
    const char *name;
    QString PrintStatusPara::*text;
};

constexpr std::array<Field, PrintParameters::all.size()> fields{{
    {PrintParameters::InitExposure, "initExposure", &PrintStatusPara::initExposure},
    {PrintParameters::DelayLight, "delayLight", &PrintStatusPara::delayLight},
    {PrintParameters::PrintExposure, "printExposure", &PrintStatusPara::printExposure},
    {PrintParameters::PrintHeight, "printHeight", &PrintStatusPara::printHeight},
    {PrintParameters::EleSpeed, "eleSpeed", &PrintStatusPara::eleSpeed},
    {PrintParameters::BottomExposureNum, "bottomExposureNum", &PrintStatusPara::bottomExposureNum},
}};

} // namespace

void HostBridge::answerStatus(PrintStatusPara &status, const QString &token)
{
    if (!isAccepted(token)) {
        status.printStatus = TokenError;
        return;
    }
    status.printStatus = statusCode(m_machine->state());
    for (const Field &field : fields)
        status.*field.text = m_machine->parameters().text(field.id);
    const zymodel::ModelReader *model = m_machine->model();
    if (!model)
        return;
    constexpr double nmPerMm = 1e6;
    status.filename = m_machine->job();
    status.sliceLayerCount = QString::number(model->layerCount());
    status.curSliceLayer = QString::number(m_machine->layer());
    status.printRemainTime = QString::number(qint64(std::ceil(m_machine->remainingTime())));
    status.layerThickness = QString::number(model->header().layerThickness / nmPerMm);
    status.resin = model->header().resin;
}

void HostBridge::takeParameters(const PrintStatusPara &wanted, const QString &token)
{
    if (!isAccepted(token)) {
        m_log->add(QStringLiteral("refused parameters: wrong token"));
        return;
    }
    for (const Field &field : fields) {
        const QString text = wanted.*field.text;
        if (text.isEmpty())
            continue; // not in the request
        const bool isSet = m_machine->setParameter(field.id, text);
        m_log->add(QStringLiteral("parameter %1 = %2%3")
                       .arg(QLatin1String(field.name), text,
                            isSet ? QString() : QStringLiteral(": refused, out of range")));
    }
}

void HostBridge::answerVersion(QString &version)
{
    version = QStringLiteral("1"); // what slicers take for a printer of this protocol
}

} // namespace zyprinter
