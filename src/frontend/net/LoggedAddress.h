#pragma once

#include <QString>

class QUrl;

/// An address as logs may have it: without user, password, query and fragment, which are as good as
/// passwords. Empty for an invalid address.
QString loggedAddress(const QUrl& url);
