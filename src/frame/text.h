// Text helpers shared by all commands. Paths are texts with backslashes; their
// parsing and the case folding live in the platform layer and are named here.
#pragma once

#include <string>
#include <string_view>

#include "platform/path_text.h"

namespace bgr {

using platform::CompareNoCase;
using platform::FileNamePart;
using platform::FindLastInName;
using platform::FindNoCase;
using platform::HasExtension;
using platform::PathIsRooted;
using platform::SetExtension;
using platform::StripFileName;
using platform::UpperCaseInPlace;

std::string_view SkipBlanks(std::string_view text);
std::string_view SkipPast(std::string_view text, char ch);
// Next blank-separated or double-quoted field at the cursor; the cursor moves on.
std::string NextToken(std::string_view& cursor);

}  // namespace bgr
