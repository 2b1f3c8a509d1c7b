// Prints the processes and windows of a bottle once a second, and in the first minute also as soon as a
// window appears, so that a window closed within a second is reported too. Exits when its output is closed.
// Format:
//   ::process list
//   id - parent's id - name
//   ::window list
//   id - title
//   ::end
// Text is UTF-8; one cycle is one write. A window is listed from the first cycle in which it is visible with
// an area until it is destroyed: a program that hides its window in the tray is still in use.
#include <windows.h>

#include <tlhelp32.h>

#include <map>
#include <string>

namespace {

constexpr DWORD IntervalMs = 1000;
constexpr DWORD CheckMs = 100;        // between checks for a new window
constexpr ULONGLONG QuickMs = 60000;  // duration of these checks; later programs are started from a window
constexpr int TitleUnits = 1024;

std::string toUtf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    std::string utf8(size > 0 ? size - 1 : 0, '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, &utf8[0], size, nullptr, nullptr);
    for (char& c : utf8) {
        if (c == '\r' || c == '\n')
            c = ' ';
    }
    return utf8;
}

bool addProcesses(std::string& out) {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    if (snapshot == INVALID_HANDLE_VALUE)
        return false;
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL more = Process32FirstW(snapshot, &entry); more; more = Process32NextW(snapshot, &entry))
        out += std::to_string(entry.th32ProcessID) + " - " + std::to_string(entry.th32ParentProcessID) +
               " - " + toUtf8(entry.szExeFile) + "\n";
    CloseHandle(snapshot);
    return true;
}

using WindowsSeen = std::map<HWND, DWORD>;  ///< to process id, since handles are reused

struct WindowList {
    const WindowsSeen& before;
    WindowsSeen now;
    std::string lines;
};

bool canBeSeen(HWND window) {
    RECT area = {};
    return IsWindowVisible(window) && GetWindowRect(window, &area) && !IsRectEmpty(&area);
}

BOOL CALLBACK addWindow(HWND window, LPARAM target) {
    WindowList& list = *reinterpret_cast<WindowList*>(target);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const auto before = list.before.find(window);
    const bool wasSeen = before != list.before.end() && before->second == process;
    if (!wasSeen && !canBeSeen(window))
        return TRUE;
    list.now[window] = process;
    // Unlike GetWindowText this never blocks on the program.
    wchar_t title[TitleUnits] = {};
    InternalGetWindowText(window, title, TitleUnits);
    list.lines += std::to_string(process) + " - " + toUtf8(title) + "\n";
    return TRUE;
}

/// Stops the enumeration at a newly visible window.
BOOL CALLBACK isKnown(HWND window, LPARAM target) {
    const WindowsSeen& seen = *reinterpret_cast<WindowsSeen*>(target);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const auto before = seen.find(window);
    return (before != seen.end() && before->second == process) || !canBeSeen(window);
}

/// Waits for the interval, or until a new window is visible.
void wait(const WindowsSeen& seen, bool isQuick) {
    const DWORD step = isQuick ? CheckMs : IntervalMs;
    for (DWORD waited = 0; waited < IntervalMs; waited += step) {
        Sleep(step);
        if (isQuick && !EnumWindows(isKnown, reinterpret_cast<LPARAM>(&seen)))
            return;
    }
}

bool print(const std::string& text) {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    for (size_t at = 0; at < text.size();) {
        DWORD written = 0;
        if (!WriteFile(output, text.data() + at, DWORD(text.size() - at), &written, nullptr) || written == 0)
            return false;
        at += written;
    }
    return true;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR, int) {
    const ULONGLONG begin = GetTickCount64();
    WindowsSeen seen;
    for (;;) {
        std::string cycle = "::process list\n";
        const bool isWhole = addProcesses(cycle);
        WindowList list = {seen, {}, {}};
        EnumWindows(addWindow, reinterpret_cast<LPARAM>(&list));
        seen.swap(list.now);
        cycle += "::window list\n" + list.lines + "::end\n";
        // An empty list of processes would mean that the program has exited.
        if (isWhole && !print(cycle))
            return 1;
        wait(seen, GetTickCount64() - begin < QuickMs);
    }
}
