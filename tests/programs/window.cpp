// Shows one window, titled by the first argument, and ends with 0 when it is closed. With the second argument
// "stay" it goes on for a minute with one that nobody sees; with "tray" its window only hides; with "flash"
// it closes the window itself after 300 ms; with "report" its title ends with the screen's DPI and whose
// d3d9.dll it gets. Built with PART it needs a library.
#include <windows.h>

#include <cwchar>
#include <string>

#ifdef PART
extern "C" __declspec(dllimport) int PART();
#else
static int PART() {
    return 0;
}
#endif

namespace {

constexpr UINT FlashMs = 300;

bool hides = false;

/// The test's own library is part.cpp under that name.
std::wstring report() {
    SetProcessDPIAware();
    const HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    const HMODULE library = LoadLibraryW(L"d3d9.dll");
    const bool isOwn = library && GetProcAddress(library, "part_sqlite3");
    return L" dpi " + std::to_wstring(dpi) + (isOwn ? L" d3d9 native" : L" d3d9 builtin");
}

LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_CLOSE:
            if (hides)
                ShowWindow(window, SW_HIDE);
            else
                DestroyWindow(window);
            return 0;
        case WM_TIMER:
            DestroyWindow(window);
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(window, message, first, second);
    }
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
    const bool stays = argc > 2 && std::wcscmp(argv[2], L"stay") == 0;
    hides = argc > 2 && std::wcscmp(argv[2], L"tray") == 0;
    const HINSTANCE instance = GetModuleHandleW(nullptr);
    WNDCLASSW type = {};
    type.lpfnWndProc = handleMessage;
    type.hInstance = instance;
    type.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(1));
    type.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
    type.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    type.lpszClassName = L"CellarixSampleWindow";
    if (!RegisterClassW(&type))
        return 2;

    std::wstring title = argc > 1 ? argv[1] : L"Cellarix sample window";
    if (argc > 2 && std::wcscmp(argv[2], L"report") == 0)
        title += report();
    const auto makeWindow = [&](DWORD style) {
        return CreateWindowExW(0, type.lpszClassName, title.c_str(), style, 80, 80, 420, 260, nullptr,
                               nullptr, instance, nullptr);
    };
    const HWND shown = makeWindow(WS_OVERLAPPEDWINDOW | WS_VISIBLE);
    if (!shown || (stays && !makeWindow(WS_OVERLAPPEDWINDOW)))
        return 3;

    if (argc > 2 && std::wcscmp(argv[2], L"flash") == 0)
        SetTimer(shown, 1, FlashMs, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (stays)
        Sleep(60000);
    return static_cast<int>(message.wParam) + PART();
}
