// A library that programs need and Windows does not have. It is built under the names of real ones, for which
// repairs exist; with NEXT it needs another one itself.
#include <windows.h>

extern "C" {
#ifdef NEXT
__declspec(dllimport) int NEXT();
__declspec(dllexport) int PART() {
    return NEXT();
}
#else
__declspec(dllexport) int PART() {
    return 0;
}
#endif
}
