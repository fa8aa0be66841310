#pragma once

#include "kovabase/strings/KOVAString.h"

#include <string>
#include <string_view>
#include <vector>

/// The few things that the program does with text.
namespace kova::translate {

/// A name or other text of a user as it may stand in a message: in single quotes, control
/// characters as "\xNN", so that no name can move the cursor of a terminal.
std::string quoteText(std::string_view text);

/// The text as a string of JSON, with its quotes. Bytes that are not UTF-8 become U+FFFD.
std::string quoteJson(std::string_view text);

/// In ASCII alone.
std::string toLower(std::string text);

std::string toUtf8(const KOVAString& text);
/// Bytes that are not UTF-8 become U+FFFD.
KOVAString fromUtf8(std::string_view text);

/// A path of the system as KOVAFilePath takes it: also bytes that are not UTF-8, and backslashes,
/// name the same file there.
KOVAString toPathText(std::string_view path);

/// The word of `words` that the user may have meant, in capitals or not; empty when none is near.
std::string suggest(const std::string& word, const std::vector<std::string>& words);
/// "; did you mean 'NAME'?", or nothing.
std::string suggestInWords(const std::string& word, const std::vector<std::string>& words);

}  // namespace kova::translate
