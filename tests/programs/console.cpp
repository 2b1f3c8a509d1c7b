// Prints its arguments and a Chinese line in UTF-8. "--exit N" gives the exit code.
#include <windows.h>

#include <cstdlib>
#include <string>

namespace {

void print(const std::wstring& text) {
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), nullptr, 0, nullptr, nullptr);
    std::string bytes(size_t(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), int(text.size()), bytes.data(), size, nullptr, nullptr);
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), DWORD(bytes.size()), &written, nullptr);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    SetConsoleOutputCP(CP_UTF8);
    int code = 0;
    std::wstring line = L"arguments:";
    for (int i = 1; i < argc; ++i) {
        const std::wstring word = argv[i];
        if (word == L"--exit" && i + 1 < argc)
            code = int(std::wcstol(argv[++i], nullptr, 10));
        else
            line += L" [" + word + L"]";
    }
    print(line + L"\r\n");
    print(L"\u4f60\u597d\uff0c\u4e16\u754c\r\n");
    return code;
}
