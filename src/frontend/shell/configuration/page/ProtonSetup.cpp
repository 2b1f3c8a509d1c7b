#include "shell/configuration/page/ProtonSetup.h"

namespace {

ProtonSetup::Prepare& current() {
    static ProtonSetup::Prepare prepare;
    return prepare;
}

}  // namespace

void ProtonSetup::set(const Prepare& prepare) {
    current() = prepare;
}

void ProtonSetup::prepare(QObject* context, const std::function<void()>& then) {
    if (const Prepare prepare = current())
        prepare(context, then);
    else
        then();
}
