#pragma once

#include "fenk/window/Dialog.h"
#include "packaging/manifest/ManifestForm.h"

class AliyunGreenApi;
class ManifestExporter;
class ManifestFormRows;
struct BusResult;
struct ProgramRef;

namespace Fenk {
class Label;
}

/// Asks what others should know of a program, exports its bottle as a manifest and shows the file in the file
/// manager. The answers are remembered in the bottle; of those for another program only the contributor is
/// proposed. Nothing waits for the store, for moderation or for the
/// service; closing the dialog drops the export.
class ExportYamlDialog : public Fenk::Dialog {
    Q_OBJECT
public:
    ExportYamlDialog(const QString& bottleName, const QString& programUuid, QWidget* parent = nullptr);
    /// Takes over the moderation client.
    ExportYamlDialog(const QString& bottleName, const QString& programUuid, AliyunGreenApi* moderation,
                     QWidget* parent);

    /// Opens a dialog that deletes itself.
    static void openFor(const ProgramRef& program, QWidget* over);

protected:
    void showEvent(QShowEvent* event) override;

private:
    using Problem = ManifestFormRules::Problem;
    static QString textOf(Problem problem);
    ManifestForm form() const;
    void onRecord(const BusResult& result);
    void propose(ManifestForm known, const QString& name);
    void startExport();
    void onStep();
    void updateOk();
    void showStatus(const QString& text, bool isError = false);
    void warn(const QString& text);

    QString m_bottle;
    QString m_programUuid;
    QString m_bottlePath;  ///< empty until the service has told it
    ManifestFormRows* m_rows;
    ManifestExporter* m_exporter;
    Fenk::Label* m_status;
    int m_ok = 0;  ///< index of the button
};
