// With Visual Studio's framework the application object alone makes the program.
#include "host/CHostApp.h"

CHostApp theApp;

#if !defined(_MSC_VER)
int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show) {
    if (!AfxWinInit(instance, nullptr, ::GetCommandLine(), show)) return 1;
    if (!theApp.InitInstance()) return theApp.ExitInstance();
    return theApp.Run();
}
#endif
