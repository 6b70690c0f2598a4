// The loop that runs instructions: long, because every instruction's work stands in it; what is rare or long stands in
// ScriptMachine.cpp and GeneralOperations.cpp.
//
// R is the running frame, pc the instruction. CASE(name) begins an instruction's work, NEXT goes on behind it, GOTO at
// another one; FAIL ends the run with an error, which is reported at the instruction's place. Where the compiler knows
// jumps to computed places, each instruction's end is a jump of its own, which processors predict better; otherwise a
// switch leads to the same bodies.
#include "script/machine/ScriptMachine.h"
#include "script/value/NumberRange.h"

#include <array>
#include <new>
#include <stdexcept>

namespace {

constexpr std::int64_t Signed(std::uint64_t bits) {
  return static_cast<std::int64_t>(bits);
}
constexpr std::uint64_t ZeroExtended(std::uint64_t bits) {
  return static_cast<std::uint32_t>(bits);
}
constexpr std::uint64_t SignExtended(std::uint64_t bits) {
  return static_cast<std::uint64_t>(
      static_cast<std::int64_t>(static_cast<std::int32_t>(static_cast<std::uint32_t>(bits))));
}
// The processor traps on the most negative value by -1; its wrapped quotient is itself.
constexpr std::uint64_t Quotient(std::uint64_t l, std::uint64_t r) {
  return Signed(r) == -1 ? 0 - l : static_cast<std::uint64_t>(Signed(l) / Signed(r));
}
constexpr std::uint64_t RemainderOf(std::uint64_t l, std::uint64_t r) {
  return Signed(r) == -1 ? 0 : static_cast<std::uint64_t>(Signed(l) % Signed(r));
}

constexpr Instruction kEndInstruction{Op::kEnd, 0, 0, 0, 0, {0}};
constexpr Instruction kLeavePieceInstruction{Op::kLeavePiece, 0, 0, 0, 0, {0}};

void SetTextSlot(CONXScriptVariable& slot, TextBody* text) {
  slot.text = text;
  slot.type = DataType::kString;
}
void ReleaseOwned(CONXScriptVariable& slot, unsigned isOwned) {
  if (isOwned)
    slot.Release();
}

// A function, because no jump to a computed place may leave an object's scope.
void JoinTexts(const Instruction& join, CONXScriptVariable* R) {
  SharedText joined(join.n & kOwnsLeft ? R[join.b].text : ShareText(R[join.b].text));
  if (join.n & kOwnsLeft)
    R[join.b].type = DataType::kNone;
  joined.Append(ViewOf(R[join.c].text));
  ReleaseOwned(R[join.c], join.n & kOwnsRight);
  SetTextSlot(R[join.a], joined.Detach());
}

} // namespace

#if defined(__GNUC__)
#define SCRIPT_COMPUTED_GOTO 1
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#else
#define SCRIPT_COMPUTED_GOTO 0
#endif

const Instruction* ScriptMachine::EndInstruction() {
  return &kEndInstruction;
}

