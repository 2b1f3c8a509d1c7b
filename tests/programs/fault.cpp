// Goes wrong in the way that the first argument names, or without one the file's own name behind "fault-", or
// draws the text of the second argument: what Wine's log then says is what the log's reader must understand.
#include <windows.h>

#include <cwchar>
#include <string>

namespace {

/// A function that Wine only promises.
int callStub(const char* library, const char* function) {
    const HMODULE module = LoadLibraryA(library);
    const FARPROC address = module ? GetProcAddress(module, function) : nullptr;
    if (!address)
        return 3;
    reinterpret_cast<void (*)()>(reinterpret_cast<void*>(address))();
    return 4;
}

int drawText(const wchar_t* text) {
    const HDC context = CreateCompatibleDC(nullptr);
    RECT area = {0, 0, 400, 100};
    DrawTextW(context, text, -1, &area, DT_WORDBREAK);
    DeleteDC(context);
    return 0;
}

int useFont() {
    return CreateFileW(L"C:\\windows\\Fonts\\simsun.ttc", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0,
                       nullptr) == INVALID_HANDLE_VALUE
               ? 0
               : 5;
}

/// Long enough to be seen.
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
    if (mode == L"stub")
        return callStub("msvcp140.dll", "?_Winerror_message@std@@YAKKPADK@Z") +
               callStub("ntdll.dll", "CsrAllocateCaptureBuffer");
    if (mode == L"text" && argc > 2)
        return drawText(argv[2]);
    if (mode == L"font")
        return useFont();
    if (mode == L"window-font") {
        showWindow();
        return useFont();
    }
    if (mode == L"library")
        return LoadLibraryW(argc > 2 ? argv[2] : L"") ? 0 : 6;
    if (mode == L"wait")
        Sleep(120000);
    return 2;
}
