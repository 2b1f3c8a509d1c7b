// Shows one window, titled by the first argument, and ends with 0 when it is closed; with a second argument
// it goes on for a minute without one. Built with PART it needs a library.
#include <windows.h>

#ifdef PART
extern "C" __declspec(dllimport) int PART();
#else
static int PART() {
    return 0;
}
#endif

namespace {

LRESULT CALLBACK handleMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_CLOSE:
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

    const wchar_t* title = argc > 1 ? argv[1] : L"Cellarix sample window";
    const HWND window = CreateWindowExW(0, type.lpszClassName, title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 80,
                                        80, 420, 260, nullptr, nullptr, instance, nullptr);
    if (!window)
        return 3;

    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    if (argc > 2)
        Sleep(60000);
    return static_cast<int>(message.wParam) + PART();
}
