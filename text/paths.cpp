// The parts of a file's path in the inside form, whose parts are separated by backslashes alone.

#include <zpbase/text.h>

int FindExtension(CString const & path)
{
  int const dot = path.ReverseFind('.');
  return dot > path.ReverseFind('\\') ? dot : -1;
}

void ExtractFileName(CString & out, CString const & path)
{
  int const dot = FindExtension(path);
  out = dot == -1 ? path : path.Left(dot);
}

void ExtractFileExtension(CString & out, CString const & path)
{
  int const dot = FindExtension(path);
  out = dot == -1 ? CString() : path.Mid(dot);
}

CString GetDirectoryPrefix(CString const & path, int keepSeparator)
{
  int const separator = path.ReverseFind('\\');
  if (separator == -1) return CString();
  return path.Left(keepSeparator != 0 ? separator + 1 : separator);
}
