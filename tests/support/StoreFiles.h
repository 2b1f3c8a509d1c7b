#pragma once

#include <QTemporaryDir>

namespace TestSupport {

/// The directory of a store in a temporary place, with two categories (1 "Office", 2 "Tools").
class StoreFiles {
public:
    /// The facts of an application that tests tell apart.
    struct App {
        int appId = 0;
        QString english;
        QString chinese;
        int category = 1;
        int installations = 0;
        int score = 3;
        QString updated = "2024-05-31";
        int recommend = 1;
    };

    StoreFiles();

    QString path(const QString& file = {}) const { return m_directory.filePath(file); }
    void write(const QString& file, const QByteArray& content) const;
    void remove(const QString& appInfoId) const;
    /// Writes store.yml, manifest.yml and an icon.
    void add(const QString& appInfoId, const App& app) const;

    static QByteArray storeText(const App& app);
    static QByteArray manifestText(const QString& name);
    static QByteArray iconText();

private:
    QTemporaryDir m_directory;
};

}  // namespace TestSupport
