#pragma once

#include <QString>

/// What an answer of text moderation means: `reply` is JSON with "Data", in which "RiskLevel" says how risky
/// the text is. An answer without it, or one that is no JSON, refuses nothing.
namespace ModerationVerdict {

bool isRefused(const QString& reply);

}  // namespace ModerationVerdict
