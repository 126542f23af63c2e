#pragma once

#include <wx/string.h>

#include <functional>
#include <vector>

// Splits a command line into program and arguments as Windows process creation does, so that the
// same command lines run on both systems:
// - an argument in double quotes may contain blanks; 2n backslashes before a quote give n
//   backslashes and the quote delimits, 2n+1 give n backslashes and a literal quote; other
//   backslashes are literal;
// - an unquoted program path containing blanks is found by trying the blank-separated prefixes,
//   shortest first, until isExecutable accepts one ("/opt/my stack/bin/httpd -f x" runs
//   "/opt/my stack/bin/httpd" when "/opt/my" is no program).
namespace CommandLineWords {

std::vector<wxString> SplitArguments(const wxString& text);
std::vector<wxString> Split(const wxString& commandLine,
                            const std::function<bool(const wxString&)>& isExecutable);

} // namespace CommandLineWords
