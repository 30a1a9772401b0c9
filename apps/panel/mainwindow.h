// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The window around the panel: menus, its place on the screen, and what closing it means.

#ifndef PANEL_MAINWINDOW_H
#define PANEL_MAINWINDOW_H

#include <QMainWindow>

namespace zypanel
{

class PrinterPanel;

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
    void showAbout();

    PrinterPanel *m_panel;
};

} // namespace zypanel

#endif // PANEL_MAINWINDOW_H
