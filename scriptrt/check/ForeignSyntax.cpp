#include "scriptrt/check/ForeignSyntax.h"

#include "util/AsciiCase.h"

namespace {

constexpr unsigned kName = static_cast<unsigned>(WordPlace::kName);
constexpr unsigned kType = static_cast<unsigned>(WordPlace::kType);
constexpr unsigned kInside = static_cast<unsigned>(WordPlace::kInside);

struct ForeignWord {
  std::string_view words; // with a blank around each
  unsigned places;
  std::string_view hint;
};

constexpr ForeignWord kWords[] = {
    // statements
    {" for foreach ", kName, "there is no `for`: write `i = 0; while (i < 10) { ... i += 1; }`"},
    {" do repeat loop until ", kName, "there is one kind of loop: `while (CONDITION) { ... }`"},
    {" do then begin ", kInside, "a block stands in braces: `{ ... }`"},
    {" end endif fi done wend ", kName, "a block ends with `}`"},
    {" switch case select default ", kName, "there is no `switch`: write `if (...) { ... } else { if (...) { ... } }`"},
    {" elseif elif elsif ", kName | kInside, "write `else { if (CONDITION) { ... } }`"},
    {" else ", kName, "an `else` stands behind the `}` of an `if`, without anything in between"},
    {" unless ", kName, "write `if (!(CONDITION)) { ... }`"},
    {" break continue ", kName, "a loop ends by its condition only: clear a variable that the condition tests"},
    {" goto ", kName, "there are no jumps: write a loop or a function"},
    {" try catch throw raise ", kName, "the first error ends the script; look at what functions return instead"},
    {" exit stop quit die abort ", kName | kInside, "`exit();` ends the script"},
    {" pass ", kName, "a block may be empty: `{ }`"},
    // declarations
    {" function def fn sub proc procedure ", kName, "a function is `func NAME(var int32 a) { ... }`"},
    {" let const auto dim local global static my ", kName | kType, "a declaration is `var TYPE NAME;`"},
    {" void ", kName | kType, "a function has no type in front: `func NAME() { ... }`"},
    {" int integer short number i32 signed ", kName | kType,
     "the type is `int32`, or `dword` without a sign: `var int32 NAME;`"},
    {" uint unsigned u32 word byte u8 uint8 uint16 uint8_t uint16_t uint32_t size_t ulong ", kName | kType,
     "the type is `dword`: `var dword NAME;`"},
    {" int64_t longlong i64 ", kName | kType, "the type is `int64`"},
    {" uint64_t u64 qword ", kName | kType, "the type is `uint64`"},
    {" bool boolean ", kName | kType, "truth is a number, 0 or 1: `var dword NAME;`"},
    {" float double real decimal single ", kName | kType,
     "numbers are whole: count in thousandths, in an `int32` or `int64`"},
    {" char str text ", kName | kType, "the type is `string`"},
    {" array list vector struct class record enum map dict object ", kName | kType,
     "there are plain variables only: numbers and strings"},
    {" import include using require use load ", kName,
     "other scripts are called: `executesubscriptfunc(\"lib\\\\device.dcs\", \"ask\", ...)`"},
    // values and operators
    {" return ", kName | kInside, "a function's value is assigned to the function's name"},
    {" true yes ", kName, "truth is a number: write 1"},
    {" false no ", kName, "truth is a number: write 0"},
    {" null nil none nullptr undefined ", kName, "there is no such value: use 0 or \"\""},
    {" and ", kName | kInside, "write `&`, with each side in parentheses: `(a > 1) & (b > 1)`"},
    {" or ", kName | kInside, "write `|`, with each side in parentheses: `(a > 1) | (b > 1)`"},
    {" not ", kName | kInside, "write `!`, with what it applies to in parentheses: `!(a > 1)`"},
    {" is eq ", kInside, "write `==`"},
    {" mod ", kInside, "write `%`"},
    {" div ", kInside, "write `/`, which cuts off what is behind the point"},
    {" xor ", kInside, "write `^`"},
    {" new ", kName, "there are no objects: only numbers and strings"},
    // functions
    {" printf println echo puts write writeln cout console log say display ", kName,
     "`print(...)` prints its arguments; a line end is \"\\n\""},
    {" sprintf format concat strcat join ", kName, "join strings with `+`, numbers by `numtostr(n)`"},
    {" len length size sizeof ", kName, "the length of a string is `strlen(s)`"},
    {" substring mid left right slice ", kName, "a part of a string is `substr(s, START, LENGTH)`"},
    {" indexof strpos strstr find search contains pos ", kName,
     "`instr(s, SEARCHED)` is the position in a string, -1 if it is not there"},
    {" atoi parseint toint tonumber strtol int_parse val cint ", kName,
     "a string becomes a number by `strtoint32(s)` or one of its relatives"},
    {" itoa tostring tostr inttostr cstr ", kName, "a number becomes a string by `numtostr(n)`"},
    {" hex tohex ", kName, "a number in hexadecimal is `numtohexstr(n)`"},
    {" ord asc charcode ", kName, "the code of a character is `ascii(s)`"},
    {" sleep wait usleep pause ", kName, "`delay(MILLISECONDS)` waits"},
    {" input readline gets scanf prompt ask inputbox ", kName,
     "questions to the user are `userinputstring(...)` and its relatives"},
    {" msgbox alert ", kName, "a message to the user is `messagebox(CAPTION, TEXT)`"},
    {" send transmit ", kName, "`transmitstring(s)` sends to the device"},
    {" receive recv read ", kName, "`receivestring()` reads what has come from the device"},
    {" open fopen readfile ", kName, "`readstringfromfile(FILE)` reads a file"},
    {" writefile fwrite fputs savefile ", kName, "`writestringtofile(FILE, TEXT)` writes a file"},
    {" time now date clock ", kName, "`getsysdate()` and `getsystime()` are date and time as strings"},
};

struct Sign {
  std::string_view sign;
  std::string_view hint;
};

// Longer signs stand in front of those that they begin with.
constexpr Sign kSigns[] = {
    {"===", "write `==`"},
    {"!==", "write `!=`"},
    {"&&", "write `&`, with each side in parentheses: `(a > 1) & (b > 1)`"},
    {"||", "write `|`, with each side in parentheses: `(a > 1) | (b > 1)`"},
    {"++", "write `x += 1;`, a statement of its own"},
    {"--", "write `x -= 1;`, a statement of its own"},
    {"**", "there are no powers: multiply"},
    {"<>", "write `!=`"},
    {"=!", "write `!=`"},
    {"=>", "write `>=`"},
    {"=<", "write `<=`"},
    {":=", "write `=`"},
    {"->", "there are no members: only numbers and strings"},
    {"::", "there are no members: only numbers and strings"},
    {"//", "a comment begins with `#`"},
    {"/*", "a comment begins with `#` and ends with its line"},
    {"*/", "a comment begins with `#` and ends with its line"},
    {"\"\"\"", "strings stand on one line, in one pair of double quotes"},
    {"'", "strings stand in double quotes: \"text\""},
    {"`", "strings stand in double quotes: \"text\""},
    {"\xE2\x80\x9C", "these are typographic quotes: write plain ones, \""},
    {"\xE2\x80\x9D", "these are typographic quotes: write plain ones, \""},
    {"\xE2\x80\x9E", "these are typographic quotes: write plain ones, \""},
    {"\x93", "these are typographic quotes: write plain ones, \""},
    {"\x94", "these are typographic quotes: write plain ones, \""},
    {"\x84", "these are typographic quotes: write plain ones, \""},
    {"\xC2\xA0", "this is a no-break space: write a plain blank"},
    {"\xA0", "this is a no-break space: write a plain blank"},
    {"\xEF\xBB\xBF", "save the script without a byte-order mark"},
    {"[", "there are no arrays: the character of a string is `substr(s, POSITION, 1)`"},
    {"]", "there are no arrays"},
    {"?", "there is no `? :`: write `if (...) { ... } else { ... }`"},
    {"$", "a name is written without a sign in front"},
    {"@", "a name is written without a sign in front"},
    {"\\", "a statement goes on in the next line without a sign"},
};

bool HasWord(std::string_view words, std::string_view word) {
  for (std::size_t at = words.find(' '); at + 1 < words.size(); at = words.find(' ', at + 1))
    if (EqualsIgnoringCase(words.substr(at + 1, words.find(' ', at + 1) - at - 1), word))
      return true;
  return false;
}

} // namespace

std::string_view HintForWord(std::string_view word, WordPlace place) {
  for (const ForeignWord& foreign : kWords)
    if ((foreign.places & static_cast<unsigned>(place)) != 0 && HasWord(foreign.words, word))
      return foreign.hint;
  return {};
}

ForeignSign FindForeignSign(std::string_view text, std::uint32_t position) {
  for (const Sign& sign : kSigns)
    for (std::uint32_t before = 0; before < sign.sign.size() && before <= position; ++before)
      if (text.substr(position - before, sign.sign.size()) == sign.sign)
        return {position - before, static_cast<std::uint32_t>(position - before + sign.sign.size()), sign.hint};
  return {position, position, {}};
}
