// The application object's base: what belongs to the module as a whole.
#pragma once

#include <windows.h>

// One object of a derived class lives as long as the module is loaded.
class CWinApp {
public:
  CWinApp(const CWinApp&) = delete;
  CWinApp& operator=(const CWinApp&) = delete;

  // The module's own instance handle, in which all its templates, icons and window classes are looked up; never the
  // host program's. [any thread]
  static HINSTANCE GetModuleInstance();

protected:
  CWinApp() = default;
  ~CWinApp() = default;
};
