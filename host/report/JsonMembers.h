// JSON objects, member by member.
#pragma once

#include "host/report/RunRecord.h"
#include "host/support/Utf8.h"

#include <rapidjson/rapidjson.h>

#include <string>
#include <string_view>

namespace host {

// An object being written, until its end. Texts are bytes as `ToUtf8` takes them; `Writer` is one of the library's.
template <class Writer>
class JsonMembers {
public:
  explicit JsonMembers(Writer& writer) : m_writer(writer) { m_writer.StartObject(); }
  ~JsonMembers() { m_writer.EndObject(); }
  JsonMembers(const JsonMembers&) = delete;
  JsonMembers& operator=(const JsonMembers&) = delete;

  JsonMembers& Text(std::string_view name, std::string_view bytes) {
    WriteText(Name(name), bytes);
    return *this;
  }
  // Null for an empty text.
  JsonMembers& TextOrNull(std::string_view name, std::string_view bytes) {
    return bytes.empty() ? Nothing(name) : Text(name, bytes);
  }
  template <class Texts>
  JsonMembers& List(std::string_view name, const Texts& texts) {
    Name(name).StartArray();
    for (const std::string& text : texts)
      WriteText(m_writer, text);
    m_writer.EndArray();
    return *this;
  }
  JsonMembers& Number(std::string_view name, std::int64_t number) {
    Name(name).Int64(number);
    return *this;
  }
  JsonMembers& Number(std::string_view name, std::uint64_t number) {
    Name(name).Uint64(number);
    return *this;
  }
  JsonMembers& Truth(std::string_view name, bool value) {
    Name(name).Bool(value);
    return *this;
  }
  JsonMembers& Nothing(std::string_view name) {
    Name(name).Null();
    return *this;
  }
  // For a value of another kind, to be written next.
  Writer& Name(std::string_view name) {
    const std::string text = ToUtf8(name);
    m_writer.Key(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    return m_writer;
  }

private:
  static void WriteText(Writer& writer, std::string_view bytes) {
    const std::string text = ToUtf8(bytes);
    writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  }

  Writer& m_writer;
};

// The variables of a script, as an object.
template <class Writer>
void WriteValues(Writer& writer, const ScriptRecord& script) {
  JsonMembers members(writer);
  for (const NamedValue& value : script.values) {
    if (const auto* const text = std::get_if<std::string>(&value.value))
      members.Text(value.name, *text);
    else if (const auto* const number = std::get_if<std::uint64_t>(&value.value))
      members.Number(value.name, *number);
    else
      members.Number(value.name, std::get<std::int64_t>(value.value));
  }
}

template <class Writer>
void AddCode(JsonMembers<Writer>& members, const ScriptRecord& script) {
  if (script.verdict == Verdict::kNotRun)
    members.Nothing("code");
  else
    members.Number("code", std::int64_t{script.code});
}

} // namespace host
