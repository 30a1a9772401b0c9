// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The simulated machine: what it does, how far it is, how long it still takes.

#include "machine.h"

#include "modelreader.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zyprinter
{

namespace
{

constexpr double plateTrip = 10; // seconds that the plate takes to its upper end
constexpr qint64 longestStretch = 20; // ms of work before the event loop has its turn
constexpr double nsPerSecond = 1e9;
constexpr double msPerSecond = 1e3;

} // namespace

Machine::Machine(double speed, QObject *parent) : QObject(parent), m_speed(speed)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Machine::advance);
}

Machine::~Machine() = default;

bool Machine::isBusy() const
{
    return isMoving() || m_state == State::Checking || m_state == State::Paused;
}

bool Machine::isMoving() const
{
    return m_state == State::Printing || m_state == State::Pausing || m_state == State::Completing
        || m_state == State::Stopping;
}

void Machine::setState(State state)
{
    m_state = state;
    Q_EMIT stateChanged();
}

bool Machine::setParameter(PrintParameters::Id id, const QString &text)
{
    return m_parameters.set(id, text);
}

bool Machine::beginCheck(const QString &job)
{
    if (isBusy())
        return false;
    m_job = job;
    m_model.reset();
    m_layer = 0;
    setState(State::Checking);
    return true;
}

void Machine::abandonCheck()
{
    if (m_state == State::Checking)
        setState(State::Idle);
}

bool Machine::start(std::unique_ptr<zymodel::ModelReader> model)
{
    if (m_state != State::Checking)
        return false;
    m_model = std::move(model);
    m_parameters.recommend(m_model->header());
    setState(State::Printing);
    exposeNextLayer();
    return true;
}

bool Machine::pause()
{
    if (m_state != State::Printing)
        return false;
    setState(State::Pausing);
    return true;
}

bool Machine::resume()
{
    if (m_state == State::Pausing) {
        setState(State::Printing);
        return true;
    }
    if (m_state != State::Paused)
        return false;
    setState(State::Printing);
    exposeNextLayer();
    return true;
}

bool Machine::stop()
{
    if (m_state == State::Checking) {
        setState(State::Stopped);
        return true;
    }
    if (m_state != State::Printing && m_state != State::Pausing && m_state != State::Paused)
        return false;
    setState(State::Stopping);
    beginPhase(plateTrip);
    return true;
}

void Machine::fail(const QString &reason)
{
    m_timer.stop();
    m_failure = reason;
    setState(State::Failed);
}

void Machine::exposeNextLayer()
{
    if (m_layer == m_model->layerCount()) {
        setState(State::Completing);
        beginPhase(plateTrip);
        return;
    }
    ++m_layer;
    QByteArray mask;
    if (m_layer == m_failAt) {
        fail(QStringLiteral("layer %1: failure asked for by --fail-at").arg(m_layer));
    } else if (!m_model->readLayer(m_layer, mask)) {
        fail(m_model->error());
    } else {
        beginPhase(m_parameters.layerTime(m_layer)); // first: a slot may ask for remainingTime()
        Q_EMIT layerExposed(m_layer, mask);
    }
}

void Machine::beginPhase(double seconds)
{
    m_phaseLeft = seconds;
    m_sinceAdvance.start();
    m_timer.start(int(std::ceil(seconds / m_speed * msPerSecond)));
}

void Machine::endPhase()
{
    switch (m_state) {
    case State::Printing:
        exposeNextLayer();
        break;
    case State::Pausing:
        setState(State::Paused);
        break;
    case State::Completing:
        setState(State::Complete);
        break;
    case State::Stopping:
        setState(State::Stopped);
        break;
    default:
        break;
    }
}

/// At a high speed many phases end within one turn of the event loop.
void Machine::advance()
{
    double passed = double(m_sinceAdvance.nsecsElapsed()) / nsPerSecond * m_speed;
    QElapsedTimer stretch;
    stretch.start();
    while (isMoving() && passed >= m_phaseLeft) {
        passed -= m_phaseLeft;
        endPhase();
        if (stretch.elapsed() > longestStretch)
            passed = 0; // the machine falls behind rather than keep its slicers waiting
    }
    if (isMoving())
        beginPhase(std::max(0.0, m_phaseLeft - passed));
}

double Machine::phaseLeft() const
{
    const double passed = double(m_sinceAdvance.nsecsElapsed()) / nsPerSecond * m_speed;
    return std::max(0.0, m_phaseLeft - passed);
}

double Machine::remainingTime() const
{
    switch (m_state) {
    case State::Printing:
    case State::Pausing:
        return phaseLeft() + m_parameters.timeAfter(m_layer, m_model->layerCount()) + plateTrip;
    case State::Paused:
        return m_parameters.timeAfter(m_layer, m_model->layerCount()) + plateTrip;
    case State::Completing:
    case State::Stopping:
        return phaseLeft();
    default:
        return 0;
    }
}

} // namespace zyprinter
