// The terminal viewer of a report.
#pragma once

#include <string>

class ReportPages;

// Shows the report on the terminal until its reader leaves: title is UTF-8. False if the terminal can't show it.
bool ShowReport(ReportPages const & report, std::string const & title);
