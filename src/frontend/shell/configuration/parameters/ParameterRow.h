#pragma once

#include "widgets/ResettableRow.h"

/// One row of the parameters' page.
class ParameterRow : public ResettableRow {
    Q_OBJECT
public:
    ParameterRow(const QString& label, const QString& tip, const QString& help, QWidget* control,
                 QWidget* parent = nullptr);

    void setTip(const QString& tip);
    /// Whether label, tip or explanation contain the text in any case.
    bool matches(const QString& text) const;

private:
    QString m_words;
    QString m_tip;
};
