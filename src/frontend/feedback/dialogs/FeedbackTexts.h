#pragma once

#include "feedback/dialogs/FeedbackForm.h"
#include "feedback/dialogs/FeedbackSubmission.h"
#include "feedback/dialogs/ReportPicture.h"

/// What the feedback dialog says, in the user's language.
namespace FeedbackTexts {

/// Empty for the idle step and for no problem.
QString stepText(FeedbackSubmission::Step step);
QString problemText(FeedbackRules::Problem problem);
/// Why a picture was not taken.
QString refusalText(const ReportPicture& picture);

}  // namespace FeedbackTexts
