// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Asks for the name under which a printer is saved.

#ifndef PANEL_SAVEDIALOG_H
#define PANEL_SAVEDIALOG_H

#include <savedprinters.h>

#include <QDialog>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace zypanel
{

/// Says beforehand when a name cannot be used, or when another printer has it.
class SaveDialog : public QDialog
{
    Q_OBJECT

public:
    /// @p printer with the name to begin with and the token that could be saved.
    SaveDialog(const zysession::Printer &printer, const zysession::SavedPrinters &saved,
               QWidget *parent);

Q_SIGNALS:
    void saved(const zysession::Printer &printer);

private:
    void layOut();
    void check();
    zysession::Printer entered() const;

    const zysession::Printer m_printer;
    const zysession::SavedPrinters m_saved;
    QLineEdit *m_name;
    QCheckBox *m_withToken;
    QLabel *m_hint;
    QDialogButtonBox *m_buttons;
};

} // namespace zypanel

#endif // PANEL_SAVEDIALOG_H
