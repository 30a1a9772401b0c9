// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The window around the panel: menus, its place on the screen, and what closing it means.

#include "mainwindow.h"

#include "confirmation.h"
#include "notice.h"
#include "printerpanel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeySequence>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>

namespace zypanel
{

namespace
{

const QLatin1String geometryKey{"window/geometry"};

} // namespace

MainWindow::MainWindow(QWidget *parent) : QMainWindow(parent), m_panel(new PrinterPanel)
{
    setObjectName(QStringLiteral("mainWindow"));
    setCentralWidget(m_panel);
    connect(m_panel, &PrinterPanel::headlineChanged, this, &MainWindow::showHeadline);
    connect(m_panel, &PrinterPanel::attentionWanted, this, &MainWindow::notify);
    connect(m_panel, &PrinterPanel::transferringChanged, this, [this] {
        if (m_question)
            m_question->close();
    });
    showHeadline({});
    buildMenus();
    restorePlace();
}

void MainWindow::buildMenus()
{
    auto *file = menuBar()->addMenu(tr("Fi&le"));
    auto *choose = file->addAction(tr("&Choose a model…"), m_panel, &PrinterPanel::chooseFile);
    choose->setShortcut(QKeySequence::Open);
    file->addSeparator();
    auto *quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    quit->setMenuRole(QAction::QuitRole);
    auto *help = menuBar()->addMenu(tr("&Help"));
    auto *about = help->addAction(tr("&About"), this, &MainWindow::showAbout);
    about->setMenuRole(QAction::AboutRole);
}

void MainWindow::restorePlace()
{
    if (!restoreGeometry(QSettings().value(geometryKey).toByteArray()))
        resize(QSize(fontMetrics().averageCharWidth() * 150, fontMetrics().height() * 42)
                   .boundedTo(screen()->availableSize()));
}

void MainWindow::showHeadline(const QString &headline)
{
    const QString name = tr("Printer panel");
    setWindowTitle(headline.isEmpty() ? name : QStringLiteral("%1 – %2").arg(headline, name));
}

void MainWindow::notify(const Notice &notice)
{
    if (isActiveWindow())
        return;
    QApplication::alert(this);
    m_notifier.show(windowTitle(), notice.text, notice.severity == Severity::Error);
}

void MainWindow::showAbout()
{
    const QString text = tr("Printer panel %1").arg(QApplication::applicationVersion());
    auto *box = new QMessageBox(QMessageBox::Information, tr("About"), text, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setInformativeText(
        tr("Sends sliced models to a networked resin printer and runs its prints."));
    box->open();
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (m_panel->isTransferring()) {
        event->ignore();
        m_question = confirm(this,
                             {tr("Quit"), tr("A file is still being sent. Quit?"),
                              tr("Sending the same file again later resumes it."), tr("&Quit"),
                              tr("&Go on sending")},
                             [this] {
                                 m_panel->disconnectFromPrinter();
                                 close();
                             });
        return;
    }
    m_panel->disconnectFromPrinter();
    QSettings().setValue(geometryKey, saveGeometry());
    event->accept();
}

} // namespace zypanel
