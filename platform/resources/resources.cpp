// The registered modules of string resources; our stand-in for the application's module stands at their end.

#include <zpbase/platform/format.h>
#include <zpbase/platform/resources.h>

#include <algorithm>
#include <vector>

#include "platform/resources/resources_internal.h"

namespace {

std::vector<zp::FindResourceText> & modules()
{
  static std::vector<zp::FindResourceText> registered;
  return registered;
}

char const * findApplicationText(UINT id)
{
  auto const * const end = zp::applicationTexts + zp::applicationTextCount;
  auto const * const found =
      std::find_if(zp::applicationTexts, end, [id](zp::ResourceText const & text) { return text.nID == id; });
  return found != end ? found->pText : nullptr;
}

char const * findText(UINT id)
{
  for (zp::FindResourceText const find : modules())
    if (char const * const text = find(id); text != nullptr) return text;
  return findApplicationText(id);
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
  modules().insert(modules().begin(), find);
}

void UnregisterResourceModule(FindResourceText find)
{
  std::erase(modules(), find);
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
