// A set-up that shows a window for a moment and puts into C:\Program Files\Sample what its own file name
// says:
//   links    a program and a shortcut to it           files    a program
//   data     no program, and then it fails            nothing
//   hands    a program, by a second process that shows its window ten seconds after the first's has gone
// With "lacks" in the name its log asks for a component; with "hidden" it goes on without ever showing a
// window. Once something is written there is a file NAME.exe.wrote beside it, at its end NAME.exe.ended.
#include <windows.h>

#include <shlobj.h>

#include <string>

namespace {

const wchar_t Folder[] = L"C:\\Program Files\\Sample";
constexpr DWORD WindowMs = 2500;  // the window is looked for once a second
constexpr DWORD UnpackMs = 10000;

std::wstring ownPath() {
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return path;
}

bool isNamed(const wchar_t* word) {
    const std::wstring path = ownPath();
    return path.find(word, path.find_last_of(L'\\')) != std::wstring::npos;
}

void write(const std::wstring& path) {
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(file, "kept", 4, &written, nullptr);
    CloseHandle(file);
}

void link(const std::wstring& target) {
    wchar_t menu[MAX_PATH] = {};
    IShellLinkW* link = nullptr;
    IPersistFile* file = nullptr;
    CoInitialize(nullptr);
    SHGetFolderPathW(nullptr, CSIDL_PROGRAMS | CSIDL_FLAG_CREATE, nullptr, 0, menu);
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                reinterpret_cast<void**>(&link))))
        return;
    link->SetPath(target.c_str());
    if (SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file)))) {
        file->Save((std::wstring(menu) + L"\\Sample.lnk").c_str(), TRUE);
        file->Release();
    }
    link->Release();
}

void install() {
    if (isNamed(L"nothing"))
        return;
    const std::wstring folder = Folder;
    CreateDirectoryW(folder.c_str(), nullptr);
    if (!isNamed(L"data"))
        CopyFileW(ownPath().c_str(), (folder + L"\\Sample.exe").c_str(), FALSE);
    if (isNamed(L"links"))
        link(folder + L"\\Sample.exe");
    write(folder + L"\\kept.txt");
    write(ownPath() + L".wrote");
}

void showWindow() {
    const HWND window = CreateWindowExW(0, L"STATIC", L"Sample setup", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40,
                                        40, 300, 100, nullptr, nullptr, nullptr, nullptr);
    const ULONGLONG begin = GetTickCount64();
    MSG message;
    while (GetTickCount64() - begin < WindowMs) {
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
        Sleep(20);
    }
    DestroyWindow(window);
}

void complain() {
    const char line[] =
        "0024:0028:err:module:import_dll Library sqlite3.dll (which is needed by L\"Z:\\\\setup.exe\") not "
        "found\n";
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), line, sizeof line - 1, &written, nullptr);
}

bool handOver() {
    std::wstring command = L"\"" + ownPath() + L"\" second";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    return CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                          &process);
}

}  // namespace

int wmain(int argc, wchar_t**) {
    const bool isSecond = argc > 1;
    if (isNamed(L"lacks"))
        complain();
    if (isNamed(L"hands") && !isSecond) {
        showWindow();
        return handOver() ? 0 : 2;
    }
    install();
    if (isNamed(L"hidden"))
        Sleep(60000);
    if (isSecond)
        Sleep(UnpackMs);
    showWindow();
    write(ownPath() + L".ended");
    return isNamed(L"data") ? 1 : 0;
}
