// Path texts as the data's home system writes them ('\' separates folders, a
// drive is a letter and a colon, names compare ignoring case); '/' is taken as
// a separator too. All path parsing and case folding of the program is here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

bool IsSeparator(char c);
char FoldCase(char c);
void UpperCaseInPlace(std::string& text);
bool EqualNoCase(std::string_view a, std::string_view b);
// Compares two texts folded to upper case, the end counting as a zero character;
// only the first 'length' characters count.
int CompareNoCase(std::string_view a, std::string_view b, std::size_t length = std::string_view::npos);
// First place where 'length' characters (all of 'what' for -1) equal 'what'
// ignoring case; npos when there is none.
std::size_t FindNoCase(std::string_view text, std::string_view what, std::int32_t length);
// '*' and '?' wildcards, compared ignoring case.
bool WildcardMatch(std::string_view pattern, std::string_view name);

bool PathIsRooted(std::string_view path);
// Position of the last 'ch' in the whole name, folders included, searched down to
// but not including the first character; name.size() when there is none.
std::size_t FindLastInName(std::string_view name, char ch);
// Puts "." and ext at the last dot (found by FindLastInName), or appends them.
void SetExtension(std::string& name, std::string_view ext);
bool HasExtension(std::string_view name, std::string_view ext);
std::string_view FileNamePart(std::string_view path);
// The folder of a path with its closing separator; empty for a bare name.
std::string_view FolderPart(std::string_view path);
// Cuts the path to its folder without the closing separator.
std::string& StripFileName(std::string& path);

}  // namespace platform
