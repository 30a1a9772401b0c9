// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print: what the printer is doing, layers, and the buttons to start, pause and stop.

#ifndef PANEL_PRINTBOX_H
#define PANEL_PRINTBOX_H

#include "layerhistory.h"
#include "printercontrol.h"

#include <QElapsedTimer>
#include <QGroupBox>

class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace zypanel
{

class LayerPlot;

class PrintBox : public QGroupBox
{
    Q_OBJECT

public:
    explicit PrintBox(QWidget *parent = nullptr);

    void showLink(PrinterControl::Link link);
    void showStatus(const zysession::PrinterStatus &status);
    /// Offers @p name for printing.
    void addFile(const QString &name);

Q_SIGNALS:
    void startRequested(const QString &name);
    void pauseRequested();
    void stopRequested();

protected:
    void changeEvent(QEvent *event) override;

private:
    void buildLabels();
    void buildButtons();
    void layOut();
    void updateTitle();
    void updateJob();
    void updateButtons();
    void start();
    void askToStop();

    PrinterControl::Link m_link = PrinterControl::Link::Closed;
    zysession::PrinterStatus m_status;
    LayerHistory m_history;
    QElapsedTimer m_clock;

    QLabel *m_title;
    QLabel *m_job;
    QLabel *m_remaining;
    QProgressBar *m_layers;
    LayerPlot *m_plot;
    QComboBox *m_file;
    QPushButton *m_start;
    QPushButton *m_pause;
    QPushButton *m_stop;
};

} // namespace zypanel

#endif // PANEL_PRINTBOX_H
