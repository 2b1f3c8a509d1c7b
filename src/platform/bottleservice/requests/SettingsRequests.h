#pragma once

#include <QObject>

#include "bottleservice/result/Answer.h"

class BottleEngine;
class BottleYaml;
class RegistryChange;

/// The requests about the settings of bottles. bottle.yml has all settings. Switches, the renderer and DLL
/// overrides act through the environment of a launch; the others, and the overrides that the environment
/// cannot hold, are also written into the bottle's registry.
/// Owned by BottleService; lives in the main thread.
class SettingsRequests : public QObject {
    Q_OBJECT

public:
    explicit SettingsRequests(BottleEngine* engine, QObject* parent = nullptr);

    /// Finishes registry changes of a service that was killed. Call once, before the first request.
    void recover();

    void setDpi(const QString& bottle, int dpi, const Reply& reply);
    void setSwitch(const QString& bottle, const char* parameter, bool on, const Reply& reply);
    void setRenderer(const QString& bottle, const QString& renderer, const Reply& reply);
    void setWindowsVersion(const QString& bottle, const QString& code, const Reply& reply);
    void setEmulator(const QString& bottle, const QString& emulator, const Reply& reply);

    /// Answers with a JSON object, DLL name to load method.
    Answer listDllOverrides(const QString& bottle) const;
    void updateDllOverride(const QString& bottle, const QString& dll, const QString& method, bool remove,
                           const Reply& reply);

    /// Answers with a JSON object, font to replacement.
    Answer listFontReplacements(const QString& bottle) const;
    void addFontReplacement(const QString& bottle, const QString& font, const QString& replacement,
                            const Reply& reply);
    void removeFontReplacement(const QString& bottle, const QString& font, const Reply& reply);

private:
    void change(const QString& bottle, std::function<void(BottleYaml&)> change,
                const RegistryChange& registry, const Reply& reply);
    /// Replies with an error and returns true when the name or the value is wrong.
    bool refuse(bool wrong, const QString& bottle, const Reason& reason, const Reply& reply) const;
    bool refuseFont(const QString& font, const QString& bottle, const Reply& reply) const;
    Answer listed(const QString& bottle, const char* key) const;

    BottleEngine* m_engine;
};
