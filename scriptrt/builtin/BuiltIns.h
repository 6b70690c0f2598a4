// All built-in functions of one run.
#pragma once

#include "scriptrt/builtin/CONXScriptSysFunc.h"
#include "scriptrt/builtin/RunServices.h"

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

class BuiltIns {
public:
  explicit BuiltIns(const RunServices& services);
  BuiltIns(const BuiltIns&) = delete;
  BuiltIns& operator=(const BuiltIns&) = delete;

  // In the order of the table. The functions stay this object's.
  const std::vector<std::pair<std::string_view, CONXScriptFunc*>>& ByName() const { return m_byName; }

private:
  RunServices m_services;
  std::vector<std::unique_ptr<CONXScriptSysFunc>> m_functions;
  std::vector<std::pair<std::string_view, CONXScriptFunc*>> m_byName;
};
