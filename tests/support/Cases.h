// Tables of cases: text files beside the tests, which read better than tables in C++ where texts are what is tried.
//
//   # A remark.
//   [what is tried]
//   INPUT | INPUT => OUTCOME | OUTCOME
//
// Blanks around a word do not count; <2A> is the byte with that hexadecimal code.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

using Words = std::vector<std::string>;

// Checks every case of a section: what `answer` makes of the inputs is the outcome. `file` is a path below tests/.
// Fails the test when there is no such case.
void CheckCases(const std::string& file, const std::string& section, const std::function<Words(const Words&)>& answer);
// The words of such a line, or a part of one.
Words WordsOf(std::string_view text);
// The whole text of a file below tests/.
std::string ReadTestFile(const std::string& file);
