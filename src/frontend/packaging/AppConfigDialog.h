#pragma once

#include <QTimer>

#include "fenk/window/AbstractDialog.h"
#include "packaging/config/PackageInfo.h"

class MaintainerFields;
class PackageChecker;
class PackageContentsWidget;
struct ProgramRef;
class QAbstractButton;
class QCheckBox;
class QComboBox;
class QScrollArea;
class QVBoxLayout;

namespace Fenk {
class Label;
class LineEdit;
}  // namespace Fenk

/// What a package is and which programs go into it; tells what goes along before that is packed. OK saves
/// both files of the package's configuration and opens the DoPackageDialog; what cannot be saved is told, and
/// the dialog stays. The checker must outlive the dialog.
class AppConfigDialog : public Fenk::AbstractDialog {
    Q_OBJECT

public:
    AppConfigDialog(const QString& bottleName, PackageChecker* checker, QWidget* parent = nullptr);

    /// Opens a form that deletes itself, and asks the service for the programs of the bottle.
    static void openFor(const ProgramRef& program, QWidget* over);

    PackageInfo info() const;

public Q_SLOTS:
    void onAppConfigOK();
    void onAppConfigCancle();
    /// Shows what is wrong at the fields; returns whether nothing is.
    bool slotsValidateWidgets();
    /// One architecture stays checked.
    void slotsCheckArchsState();

Q_SIGNALS:
    /// The form has changed.
    void dateChange();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addRow(const QString& label, QWidget* field, const QString& rule = {});
    Fenk::LineEdit* makeEdit(const char* name, const QString& sample, int maximumLength);
    QWidget* makeArchitectures();
    QWidget* makeButtons();
    void fill();
    void setInfo(const PackageInfo& info);
    void fitHeight();
    void onListed();
    void listContents();
    bool isNameTaken() const;  ///< by what the packing script knows of other packages
    void warnOfName();
    /// Why the text of a field is refused.
    QString errorOf(const Fenk::LineEdit* edit) const;
    void showTypedErrors();
    void startPackaging();
    void onSaveFailed();

    QString m_bottleName;
    PackageChecker* m_checker;
    QScrollArea* m_area;
    QVBoxLayout* m_rows;
    Fenk::LineEdit* m_appName;
    Fenk::LineEdit* m_packageName;
    Fenk::LineEdit* m_version;
    QComboBox* m_category;
    Fenk::LineEdit* m_description;
    QCheckBox* m_x86;
    QCheckBox* m_arm;
    MaintainerFields* m_maintainer;
    Fenk::Label* m_nameWarning;
    PackageContentsWidget* m_contents;
    QAbstractButton* m_ok = nullptr;
    QTimer m_typing;  ///< runs for a moment after a key
    bool m_isFilled = false;
    bool m_isCategoryChosen = false;  ///< by the user
    bool m_areArchitecturesChosen = false;
};
