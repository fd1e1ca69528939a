// Numbers as the texts that tables have.
#pragma once

// Writes nine significant digits, which give a 32-bit number back, without zeros at their end: plain from 1e-4 to below 1e9, else
// with an exponent; as std::to_chars does, general with a precision of 9. Up to nineCharacters at out; the result is their end.
constexpr int nineCharacters = 16;
char * PutNineDigits(char * out, float value);
