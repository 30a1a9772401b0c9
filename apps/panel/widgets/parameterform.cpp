// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print parameters, with the printer's current values.

#include "parameterform.h"

#include "formatting.h"
#include "theme.h"
#include "words.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace zypanel
{

using zysession::Parameters;

namespace
{

QString rangeText(const ParameterTerms &terms)
{
    return ParameterForm::tr("%1 to %2").arg(numberText(terms.least), numberText(terms.most));
}

} // namespace

ParameterForm::ParameterForm(QWidget *parent)
    : QGroupBox(tr("Print parameters"), parent), m_apply(new QPushButton(tr("Appl&y"))),
      m_revert(new QPushButton(tr("Un&do")))
{
    auto *form = new QFormLayout;
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    for (const QString &key : parameterOrder())
        addField(key, form);
    m_apply->setObjectName(QStringLiteral("applyParameters"));
    m_revert->setObjectName(QStringLiteral("revertParameters"));
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(m_revert);
    buttons->addWidget(m_apply);
    layout->addLayout(buttons);
    connect(m_apply, &QPushButton::clicked, this, &ParameterForm::apply);
    connect(m_revert, &QPushButton::clicked, this, &ParameterForm::revert);
    updateButtons();
}

void ParameterForm::addField(const QString &key, QFormLayout *form)
{
    const ParameterTerms terms = parameterTerms(key);
    const Field field{new QLineEdit, new QLabel, false};
    field.edit->setObjectName(key);
    field.edit->setAccessibleName(terms.unit.isEmpty()
                                      ? terms.title
                                      : QStringLiteral("%1 (%2)").arg(terms.title, terms.unit));
    field.edit->setToolTip(terms.unit.isEmpty()
                               ? rangeText(terms)
                               : QStringLiteral("%1 %2").arg(rangeText(terms), terms.unit));
    field.edit->setMinimumWidth(fontMetrics().averageCharWidth() * 9);
    field.hint->setObjectName(key + QStringLiteral("Hint"));
    field.hint->setTextFormat(Qt::PlainText);
    field.hint->hide();
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

    auto *row = new QHBoxLayout;
    row->addWidget(field.edit, 1);
    auto *unit = new QLabel(terms.unit);
    unit->setMinimumWidth(fontMetrics().horizontalAdvance(tr("mm/min", "the widest unit")));
    row->addWidget(unit);
    row->addWidget(field.hint);
    auto *label = new QLabel(terms.title);
    label->setBuddy(field.edit);
    form->addRow(label, row);
}

void ParameterForm::showValues(const Parameters &values)
{
    m_values = values;
    for (auto it = m_fields.cbegin(); it != m_fields.cend(); ++it)
        updateField(it.key());
    updateButtons();
}

void ParameterForm::forget()
{
    m_values.clear();
    revert();
}

void ParameterForm::setApplicable(bool isApplicable)
{
    m_isApplicable = isApplicable;
    updateButtons();
}

QString ParameterForm::enteredValue(const QString &key) const
{
    const ParameterTerms terms = parameterTerms(key);
    const std::optional<double> value = numberIn(m_fields[key].edit->text());
    const bool isGood = value && *value >= terms.least && *value <= terms.most
        && (!terms.isWhole || std::floor(*value) == *value);
    return isGood ? QString::number(*value, 'g', 10) : QString();
}

void ParameterForm::updateField(const QString &key)
{
    Field &field = m_fields[key];
    const QString current = m_values.value(key);
    const QString entered = enteredValue(key);
    if (field.edit->text().trimmed() == localText(current)
        || (!entered.isEmpty() && zysession::isSameValue(entered, current)))
        field.isEdited = false;
    if (!field.isEdited && !(field.edit->hasFocus() && zysession::isSameValue(entered, current)))
        field.edit->setText(localText(current));
    const bool isFaulty = field.isEdited && entered.isEmpty();
    QPalette colors = palette();
    colors.setColor(QPalette::WindowText,
                    isFaulty ? severityColor(Severity::Error, colors) : quietTextColor(colors));
    field.hint->setPalette(colors);
    field.hint->setText(isFaulty ? rangeText(parameterTerms(key))
                                 : tr("now %1").arg(localText(current)));
    field.hint->setVisible(isFaulty || (field.isEdited && !current.isEmpty()));
}

/// From here on the fields follow the printer again, so that they show what it has made of them.
void ParameterForm::apply()
{
    Parameters values;
    for (auto it = m_fields.begin(); it != m_fields.end(); ++it) {
        if (it->isEdited)
            values.insert(it.key(), enteredValue(it.key()));
        it->isEdited = false;
        it->hint->hide();
    }
    updateButtons();
    Q_EMIT applyRequested(values);
}

void ParameterForm::revert()
{
    for (Field &field : m_fields) {
        field.isEdited = false;
        field.edit->clear();
    }
    showValues(m_values);
}

void ParameterForm::updateButtons()
{
    bool isEdited = false;
    bool isFaulty = false;
    for (auto it = m_fields.cbegin(); it != m_fields.cend(); ++it) {
        isEdited = isEdited || it->isEdited;
        isFaulty = isFaulty || (it->isEdited && enteredValue(it.key()).isEmpty());
    }
    m_apply->setEnabled(m_isApplicable && isEdited && !isFaulty);
    m_revert->setEnabled(isEdited);
}

} // namespace zypanel
