// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// Asks for the name under which a printer is saved.

#include "savedialog.h"

#include "formatting.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace zypanel
{

namespace
{

/// A name that may be saved, made of the announced one where there is none yet.
QString suggestion(const zysession::Printer &printer)
{
    if (!printer.name.isEmpty())
        return printer.name;
    QString name;
    for (const QChar c : printer.announcedName)
        name += zysession::isPrinterName(c) ? c : QLatin1Char('-');
    return name;
}

} // namespace

SaveDialog::SaveDialog(const zysession::Printer &printer, const zysession::SavedPrinters &saved,
                       QWidget *parent)
    : QDialog(parent), m_printer(printer), m_saved(saved),
      m_name(new QLineEdit(suggestion(printer))),
      m_withToken(new QCheckBox(tr("Save the access &token, too"))), m_hint(new QLabel),
      m_buttons(new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel))
{
    setObjectName(QStringLiteral("nameDialog"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Save printer"));
    m_name->setObjectName(QStringLiteral("printerName"));
    m_name->setAccessibleName(tr("Name"));
    m_withToken->setObjectName(QStringLiteral("withToken"));
    m_withToken->setChecked(!printer.token.isEmpty());
    m_withToken->setVisible(!printer.token.isEmpty());
    m_hint->setObjectName(QStringLiteral("nameHint"));
    m_hint->setWordWrap(true);
    m_hint->setTextFormat(Qt::PlainText);
    layOut();
    connect(m_name, &QLineEdit::textChanged, this, &SaveDialog::check);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_buttons, &QDialogButtonBox::accepted, this, [this] {
        Q_EMIT this->saved(entered());
        accept();
    });
    check();
}

void SaveDialog::layOut()
{
    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(tr("&Name for %1:").arg(shortened(m_printer.url.toString())));
    label->setBuddy(m_name);
    layout->addWidget(label);
    layout->addWidget(m_name);
    layout->addWidget(m_withToken);
    layout->addWidget(m_hint);
    layout->addWidget(m_buttons);
    // For the longest hint, so that nothing moves while a name is typed.
    m_hint->setMinimumHeight(m_hint->fontMetrics().lineSpacing() * 3);
    m_hint->setMinimumWidth(m_hint->fontMetrics().averageCharWidth() * 44);
}

zysession::Printer SaveDialog::entered() const
{
    zysession::Printer printer = m_printer;
    printer.name = m_name->text().trimmed();
    if (!m_withToken->isChecked())
        printer.token.clear();
    return printer;
}

void SaveDialog::check()
{
    const QString name = entered().name;
    const zysession::Printer other = m_saved.find(name);
    const bool isName = zysession::isPrinterName(name);
    const bool replaces = !other.name.isEmpty() && other.url != m_printer.url;
    QString hint;
    if (replaces)
        hint = tr("This name is that of the printer at %1, which is replaced.")
                   .arg(shortened(other.url.toString()));
    else if (!isName)
        hint = tr("Letters, digits, “-” and “_”, at most 64.");
    m_hint->setText(hint);
    QPushButton *save = m_buttons->button(QDialogButtonBox::Save);
    save->setText(replaces ? tr("&Replace") : tr("&Save"));
    save->setEnabled(isName);
    save->setDefault(!replaces);
    // Enter does not replace anything.
    m_buttons->button(QDialogButtonBox::Cancel)->setDefault(replaces);
}

} // namespace zypanel
