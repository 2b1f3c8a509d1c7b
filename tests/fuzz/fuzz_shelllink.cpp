#include "fenk/system/ShellLink.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fenk::ShellLink::parse(QByteArray(reinterpret_cast<const char*>(data), int(size)));
    return 0;
}
