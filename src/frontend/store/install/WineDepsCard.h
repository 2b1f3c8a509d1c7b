#pragma once

#include <QMap>

#include "fenk/controls/Card.h"

class QPushButton;

/// The packages that a set-up lacks, a link for each. Hidden when there is none.
class WineDepsCard : public Fenk::Card {
    Q_OBJECT
public:
    explicit WineDepsCard(QWidget* parent = nullptr);

    /// Logs a package that is already listed.
    void add(const QString& package);
    void remove(const QString& package);
    /// What is being done for a package that is listed; plain text.
    void setState(const QString& package, const QString& text);
    QStringList packages() const { return m_links.keys(); }

Q_SIGNALS:
    void clicked(const QString& package);

private:
    QMap<QString, QPushButton*> m_links;
};
