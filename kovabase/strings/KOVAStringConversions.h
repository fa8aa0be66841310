#pragma once

#include "kovabase/foundation/KOVAExport.h"
#include "kovabase/foundation/KOVAResult.h"
#include "kovabase/strings/KOVAString.h"

/// Conversions between texts and numbers, booleans and character buffers, and small edits of texts.
///
/// Numbers are read from the US-ASCII form of a text (any other character ends the number) and do
/// not depend on the process's locale. They may have leading white space and a sign, and whatever
/// follows the number is ignored. Outputs keep their value on failure, which is Failure everywhere.
/// Any thread.

/// Zero needs a text whose first character is '0': "abc" fails and "0x" is 0. A number that
/// no `int` (`long long`) holds fails.
KOVABASE_API KOVAResult KOVAStringToInteger(const KOVAString& text, int& value);
KOVABASE_API KOVAResult KOVAStringToLongLong(const KOVAString& text, long long& value);

/// A text without a number is 0 here, not a failure, and a minus sign wraps around as it does in
/// `strtoul`. Only a number that is too large fails.
KOVABASE_API KOVAResult KOVAStringToULong(const KOVAString& text, unsigned long& value);
KOVABASE_API KOVAResult KOVAStringToULongLong(const KOVAString& text, unsigned long long& value);

/// The nearest double. "inf", "nan" and hexadecimal numbers are numbers too, and what is too large
/// is infinite. Zero needs a text that KOVAStringCheckIsZero accepts, so "0 mm" and "1e-999" fail.
KOVABASE_API KOVAResult KOVAStringToDouble(const KOVAString& text, double& value);

/// "True" and "False", in any case, and nothing around them.
KOVABASE_API KOVAResult KOVAStringToBool(const KOVAString& text, bool& value);

/// Gives the caller a zero-terminated copy in the default code page, to be released with
/// KOVAReleaseChars.
KOVABASE_API KOVAResult KOVAStringToChars(const KOVAString& text, char*& chars);
/// Gives the caller a zero-terminated UTF-16 copy, to be released with KOVAReleaseWideChars.
KOVABASE_API KOVAResult KOVAStringToWideChars(const KOVAString& text, unsigned short*& chars);
/// Both free what the functions above gave, set the pointer to null and succeed; null is ignored.
KOVABASE_API KOVAResult KOVAReleaseChars(char*& chars);
KOVABASE_API KOVAResult KOVAReleaseWideChars(unsigned short*& chars);

/// "true" or "false".
KOVABASE_API KOVAString KOVAStringFromBool(bool value);
KOVABASE_API KOVAString KOVAStringFromInteger(int value);
KOVABASE_API KOVAString KOVAStringFromULong(unsigned long value);
KOVABASE_API KOVAString KOVAStringFromULongLong(unsigned long long value);
/// The shortest text that reads back to the same double; the same that a stream formatter writes.
/// See KOVAFloatUtil::ToText.
KOVABASE_API KOVAString KOVAStringFromDouble(double value);
/// Zero-terminated UTF-16; null is the empty string.
KOVABASE_API KOVAString KOVAStringFromUnicodeWChars(const unsigned short* chars);

/// Each unit by itself through `towlower` or `towupper` in the process's locale, so that the length
/// stays and characters outside the basic plane too.
KOVABASE_API KOVAString KOVAStringConvertToLowerCase(const KOVAString& text);
KOVABASE_API KOVAString KOVAStringConvertToUpperCase(const KOVAString& text);

/// Without the white space (`iswspace` in the process's locale) at both ends.
KOVABASE_API KOVAString KOVAStringGetTrimmedString(const KOVAString& text);
/// True for the empty text too.
KOVABASE_API bool KOVAStringCheckIfWhiteSpace(const KOVAString& text);

/// Whether `text` spells the number zero: "0", "-0.0", "0.", ".0", "0e+0", and not "1", "0.0.0",
/// "e0",
/// "-". Null and empty texts do not. It tells spellings of zero from texts without a number, and
/// lets some that no number has pass ("0E0E0").
KOVABASE_API bool KOVAStringCheckIsZero(const char* text);

/// Drops all double quotes at the start and at the end; those inside stay. `out` may be `in`.
/// @return Success, always.
KOVABASE_API KOVAResult RemoveDoubleQuotesAtStartAndEndOf(const KOVAString& in, KOVAString& out);

/// A copy in which `replacement` stands for each unit above 127, for a pair of surrogates twice.
KOVABASE_API KOVAString KOVAStringReplaceNonASCIICharsWith(const KOVAString& text,
                                                           unsigned short replacement);
