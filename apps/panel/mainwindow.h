// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The window around the panel: menus, its place on the screen, and what closing it means.

#ifndef PANEL_MAINWINDOW_H
#define PANEL_MAINWINDOW_H

#include "desktopnotifier.h"

#include <QMainWindow>
#include <QPointer>

class QMessageBox;

namespace zypanel
{

class PrinterPanel;
struct Notice;

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);

    PrinterPanel *panel() const { return m_panel; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void buildMenus();
    void restorePlace();
    void showHeadline(const QString &headline);
    void notify(const Notice &notice);
    void showAbout();

    PrinterPanel *m_panel;
    DesktopNotifier m_notifier;
    QPointer<QMessageBox> m_question;
};

} // namespace zypanel

#endif // PANEL_MAINWINDOW_H
