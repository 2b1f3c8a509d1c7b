// Starts window.exe beside itself, with its own first argument as the title, and ends without waiting for it.
#include <windows.h>

#include <string>

int wmain(int argc, wchar_t** argv) {
    wchar_t self[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, self, MAX_PATH);
    std::wstring path = self;
    path.replace(path.find_last_of(L'\\') + 1, std::wstring::npos, L"window.exe");

    std::wstring command = L"\"" + path + L"\"";
    if (argc > 1)
        command += L" \"" + std::wstring(argv[1]) + L"\"";
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(path.c_str(), command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                        &process))
        return 2;
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return 0;
}
