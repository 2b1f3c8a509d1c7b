#pragma once

#include <QVector>
#include <QWidget>

#include "packaging/manifest/ManifestForm.h"

class CategoryChoice;
class IntroductionEdit;
class QLabel;

namespace Fenk {
class LineEdit;
}

/// The rows of the export's form, made from a table: a label and a control each.
class ManifestFormRows : public QWidget {
    Q_OBJECT
public:
    explicit ManifestFormRows(QWidget* parent = nullptr);

    /// What is typed; bottle and program are empty.
    ManifestForm values() const;
    /// Fills the fields that are empty.
    void propose(const ManifestForm& form);
    /// The program's icon; a file without a picture gives the generic one.
    void setLogo(const QString& file);
    CategoryChoice* categories() const { return m_category; }

Q_SIGNALS:
    void changed();

private:
    struct Field {
        Fenk::LineEdit* edit;
        QString ManifestForm::*value;
    };
    QWidget* makeControl(int row);
    QWidget* makeLine(int row);
    void showLogo();

    QVector<Field> m_fields;
    QLabel* m_logo = nullptr;
    IntroductionEdit* m_introduction = nullptr;
    CategoryChoice* m_category = nullptr;
    QString m_logoFile;
};
