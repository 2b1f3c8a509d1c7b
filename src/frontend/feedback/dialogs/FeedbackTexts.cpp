#include "feedback/dialogs/FeedbackTexts.h"

#include <QStandardPaths>

#include "feedback/dialogs/FeedBackDialog.h"

QString FeedbackTexts::stepText(FeedbackSubmission::Step step) {
    using Step = FeedbackSubmission::Step;
    switch (step) {
        case Step::Collecting:
            return FeedBackDialog::tr("Collecting what is sent…");
        case Step::UploadingLogs:
            return FeedBackDialog::tr("Uploading the logs…");
        case Step::Sending:
            return FeedBackDialog::tr("Sending the report…");
        case Step::Idle:
            break;
    }
    return {};
}

QString FeedbackTexts::problemText(FeedbackRules::Problem problem) {
    using FeedbackRules::Problem;
    switch (problem) {
        case Problem::NoType:
            return FeedBackDialog::tr("Please select the issue type");
        case Problem::NoDescription:
            return FeedBackDialog::tr("Please describe the problem");
        case Problem::LongDescription:
            return FeedBackDialog::tr("The description has more than %1 characters")
                .arg(FeedbackRules::MaximumDescription);
        case Problem::ImageUnderWay:
            return FeedBackDialog::tr("The pictures are being uploaded…");
        case Problem::ImageFailed:
            return FeedBackDialog::tr("A picture could not be uploaded. Retry, or remove it");
        case Problem::None:
            break;
    }
    return {};
}

QString FeedbackTexts::refusalText(const ReportPicture& picture) {
    using Verdict = ReportPicture::Verdict;
    if (picture.verdict == Verdict::TooLarge)
        return FeedBackDialog::tr("The image size exceeds 2M not being uploaded, please reselect the image");
    if (picture.verdict == Verdict::NoPicture)
        return FeedBackDialog::tr("“%1” is not a picture of these kinds: jpg, jpeg, png, gif")
            .arg(picture.name);
    if (picture.verdict == Verdict::NoRoom)
        return FeedBackDialog::tr("There is no room for a copy of “%1” in %2")
            .arg(picture.name, QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation));
    return FeedBackDialog::tr("“%1” cannot be read").arg(picture.name);
}
