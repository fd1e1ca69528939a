// The registered modules of string resources; our stand-in for the application's module and the library's own texts stand at
// their end.

#include <zpbase/platform/resources.h>

#include <algorithm>
#include <span>

#include <zpbase/platform/format.h>

#include "platform/resources/resources_internal.h"

namespace {

zp::ModuleList<zp::FindResourceText> & modules()
{
  static zp::ModuleList<zp::FindResourceText> registered;
  return registered;
}

char const * findIn(std::span<zp::ResourceText const> texts, UINT id)
{
  auto const found = std::find_if(texts.begin(), texts.end(), [id](zp::ResourceText const & row) { return row.id == id; });
  return found != texts.end() ? found->text : nullptr;
}

char const * findText(UINT id)
{
  char const * text = modules().Ask(id);
  if (text == nullptr) text = findIn({zp::applicationTexts, zp::applicationTextsCount}, id);
  if (text == nullptr) text = findIn({zp::libraryTexts, zp::libraryTextsCount}, id);
  return text;
}

void appendArgument(CString & text, zp::FormatArg const & arg)
{
  std::string shown;
  char const * const format = arg.GetKind() == zp::FormatArg::Kind::Integer ? "%d"
                              : arg.GetKind() == zp::FormatArg::Kind::Real  ? "%g"
                                                                            : "%s";
  zp::FormatInto(shown, format, std::span(&arg, 1));
  text += shown;
}

}  // namespace

namespace zp {

void RegisterResourceModule(FindResourceText find)
{
  modules().Register(find);
}

void UnregisterResourceModule(FindResourceText find)
{
  modules().Unregister(find);
}

CString FormatResource(UINT id, std::initializer_list<FormatArg> args)
{
  CString text;
  if (text.LoadString(id)) {
    std::string formatted;
    FormatInto(formatted, text, std::span(args.begin(), args.size()));
    return CString(std::move(formatted));
  }
  text.Format(args.size() != 0 ? "%u:" : "%u", id);
  for (FormatArg const & arg : args) {
    text += ' ';
    appendArgument(text, arg);
  }
  return text;
}

}  // namespace zp

int CString::LoadString(UINT id)
{
  char const * const text = findText(id);
  *this = text;
  return text != nullptr ? GetLength() : 0;
}
