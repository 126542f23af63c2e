#pragma once

#include <wx/string.h>

#include <string>

// Builds small stack trees for tests: paths are relative to root, missing folders are created.
void WriteTreeFile(const wxString& root, const wxString& relativePath, const std::string& bytes);
void MakeTreeFolder(const wxString& root, const wxString& relativePath);
