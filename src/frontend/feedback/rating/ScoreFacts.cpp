#include "feedback/rating/ScoreFacts.h"

#include "backend/BottleUtils.h"
#include "backend/InBackground.h"
#include "feedback/client/VersionQuery.h"
#include "launch/inspection/ExeFileInfo.h"

void ScoreFacts::collect() {
    VersionQuery::ask(m_program.bottle, this,
                      [this](const BottleVersions& versions, const QJsonObject& record) {
                          m_versions = versions;
                          inBackground(
                              this,
                              [record, id = m_program.uuid] {
                                  const QString path = BottleUtils::programPath(record, id);
                                  return path.isEmpty() ? QString() : readableVersion(peVersionInfo(path));
                              },
                              [this](const QString& version) {
                                  m_appVersion = version;
                                  m_isReady = true;
                                  Q_EMIT ready();
                              });
                      });
}
