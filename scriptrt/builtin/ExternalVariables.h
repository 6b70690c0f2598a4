// The variables that a host hands into scripts and reads back.
#pragma once

#include "frame/contract/OndDeviceClient.h"
#include "script/value/CONXScriptVariable.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What becomes of the variables that are there when others are set.
enum class ExistingVariables { kForget, kKeep };

class ExternalVariables {
public:
  // See ONX_CALL_SET_VARIABLES and ONX_CALL_GET_VARIABLES. Setting throws std::bad_alloc; the records taken before
  // stay.
  void Set(const TONXSCRIPTVARIABLE* records, std::size_t count, ExistingVariables existing);
  // Returns how many matches were written; duplicates each count, the last one stands.
  std::uint64_t Get(TONXSCRIPTVARIABLE* records, std::size_t count) const;

  // Makes a variable of this name and type, zero or empty, of one that is there if need be.
  void Declare(std::string_view name, DataType type);

  // In the order in which they were set.
  std::vector<std::pair<std::string_view, CONXScriptVariable*>> ByName();

private:
  struct Variable {
    std::string name;
    CONXScriptVariable value;
  };
  std::deque<Variable> m_variables;
};