ScriptError ScriptMachine::Dispatch(const Code* code, CONXScriptVariable* R) {
#if SCRIPT_COMPUTED_GOTO
  static const void* const kTargets[] = {
#define SCRIPT_ONE(name, effect) &&L_##name,
#define SCRIPT_TWO(name, effect) &&L_##name, &&L_##name##Constant,
#define SCRIPT_SIX(name, effect)                                                                                       \
  &&L_##name, &&L_##name##Constant, &&L_JumpIf##name, &&L_JumpIf##name##Constant, &&L_LoopIf##name,                    \
      &&L_LoopIf##name##Constant,
      SCRIPT_COMPARISONS(SCRIPT_SIX) SCRIPT_ARITHMETIC(SCRIPT_TWO) SCRIPT_DIVISIONS(SCRIPT_TWO)
          SCRIPT_PLAIN_INSTRUCTIONS(SCRIPT_ONE)
#undef SCRIPT_ONE
#undef SCRIPT_TWO
#undef SCRIPT_SIX
  };
#define CASE(name) L_##name
#define DISPATCH goto* kTargets[static_cast<std::size_t>(pc->op)]
#else
#define CASE(name) case Op::k##name
#define DISPATCH goto again
#endif
#define NEXT                                                                                                           \
  do {                                                                                                                 \
    ++pc;                                                                                                              \
    DISPATCH;                                                                                                          \
  } while (false)
#define GOTO(target)                                                                                                   \
  do {                                                                                                                 \
    pc = code->instructions.data() + (target);                                                                         \
    DISPATCH;                                                                                                          \
  } while (false)
#define FAIL(code_)                                                                                                    \
  do {                                                                                                                 \
    error = (code_);                                                                                                   \
    goto failed;                                                                                                       \
  } while (false)

  const Instruction* pc = code->instructions.data();
  platform::StopEvent& stop = m_context.StopEvent();
  ScriptError error = kScriptOk;
  try {
    DISPATCH;
#if !SCRIPT_COMPUTED_GOTO
  again:
    switch (pc->op) {
#endif

#define SCRIPT_COMPARE(name, expression)                                                                               \
  CASE(name) : {                                                                                                       \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = R[pc->c].bits;                                                                             \
    R[pc->a].bits = (expression) ? 1 : 0;                                                                              \
    NEXT;                                                                                                              \
  }                                                                                                                    \
  CASE(name##Constant) : {                                                                                             \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = pc->k;                                                                                     \
    R[pc->a].bits = (expression) ? 1 : 0;                                                                              \
    NEXT;                                                                                                              \
  }                                                                                                                    \
  CASE(JumpIf##name) : {                                                                                               \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = R[pc->c].bits;                                                                             \
    if (expression)                                                                                                    \
      GOTO(pc->a);                                                                                                     \
    NEXT;                                                                                                              \
  }                                                                                                                    \
  CASE(JumpIf##name##Constant) : {                                                                                     \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = pc->k;                                                                                     \
    if (expression)                                                                                                    \
      GOTO(pc->a);                                                                                                     \
    NEXT;                                                                                                              \
  }                                                                                                                    \
  CASE(LoopIf##name) : {                                                                                               \
    if (stop.IsSet())                                                                                                  \
      FAIL(kProcessingAborted);                                                                                        \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = R[pc->c].bits;                                                                             \
    if (expression)                                                                                                    \
      GOTO(pc->a);                                                                                                     \
    NEXT;                                                                                                              \
  }                                                                                                                    \
  CASE(LoopIf##name##Constant) : {                                                                                     \
    if (stop.IsSet())                                                                                                  \
      FAIL(kProcessingAborted);                                                                                        \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = pc->k;                                                                                     \
    if (expression)                                                                                                    \
      GOTO(pc->a);                                                                                                     \
    NEXT;                                                                                                              \
  }
      SCRIPT_COMPARISONS(SCRIPT_COMPARE)
#undef SCRIPT_COMPARE

#define SCRIPT_COMPUTE(name, expression)                                                                               \
  CASE(name) : {                                                                                                       \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = R[pc->c].bits;                                                                             \
    R[pc->a].bits = (expression);                                                                                      \
    NEXT;                                                                                                              \
  }                                                                                                                    \
  CASE(name##Constant) : {                                                                                             \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = pc->k;                                                                                     \
    R[pc->a].bits = (expression);                                                                                      \
    NEXT;                                                                                                              \
  }
      SCRIPT_ARITHMETIC(SCRIPT_COMPUTE)
#undef SCRIPT_COMPUTE

#define SCRIPT_DIVIDE(name, expression)                                                                                \
  CASE(name) : {                                                                                                       \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = R[pc->c].bits;                                                                             \
    if (r == 0)                                                                                                        \
      FAIL(kDivisionByZero);                                                                                           \
    R[pc->a].bits = (expression);                                                                                      \
    NEXT;                                                                                                              \
  }                                                                                                                    \
  CASE(name##Constant) : {                                                                                             \
    const std::uint64_t l = R[pc->b].bits;                                                                             \
    const std::uint64_t r = pc->k;                                                                                     \
    if (r == 0)                                                                                                        \
      FAIL(kDivisionByZero);                                                                                           \
    R[pc->a].bits = (expression);                                                                                      \
    NEXT;                                                                                                              \
  }
      SCRIPT_DIVISIONS(SCRIPT_DIVIDE)
#undef SCRIPT_DIVIDE

      // --- moving numbers

      CASE(Move) : {
        R[pc->a].bits = R[pc->b].bits;
        NEXT;
      }
      CASE(NarrowInt32) : {
        R[pc->a].bits = SignExtended(R[pc->b].bits);
        NEXT;
      }
      CASE(NarrowUint32) : {
        R[pc->a].bits = ZeroExtended(R[pc->b].bits);
        NEXT;
      }
      CASE(Number) : {
        R[pc->a].bits = pc->k;
        NEXT;
      }
      CASE(TaggedNumber) : {
        R[pc->a].bits = pc->k;
        R[pc->a].type = static_cast<DataType>(pc->n);
        NEXT;
      }
      CASE(Tag) : {
        R[pc->a].type = static_cast<DataType>(pc->n);
        NEXT;
      }
      CASE(TaggedMove) : {
        R[pc->a].bits = R[pc->b].bits;
        R[pc->a].type = static_cast<DataType>(pc->n);
        NEXT;
      }
      CASE(Copy) : {
        const CONXScriptVariable& source = R[pc->b];
        if (source.type == DataType::kString)
          ShareText(source.text);
        R[pc->a].bits = source.bits;
        R[pc->a].type = source.type;
        NEXT;
      }

      // --- operators with forms of their own

      CASE(ShiftLeftBy) : {
        R[pc->a].bits = R[pc->b].bits << pc->k;
        NEXT;
      }
      CASE(ShiftRightBy) : {
        R[pc->a].bits = R[pc->b].bits >> pc->k;
        NEXT;
      }
      CASE(ShiftRightSignedBy) : {
        R[pc->a].bits = static_cast<std::uint64_t>(Signed(R[pc->b].bits) >> pc->k);
        NEXT;
      }
      CASE(Negate) : {
        R[pc->a].bits = 0 - R[pc->b].bits;
        NEXT;
      }
      CASE(Not) : {
        R[pc->a].bits = R[pc->b].bits == 0 ? 1 : 0;
        NEXT;
      }
      CASE(Invert) : {
        R[pc->a].bits = ~R[pc->b].bits;
        NEXT;
      }

      // --- texts

      CASE(Text) : {
        SetTextSlot(R[pc->a], ShareText(pc->text));
        NEXT;
      }
      CASE(AssignText) : {
        TextBody* const text = ShareText(R[pc->b].text);
        ReleaseText(R[pc->a].text);
        R[pc->a].text = text;
        NEXT;
      }
      CASE(MoveText) : {
        R[pc->a].Release();
        SetTextSlot(R[pc->a], R[pc->b].text);
        R[pc->b].type = DataType::kNone;
        NEXT;
      }
      CASE(AssignConstant) : {
        ShareText(pc->text);
        ReleaseText(R[pc->a].text);
        R[pc->a].text = pc->text;
        NEXT;
      }
      CASE(Append) : {
        R[pc->a].text = AppendText(R[pc->a].text, ViewOf(R[pc->b].text));
        ReleaseOwned(R[pc->b], pc->n & kOwnsLeft);
        NEXT;
      }
      CASE(AppendConstant) : {
        R[pc->a].text = AppendText(R[pc->a].text, ViewOf(pc->text));
        NEXT;
      }
      CASE(Join) : {
        JoinTexts(*pc, R);
        NEXT;
      }
      CASE(TextEqual) : {
        const bool equal = ViewOf(R[pc->b].text) == ViewOf(R[pc->c].text);
        ReleaseOwned(R[pc->b], pc->n & kOwnsLeft);
        ReleaseOwned(R[pc->c], pc->n & kOwnsRight);
        R[pc->a].bits = equal != ((pc->n & kOpposite) != 0) ? 1 : 0;
        NEXT;
      }
      CASE(TextEqualConstant) : {
        const bool equal = ViewOf(R[pc->b].text) == ViewOf(pc->text);
        ReleaseOwned(R[pc->b], pc->n & kOwnsLeft);
        R[pc->a].bits = equal != ((pc->n & kOpposite) != 0) ? 1 : 0;
        NEXT;
      }
      CASE(JumpIfText) : {
        const bool equal = ViewOf(R[pc->b].text) == ViewOf(pc->text);
        ReleaseOwned(R[pc->b], pc->n & kOwnsLeft);
        if (equal != ((pc->n & kOpposite) != 0))
          GOTO(pc->a);
        NEXT;
      }
      CASE(Release) : {
        R[pc->a].Release();
        NEXT;
      }

      // --- variables

      CASE(ResetNumbers) : {
        CONXScriptVariable* variable = R + pc->a;
        for (const CONXScriptVariable* const end = variable + pc->b; variable != end; ++variable) {
          variable->bits = 0;
          variable->type = static_cast<DataType>(pc->n);
        }
        NEXT;
      }
      CASE(ResetTexts) : {
        CONXScriptVariable* variable = R + pc->a;
        for (const CONXScriptVariable* const end = variable + pc->b; variable != end; ++variable)
          variable->Reset(DataType::kString);
        NEXT;
      }
#define LOAD(source_)                                                                                                  \
  do {                                                                                                                 \
    const CONXScriptVariable& source = (source_);                                                                      \
    if (source.type == DataType::kString)                                                                              \
      ShareText(source.text);                                                                                          \
    R[pc->a].bits = source.bits;                                                                                       \
    R[pc->a].type = source.type;                                                                                       \
    NEXT;                                                                                                              \
  } while (false)
      CASE(LoadParameter) : LOAD(*R[pc->b].Target());
      CASE(LoadGlobal) : LOAD(m_main[pc->b]);
      CASE(LoadOuter) : LOAD(*OuterFrame(R, pc->n)[pc->b].Target());
      CASE(LoadPredefined) : LOAD(*pc->variable);
#undef LOAD
      CASE(StoreParameter) : {
        R[pc->b].Target()->bits = R[pc->a].bits;
        NEXT;
      }
      CASE(StoreGlobal) : {
        m_main[pc->b].bits = R[pc->a].bits;
        NEXT;
      }
      CASE(StoreOuter) : {
        OuterFrame(R, pc->n)[pc->b].Target()->bits = R[pc->a].bits;
        NEXT;
      }
      CASE(StorePredefined) : {
        pc->variable->bits = R[pc->a].bits;
        NEXT;
      }
#define REFER(target_)                                                                                                 \
  do {                                                                                                                 \
    CONXScriptVariable* const target = (target_);                                                                      \
    R[pc->a].target = target;                                                                                          \
    R[pc->a].type = DataType::kReference;                                                                              \
    NEXT;                                                                                                              \
  } while (false)
#define REFER_TYPED(target_)                                                                                           \
  do {                                                                                                                 \
    CONXScriptVariable* const variable = (target_);                                                                    \
    if (!variable->IsReference())                                                                                      \
      variable->type = static_cast<DataType>(pc->n);                                                                   \
    REFER(variable->Target());                                                                                         \
  } while (false)
      CASE(Refer) : REFER_TYPED(R + pc->b);
      CASE(ReferGlobal) : REFER(m_main + pc->b);
      CASE(ReferOuter) : REFER_TYPED(OuterFrame(R, pc->c) + pc->b);
      CASE(ReferPredefined) : REFER(pc->variable);
#undef REFER
#undef REFER_TYPED
      CASE(Function) : {
        R[pc->a].target = pc->c == kNoIndex ? m_main : OuterFrame(R, pc->c);
        R[pc->a].function = static_cast<std::uint32_t>(pc->k);
        R[pc->a].type = DataType::kFunction;
        NEXT;
      }
      CASE(LoadFunction) : {
        const CONXScriptVariable& source = OuterFrame(R, pc->c)[pc->b];
        R[pc->a].target = source.target;
        R[pc->a].function = source.function;
        R[pc->a].type = DataType::kFunction;
        NEXT;
      }

      // --- what only a run can tell

      CASE(AssignDynamic) : {
        CONXScriptVariable& variable = R[pc->a];
        CONXScriptVariable& source = R[pc->b];
        const auto type = static_cast<DataType>(pc->n);
        if (source.type == type && type != DataType::kString) {
          variable.bits = source.bits;
          NEXT;
        }
        if (type != DataType::kString)
          variable.type = type;
        error = variable.Assign(source);
        if (error != kScriptOk)
          goto failed;
        source.Release();
        NEXT;
      }
      CASE(AssignGeneral) : {
        if (pc->n == static_cast<std::uint16_t>(Operator::kAddAssign) && IsNumeric(R[pc->a].type) &&
            IsNumeric(R[pc->b].type)) { // a sum of what a function gives
          R[pc->a].bits = NarrowedTo(R[pc->a].type, R[pc->a].bits + R[pc->b].bits);
          NEXT;
        }
        error = R[pc->a].ApplyAssignment(static_cast<Operator>(pc->n), R[pc->b]);
        if (error != kScriptOk)
          goto failed;
        ReleaseOwned(R[pc->b], pc->k != 0);
        NEXT;
      }
      CASE(AssignReferred) : {
        error = R[pc->a].ApplyAssignment(static_cast<Operator>(pc->n), R[pc->b]);
        if (error != kScriptOk)
          goto failed;
        R[pc->a].type = DataType::kNone;
        ReleaseOwned(R[pc->b], pc->k != 0);
        NEXT;
      }
      CASE(AssignResultNumber) : {
        const auto type = static_cast<DataType>(pc->n);
        if (R[0].type == type || R[0].type == DataType::kNone) {
          R[0].bits = R[pc->b].bits;
          R[0].type = type;
          NEXT;
        }
        if (R[0].type == DataType::kAbsent)
          NEXT;
        error = R[0].SetNumber(R[pc->b].bits, type);
        if (error != kScriptOk)
          goto failed;
        NEXT;
      }
      CASE(AssignResult) : {
        if (R[0].type == R[pc->b].type && IsNumeric(R[0].type) && pc->n == 0) {
          R[0].bits = R[pc->b].bits;
          NEXT;
        }
        if (R[0].type != DataType::kAbsent) {
          error = R[0].ApplyAssignment(static_cast<Operator>(pc->n), R[pc->b]);
          if (error != kScriptOk)
            goto failed;
        }
        ReleaseOwned(R[pc->b], pc->k != 0);
        NEXT;
      }
      CASE(ConvertGeneral) : {
        const DataType receiver = ReceiverOf(pc->k, R, pc->a);
        if (IsNumeric(receiver) && IsNumeric(R[pc->b].type)) {
          R[pc->a].bits = NarrowedTo(receiver, R[pc->b].bits);
          R[pc->a].type = receiver;
          NEXT;
        }
        error = ConvertGeneral(*pc, R);
        if (error != kScriptOk)
          goto failed;
        NEXT;
      }
      CASE(UnaryGeneral) : {
        error = UnaryGeneral(*pc, R);
        if (error != kScriptOk)
          goto failed;
        NEXT;
      }
      CASE(BinaryGeneral) : {
        error = BinaryGeneral(*pc, R);
        if (error != kScriptOk)
          goto failed;
        NEXT;
      }

      // --- ways

      CASE(Jump) : GOTO(pc->a);
      CASE(JumpUnlessDynamic) : {
        if (!IsNumeric(R[pc->b].type))
          FAIL(kTypeError);
        if (R[pc->b].bits == 0)
          GOTO(pc->a);
        NEXT;
      }
      CASE(CheckStop) : {
        if (stop.IsSet())
          FAIL(kProcessingAborted);
        NEXT;
      }
      CASE(Loop) : {
        if (stop.IsSet())
          FAIL(kProcessingAborted);
        GOTO(pc->a);
      }

      // --- calls

      {
        CONXScriptProgramFunc* function;
        CONXScriptVariable* outer;
        CASE(Call) : {
          function = pc->function;
          outer = pc->b == 0 ? m_main : OuterFrame(R, pc->b - 1);
        }
      enter : {
        if (stop.IsAbandoned())
          FAIL(kProcessingAborted);
        const Code* const called = function->code[pc->n / kHasReferences];
        const Code& entered = called ? *called : CodeOf(*function, (pc->n & kHasReferences) != 0);
        CONXScriptVariable* base = R + pc->a;
        if (m_frames.size() >= kMostFrames)
          FAIL(kOutOfMemory);
        m_frames.push_back({pc + 1, R, code});
        if (base + entered.frameSize > m_end) {
          base =
              NewFrame(base, CONXScriptProgramFunc::kFirstParameter + function->GetParameterCount(), entered.frameSize);
          m_frames.push_back({&kLeavePieceInstruction, base, code});
        }
        base[0].type = pc->n & kWantsResult ? DataType::kNone : DataType::kAbsent;
        base[1].target = outer;
        R = base;
        code = &entered;
        pc = entered.instructions.data();
        DISPATCH;
      }

        CASE(CallDynamic) : {
          const CONXScriptVariable& value = R[pc->a];
          CONXScriptFunc& callee = *m_program.callables[value.function];
          if (!callee.CheckArgumentCount(pc->b))
            FAIL(kWrongParameterCount);
          if (callee.IsOfProgram()) {
            function = static_cast<CONXScriptProgramFunc*>(&callee);
            outer = value.target;
            goto enter;
          }
          error = CallBuiltIn(callee, R + pc->a, pc->b, (pc->n & kWantsResult) != 0);
          if (error != kScriptOk)
            goto failedInside;
          NEXT;
        }
      }
      CASE(CallBuiltIn) : {
        error = CallBuiltIn(*pc->callee, R + pc->a, pc->b, (pc->n & kWantsResult) != 0);
        if (error != kScriptOk)
          goto failedInside;
        NEXT;
      }
      CASE(CallPure) : {
        error = pc->pure(R[pc->a], R[pc->b], R[pc->c], R[pc->n]);
        if (error != kScriptOk)
          goto failed;
        NEXT;
      }
      CASE(CheckValue) : {
        const CONXScriptFunc& callee = *m_program.callables[R[pc->b].function];
        const std::size_t index = pc->a - pc->b - CONXScriptProgramFunc::kFirstParameter;
        if (index < callee.GetParameterCount() && callee.GetParameter(index).isFunction)
          FAIL(kTypeError);
        NEXT;
      }
      CASE(CheckReference) : {
        error = CheckReference(R[pc->a], R[pc->b], pc->a - pc->b - CONXScriptProgramFunc::kFirstParameter);
        if (error != kScriptOk)
          goto failed;
        NEXT;
      }
      CASE(ReleaseAndReturn) : {
        CONXScriptVariable* slot = R + pc->a;
        for (const CONXScriptVariable* const end = slot + pc->b; slot != end; ++slot)
          slot->Release();
      }
      CASE(Return) : {
        const Frame& frame = m_frames.back();
        if (frame.next == &kEndInstruction)
          m_returnPlace = code->places[static_cast<std::size_t>(pc - code->instructions.data())];
        R = frame.base;
        code = frame.code;
        pc = frame.next;
        m_frames.pop_back();
        DISPATCH;
      }
      CASE(LeavePiece) : {
        const Frame& frame = m_frames.back();
        LeavePiece(frame.base + (frame.next - 1)->a);
        R = frame.base;
        code = frame.code;
        pc = frame.next;
        m_frames.pop_back();
        DISPATCH;
      }
      CASE(End) : return kScriptOk;
      CASE(Fail) : FAIL(static_cast<ScriptError>(pc->k));

      // --- watchers

      CASE(WatchStatement) : {
        m_watcher->StatementBegins(pc->a);
        NEXT;
      }
      CASE(WatchEnter) : {
        m_watcher->FunctionEntered(m_program.functions[pc->a]);
        NEXT;
      }
      CASE(WatchLeave) : {
        m_watcher->FunctionLeft(m_program.functions[pc->a]);
        NEXT;
      }
#if !SCRIPT_COMPUTED_GOTO
    case Op::kCount:
      return kSystemFunctionFailed;
    }
#endif
  failedInside: // where a function that was called back read last
    if (m_calledBack != kNoPlace) {
      NoteFailure({code, static_cast<std::size_t>(pc - code->instructions.data()), R});
      m_place = m_calledBack;
      return error;
    }
    goto failed;
  } catch (const std::bad_alloc&) {
    error = kOutOfMemory;
  } catch (const std::length_error&) {
    error = kOutOfMemory;
  } catch (...) { // a built-in or the host's own code threw something else
    error = kSystemFunctionFailed;
  }
failed:
  NoteFailure({code, static_cast<std::size_t>(pc - code->instructions.data()), R});
  m_place = code->places[static_cast<std::size_t>(pc - code->instructions.data())];
  return error;
}

#undef CASE
#undef DISPATCH
#undef NEXT
#undef GOTO
#undef FAIL
#if SCRIPT_COMPUTED_GOTO
#pragma GCC diagnostic pop
#endif
