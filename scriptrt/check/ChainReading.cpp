#include "scriptrt/check/ChainReading.h"

#include "scriptrt/check/TextPlaces.h"

namespace {

CONXScriptVariable SomeValue(DataType type) {
  CONXScriptVariable value(type);
  if (IsNumeric(type))
    static_cast<void>(value.SetNumber(1, type)); // which can be divided by
  return value;
}

// The type of what the operator gives; kNone when it does not take the sides. A unary operator's is on the right.
DataType TypeOfOperation(const Node& op, DataType left, DataType right) {
  CONXScriptVariable result;
  CONXScriptVariable rightValue = SomeValue(right);
  CONXScriptVariable leftValue = SomeValue(left);
  const auto kind = static_cast<Operator>(op.op);
  const ScriptError error = op.kind == NodeKind::kUnary ? result.ApplyUnaryOperator(kind, rightValue)
                                                        : result.ApplyBinaryOperator(kind, leftValue, rightValue);
  return error == kScriptOk ? result.GetType() : DataType::kNone;
}

} // namespace

std::vector<ChainPart> ChainReading::PartsOf(NodeIndex chain) const {
  std::vector<ChainPart> parts;
  const NodeIndex end = At(chain).value;
  for (NodeIndex at = chain + 1; at < end;) {
    const NodeIndex node = at;
    switch (At(at).kind) {
    case NodeKind::kParenthesis:
      at = At(at + 1).value;
      break;
    case NodeKind::kCall:
    case NodeKind::kConvert:
      at = At(at).end;
      break;
    default:
      ++at;
    }
    parts.push_back({node, at});
  }
  return parts;
}

DataType ChainReading::TypeOf(NodeIndex chain, std::optional<OperatorMisfit>* misfit) const {
  const std::vector<ChainPart> parts = PartsOf(chain);
  DataType value = TypeOfOperand(parts.back().node);
  for (std::size_t i = parts.size() - 1; i-- > 0;) {
    const Node& op = At(parts[i].node);
    const bool isUnary = op.kind == NodeKind::kUnary;
    const DataType left = isUnary ? DataType::kNone : TypeOfOperand(parts[i - 1].node);
    if (!isUnary)
      --i;
    if (value == DataType::kNone || (!isUnary && left == DataType::kNone)) {
      value = DataType::kNone;
      continue;
    }
    const DataType result = TypeOfOperation(op, left, value);
    if (result == DataType::kNone) {
      if (misfit)
        *misfit = {static_cast<NodeIndex>(isUnary ? parts[i].node : parts[i + 1].node), left, value};
      return DataType::kNone;
    }
    value = result;
  }
  return value;
}

DataType ChainReading::TypeOfOperand(NodeIndex node) const {
  const Node& operand = At(node);
  switch (operand.kind) {
  case NodeKind::kNumber:
  case NodeKind::kConstant:
  case NodeKind::kConvert:
    return static_cast<DataType>(operand.op);
  case NodeKind::kName:
    return m_program.declarations[operand.value].Type();
  case NodeKind::kParenthesis:
    return TypeOf(node + 1);
  case NodeKind::kCall: {
    const Declaration& callee = m_program.declarations[operand.value];
    return callee.kind == DeclarationKind::kFunction ? m_program.callables[callee.slot]->GetResultType()
                                                     : DataType::kNone;
  }
  default:
    return DataType::kNone;
  }
}

// --- places

Token ChainReading::TokenAt(std::uint32_t place) const {
  NameTable names;
  return Scanner(Text(), names).Scan(place);
}

TextRange ChainReading::RangeOf(NodeIndex chain) const {
  return RangeFrom(chain + 1, chain);
}

TextRange ChainReading::RangeFrom(NodeIndex node, NodeIndex chain) const {
  return {TokenAt(At(node).place).begin, EndOfTokenBefore(Text(), TokenAt(At(chain).place).begin)};
}

TextRange ChainReading::RangeOfToken(NodeIndex node) const {
  const Token token = TokenAt(At(node).place);
  return {token.begin, token.end};
}

std::string_view ChainReading::TextOf(const TextRange& range) const {
  return Text().substr(range.begin, range.end - range.begin);
}

// Every chain ends in front of a token of its own.
NodeIndex ChainReading::ChainEndingAt(std::uint32_t place) const {
  for (NodeIndex node = 0; node < m_program.nodes.size(); ++node)
    if (At(node).kind == NodeKind::kChain && At(node).place == place)
      return node;
  return kNoIndex;
}

NodeIndex ChainReading::CallEndingAt(std::uint32_t place) const {
  for (NodeIndex node = 0; node < m_program.nodes.size(); ++node)
    if (At(node).kind == NodeKind::kCall && At(At(node).end - 1).place == place)
      return node;
  return kNoIndex;
}

NodeIndex ChainReading::CallWithArgumentAt(std::uint32_t place, std::size_t* index) const {
  for (NodeIndex node = 0; node < m_program.nodes.size(); ++node) {
    if (At(node).kind != NodeKind::kCall)
      continue;
    const std::vector<NodeIndex> arguments = ArgumentsOf(node);
    for (std::size_t i = 0; i < arguments.size(); ++i) {
      if (At(arguments[i]).place != place)
        continue;
      *index = i;
      return node;
    }
  }
  return kNoIndex;
}

std::vector<NodeIndex> ChainReading::ArgumentsOf(NodeIndex call) const {
  std::vector<NodeIndex> arguments;
  for (NodeIndex at = call + 1; At(at).kind != NodeKind::kArgumentsEnd;) {
    arguments.push_back(at);
    at = At(at).kind == NodeKind::kReference ? at + 1 : At(at + 1).value;
  }
  return arguments;
}
