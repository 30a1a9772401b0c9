// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The simulated machine: what it does, how far it is, how long it still takes.

#ifndef MACHINE_H
#define MACHINE_H

#include "printparameters.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>

namespace zymodel
{
class ModelReader;
}

namespace zyprinter
{

/**
 * Prints a model in accelerated time, layer by layer, reading each layer from the model's file as
 * it is exposed.
 *
 * Idle -> Checking -> Printing -> Completing -> Complete, with Pausing and Paused on the way, and
 * Stopping, Stopped and Failed as the other ends. All times are the machine's own, in seconds; it
 * runs @p speed times as fast as a clock on the wall.
 */
class Machine : public QObject
{
    Q_OBJECT

public:
    enum class State {
        Idle,
        Checking, ///< a model is being checked before its print
        Printing,
        Pausing, ///< the layer being exposed is finished first
        Paused,
        Completing, ///< the last layer is done, the plate is going up
        Complete,
        Stopping, ///< the plate is going up
        Stopped,
        Failed,
    };
    Q_ENUM(State)

    explicit Machine(double speed, QObject *parent = nullptr);
    ~Machine() override;

    /// Makes a print fail at @p layer (from 1) on purpose; 0: at none.
    void setFailAt(int layer) { m_failAt = layer; }

    State state() const { return m_state; }
    /// A job is on the machine, so no other can start.
    bool isBusy() const;
    /// Name of the current or the last job.
    const QString &job() const { return m_job; }
    /// Of the current or the last print; null before the first.
    const zymodel::ModelReader *model() const { return m_model.get(); }
    /// The layer being exposed, or the last one that was; 0 before the first.
    int layer() const { return m_layer; }
    /// In seconds.
    double remainingTime() const;
    /// Why the last print failed.
    const QString &failure() const { return m_failure; }

    const PrintParameters &parameters() const { return m_parameters; }
    /// Sets a parameter from the next layer on; false when it is no number in its range.
    bool setParameter(PrintParameters::Id id, const QString &text);

    /// Takes the job on for its check; false while busy.
    bool beginCheck(const QString &job);
    /// The check went badly: back to idle.
    void abandonCheck();
    /// Starts printing after the check; false when not checking any more.
    bool start(std::unique_ptr<zymodel::ModelReader> model);
    bool pause(); ///< false unless printing
    bool resume(); ///< false unless pausing or paused
    bool stop(); ///< false when there is nothing to stop

Q_SIGNALS:
    void stateChanged();
    /// @p layer is being exposed; @p mask has one byte per pixel.
    void layerExposed(int layer, const QByteArray &mask);

private:
    void setState(State state);
    void beginPhase(double seconds);
    void endPhase();
    void exposeNextLayer();
    void fail(const QString &reason);
    bool isMoving() const;
    double phaseLeft() const;
    void advance();

    const double m_speed;
    int m_failAt = 0;
    State m_state = State::Idle;
    QString m_job;
    QString m_failure;
    std::unique_ptr<zymodel::ModelReader> m_model;
    int m_layer = 0;
    PrintParameters m_parameters;

    QTimer m_timer; ///< to the end of the phase: one layer, or one trip of the plate
    QElapsedTimer m_sinceAdvance;
    double m_phaseLeft = 0; ///< seconds, at the time of m_sinceAdvance
};

} // namespace zyprinter

#endif // MACHINE_H
