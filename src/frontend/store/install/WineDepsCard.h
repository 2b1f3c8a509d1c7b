#pragma once

#include <QMap>

#include "fenk/controls/Card.h"

class QPushButton;

/// The packages that a set-up lacks, a link for each. Hidden when there is none.
class WineDepsCard : public Fenk::Card {
    Q_OBJECT
public:
    explicit WineDepsCard(QWidget* parent = nullptr);

    /// Exactly these; a link that is already there stays.
    void showPackages(const QStringList& packages);
    /// What is being done for a package that is listed; plain text.
    void setState(const QString& package, const QString& text);
    QStringList packages() const { return m_links.keys(); }

Q_SIGNALS:
    void clicked(const QString& package);

private:
    void add(const QString& package);

    QMap<QString, QPushButton*> m_links;
};
