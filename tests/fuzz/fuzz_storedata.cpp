// The files of a store's directory, as whoever maintains it may write them.
#include <cstdlib>

#include "storeserver/catalogue/SearchText.h"
#include "storeserver/data/IconFile.h"
#include "storeserver/data/StoreRecords.h"

using namespace StoreServer;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text(reinterpret_cast<const char*>(data), int(size));
    Faults faults;
    const AppRecord app = readApp(text, "notes", "store.yml", faults);
    // What is accepted keeps its limits.
    const bool isSound = app.appId > 0 && app.score >= 0 && app.score <= 5 && app.updated.isValid() &&
                         !app.names.english().isEmpty() && app.names.english().size() <= 100;
    if (faults.isEmpty() && !isSound)
        std::abort();
    Faults others;
    readCategories(text, "categories.yml", others);
    iconFault(IconFile::Kind::Svg, text);
    iconFault(IconFile::Kind::Png, text);
    SearchText::query(SearchText::folded(QString::fromUtf8(text)));
    return 0;
}
