#include "launch/run/LaunchedFile.h"

#include <QFileInfo>
#include <QtConcurrentRun>

#include "fenk/style/Theme.h"
#include "launch/bottle/PrivateBottleName.h"
#include "launch/inspection/ExeFileChecker.h"
#include "launch/inspection/ExeFileInfo.h"
#include "launch/inspection/ExeIconReader.h"
#include "launch/inspection/ProgramKind.h"

LaunchedFile::LaunchedFile(const QString& path, QObject* parent) : QObject(parent), m_path(path) {
    if (!m_path.isEmpty())
        inspect();
}

LaunchedFile::~LaunchedFile() {
    if (m_checker)
        m_checker->deleteLater();
}

/// Three tasks of the pool that overlap: the detection (which takes longest and is not waited for), the
/// version block and the key. Those that have not begun when they are waited for run in this thread, so that
/// a busy pool delays nothing.
void LaunchedFile::inspect() {
    m_checker = new ExeFileChecker(m_path);
    const QFuture<QString> key = QtConcurrent::run(partialFileMd5, m_path);
    m_peInfo = m_checker->versionBlock(&m_peInfoRead);
    m_md5 = key.result();
}

bool LaunchedFile::isReadable() const {
    return QFileInfo(m_path).isReadable();
}

bool LaunchedFile::isPackage() const {
    return QStringList{"msi", "msp"}.contains(QFileInfo(m_path).suffix().toLower());
}

bool LaunchedFile::is32BitOnly() const {
    return ProgramHeader::read(m_path).is32BitOnly();
}

bool LaunchedFile::isInstaller() {
    return m_checker && m_checker->isInstaller();
}

bool LaunchedFile::isConsole() {
    return m_checker && m_checker->isConsole();
}

QString LaunchedFile::displayName() {
    const QString product = peInfo().value("ProductName").toString();
    return product.isEmpty() ? QFileInfo(m_path).fileName() : product;
}

QJsonObject LaunchedFile::peInfo() {
    if (!m_peInfoRead && !m_path.isEmpty())
        m_peInfo = peVersionInfo(m_path, &m_peInfoRead);
    return m_peInfo;
}

QJsonObject LaunchedFile::fileInfo() {
    if (!m_checker)
        return {};
    return {{"peinfo", m_checker->info()}, {"verinfo", peInfo()}};
}

QString LaunchedFile::md5() {
    if (m_md5.isEmpty() && !m_path.isEmpty())
        m_md5 = partialFileMd5(m_path);
    return m_md5;
}

QIcon LaunchedFile::icon() {
    if (!m_iconReader) {
        m_icon = Fenk::Theme::icon("cxb_app_default_icon");
        m_iconReader = new ExeIconReader(m_path, this);
        connect(m_iconReader, &ExeIconReader::ready, this, [this](const QIcon& icon) {
            m_icon = icon;
            Q_EMIT iconReady(icon);
        });
        m_iconReader->start();
    }
    return m_icon;
}

QString LaunchedFile::dotnetVersion() const {
    return m_checker ? m_checker->dotnetVersion : QString();
}

QString LaunchedFile::requiredComponent() const {
    return m_checker ? m_checker->requiredComponent() : QString();
}
