// A byte string that is cheap to pass: copies share their bytes until one of them is written to.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Holds any bytes. Not for sharing between threads: the count of sharers is a plain number, since a run and its values
// stay on one thread. Growth beyond kMaxSize throws std::length_error, want of memory std::bad_alloc.
class SharedText {
public:
  // A script that doubles a string for ever is to end with an error, not with the host's machine swapping.
  static constexpr std::size_t kMaxSize = 0x7FFFFFFF;

  SharedText() = default;
  explicit SharedText(std::string bytes);
  SharedText(const SharedText& other) noexcept;
  SharedText(SharedText&& other) noexcept;
  SharedText& operator=(SharedText other) noexcept;
  ~SharedText();

  const std::string& Bytes() const;
  std::size_t Size() const { return m_body ? m_body->bytes.size() : 0; }
  void Clear() { *this = SharedText(); }
  // Amortised in the length of `more` while nobody else shares the bytes. `more` may be part of this text.
  void Append(std::string_view more);

private:
  struct Body {
    std::size_t sharers;
    std::string bytes;
  };
  Body* m_body = nullptr; // null: empty
};
