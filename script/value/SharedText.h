// A byte string that is cheap to pass: copies share their bytes until one of them is written to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

// One piece of memory: this head, the bytes, a zero byte. Not for sharing between threads: the count of sharers is a
// plain number, since a run and its values stay on one thread.
struct TextBody {
  std::uint32_t sharers;
  std::uint32_t size;
  std::uint32_t capacity; // 0: a constant of the process, which is neither counted nor freed

  char* Bytes() { return reinterpret_cast<char*>(this + 1); }
  std::string_view View() const { return {reinterpret_cast<const char*>(this + 1), size}; }
};

// A script that doubles a string for ever is to end with an error, not with the host's machine swapping.
inline constexpr std::size_t kMaxTextSize = 0x7FFFFFFF;

// Operations on bodies. A null body is the empty text. Growth beyond kMaxTextSize throws std::length_error, want of
// memory std::bad_alloc.

// A body with one sharer whose bytes are still to be filled in; null for size 0.
TextBody* NewText(std::size_t size);
TextBody* NewText(std::string_view bytes);
// The text of one byte; the same body for all.
TextBody* ByteText(unsigned char byte);
// Takes over the caller's share of `body` and returns the longer text with one sharer. Amortised in the length of
// `more` while nobody else shares the bytes. `more` may be part of the body.
TextBody* AppendText(TextBody* body, std::string_view more);
void FreeText(TextBody* body);

inline TextBody* ShareText(TextBody* body) {
  if (body && body->capacity != 0)
    ++body->sharers;
  return body;
}
inline void ReleaseText(TextBody* body) {
  if (body && body->capacity != 0 && --body->sharers == 0)
    FreeText(body);
}
inline std::string_view ViewOf(const TextBody* body) {
  return body ? body->View() : std::string_view("", 0);
}

// Owns a share of a body.
class SharedText {
public:
  static constexpr std::size_t kMaxSize = kMaxTextSize;

  SharedText() = default;
  explicit SharedText(std::string_view bytes) : m_body(NewText(bytes)) {}
  // Takes over the caller's share.
  explicit SharedText(TextBody* body) : m_body(body) {}
  SharedText(const SharedText& other) noexcept : m_body(ShareText(other.m_body)) {}
  SharedText(SharedText&& other) noexcept : m_body(std::exchange(other.m_body, nullptr)) {}
  SharedText& operator=(SharedText other) noexcept {
    std::swap(m_body, other.m_body);
    return *this;
  }
  ~SharedText() { ReleaseText(m_body); }

  // A zero byte follows.
  std::string_view Bytes() const { return ViewOf(m_body); }
  std::size_t Size() const { return m_body ? m_body->size : 0; }
  void Append(std::string_view more) { m_body = AppendText(m_body, more); }
  // Hands the share to the caller.
  TextBody* Detach() { return std::exchange(m_body, nullptr); }

private:
  TextBody* m_body = nullptr;
};
