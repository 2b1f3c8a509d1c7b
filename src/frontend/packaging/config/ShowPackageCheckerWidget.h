#pragma once

#include <QMap>
#include <QScrollArea>

class PackageChecker;
class PackageEntryWidget;
class QPushButton;

namespace Fenk {
class Card;
class Label;
}  // namespace Fenk

/// The list of the programs of a PackageChecker, which must outlive it; follows its update().
class ShowPackageCheckerWidget : public QScrollArea {
    Q_OBJECT

public:
    explicit ShowPackageCheckerWidget(PackageChecker* checker, QWidget* parent = nullptr);

private:
    void showEntry(const QString& id);
    PackageEntryWidget* add(const QString& id);
    void fitHeight();
    void showState();
    void chooseDirectory(const QString& id);

    PackageChecker* m_checker;
    Fenk::Card* m_card;
    Fenk::Label* m_empty;
    QPushButton* m_retry;
    QWidget* m_stateRow;  ///< until there is an entry; has the two above
    QMap<QString, PackageEntryWidget*> m_rows;
};
