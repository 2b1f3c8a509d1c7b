// Prints its arguments and a Chinese line in UTF-8. "--exit N" gives the exit code, "--error TEXT" goes to
// stderr.
#include <windows.h>

#include <cstdlib>
#include <string>

namespace {

void print(DWORD stream, const std::wstring& text) {
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(size_t(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), bytes.data(), size, nullptr, nullptr);
    DWORD written = 0;
    WriteFile(GetStdHandle(stream), bytes.data(), DWORD(bytes.size()), &written, nullptr);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    SetConsoleOutputCP(CP_UTF8);
    int code = 0;
    std::wstring line = L"arguments:";
    for (int i = 1; i < argc; ++i) {
        const std::wstring word = argv[i];
        const bool hasValue = i + 1 < argc;
        if (word == L"--exit" && hasValue)
            code = int(std::wcstol(argv[++i], nullptr, 10));
        else if (word == L"--error" && hasValue)
            print(STD_ERROR_HANDLE, std::wstring(argv[++i]) + L"\r\n");
        else
            line += L" [" + word + L"]";
    }
    print(STD_OUTPUT_HANDLE, line + L"\r\n");
    print(STD_OUTPUT_HANDLE, L"\u4f60\u597d\uff0c\u4e16\u754c\r\n");
    return code;
}
