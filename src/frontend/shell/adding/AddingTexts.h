#pragma once

#include <QString>

/// The fixed texts of the page that adds programs. Their source language is Chinese: English is a translation
/// like any other, in cellarix_en.ts, which every session without a translation of its own gets.
namespace AddingTexts {

QString title();
QString run();
QString localTab();
QString localFormats();
QString localChoose();
QString localFilter();
QString onlineTab();
QString onlineAddress();
QString portableTab();
QString portableHint();
QString portableChoose();
QString dropHere();
QString checking();
QString isValid();
QString isInvalid();

}  // namespace AddingTexts
