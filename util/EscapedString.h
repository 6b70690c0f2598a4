// Text with escapes, as people type it, into the bytes that it stands for.
#pragma once

#include <cstddef>
#include <string>

// Decodes text with escapes (\n \t \r \" \\, one hexadecimal digit, \(65) \(x41) \(b1000001)) up to `terminator`, or
// all of it when that is 0. `length` bytes may be read and must be followed by a zero byte; zero bytes among them are
// ordinary unless 0 is the terminator. `endPos`, `errorText`, `ok` may be null: bytes consumed, message (empty on
// success), 1 or 0.
std::string ParseString(const char* input, std::size_t length, char terminator, std::size_t* endPos,
                        std::string* errorText, int* ok);
