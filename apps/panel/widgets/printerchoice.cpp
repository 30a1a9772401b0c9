// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The field for a printer: typed, or chosen from those saved and those found on the network.

#include "printerchoice.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QStandardItemModel>

#include <algorithm>

namespace zypanel
{

using zydiscovery::FoundPrinter;
using zysession::Printer;

namespace
{

constexpr int addressRole = Qt::UserRole; // what a found printer's name stands for

} // namespace

PrinterChoice::PrinterChoice(QWidget *parent) : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(10);
    setAccessibleName(tr("Printer"));
    lineEdit()->setAccessibleName(accessibleName());
    setToolTip(tr("A saved name, a printer found on the network, or an address such as "
                  "ws://192.168.1.20:8080"));
    lineEdit()->setPlaceholderText(tr("ws://address:port or a saved name"));
    // The name alone could be that of a saved printer.
    connect(this, QOverload<int>::of(&QComboBox::activated), this, [this](int row) {
        const QString address = itemData(row, addressRole).toString();
        if (!address.isEmpty())
            setEditText(address);
    });
}

void PrinterChoice::offer(const QVector<Printer> &saved, const QVector<FoundPrinter> &found)
{
    const QString text = currentText();
    const int cursor = lineEdit()->cursorPosition();
    const QSignalBlocker blocker(this);
    clear();
    for (const Printer &printer : saved) {
        addItem(printer.name);
        setItemData(count() - 1, printer.url.toString(), Qt::ToolTipRole);
    }
    addFound(saved, found);
    setEditText(text);
    lineEdit()->setCursorPosition(cursor);
}

void PrinterChoice::addFound(const QVector<Printer> &saved, const QVector<FoundPrinter> &found)
{
    const int heading = count();
    for (const FoundPrinter &printer : found) {
        const auto isSame = [&](const Printer &other) { return other.url == printer.url; };
        if (std::any_of(saved.begin(), saved.end(), isSame))
            continue;
        addItem(printer.name.simplified(), zydiscovery::addressByName(printer.name));
        setItemData(count() - 1, printer.url.toString(), Qt::ToolTipRole);
    }
    if (count() == heading)
        return;
    // The dash keeps it from completing what is typed.
    insertItem(heading, tr("– found on the network –"));
    auto *items = qobject_cast<QStandardItemModel *>(model());
    items->item(heading)->setFlags(Qt::NoItemFlags);
}

} // namespace zypanel
