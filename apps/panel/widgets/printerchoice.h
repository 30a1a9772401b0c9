// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The field for a printer: typed, or chosen from those saved and those found on the network.

#ifndef PANEL_PRINTERCHOICE_H
#define PANEL_PRINTERCHOICE_H

#include <foundprinter.h>
#include <savedprinters.h>

#include <QComboBox>

namespace zypanel
{

class PrinterChoice : public QComboBox
{
    Q_OBJECT

public:
    explicit PrinterChoice(QWidget *parent = nullptr);

    /// What is being typed stays as it is.
    void offer(const QVector<zysession::Printer> &saved,
               const QVector<zydiscovery::FoundPrinter> &found);

private:
    void addFound(const QVector<zysession::Printer> &saved,
                  const QVector<zydiscovery::FoundPrinter> &found);
};

} // namespace zypanel

#endif // PANEL_PRINTERCHOICE_H
