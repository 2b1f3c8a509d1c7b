// The text of a manifest, as a store or anybody on the bus hands it to the bottle service.
#include <algorithm>
#include <cstdlib>

#include "manifest/ManifestReader.h"
#include "manifest/ManifestWriter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text(reinterpret_cast<const char*>(data), int(size));
    const auto [manifest, error] = ManifestReader::read(text);
    if (!error.isEmpty()) {
        // A refusal is one sentence that names nothing of the machine, and no half manifest.
        const bool isOneLine =
            std::all_of(error.begin(), error.end(), [](QChar c) { return c.isPrint() || c.isSurrogate(); });
        if (!error.endsWith('.') || !isOneLine || manifest != Manifest())
            std::abort();
        return 0;
    }
    const auto [again, fault] = ManifestReader::read(ManifestWriter::write(manifest));
    if (!fault.isEmpty() || again != manifest)
        std::abort();
    return 0;
}
