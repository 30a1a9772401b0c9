// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print parameters, with the printer's current values.

#ifndef PANEL_PARAMETERFORM_H
#define PANEL_PARAMETERFORM_H

#include <printerstatus.h>

#include <QGroupBox>
#include <QMap>

class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zypanel
{

/// A field follows the printer until it is edited; then the printer's value stands beside it, or
/// the range where the entered one is outside. Numbers are written as the user's locale does.
class ParameterForm : public QGroupBox
{
    Q_OBJECT

public:
    explicit ParameterForm(QWidget *parent = nullptr);

    void showValues(const zysession::Parameters &values);
    /// Nothing is known any more, nor was anything entered.
    void forget();
    /// Applying makes sense only while the printer listens.
    void setApplicable(bool isApplicable);

Q_SIGNALS:
    /// The edited ones, as the printer takes them.
    void applyRequested(const zysession::Parameters &values);

private:
    struct Field {
        QLineEdit *edit;
        QLabel *hint;
        bool isEdited;
    };

    void addField(const QString &key, QFormLayout *form);
    void apply();
    void revert();
    void updateField(const QString &key);
    void updateButtons();
    /// What was entered, as the printer takes it; empty when it is no number or out of range.
    QString enteredValue(const QString &key) const;

    QMap<QString, Field> m_fields;
    zysession::Parameters m_values;
    bool m_isApplicable = false;
    QPushButton *m_apply;
    QPushButton *m_revert;
};

} // namespace zypanel

#endif // PANEL_PARAMETERFORM_H
