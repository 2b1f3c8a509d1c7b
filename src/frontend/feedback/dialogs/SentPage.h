#pragma once

#include <QWidget>

#include "feedback/dialogs/FeedbackForm.h"

class ImageUploads;
class QCheckBox;
class ReportFacts;
class SentPreview;
struct SentPart;

namespace Fenk {
class Label;
}

/// The page "What is sent" of a report: every field, what goes with each request, every picture and every
/// log, and what has gone already.
class SentPage : public QWidget {
    Q_OBJECT
public:
    SentPage(bool hasService, bool hasLogs, QWidget* parent = nullptr);

    /// `canSave` where a report that is to be sent can be saved, too.
    void update(const FeedbackForm& form, const ReportFacts& facts, const ImageUploads& uploads,
                bool canSave);
    /// The user wants the logs to go with the report.
    bool takesLogs() const;

Q_SIGNALS:
    void changed();

private:
    void tellHow(const ImageUploads& uploads, bool canSave);

    const bool m_hasService;
    Fenk::Label* m_text;
    Fenk::Label* m_sent;  ///< what has gone already
    QCheckBox* m_logs;
    SentPreview* m_preview;
};

/// What a report that is saved to a file holds as report.json: the report, with the names of the pictures'
/// files for their keys, and the headers of a request but for the id of this machine.
QByteArray savedReport(const FeedbackForm& form, const ReportFacts& facts, const QStringList& pictures,
                       bool hasLogs);
