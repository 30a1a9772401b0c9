// SPDX-FileCopyrightText: 2026 The libzyWebsocket authors
// SPDX-License-Identifier: MIT
// The print parameters, with the printer's current values.

#ifndef PANEL_PARAMETERFORM_H
#define PANEL_PARAMETERFORM_H

#include <printerstatus.h>

#include <QGroupBox>
#include <QMap>

class QLabel;
class QLineEdit;
class QPushButton;

namespace zypanel
{

/// A field follows the printer until it is edited; then both values are shown.
class ParameterForm : public QGroupBox
{
    Q_OBJECT

public:
    explicit ParameterForm(QWidget *parent = nullptr);

    void showValues(const zysession::Parameters &values);
    /// Applying makes sense only while the printer listens.
    void setApplicable(bool isApplicable);
    zysession::Parameters entered() const;

Q_SIGNALS:
    void applyRequested(const zysession::Parameters &values);

private:
    struct Field {
        QLineEdit *edit;
        QLabel *current;
        bool isEdited;
    };

    void addField(const QString &key);
    void apply();
    void revert();
    void updateField(const QString &key);
    void updateButtons();

    QMap<QString, Field> m_fields;
    zysession::Parameters m_values;
    bool m_isApplicable = false;
    QPushButton *m_apply;
    QPushButton *m_revert;
};

} // namespace zypanel

#endif // PANEL_PARAMETERFORM_H
