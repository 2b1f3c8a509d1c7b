// The texts that callers, users and Windows programs hand to the bottle service; the first byte chooses
// which.
#include <cstdlib>

#include "bottleservice/bottles/Associations.h"
#include "bottleservice/bottles/BottleYaml.h"
#include "bottleservice/bottles/ManifestExport.h"
#include "bottleservice/bottles/Programs.h"
#include "bottleservice/bottles/WindowsCommandLine.h"

namespace {

/// What is written must be read again as it was.
void roundTrip(const QByteArray& text) {
    QString error;
    const auto settings = BottleYaml::parse(text, &error);
    if (!settings)
        return;
    const auto again = BottleYaml::parse(settings->toText(), &error);
    if (again && again->record() != settings->record())
        std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const QByteArray text(reinterpret_cast<const char*>(data) + 1, int(size) - 1);
    QString error;
    Reason fault;
    switch (data[0] % 5) {
        case 0:
            roundTrip(text);
            break;
        case 1:
            Programs::completed(Programs::parse(QString::fromUtf8(text), &error), {}, &error);
            break;
        case 2:
            Associations::collect(RegistryFile::parse(text, "Software\\Classes\\"));
            break;
        case 3:
            ManifestExport::parseForm(QString::fromUtf8(text), &fault);
            break;
        default:
            WindowsCommandLine::split(QString::fromUtf8(text));
    }
    return 0;
}
