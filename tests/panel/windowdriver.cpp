// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The window as a person uses it: real clicks and keys on what is visible and enabled.

#include "windowdriver.h"

#include "eventlog.h"
#include "printerpanel.h"

#include <waiting.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QUrl>

using namespace zypanel;
using zytest::patience;

WindowDriver::WindowDriver()
{
    PrinterControl::Timing timing;
    timing.polling = 50;
    timing.firstPause = 50;
    control().setTiming(timing);
    m_window.show();
    if (!QTest::qWaitForWindowExposed(&m_window))
        qFatal("the window is not shown");
}

PrinterControl &WindowDriver::control()
{
    return *m_window.panel()->control();
}

Upload &WindowDriver::upload()
{
    return *m_window.panel()->upload();
}

bool WindowDriver::click(const char *button)
{
    auto &widget = find<QPushButton>(button);
    if (!QTest::qWaitFor([&] { return widget.isVisible() && widget.isEnabled(); }, patience))
        return false;
    QTest::mouseClick(&widget, Qt::LeftButton);
    return true;
}

void WindowDriver::type(const char *field, const QString &text)
{
    auto &widget = find<QWidget>(field);
    widget.setFocus();
    QTest::keySequence(&widget, QKeySequence::SelectAll);
    QTest::keyClick(&widget, Qt::Key_Delete);
    QTest::keyClicks(&widget, text);
}

QString WindowDriver::textOf(const char *label)
{
    return find<QLabel>(label).text();
}

QString WindowDriver::notice()
{
    return textOf("noticeText");
}

bool WindowDriver::connectTo(const QString &address)
{
    type("address", address);
    return click("connect") && awaitLink(PrinterControl::Link::Open);
}

bool WindowDriver::drop(const QString &path)
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    const QPoint middle = m_window.panel()->rect().center();
    QDragEnterEvent enter(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.setAccepted(false);
    QApplication::sendEvent(m_window.panel(), &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent drop(middle, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.panel(), &drop);
    return drop.isAccepted();
}

bool WindowDriver::awaitTitle(const QString &title)
{
    return QTest::qWaitFor([&] { return textOf("stateTitle") == title; }, patience);
}

bool WindowDriver::awaitUpload(Upload::State state)
{
    return QTest::qWaitFor([&] { return upload().state() == state; }, patience);
}

bool WindowDriver::awaitLink(PrinterControl::Link link)
{
    return QTest::qWaitFor([&] { return control().link() == link; }, patience);
}

bool WindowDriver::awaitEvent(const QString &text)
{
    return QTest::qWaitFor([&] { return find<EventLog>("eventLog").toPlainText().contains(text); },
                           patience);
}
