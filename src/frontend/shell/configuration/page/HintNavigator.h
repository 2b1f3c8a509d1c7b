#pragma once

#include <QObject>

class BasicPage;
class BottleSettings;
class ConfigPages;
class DebuggingLogsView;
struct HintLink;

/// Follows the links of the hints: to a page, a component, a folder of the bottle, an address; and fixes
/// fonts. Does nothing for a link that it does not know. GUI thread; waits for nothing.
class HintNavigator : public QObject {
    Q_OBJECT
public:
    HintNavigator(BottleSettings* settings, ConfigPages* pages, BasicPage* basic, DebuggingLogsView* hints,
                  QObject* parent);

    void follow(const QUrl& anchor);

private:
    void fixFonts(const QStringList& names);
    void openFolder(const QString& path);
    void showRunner(const QString& runner);

    BottleSettings* m_settings;
    ConfigPages* m_pages;
    BasicPage* m_basic;
    DebuggingLogsView* m_hints;
};
