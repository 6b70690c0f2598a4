// The question for one item of a list.
#pragma once

#include "window/CDialog.h"
#include "window/CListBox.h"

#include <cstdint>
#include <optional>
#include <vector>

// Modal, on any thread. IDOK: an item was chosen.
class CUserListInputDlg : public CDialog {
public:
  // The items outlive the dialog. `initial` outside the list selects nothing.
  CUserListInputDlg(const std::string& caption, const std::string& prompt, const std::vector<std::string>& items,
                    std::uint64_t initial);

  std::size_t GetSelected() const { return m_selected; }

protected:
  bool OnInitDialog() override;
  void OnOK() override;
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  std::string m_caption, m_prompt;
  const std::vector<std::string>& m_items;
  std::uint64_t m_initial;
  std::size_t m_selected = 0;
  CListBox m_list;
};
