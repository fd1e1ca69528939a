// Workbooks and their files.
#include "workbook_files.h"

#include <array>
#include <filesystem>
#include <string>

#include <com/sun/star/beans/PropertyValue.hpp>
#include <com/sun/star/document/MacroExecMode.hpp>
#include <com/sun/star/frame/XModel.hpp>
#include <com/sun/star/frame/XStorable.hpp>
#include <com/sun/star/frame/XTitle.hpp>
#include <com/sun/star/io/IOException.hpp>
#include <com/sun/star/lang/IllegalArgumentException.hpp>
#include <com/sun/star/util/XCloseable.hpp>
#include <osl/file.hxx>

#include <zpbase/spreadsheet.h>

#include "failure.h"
#include "office_text.h"
#include "servers/common/book_files.h"

namespace office {
namespace {

using css::beans::PropertyValue;
using css::uno::Any;
using css::uno::Sequence;
using css::uno::UNO_QUERY;
using css::uno::UNO_QUERY_THROW;

struct Format {
  char const * extension;
  char const * filter;
};
constexpr std::array formats = {Format{".xlsx", "Calc MS Excel 2007 XML"}, Format{".xls", "MS Excel 97"},
                                Format{".ods", "calc8"}};

PropertyValue property(char const * name, Any const & value)
{
  return PropertyValue(rtl::OUString::createFromAscii(name), 0, value, css::beans::PropertyState_DIRECT_VALUE);
}

// Unseen: an office without a screen falls over a workbook that is to be shown.
Reference<css::lang::XComponent> load(Link & link, rtl::OUString const & url)
{
  Sequence<PropertyValue> how(4);
  how.getArray()[0] = property("Hidden", Any(true));
  how.getArray()[1] = property("MacroExecutionMode", Any(css::document::MacroExecMode::NEVER_EXECUTE));
  how.getArray()[2] = property("UpdateDocMode", Any(sal_Int16{0}));  // links to other files aren't followed
  how.getArray()[3] = property("AsTemplate", Any(false));  // nor is a file taken for one whose name tells another format
  return link.GetDesktop()->loadComponentFromURL(url, "_blank", 0, how);
}

rtl::OUString urlOf(std::string const & hostPath)
{
  rtl::OUString const path = FromUtf8(hostPath);
  rtl::OUString url;
  if (ToUtf8(path) != hostPath || osl::FileBase::getFileURLFromSystemPath(path, url) != osl::FileBase::E_None)
    Refuse(hostPath + " is no name that the office can use");
  return url;
}

std::string whyUnread(std::string const & file)
{
  std::filesystem::path const path = file;
  if (std::filesystem::exists(path.parent_path() / (".~lock." + path.filename().string() + "#")))
    return file + " is in use by another office";
  return file + " can't be read as a workbook: it is damaged, locked by a password, or something else";
}

Reference<css::frame::XStorable> storableOf(Workbook const & workbook)
{
  return Reference<css::frame::XStorable>(workbook, UNO_QUERY_THROW);
}

// Empty for what is no file of the host's.
std::string pathOf(Reference<css::frame::XStorable> const & storable)
{
  rtl::OUString path;
  bool const isFile = osl::FileBase::getSystemPathFromFileURL(storable->getLocation(), path) == osl::FileBase::E_None;
  return isFile ? ToUtf8(path) : std::string();
}

rtl::OUString filterOf(Workbook const & workbook)
{
  rtl::OUString filter;
  for (PropertyValue const & argument : Reference<css::frame::XModel>(workbook, UNO_QUERY_THROW)->getArgs())
    if (argument.Name == "FilterName") argument.Value >>= filter;
  return filter;
}

void tellLostNames(Link & link, Workbook const & workbook, std::string const & file, rtl::OUString const & filter, bool alerts)
{
  if (filter.startsWith("calc8") || !link.GetCharts().HasNamed(workbook)) return;
  if (alerts) Refuse(file + " would lose the names of new charts, which .ods keeps", zp::contentsWouldBeLost);
  servers::Warn(file + " is written without the names of new charts");
}

void close(Reference<css::uno::XInterface> const & document)
{
  Reference<css::util::XCloseable>(document, UNO_QUERY_THROW)->close(true);
}

}  // namespace

Workbook CreateWorkbook(Link & link)
{
  Workbook const workbook(load(link, "private:factory/scalc"), UNO_QUERY_THROW);
  link.Own(workbook);
  return workbook;
}

Workbook OpenWorkbook(Link & link, std::u16string_view path)
{
  std::string const file = servers::HostPathOf(path);
  servers::RequireFile(file);
  rtl::OUString const url = urlOf(file);
  for (Workbook const & open : link.ListWorkbooks())
    if (storableOf(open)->getLocation() == url) return open;
  link.TakeNoteOf(file);
  Reference<css::lang::XComponent> document;
  try {
    document = load(link, url);
  } catch (css::io::IOException const &) {
    Refuse(whyUnread(file));
  } catch (css::lang::IllegalArgumentException const &) {
    Refuse(whyUnread(file));
  }
  if (!document.is()) Refuse(whyUnread(file));
  Workbook const workbook(document, UNO_QUERY);
  if (!workbook.is()) {
    close(document);
    Refuse(file + " is no workbook");
  }
  link.Own(workbook);
  if (storableOf(workbook)->isReadonly())
    servers::Warn(file + " is open for reading alone: it is open elsewhere, or can't be written");
  return workbook;
}

void RequireWritable(Workbook const & workbook)
{
  Reference<css::frame::XStorable> const storable = storableOf(workbook);
  if (!storable->isReadonly()) return;
  Refuse(pathOf(storable) + " is open for reading alone: it is open elsewhere, or can't be written");
}

void SaveWorkbook(Link & link, Workbook const & workbook, bool alerts)
{
  Reference<css::frame::XStorable> const storable = storableOf(workbook);
  if (!storable->hasLocation()) Refuse("The workbook has no file yet: save it under a name");
  RequireWritable(workbook);
  tellLostNames(link, workbook, pathOf(storable), filterOf(workbook), alerts);
  link.GetCharts().MakeAll(workbook);
  storable->store();
}

void SaveWorkbookAs(Link & link, Workbook const & workbook, std::u16string_view path, bool alerts)
{
  std::string const file = servers::HostPathOf(path);
  rtl::OUString const url = urlOf(file);
  rtl::OUString const lowerCase = FromWide(path).toAsciiLowerCase();
  for (Format const & format : formats) {
    if (!lowerCase.endsWith(rtl::OUString::createFromAscii(format.extension))) continue;
    if (storableOf(workbook)->getLocation() != url) servers::RequireNewFile(file);
    servers::RequireFolder(file);  // the office would make it
    tellLostNames(link, workbook, file, rtl::OUString::createFromAscii(format.filter), alerts);
    link.TakeNoteOf(file);
    link.GetCharts().MakeAll(workbook);
    Sequence<PropertyValue> how(1);
    how.getArray()[0] = property("FilterName", Any(rtl::OUString::createFromAscii(format.filter)));
    try {
      storableOf(workbook)->storeAsURL(url, how);
    } catch (css::io::IOException const &) {
      Refuse(file + " can't be written: its folder refuses it, or the disk is full");
    }
    return;
  }
  Refuse(file + " has no extension that tells its format: .xlsx, .xls or .ods");
}

void CloseWorkbook(Link & link, Workbook const & workbook)
{
  link.GetCharts().Forget(workbook);
  link.Disown(workbook);
  close(workbook);
}

bool IsClosed(Workbook const & workbook)
{
  try {
    storableOf(workbook)->hasLocation();
    return false;
  } catch (css::uno::Exception const &) {
    return true;
  }
}

rtl::OUString NameOfWorkbook(Workbook const & workbook)
{
  Reference<css::frame::XStorable> const storable = storableOf(workbook);
  if (!storable->hasLocation()) return Reference<css::frame::XTitle>(workbook, UNO_QUERY_THROW)->getTitle();
  std::string const path = pathOf(storable);
  return path.empty() ? storable->getLocation() : FromWide(servers::InsidePathOf(path));
}

}  // namespace office
