// What a survey found, in sentences for people and in JSON.
#pragma once

#include <cstdio>
#include <string>

#include <nlohmann/json.hpp>

#include "tools/text/line_survey.h"

// The lines that aren't numeric, with hints.
void ReportMisfits(std::FILE * to, TextOptions const & options, TextSurvey const & found);
nlohmann::json JsonOfMisfits(TextSurvey const & found);
nlohmann::json JsonOfHints(TextSurvey const & found);

// Why no line is numeric, as a sentence that begins with the file's name.
std::string WhyNone(TextLines const & text, TextOptions const & options, TextSurvey const & found);

// "3", or "2 to 3" values on a line.
std::string ValueCounts(TextSurvey const & found);
