// Base of the three objects' windows: the link to the object and its channel, the status timer, controls that follow
// the window's edges, and what lists have in common. Never modal: OK, Cancel and the close box only hide the window,
// after asking the host. Exported, so that further clients can have windows.
//
// Any operation of the channel may serve messages, behind which the host may do anything; window/Presence.h says what
// to ask then. A dialog uses its channel through a CChannelLock, which asks by itself.
//
// [user-interface thread]
#pragma once

#include "frame/CONXDeviceClient.h"
#include "window/CDialog.h"
#include "window/CListBox.h"
#include "window/Handles.h"

#include <optional>
#include <vector>

// Which edges of the window a control follows.
enum : DWORD {
  OND_PLACE_STRETCH_X = 1, // with RIGHT: changes its width
  OND_PLACE_STRETCH_Y = 2, // with BOTTOM: changes its height
  OND_PLACE_RIGHT = 4,     // follows the right edge
  OND_PLACE_BOTTOM = 8,    // follows the bottom edge
};

class OND_API CONXDialog : public CDialog {
public:
  // The channel, reserved for a dialog. Ends with its scope, or already when the dialog's window is destroyed or
  // another channel is connected: while the lock is tried, while an operation runs, behind a box.
  class CChannelLock {
  public:
    // Tries for `timeoutMs`; without a channel the lock fails.
    CChannelLock(CONXDialog& dialog, DWORD timeoutMs);
    CChannelLock(const CChannelLock&) = delete;
    CChannelLock& operator=(const CChannelLock&) = delete;
    ~CChannelLock();

    explicit operator bool() const { return m_channel != nullptr; }
    // Somebody else holds the channel. Without a channel, and when it went away meanwhile, nobody does.
    bool IsRefused() const { return m_refused; }

    // What an operation of the locked channel answers, whatever the dialog is connected to by now. When it is not
    // locked (any more) the operation is not called and the answer is 0. Ask afterwards whether it still is.
    template <typename Result, typename... Parameters, typename... Arguments>
    Result Ask(Result (COndDeviceComm_0::*operation)(Parameters...), Arguments... arguments) const {
      return m_channel ? (m_channel->*operation)(static_cast<Parameters>(arguments)...) : Result{};
    }
    // The channel's words for an error.
    std::string ChannelErrorText(std::int32_t code) const;

  private:
    friend class CONXDialog;
    void Release();

    CONXDialog& m_dialog;
    COndDeviceComm_0* m_channel = nullptr; // while it is locked
    bool m_wanted = true;                  // nobody has released it
    bool m_refused = false;
    CChannelLock* m_outer; // the dialog's lock before this one
  };

  explicit CONXDialog(UINT templateId);
  ~CONXDialog() override;

  // Deletes a dialog, whose window is gone or goes now; one whose handler is running when that has returned.
  // Null is ignored. The dialog's object and channel are not used any more.
  static void Delete(CONXDialog* dialog);

  // Refreshes what depends on the state of the channel and the object; nothing here. Called by the timer and on every
  // change of the channel, also while there is no window.
  virtual void UpdateDialogState();
  // Shows the channel's description, configuration and state in a control.
  virtual void UpdateCommStatus(UINT ctrlId);
  // Makes horizontal scrolling cover the widest item.
  virtual void RepairHorizontalScrollbarExtendInListBox(CListBox* listBox);
  // Each item and one line feed (no carriage return). Nothing for an empty list.
  virtual void CopyListBoxContentToClipBoard(CListBox* listBox);
  // From now on the control follows the edges that OND_PLACE_… name, measured from where it is. Further bits mean
  // nothing.
  virtual void AutoDlgCtrlPlacement(UINT ctrlId, DWORD flags);
  // Moves and stretches the controls for a client area of cx by cy pixels, all at once.
  virtual void OnSizeDlgCtrlPlacement(int cx, int cy);
  // The object whose window this is.
  virtual void SetOwnerClass(CONXDeviceClient_0* owner);
  // The channel stays the host's; null disconnects.
  virtual void SetDeviceComm(COndDeviceComm_0* channel);
  // Makes the window, from the module's template.
  virtual bool Create(HWND parent);

protected:
  bool OnInitDialog() override;
  void OnOK() override;
  void OnCancel() override;
  bool OnWndMsg(const Message& message, LRESULT& result) override;

  CONXDeviceClient_0* GetOwnerClass() const { return m_owner; } // null when there is none (any more)
  // Null when not connected, and when there is no window (any more).
  COndDeviceComm_0* GetDeviceComm() const { return GetSafeHwnd() ? m_channel : nullptr; }
  // Whether what goes on keeps its channel although another one is connected. Otherwise the locks end at once: the host
  // may do away with a channel that is not connected any more.
  virtual bool KeepsChannel() const { return false; }
  // The status timer. A derived dialog that handles it itself keeps its ticks from this class.
  static constexpr UINT_PTR kTimerId = 1;
  // Gives back the channel although locks are in scope, which then hold nothing any more.
  void ReleaseLocks();
  // For the constructors of derived dialogs.
  void SetTimerInterval(UINT milliseconds) { m_timerInterval = milliseconds; }
  void LoadSmallIcon(UINT iconId);

private:
  struct Placement {
    UINT id;
    DWORD flags;
    int width, height;
    int left, top;     // from the client area's edges
    int right, bottom; // margins to them
  };

  void OnClose();
  void OnSize(const Message& message);
  bool OnTimer(const Message& message);
  void OnDestroy();
  void AskToHide(std::uint32_t event);
  void StartTimer();
  void StopTimer();
  std::optional<std::string> CommStatus();
  static RECT PlaceFor(const Placement& placement, int cx, int cy);

  COndDeviceComm_0* m_channel = nullptr;
  CONXDeviceClient_0* m_owner = nullptr;
  bool m_timerRuns = false;
  UINT m_timerInterval = 500; // milliseconds
  CIconHandle m_icon;
  std::vector<Placement> m_placements;
  CChannelLock* m_lock = nullptr; // the innermost one that is alive
};
