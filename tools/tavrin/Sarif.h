#pragma once

#include <json/value.h>

#include <string>

#include "Report.h"
#include "SourceLine.h"

// SARIF 2.1.0, the format of code scanning services.
namespace tool {

// A result of a log: a diagnostic with its place in the report's source and in the file. Columns count
// characters, not bytes.
Json::Value SarifResult(const FileReport& report, const SourceText& source, const Diagnostic& diagnostic,
                        const Diagnostic& inFile);

// A log with one run of the tool, with all rules.
Json::Value SarifLog(const Json::Value& results);

}  // namespace tool
