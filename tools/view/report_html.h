// A report as a page for browsers: light and dark, one block a page of the report, with breaks there in print.
#pragma once

#include <functional>
#include <string>

class CString;
class ReportPages;

// The header of a page, as a report's header function gives it: the page from 1 and the count of pages; 0 for a page without one.
using PageHeader = int (*)(CString & text, int page, int pages);

// Writes the page piece by piece through write; title is UTF-8, header may be null.
void WriteReportHtml(ReportPages const & report, std::string const & title, PageHeader header,
                     std::function<void(std::string const & piece)> const & write);
