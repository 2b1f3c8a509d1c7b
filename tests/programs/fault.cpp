// Fails in the way that the first argument names, or without one what follows "fault-" in its own file name:
//   crash         writes to address 0
//   window-font   shows a window for a while, then asks for a font that is missing
//   wait          shows no window for two minutes
//   else          ends with 2
#include <windows.h>

#include <cwchar>
#include <string>

namespace {

int useFont() {
    return CreateFileW(L"C:\\windows\\Fonts\\simsun.ttc", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0,
                       nullptr) == INVALID_HANDLE_VALUE
               ? 0
               : 5;
}

/// Long enough for the monitor to see it.
void showWindow() {
    CreateWindowExW(0, L"STATIC", L"Shown for a while", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40, 40, 300, 100,
                    nullptr, nullptr, nullptr, nullptr);
    const ULONGLONG begin = GetTickCount64();
    MSG message;
    while (GetTickCount64() - begin < 5000) {
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
        Sleep(20);
    }
}

std::wstring modeOfFile() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const std::wstring name = path;
    const size_t begin = name.rfind(L"fault-");
    return begin == std::wstring::npos ? L"" : name.substr(begin + 6, name.rfind(L'.') - begin - 6);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const std::wstring mode = argc > 1 ? argv[1] : modeOfFile();
    if (mode == L"crash")
        *static_cast<volatile int*>(nullptr) = 1;
    if (mode == L"window-font") {
        showWindow();
        return useFont();
    }
    if (mode == L"wait")
        Sleep(120000);
    return 2;
}
