#include "script/SharedText.h"

#include <stdexcept>
#include <utility>

namespace {
const std::string kEmpty;
}

SharedText::SharedText(std::string bytes) {
  if (bytes.size() > kMaxSize)
    throw std::length_error("text too long");
  if (!bytes.empty())
    m_body = new Body{1, std::move(bytes)};
}

SharedText::SharedText(const SharedText& other) noexcept : m_body(other.m_body) {
  if (m_body)
    ++m_body->sharers;
}

SharedText::SharedText(SharedText&& other) noexcept : m_body(std::exchange(other.m_body, nullptr)) {}

SharedText& SharedText::operator=(SharedText other) noexcept {
  std::swap(m_body, other.m_body);
  return *this;
}

SharedText::~SharedText() {
  if (m_body && --m_body->sharers == 0)
    delete m_body;
}

const std::string& SharedText::Bytes() const {
  return m_body ? m_body->bytes : kEmpty;
}

void SharedText::Append(std::string_view more) {
  if (more.empty())
    return;
  if (more.size() > kMaxSize - Size())
    throw std::length_error("text too long");
  if (m_body && m_body->sharers == 1) {
    m_body->bytes.append(more);
    return;
  }
  std::string joined;
  joined.reserve(Size() + more.size());
  joined.append(Bytes()).append(more);
  *this = SharedText(std::move(joined));
}
