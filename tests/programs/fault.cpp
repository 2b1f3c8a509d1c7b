// Goes wrong in the way that the first argument names, or draws the text of the second: what Wine's log then
// says is what the log's reader must understand.
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

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const std::wstring mode = argc > 1 ? argv[1] : L"";
    if (mode == L"crash")
        *static_cast<volatile int*>(nullptr) = 1;
    if (mode == L"stub")
        return callStub("msvcp140.dll", "?_Winerror_message@std@@YAKKPADK@Z") +
               callStub("ntdll.dll", "CsrAllocateCaptureBuffer");
    if (mode == L"text" && argc > 2)
        return drawText(argv[2]);
    if (mode == L"font")
        return CreateFileW(L"C:\\windows\\Fonts\\simsun.ttc", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0,
                           nullptr) == INVALID_HANDLE_VALUE
                   ? 0
                   : 5;
    if (mode == L"library")
        return LoadLibraryW(argc > 2 ? argv[2] : L"") ? 0 : 6;
    if (mode == L"wait")
        Sleep(120000);
    return 2;
}
