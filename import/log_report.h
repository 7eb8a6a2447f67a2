// An import log as text for another program: kvo-convert writes it, kvo reads it.
#ifndef KVO_IMPORT_LOG_REPORT_H
#define KVO_IMPORT_LOG_REPORT_H

#include <string>

#include "import_log.h"

namespace kvo {

// One JSON object: {"warnings": [{"kind", "count", "lines"}], "notes": [...],
// "lists": [{"title", "entries": [{"name", "count", "place"}]}]}, or {"error": "FILE: what"}.
std::string logReport(const ImportLog& log);
std::string errorReport(const std::string& message);

// Adds what a report says to the log. Throws ImportError with the message of an error report, and for what is no
// report.
void readLogReport(const std::string& text, ImportLog& log);

} // namespace kvo

#endif
