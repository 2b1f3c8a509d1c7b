// Writes as many MiB of numbered lines to stderr as the first argument says, as fast as it can.
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr long long kLine = 64;
constexpr long long kChunk = 1 << 16;

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const long long size = (argc > 1 ? std::wcstoll(argv[1], nullptr, 10) : 100) << 20;
    const HANDLE out = GetStdHandle(STD_ERROR_HANDLE);
    std::string chunk(size_t(kChunk), '.');
    long long number = 0;
    for (long long done = 0; done < size; done += kChunk) {
        for (long long at = 0; at < kChunk; at += kLine) {
            char text[kLine];
            const int length = std::snprintf(text, sizeof text, "line %012lld", number++);
            chunk.replace(size_t(at), size_t(length), text, size_t(length));
            chunk[size_t(at + kLine - 1)] = '\n';
        }
        DWORD written = 0;
        WriteFile(out, chunk.data(), DWORD(chunk.size()), &written, nullptr);
    }
    return 0;
}
