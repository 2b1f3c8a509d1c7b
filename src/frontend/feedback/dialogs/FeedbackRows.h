#pragma once

#include <QWidget>

#include "feedback/dialogs/FeedbackForm.h"

class ImageUploads;
class IssueTypeChoice;
class QGridLayout;
class QPlainTextEdit;
class UploadedImages;

namespace Fenk {
class LineEdit;
}

/// The rows of the feedback form.
class FeedbackRows : public QWidget {
    Q_OBJECT
public:
    FeedbackRows(ImageUploads* uploads, bool hasService, QWidget* parent = nullptr);

    /// The texts without blanks around them.
    FeedbackForm form() const;
    /// Fill fields that are still empty.
    void proposeAppName(const QString& name);
    void proposeAppVersion(const QString& version);
    void proposeDownloadUrl(const QString& url);

    IssueTypeChoice* types() const { return m_types; }
    UploadedImages* images() const { return m_images; }
    QWidget* description() const;
    Fenk::LineEdit* contact() const { return m_contact; }

Q_SIGNALS:
    void changed();

private:
    void addRow(const QString& label, QWidget* control, const QString& tip = {});
    Fenk::LineEdit* makeLine(const char* objectName, int maximum);

    QGridLayout* m_grid;
    IssueTypeChoice* m_types;
    QPlainTextEdit* m_description;
    Fenk::LineEdit* m_appName;
    Fenk::LineEdit* m_appVersion;
    Fenk::LineEdit* m_downloadUrl;
    UploadedImages* m_images;
    Fenk::LineEdit* m_contact;
};
