// Prints what runs and what is shown in a bottle, once a second and, in the first minute, as soon as a window
// comes up, so that one which is closed within the second is told as well; until nobody reads it any more:
//   ::process list
//   id - parent's id - name
//   ::window list
//   id - title
//   ::end
// Text is UTF-8; one cycle is one write. A window is listed from the first cycle in which it can be seen
// (shown, with an area) as long as it exists: a program that hides its window in the tray is still in use.
#include <windows.h>

#include <tlhelp32.h>

#include <map>
#include <string>

namespace {

constexpr DWORD IntervalMs = 1000;
constexpr DWORD LookMs = 100;         // between looks for a new window
constexpr ULONGLONG QuickMs = 60000;  // that looks go on for; what starts later does so from a window
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

using WindowsSeen = std::map<HWND, DWORD>;  ///< with their processes: a handle may be used again

struct WindowLook {
    const WindowsSeen& before;
    WindowsSeen now;
    std::string lines;
};

bool canBeSeen(HWND window) {
    RECT area = {};
    return IsWindowVisible(window) && GetWindowRect(window, &area) && !IsRectEmpty(&area);
}

BOOL CALLBACK addWindow(HWND window, LPARAM target) {
    WindowLook& look = *reinterpret_cast<WindowLook*>(target);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const auto before = look.before.find(window);
    const bool wasSeen = before != look.before.end() && before->second == process;
    if (!wasSeen && !canBeSeen(window))
        return TRUE;
    look.now[window] = process;
    // Unlike GetWindowText this never waits for the window's own program.
    wchar_t title[TitleUnits] = {};
    InternalGetWindowText(window, title, TitleUnits);
    look.lines += std::to_string(process) + " - " + toUtf8(title) + "\n";
    return TRUE;
}

/// Ends the enumeration at a window that was not to be seen before.
BOOL CALLBACK isKnown(HWND window, LPARAM target) {
    const WindowsSeen& seen = *reinterpret_cast<WindowsSeen*>(target);
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const auto before = seen.find(window);
    return (before != seen.end() && before->second == process) || !canBeSeen(window);
}

/// For the interval, or until a new window is there.
void wait(const WindowsSeen& seen, bool isQuick) {
    const DWORD step = isQuick ? LookMs : IntervalMs;
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
        WindowLook look = {seen, {}, {}};
        EnumWindows(addWindow, reinterpret_cast<LPARAM>(&look));
        seen.swap(look.now);
        cycle += "::window list\n" + look.lines + "::end\n";
        // Without processes a living program would look dead.
        if (isWhole && !print(cycle))
            return 1;
        wait(seen, GetTickCount64() - begin < QuickMs);
    }
}
