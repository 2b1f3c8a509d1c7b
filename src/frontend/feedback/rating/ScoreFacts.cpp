#include "feedback/rating/ScoreFacts.h"

#include "backend/InBackground.h"
#include "feedback/client/VersionQuery.h"
#include "launch/inspection/ExeFileInfo.h"

void ScoreFacts::collect() {
    VersionQuery::ask(m_program.bottle, this,
                      [this](const BottleVersions& versions, const QJsonObject& record) {
                          m_versions = versions;
                          inBackground(
                              this, [record, id = m_program.uuid] { return programVersion(record, id); },
                              [this](const QString& version) {
                                  m_appVersion = version;
                                  m_isReady = true;
                                  Q_EMIT ready();
                              });
                      });
}
