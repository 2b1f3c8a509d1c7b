#pragma once

#include <QWidget>

namespace Fenk {
class LineEdit;
}

/// The fields for the PackageMaintainer. Proposes the last one, and the name of the user's account before
/// there was one.
class MaintainerFields : public QWidget {
    Q_OBJECT

public:
    explicit MaintainerFields(QWidget* parent = nullptr);

    Fenk::LineEdit* address() const { return m_address; }
    /// In the user's language; empty without an error.
    QString addressError() const;
    void remember() const;

private:
    Fenk::LineEdit* m_name;
    Fenk::LineEdit* m_address;
};
