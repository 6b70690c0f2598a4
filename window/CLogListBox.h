// A list box that shows a running log: lines come in at the end, the oldest go.
//
// The cost of a line does not depend on the lines already shown: widths are remembered, and a line is measured once,
// when somebody first asks for the widest after it came.
#pragma once

#include "window/CListBox.h"

#include <deque>
#include <map>

class CLogListBox : public CListBox {
public:
  static constexpr int kLines = 5000;
  static constexpr std::size_t kMostLines = kLines + 1; // that are ever in the list

  // Holds back drawing while lines are added; at its end the list shows its last line as the top one and repaints once.
  // The list box lives longer than the batch.
  class Batch {
  public:
    explicit Batch(CLogListBox& list) : m_list(list) { m_list.SetRedraw(false); }
    Batch(const Batch&) = delete;
    Batch& operator=(const Batch&) = delete;
    ~Batch();

  private:
    CLogListBox& m_list;
  };

  // A list of more than kLines lines loses its first one before each line comes in.
  void AddLine(const std::string& line);
  // The same for many at once: lines that would come in and go again never do.
  void AddLines(const std::deque<std::string>& lines);
  // Takes the last line out of the list, to be continued; empty when there is none.
  std::string TakeLastLine();
  void Clear();

  // Pixels; 0 for an empty list.
  int WidestItem() override;

protected:
  bool OnWndMsg(const Message& message, LRESULT& result) override;

private:
  bool OnSetFont();
  void Remember(int width);
  void Forget(int width);
  void ForgetAll();

  std::deque<int> m_widths;        // of the first lines, in their order; the lines behind them are not measured yet
  std::map<int, int> m_widthCount; // how many of them have a width
};
