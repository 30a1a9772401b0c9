// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The window as a person uses it: real clicks and keys on what is visible and enabled.

#ifndef WINDOWDRIVER_H
#define WINDOWDRIVER_H

#include "mainwindow.h"
#include "printercontrol.h"
#include "upload.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QString>

class WindowDriver
{
public:
    WindowDriver();

    zypanel::MainWindow &window() { return m_window; }
    zypanel::PrinterControl &control();
    zypanel::Upload &upload();

    /// A widget by its object name; ends the test program when there is none.
    template <typename Widget> Widget &find(const char *name)
    {
        auto *widget = m_window.findChild<Widget *>(QLatin1String(name));
        if (widget == nullptr)
            qFatal("no widget named %s", name);
        return *widget;
    }

    /// Waits until the button can be clicked, and clicks it; false when it never could.
    bool click(const char *button);
    /// Replaces the text of a field by typing.
    void type(const char *field, const QString &text);
    QString textOf(const char *label);
    /// What the strip at the top says; empty when nothing is wrong.
    QString notice();

    /// Types the address and clicks Connect; false when no connection came about.
    bool connectTo(const QString &address);
    /// Drops a file into the window; false when the window does not take it.
    bool drop(const QString &path);

    /// Waits for the state's heading.
    bool awaitTitle(const QString &title);
    bool awaitUpload(zypanel::Upload::State state);
    bool awaitLink(zypanel::PrinterControl::Link link);
    /// Waits for a line of the log that contains @p text.
    bool awaitEvent(const QString &text);

private:
    zypanel::MainWindow m_window;
};

#endif // WINDOWDRIVER_H
