// The application behind zp view: it takes report documents as they are launched, and hands them to whoever shows them.
#pragma once

#include <functional>
#include <string>

#include "tools/view/report_html.h"

class CStringArray;

// A report that has been opened: its entries, and its header function or null.
struct OpenedReport {
  CStringArray const & entries;
  PageHeader header;
};

// Opens a text file as a report document and calls show with it. What stops that is raised as a Failure.
void OpenReport(std::string const & file, std::function<void(OpenedReport const & report)> show);
