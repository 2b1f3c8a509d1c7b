#include "net/LoggedAddress.h"

#include <QUrl>

QString loggedAddress(const QUrl& url) {
    return url.toString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}
