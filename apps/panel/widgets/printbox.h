// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print: what the printer is doing, layers, and the buttons to start, pause and stop.

#ifndef PANEL_PRINTBOX_H
#define PANEL_PRINTBOX_H

#include "layerhistory.h"
#include "printercontrol.h"

#include <QElapsedTimer>
#include <QGroupBox>
#include <QPointer>
#include <QTimer>

class QComboBox;
class QLabel;
class QMessageBox;
class QProgressBar;
class QPushButton;

namespace zypanel
{

class ElidedLabel;
class LayerPlot;

class PrintBox : public QGroupBox
{
    Q_OBJECT

public:
    /// @p control must outlive the box; connect its changes to refresh().
    explicit PrintBox(const PrinterControl &control, QWidget *parent = nullptr);

    void showStatus(const zysession::PrinterStatus &status);
    /// Something else about the printer has changed.
    void refresh();
    /// What is known of a printer does not hold for another one.
    void forget();
    /// Offers @p name for printing.
    void addFile(const QString &name);
    /// Of the job, rounded down; negative without one.
    int percentage() const;

Q_SIGNALS:
    void startRequested(const QString &name);
    void pauseRequested();
    void stopRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    using Link = PrinterControl::Link;

    void buildLabels();
    void buildButtons();
    void layOut();
    QString titleText() const;
    Severity titleSeverity() const;
    QString ageText() const;
    bool isKnown() const;
    void updateTitle();
    void updateJob();
    void updatePlot();
    void updateButtons();
    void pauseOrContinue();
    void askToStop();

    const PrinterControl &m_control;
    LayerHistory m_history;
    QElapsedTimer m_clock;
    QTimer m_tick; ///< while a job runs: the plot goes on

    ElidedLabel *m_title;
    ElidedLabel *m_job;
    ElidedLabel *m_material; ///< layers and resin
    ElidedLabel *m_remaining;
    QProgressBar *m_layers;
    LayerPlot *m_plot;
    QComboBox *m_file;
    QPushButton *m_start;
    QPushButton *m_pause;
    QPushButton *m_stop;
    QPointer<QMessageBox> m_question;
    QString m_asked; ///< the job that the question is about
};

} // namespace zypanel

#endif // PANEL_PRINTBOX_H
