// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print parameters, with the printer's current values.

#include "parameterform.h"

#include "words.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace zypanel
{

using zysession::Parameters;

ParameterForm::ParameterForm(QWidget *parent)
    : QGroupBox(tr("Print parameters"), parent), m_apply(new QPushButton(tr("Appl&y"))),
      m_revert(new QPushButton(tr("Un&do")))
{
    auto *form = new QFormLayout;
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    for (const QString &key : parameterOrder())
        addField(key);
    for (const QString &key : parameterOrder()) {
        auto *row = new QHBoxLayout;
        row->addWidget(m_fields[key].edit, 1);
        row->addWidget(m_fields[key].current);
        auto *label = new QLabel(parameterTerms(key).title);
        label->setBuddy(m_fields[key].edit);
        form->addRow(label, row);
    }
    setToolTip(tr("In the printer's own units, which it does not name"));
    setAccessibleDescription(toolTip());
    m_apply->setObjectName(QStringLiteral("applyParameters"));
    m_revert->setObjectName(QStringLiteral("revertParameters"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_revert);
    buttons->addWidget(m_apply);
    layout->addLayout(buttons);
    layout->addStretch(1);
    connect(m_apply, &QPushButton::clicked, this, &ParameterForm::apply);
    connect(m_revert, &QPushButton::clicked, this, &ParameterForm::revert);
    updateButtons();
}

void ParameterForm::addField(const QString &key)
{
    Field field{new QLineEdit, new QLabel, false};
    field.edit->setObjectName(key);
    field.edit->setAccessibleName(parameterTerms(key).title);
    field.current->setTextFormat(Qt::PlainText);
    field.current->setForegroundRole(QPalette::PlaceholderText);
    field.current->hide();
    m_fields.insert(key, field);
    connect(field.edit, &QLineEdit::textEdited, this, [this, key] {
        m_fields[key].isEdited = true;
        updateField(key);
        updateButtons();
    });
    connect(field.edit, &QLineEdit::returnPressed, this, [this] {
        if (m_apply->isEnabled())
            apply();
    });
}

void ParameterForm::showValues(const Parameters &values)
{
    m_values = values;
    for (const QString &key : parameterOrder())
        updateField(key);
    updateButtons();
}

void ParameterForm::setApplicable(bool isApplicable)
{
    m_isApplicable = isApplicable;
    updateButtons();
}

Parameters ParameterForm::entered() const
{
    Parameters values;
    for (auto it = m_fields.begin(); it != m_fields.end(); ++it)
        values.insert(it.key(), it->edit->text().trimmed());
    return values;
}

void ParameterForm::updateField(const QString &key)
{
    Field &field = m_fields[key];
    const QString value = m_values.value(key);
    if (field.edit->text() == value)
        field.isEdited = false;
    if (!field.isEdited)
        field.edit->setText(value);
    field.current->setText(tr("now %1").arg(value));
    field.current->setVisible(field.isEdited && !value.isEmpty());
}

/// From here on the fields follow the printer again, so that they show what it has made of them.
void ParameterForm::apply()
{
    const Parameters values = entered();
    for (Field &field : m_fields)
        field.isEdited = false;
    updateButtons();
    Q_EMIT applyRequested(values);
}

void ParameterForm::revert()
{
    for (Field &field : m_fields)
        field.isEdited = false;
    showValues(m_values);
}

void ParameterForm::updateButtons()
{
    const bool isEdited = std::any_of(m_fields.cbegin(), m_fields.cend(),
                                      [](const Field &field) { return field.isEdited; });
    // The printer would take an empty field as a value.
    const bool isComplete
        = std::none_of(m_fields.cbegin(), m_fields.cend(),
                       [](const Field &field) { return field.edit->text().trimmed().isEmpty(); });
    m_apply->setEnabled(m_isApplicable && isEdited && isComplete);
    m_revert->setEnabled(isEdited);
}

} // namespace zypanel
