#pragma once

#include <QObject>

#include "bottleservice/result/Answer.h"

class BottleEngine;
class BottleYaml;
class RegistryChange;

/// The requests about the settings of bottles. bottle.yml is the truth: switches, the renderer and DLL
/// overrides act through the environment of a launch, the rest is written into the bottle's registry too.
class SettingsRequests : public QObject {
    Q_OBJECT

public:
    explicit SettingsRequests(BottleEngine* engine, QObject* parent = nullptr);

    /// Finishes what a killed service has left pending. Once, before the first request.
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
    /// Answers that the value is wrong, if it is.
    bool refuse(bool wrong, const QString& bottle, const QString& sentence, const Reply& reply) const;
    Answer listed(const QString& bottle, const char* key) const;

    BottleEngine* m_engine;
};
