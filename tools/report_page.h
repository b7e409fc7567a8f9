// A report as one page of HTML: no script, no font, no picture from anywhere else.
#pragma once

#include <string>

class ReportContent;

// `file` is the name of the document's file.
std::string report_page(const ReportContent& content, const std::string& file);
// The part on quality control; empty if the document has no records.
std::string quality_control_section(const ReportContent& content);
