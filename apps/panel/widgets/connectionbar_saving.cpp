// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The chosen printer is saved under a name, or forgotten.

#include "confirmation.h"
#include "connectionbar.h"
#include "elidedlabel.h"
#include "formatting.h"
#include "printerchoice.h"
#include "savedialog.h"

#include <utility>

namespace zypanel
{

using zysession::Printer;
using zysession::SettingsFault;

void ConnectionBar::askForName()
{
    Printer printer = this->printer();
    printer.token = token();
    auto *dialog = new SaveDialog(printer, m_saved, this);
    connect(dialog, &SaveDialog::saved, this, &ConnectionBar::save);
    dialog->open();
}

void ConnectionBar::save(const Printer &printer)
{
    if (report(m_saved.save(printer)))
        return;
    const bool wasTokenUsed = std::exchange(m_isTokenUsed, false);
    refreshNames();
    m_address->setEditText(printer.name);
    m_isTokenUsed = wasTokenUsed;
    m_name->setText(printer.description());
    Q_EMIT noticed({Severity::Info, Topic::SavedPrinters,
                    tr("The printer is saved as %1.").arg(printer.name)});
    Q_EMIT printerSaved(printer);
}

void ConnectionBar::askToForget()
{
    const Printer printer = this->printer();
    confirm(this,
            {tr("Forget the printer"), tr("Forget %1?").arg(printer.name),
             tr("Its address %1 and its access token are removed from the saved printers.")
                 .arg(shortened(printer.url.toString())),
             tr("&Forget"), tr("&Keep it")},
            [this, printer] { forget(printer); });
}

void ConnectionBar::forget(const Printer &printer)
{
    if (report(m_saved.remove(printer.name)))
        return;
    m_certificates.remove(keyOf(printer));
    refreshNames();
    m_address->setEditText(printer.url.toString());
    Q_EMIT noticed({Severity::Info, Topic::SavedPrinters,
                    tr("The printer %1 is no longer saved.").arg(printer.name)});
}

/// True when there is something to be said.
bool ConnectionBar::report(SettingsFault fault)
{
    if (fault == SettingsFault::None)
        return false;
    const QString text = fault == SettingsFault::NotWritable
        ? tr("The file of the saved printers cannot be written: %1")
        : tr("The file of the saved printers cannot be read: %1");
    Q_EMIT noticed({Severity::Error, Topic::SavedPrinters, text.arg(m_saved.file())});
    return true;
}

} // namespace zypanel
