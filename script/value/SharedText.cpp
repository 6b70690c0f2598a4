#include "script/value/SharedText.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <functional>
#include <new>
#include <stdexcept>

namespace {

constexpr std::size_t kLeastCapacity = 19; // with its head and zero byte a piece of 32 bytes

std::size_t BytesFor(std::size_t capacity) {
  return sizeof(TextBody) + capacity + 1;
}

// The short text that was freed last, for the next one: a loop over pieces of a text makes and frees one each round,
// and the heap of Windows takes as long for that as all the rest of the round. Runs on several threads share it.
class SpareBody {
public:
  ~SpareBody() { ::operator delete(Take()); }

  // The caller's from now on; null when there is none.
  TextBody* Take() { return m_body.load(std::memory_order_relaxed) ? m_body.exchange(nullptr) : nullptr; }
  // False when there is one already.
  bool Keep(TextBody* body) {
    TextBody* none = nullptr;
    return !m_body.load(std::memory_order_relaxed) && m_body.compare_exchange_strong(none, body);
  }

private:
  std::atomic<TextBody*> m_body = nullptr;
};
constinit SpareBody g_spare;

TextBody* Allocate(std::size_t size, std::size_t capacity) {
  TextBody* body = capacity == kLeastCapacity ? g_spare.Take() : nullptr;
  if (!body)
    body = static_cast<TextBody*>(::operator new(BytesFor(capacity)));
  *body = {1, static_cast<std::uint32_t>(size), static_cast<std::uint32_t>(capacity)};
  body->Bytes()[size] = '\0';
  return body;
}

// A longer copy of a body that nobody else shares, in its place; on failure it stays as it was.
TextBody* Reallocate(TextBody* body, std::size_t size) {
  const std::size_t capacity = std::min(std::max(size, body->capacity + std::size_t{body->capacity}), kMaxTextSize);
  TextBody* grown = Allocate(body->size, capacity);
  std::memcpy(grown->Bytes(), body->Bytes(), body->size);
  FreeText(body);
  return grown;
}

struct ByteBody {
  TextBody head;
  char bytes[2]; // with the zero byte
};
static_assert(offsetof(ByteBody, bytes) == sizeof(TextBody));

// Never written to, but reached through the same pointers as others.
constinit std::array<ByteBody, 256> g_byteTexts = [] {
  std::array<ByteBody, 256> bodies{};
  for (std::size_t i = 0; i < bodies.size(); ++i)
    bodies[i] = {{1, 1, 0}, {static_cast<char>(i), 0}};
  return bodies;
}();

bool IsWithin(std::string_view part, std::string_view whole) {
  const std::less_equal<const char*> notBehind;
  return notBehind(whole.data(), part.data()) && notBehind(part.data(), whole.data() + whole.size());
}

} // namespace

TextBody* NewText(std::size_t size) {
  if (size > kMaxTextSize)
    throw std::length_error("text too long");
  return size == 0 ? nullptr : Allocate(size, std::max(size, kLeastCapacity));
}

TextBody* ByteText(unsigned char byte) {
  return &g_byteTexts[byte].head;
}

TextBody* NewText(std::string_view bytes) {
  if (bytes.size() == 1)
    return ByteText(static_cast<unsigned char>(bytes[0]));
  TextBody* body = NewText(bytes.size());
  if (body)
    std::memcpy(body->Bytes(), bytes.data(), bytes.size());
  return body;
}

TextBody* AppendText(TextBody* body, std::string_view more) {
  if (more.empty())
    return body;
  if (!body)
    return NewText(more);
  const std::size_t oldSize = body->size;
  if (more.size() > kMaxTextSize - oldSize)
    throw std::length_error("text too long");
  const std::size_t size = oldSize + more.size();
  if (body->sharers > 1 || body->capacity == 0) {
    TextBody* joined = Allocate(size, size + oldSize / 2 > kMaxTextSize ? size : size + oldSize / 2);
    std::memcpy(joined->Bytes(), body->Bytes(), oldSize);
    std::memcpy(joined->Bytes() + oldSize, more.data(), more.size());
    ReleaseText(body);
    return joined;
  }
  if (size > body->capacity) {
    const bool own = IsWithin(more, body->View());
    const std::size_t offset = own ? static_cast<std::size_t>(more.data() - body->Bytes()) : 0;
    body = Reallocate(body, size);
    if (own)
      more = {body->Bytes() + offset, more.size()};
  }
  if (more.size() == 1) // what most texts grow by
    body->Bytes()[oldSize] = more[0];
  else
    std::memmove(body->Bytes() + oldSize, more.data(), more.size());
  body->size = static_cast<std::uint32_t>(size);
  body->Bytes()[size] = '\0';
  return body;
}

void FreeText(TextBody* body) {
  if (body->capacity != kLeastCapacity || !g_spare.Keep(body))
    ::operator delete(body);
}
