// Writes one line to the file: "probe FILE dll NAME" the path from which a DLL is loaded or the number of the
// error, "probe FILE font NAME" the size of a text in this font.
#include <windows.h>

#include <string>

namespace {

std::wstring loaded(const wchar_t* name) {
    const HMODULE module = LoadLibraryW(name);
    if (!module)
        return L"error " + std::to_wstring(GetLastError());
    // Wine gives its own module the path of the file that it stands for, but its header tells.
    const std::string mark = "Wine builtin";
    return mark.compare(0, mark.size(), reinterpret_cast<const char*>(module) + 0x40, mark.size())
               ? L"native"
               : L"builtin";
}

std::wstring measured(const wchar_t* name) {
    const HDC context = CreateCompatibleDC(nullptr);
    const HFONT font =
        CreateFontW(-64, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, 0, 0, 0, 0, name);
    SelectObject(context, font);
    SIZE size = {};
    const std::wstring text = L"The quick brown fox, WMil1";
    GetTextExtentPoint32W(context, text.c_str(), int(text.size()), &size);
    return std::to_wstring(size.cx) + L" x " + std::to_wstring(size.cy);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    if (argc != 4)
        return 1;
    const std::wstring line = argv[2] == std::wstring(L"dll") ? loaded(argv[3]) : measured(argv[3]);
    char bytes[1024] = {};
    const int size = WideCharToMultiByte(CP_UTF8, 0, line.c_str(), -1, bytes, sizeof bytes, nullptr, nullptr);
    const HANDLE file = CreateFileW(argv[1], GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes, DWORD(size > 0 ? size - 1 : 0), &written, nullptr);
    CloseHandle(file);
    return 0;
}
