#include "feedback/rating/ScoreFacts.h"

#include <algorithm>

#include "backend/BottleRecord.h"
#include "backend/InBackground.h"
#include "backend/ProgramRecord.h"
#include "feedback/client/VersionQuery.h"
#include "launch/inspection/ExeFileInfo.h"

/// Where another entry has the application's name, this one is something else in its bottle.
void ScoreFacts::takeApplication(const QJsonObject& record) {
    const QString application = BottleRecord::application(record);
    const QJsonObject programs = BottleRecord::programs(record);
    const bool isOther = std::any_of(programs.begin(), programs.end(), [&](const QJsonValue& program) {
        return ProgramRecord::name(program.toObject()) == application;
    });
    if (!application.isEmpty() && !isOther)
        m_appName = application;
}

void ScoreFacts::collect() {
    VersionQuery::ask(m_program.bottle, this,
                      [this](const BottleVersions& versions, const QJsonObject& record) {
                          m_versions = versions;
                          takeApplication(record);
                          inBackground(
                              this, [record, id = m_program.uuid] { return programVersion(record, id); },
                              [this](const QString& version) {
                                  m_appVersion = version;
                                  m_isReady = true;
                                  Q_EMIT ready();
                              });
                      });
}
