#include "launch/banner/RefusalNotice.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>

#include "backend/DesktopUtils.h"
#include "fenk/style/Tokens.h"
#include "fenk/window/Dialog.h"

namespace {

constexpr int NoticeMs = 12000;
constexpr int NameLimit = 30;
const QLatin1String ObjectName("refusal_notice");

/// Shortened to fit a title, without control characters.
QString shownName(const QString& path) {
    QString name = QFileInfo(path).fileName();
    if (name.isEmpty())
        name = path;
    for (QChar& c : name) {
        if (!c.isPrint() && !c.isSurrogate())
            c = QChar::ReplacementCharacter;
    }
    if (name.size() > NameLimit)
        name = name.left(NameLimit / 2) + QChar(0x2026) + name.right(NameLimit / 2);
    return name;
}

QString title(const QString& path, const OpenRefusal& refusal) {
    if (!refusal.title.isEmpty())
        return refusal.title;
    return QCoreApplication::translate("RefusalNotice", "\"%1\" cannot be opened").arg(shownName(path));
}

QString message(const OpenRefusal& refusal) {
    return QString(refusal.reason + "\n\n" + refusal.advice).trimmed();
}

Fenk::Dialog* findShown(const QString& path, const OpenRefusal& refusal) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        auto* dialog = qobject_cast<Fenk::Dialog*>(widget);
        if (dialog && dialog->objectName() == ObjectName && dialog->isVisible() &&
            dialog->title() == title(path, refusal) && dialog->message() == message(refusal))
            return dialog;
    }
    return nullptr;
}

Fenk::Dialog* make(const QString& path, const OpenRefusal& refusal, QWidget* parent) {
    auto* dialog = new Fenk::Dialog(parent);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    if (parent)
        dialog->setWindowModality(Qt::WindowModal);
    dialog->setObjectName(ObjectName);
    dialog->setAccessibleName(ObjectName);
    dialog->setFixedWidth(Fenk::Tokens::DialogMaxWidth - 2 * Fenk::Tokens::Space32);
    dialog->setTitle(title(path, refusal));
    dialog->setMessage(message(refusal));
    dialog->addButton(QCoreApplication::translate("RefusalNotice", "Close"), true);
    dialog->button(0)->setAccessibleName("close_btn");
    dialog->button(0)->setAccessibleDescription(dialog->button(0)->text());
    return dialog;
}

}  // namespace

void RefusalNotice::show(const QString& path, const OpenRefusal& refusal, QWidget* parent) {
    Fenk::Dialog* dialog = findShown(path, refusal);
    if (!dialog) {
        dialog = make(path, refusal, parent);
        dialog->show();
        dialog->moveToCenter();
    }
    dialog->raise();
    dialog->activateWindow();
}

bool RefusalNotice::notify(const QString& path, const OpenRefusal& refusal) {
    const QString body =
        DesktopUtils::notificationText(QString(refusal.reason + '\n' + refusal.advice).trimmed());
    if (DesktopUtils::notify(title(path, refusal), body) || !QFileInfo::exists(path))
        return false;
    show(path, refusal, nullptr);
    if (Fenk::Dialog* dialog = findShown(path, refusal))
        QTimer::singleShot(NoticeMs, dialog, &QWidget::close);
    return true;
}
