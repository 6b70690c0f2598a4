// Root of everything in a script that has a name.
#pragma once

#include "script/Names.h"
#include "script/SharedText.h"

enum class ObjectKind {
  kTemplate = 1,
  kVariable = 2,
  kFunction = 3,
  kIfStatement = 4,
  kWhileStatement = 5,
};

class CONXScriptObject {
public:
  virtual ~CONXScriptObject() = default;
  CONXScriptObject(const CONXScriptObject&) = delete;
  CONXScriptObject& operator=(const CONXScriptObject&) = delete;

  virtual ObjectKind GetObjectKind() const = 0;

  const std::string& GetName() const { return m_name.Bytes(); }
  // The spelling, and its number in the program that the object belongs to.
  void SetName(std::string_view name, NameId id) {
    m_name = SharedText(std::string(name));
    m_nameId = id;
  }
  NameId GetNameId() const { return m_nameId; }

protected:
  CONXScriptObject() = default;

private:
  SharedText m_name;
  NameId m_nameId = 0;
};
