// Changed Windows programs under the rules of the scanner.
#include <cstdlib>

#include "inspect/Scanner.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Scanner scanner;
    static const bool isLoaded = [] {
        QString error;
        return scanner.loadRules(RULES_DIR, &error);
    }();
    if (!isLoaded)
        std::abort();
    std::vector<Scanner::Value> values;
    scanner.scan(data, qint64(size), &values);
    return 0;
}
