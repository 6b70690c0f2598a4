// A declared name with its type; each entry into its body makes a variable of it.
#pragma once

#include "script/CONXScriptObject.h"
#include "script/SourceCursor.h"

#include <cstddef>

class CONXScriptVarTemplate final : public CONXScriptObject {
public:
  ObjectKind GetObjectKind() const override { return ObjectKind::kTemplate; }

  // Reads a type name and an identifier.
  ScriptError Parse(SourceCursor& cursor);
  DataType GetType() const { return m_type; }

private:
  DataType m_type = DataType::kUint32;
};
