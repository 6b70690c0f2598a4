#include "host/report/JsonMembers.h"
#include "host/report/Reports.h"
#include "host/report/Verdict.h"

#include <rapidjson/prettywriter.h>
#include <rapidjson/stringbuffer.h>

namespace host {

std::string MakeValuesFile(const SessionRecord& session) {
  rapidjson::StringBuffer buffer;
  rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
  writer.SetIndent(' ', 2);
  {
    JsonMembers whole(writer);
    whole.Number("code", std::int64_t{session.code}).Name("scripts").StartArray();
    for (const ScriptRecord& script : session.scripts) {
      JsonMembers members(writer);
      members.Text("script", script.script).Text("verdict", TextOf(script.verdict));
      AddCode(members, script);
      WriteValues(members.Name("values"), script);
    }
    writer.EndArray();
  }
  return std::string(buffer.GetString(), buffer.GetSize()) + "\n";
}

} // namespace host
