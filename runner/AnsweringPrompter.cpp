#include "runner/AnsweringPrompter.h"

#include "host/answers/ItemAnswer.h"
#include "host/support/Text.h"
#include "scriptrt/question/NumberAnswer.h"

template <class Value>
std::optional<Value> AnsweringPrompter::Answer(host::Question question, const Reading<Value>& read,
                                               const std::function<std::optional<Value>()>& ask,
                                               const std::function<std::string(const Value&)>& show) {
  if (!m_desk)
    return ask();
  if (!m_desk->Open(std::move(question)))
    return std::nullopt;
  const bool isBox = m_desk->Asked().kind == host::QuestionKind::kBox;
  const host::FileAnswer* const answer = m_desk->HasAnswers() ? m_desk->FileAnswerToIt() : nullptr;
  if (m_desk->HasAnswers() && !answer)
    return std::nullopt;

  std::optional<Value> value;
  if (!answer) {
    value = ask();
    if (!value && m_isDeserted()) {
      m_desk->FindNobody("no terminal, nothing on standard input; --answers FILE gives the answers");
      return std::nullopt;
    }
  } else if (isBox || answer->kind != host::FileAnswer::Kind::kCancel) {
    std::string complaint;
    value = read(*answer, complaint);
    if (!value) {
      m_desk->Refuse(*answer, complaint);
      return std::nullopt;
    }
  }
  m_desk->Close(value ? std::optional(show(*value)) : std::nullopt, answer);
  return value;
}

void AnsweringPrompter::ShowMessage(const std::string& caption, const std::string& text) {
  using Shown = bool;
  Answer<Shown>(
      {host::QuestionKind::kBox, caption, text, "", "", {}},
      [](const host::FileAnswer& answer, std::string& complaint) {
        complaint = "a box takes nothing but OK";
        const bool isOk = answer.kind == host::FileAnswer::Kind::kDefault || host::EqualIgnoringCase(answer.text, "OK");
        return isOk ? std::optional<Shown>(true) : std::nullopt;
      },
      [&]() -> std::optional<Shown> {
        m_person.ShowMessage(caption, text);
        return m_isDeserted() ? std::nullopt : std::optional<Shown>(true);
      },
      [](const Shown&) { return "OK"; });
}

std::optional<std::uint64_t> AnsweringPrompter::AskNumber(const NumberQuestion& question) {
  const std::string initial = NumberForPrompt(question, question.initial);
  return Answer<std::uint64_t>(
      {host::QuestionKind::kEntry, question.caption, question.prompt, initial, LimitsForPrompt(question), {}},
      [&](const host::FileAnswer& answer, std::string& complaint) {
        const bool isDefault = answer.kind == host::FileAnswer::Kind::kDefault;
        NumberAnswer number = ReadNumberAnswer(question, isDefault ? initial : answer.text);
        complaint = number.complaint.empty() ? host::Quoted(answer.text) + " is not a number" : number.complaint;
        return number.value;
      },
      [&] { return m_person.AskNumber(question); },
      [&](const std::uint64_t& value) { return NumberForPrompt(question, value); });
}

std::optional<std::string> AnsweringPrompter::AskText(const std::string& caption, const std::string& prompt,
                                                      const std::string& initial) {
  return Answer<std::string>(
      {host::QuestionKind::kEntry, caption, prompt, initial, "", {}},
      [&](const host::FileAnswer& answer, std::string&) {
        return std::optional(answer.kind == host::FileAnswer::Kind::kDefault ? initial : answer.text);
      },
      [&] { return m_person.AskText(caption, prompt, initial); }, [](const std::string& text) { return text; });
}

std::optional<std::size_t> AnsweringPrompter::AskItem(const std::string& caption, const std::string& prompt,
                                                      const std::vector<std::string>& items, std::uint64_t initial) {
  const std::string offered = initial < items.size() ? items[initial] : "";
  return Answer<std::size_t>(
      {host::QuestionKind::kChoice, caption, prompt, offered, "", items},
      [&](const host::FileAnswer& answer, std::string& complaint) -> std::optional<std::size_t> {
        if (answer.kind == host::FileAnswer::Kind::kDefault) {
          complaint = "no item is offered";
          return initial < items.size() ? std::optional<std::size_t>(initial) : std::nullopt;
        }
        const std::string text = answer.quoted ? host::Quoted(answer.text) : answer.text;
        complaint = text + " is neither the number nor the text of an item";
        return host::FindItem(items, text);
      },
      [&] { return m_person.AskItem(caption, prompt, items, initial); },
      [&](const std::size_t& item) { return items[item]; });
}
