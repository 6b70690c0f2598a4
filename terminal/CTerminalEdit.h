#pragma once

#include "window/CEdit.h"

// An edit control that offers its parent each key before using it itself.
class CTerminalEdit : public CEdit {
public:
  // The message that is sent to the parent: wParam is the virtual key, a non-zero answer keeps the key. 0: none.
  void SetKeyMessage(UINT message) { m_keyMessage = message; }

protected:
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  bool OnKeyDown(const Message& message);

  UINT m_keyMessage = 0;
};
