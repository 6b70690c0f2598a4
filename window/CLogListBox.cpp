#include "window/CLogListBox.h"

#include "window/CTextMeasure.h"

CLogListBox::Batch::~Batch() {
  m_list.SetTopIndex(m_list.GetCount() - 1);
  m_list.SetRedraw(true);
  m_list.Invalidate();
}

void CLogListBox::AddLine(const std::string& line) {
  while (GetCount() > kLines) {
    DeleteString(0);
    if (!m_widths.empty()) {
      Forget(m_widths.front());
      m_widths.pop_front();
    }
  }
  AddString(line);
}

void CLogListBox::AddLines(const std::deque<std::string>& lines) {
  std::size_t first = 0;
  if (lines.size() >= kMostLines) {
    Clear();
    first = lines.size() - kMostLines;
  }
  for (; first < lines.size(); ++first)
    AddLine(lines[first]);
}

std::string CLogListBox::TakeLastLine() {
  const int count = GetCount();
  if (count <= 0)
    return {};
  std::string line = GetText(count - 1);
  DeleteString(count - 1);
  if (m_widths.size() == static_cast<std::size_t>(count)) {
    Forget(m_widths.back());
    m_widths.pop_back();
  }
  return line;
}

void CLogListBox::Clear() {
  ResetContent();
  ForgetAll();
}

int CLogListBox::WidestItem() {
  const auto count = static_cast<std::size_t>(GetCount());
  if (m_widths.size() < count) {
    const CTextMeasure measure(*this);
    while (m_widths.size() < count)
      Remember(ItemWidth(measure, static_cast<int>(m_widths.size())));
  }
  return m_widthCount.empty() ? 0 : m_widthCount.rbegin()->first;
}

bool CLogListBox::OnWndMsg(const Message& message, LRESULT& result) {
  static constexpr MessageEntry kMap[] = {OnMessage<&CLogListBox::OnSetFont>(WM_SETFONT)};
  return Dispatch(kMap, message, result) || CListBox::OnWndMsg(message, result);
}

bool CLogListBox::OnSetFont() {
  ForgetAll();
  return false;
}

void CLogListBox::Remember(int width) {
  m_widths.push_back(width);
  ++m_widthCount[width];
}

void CLogListBox::Forget(int width) {
  const auto found = m_widthCount.find(width);
  if (--found->second == 0)
    m_widthCount.erase(found);
}

void CLogListBox::ForgetAll() {
  m_widths.clear();
  m_widthCount.clear();
}
