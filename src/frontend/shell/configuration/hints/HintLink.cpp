#include "shell/configuration/hints/HintLink.h"

QString HintLink::target(const QUrl& anchor) {
    return QUrl::fromPercentEncoding(anchor.toEncoded());
}

HintLink HintLink::of(const QUrl& anchor) {
    const QString target = HintLink::target(anchor);
    const auto restAfter = [&target](const char* begin) -> QString {
        return target.startsWith(QLatin1String(begin)) ? target.mid(int(qstrlen(begin))) : QString();
    };
    HintLink link;
    if (target.startsWith(QLatin1String("http"))) {
        const bool isWeb = anchor.scheme() == "http" || anchor.scheme() == "https";
        link.kind = isWeb ? Kind::Web : Kind::None;
        link.text = target;
    } else if (target.startsWith(QLatin1String("tab:"))) {
        bool isNumber = false;
        link.page = restAfter("tab:").toInt(&isNumber);
        link.kind = isNumber ? Kind::Page : Kind::None;
    } else if (target.startsWith(QLatin1String("fonts:"))) {
        link.names = restAfter("fonts:").split(':', Qt::SkipEmptyParts);
        link.kind = Kind::Fonts;
    } else if (!(link.text = restAfter("component:")).isEmpty()) {
        link.kind = Kind::Component;
    } else if (!(link.text = restAfter("setrunner:")).isEmpty()) {
        link.kind = Kind::Runner;
    } else if (!(link.text = restAfter("{drive_c}")).isEmpty()) {
        link.kind = Kind::DriveC;
    }
    return link;
}
